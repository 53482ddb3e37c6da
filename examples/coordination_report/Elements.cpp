#include "examples/coordination_report/Elements.h"

#include <algorithm>
#include <iterator>

namespace CoordinationReport {
namespace {

// Covalent radii: B. Cordero, V. Gomez, A. E. Platero-Prats, M. Reves, J. Echeverria, E. Cremades, F.
// Barragan, S. Alvarez, Covalent radii revisited, Dalton Transactions 2008, 2832, table 2. Carbon has the
// radius of sp3 carbon; manganese, iron and cobalt have those of their low-spin forms. In the order of atomic
// numbers.
constexpr Element elements[] = {
    // symbol, radius in angstrom, whether it counts as a metal
    {"H", 0.31, false},  {"He", 0.28, false}, {"Li", 1.28, true},  {"Be", 0.96, true},  {"B", 0.84, false},
    {"C", 0.76, false},  {"N", 0.71, false},  {"O", 0.66, false},  {"F", 0.57, false},  {"Ne", 0.58, false},
    {"Na", 1.66, true},  {"Mg", 1.41, true},  {"Al", 1.21, true},  {"Si", 1.11, false}, {"P", 1.07, false},
    {"S", 1.05, false},  {"Cl", 1.02, false}, {"Ar", 1.06, false}, {"K", 2.03, true},   {"Ca", 1.76, true},
    {"Sc", 1.70, true},  {"Ti", 1.60, true},  {"V", 1.53, true},   {"Cr", 1.39, true},  {"Mn", 1.39, true},
    {"Fe", 1.32, true},  {"Co", 1.26, true},  {"Ni", 1.24, true},  {"Cu", 1.32, true},  {"Zn", 1.22, true},
    {"Ga", 1.22, true},  {"Ge", 1.20, false}, {"As", 1.19, false}, {"Se", 1.20, false}, {"Br", 1.20, false},
    {"Kr", 1.16, false}, {"Rb", 2.20, true},  {"Sr", 1.95, true},  {"Y", 1.90, true},   {"Zr", 1.75, true},
    {"Nb", 1.64, true},  {"Mo", 1.54, true},  {"Tc", 1.47, true},  {"Ru", 1.46, true},  {"Rh", 1.42, true},
    {"Pd", 1.39, true},  {"Ag", 1.45, true},  {"Cd", 1.44, true},  {"In", 1.42, true},  {"Sn", 1.39, true},
    {"Sb", 1.39, true},  {"Te", 1.38, false}, {"I", 1.39, false},  {"Xe", 1.40, false}, {"Cs", 2.44, true},
    {"Ba", 2.15, true},  {"La", 2.07, true},  {"Ce", 2.04, true},  {"Pr", 2.03, true},  {"Nd", 2.01, true},
    {"Pm", 1.99, true},  {"Sm", 1.98, true},  {"Eu", 1.98, true},  {"Gd", 1.96, true},  {"Tb", 1.94, true},
    {"Dy", 1.92, true},  {"Ho", 1.92, true},  {"Er", 1.89, true},  {"Tm", 1.90, true},  {"Yb", 1.87, true},
    {"Lu", 1.87, true},  {"Hf", 1.75, true},  {"Ta", 1.70, true},  {"W", 1.62, true},   {"Re", 1.51, true},
    {"Os", 1.44, true},  {"Ir", 1.41, true},  {"Pt", 1.36, true},  {"Au", 1.36, true},  {"Hg", 1.32, true},
    {"Tl", 1.45, true},  {"Pb", 1.46, true},  {"Bi", 1.48, true},  {"Po", 1.40, true},  {"At", 1.50, false},
    {"Rn", 1.50, false}, {"Fr", 2.60, true},  {"Ra", 2.21, true},  {"Ac", 2.15, true},  {"Th", 2.06, true},
    {"Pa", 2.00, true},  {"U", 1.96, true},   {"Np", 1.90, true},  {"Pu", 1.87, true},  {"Am", 1.80, true},
    {"Cm", 1.69, true},
};

bool EqualsIgnoringCase(std::string const& text, char const* symbol)
{
    std::string const other(symbol);
    return std::equal(text.begin(), text.end(), other.begin(), other.end(),
                      [](unsigned char a, unsigned char b) { return (a | 0x20) == (b | 0x20); });
}

struct ElementColour
{
    char const* symbol;
    Examples::Colour colour;
};

constexpr ElementColour colours[] = {
    {"H", {226, 230, 235}}, {"B", {236, 170, 150}}, {"C", {96, 102, 112}},   {"N", {66, 100, 214}},
    {"O", {216, 58, 52}},   {"F", {120, 200, 110}}, {"Si", {200, 170, 130}}, {"P", {236, 136, 40}},
    {"S", {232, 200, 56}},  {"Cl", {58, 170, 74}},  {"As", {168, 116, 196}}, {"Se", {226, 156, 50}},
    {"Br", {150, 70, 50}},  {"Te", {200, 120, 40}}, {"I", {120, 60, 160}},
};

} // namespace

Element const* FindElement(std::string const& symbol)
{
    auto const found = std::find_if(std::begin(elements), std::end(elements), [&](Element const& element) {
        return EqualsIgnoringCase(symbol, element.symbol);
    });
    return found == std::end(elements) ? nullptr : found;
}

Examples::Colour ColourOf(std::string const& symbol)
{
    for (ElementColour const& entry : colours) {
        if (symbol == entry.symbol) {
            return entry.colour;
        }
    }
    return {88, 112, 150};
}

} // namespace CoordinationReport
