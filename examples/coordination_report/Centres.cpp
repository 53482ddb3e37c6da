#include "examples/coordination_report/Centres.h"

#include "examples/coordination_report/Elements.h"

#include "vorlane/foundation/TypedArrays.h"
#include "vorlane/spatial/NeighborList.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <set>
#include <system_error>
#include <utility>

namespace CoordinationReport {
namespace {

constexpr double radiusFactor = 1.3;
constexpr double behindFactor = 1.25; // how much further out an atom lies that belongs to a nearer ligand
constexpr double sameDistance = 0.02; // angstrom
constexpr std::size_t fewCentres = 3; // of one element; a file with more is taken as a piece of a crystal

double Distance(Atom const& first, Atom const& second)
{
    return std::sqrt(first.position.Distance2(second.position));
}

double ContactDistance(std::string const& first, std::string const& second)
{
    return radiusFactor * (FindElement(first)->covalentRadius + FindElement(second)->covalentRadius);
}

bool IsMetal(Atom const& atom)
{
    return FindElement(atom.element)->isMetal;
}

/// Whether one of the ligands, which are all nearer, is what holds the atom.
bool BelongsToNearer(Structure const& structure, Ligand const& candidate, std::vector<Ligand> const& nearer)
{
    Atom const& atom = structure.atoms[candidate.atom];
    return std::any_of(nearer.begin(), nearer.end(), [&](Ligand const& ligand) {
        Atom const& other = structure.atoms[ligand.atom];
        return candidate.distance > behindFactor * ligand.distance &&
               Distance(atom, other) <= ContactDistance(atom.element, other.element);
    });
}

/// Where the middle of a structure is and how far its atoms reach from there.
struct Extent
{
    Point3d middle;
    double reach = 0.0;
};

Extent ExtentOf(Structure const& structure)
{
    Extent extent;
    for (Atom const& atom : structure.atoms) {
        extent.middle = extent.middle + atom.position;
    }
    extent.middle /= static_cast<double>(structure.atoms.size());
    for (Atom const& atom : structure.atoms) {
        extent.reach = std::max(extent.reach, std::sqrt(atom.position.Distance2(extent.middle)));
    }
    return extent;
}

/// The largest distance at which an atom of this element could find a ligand in the structure.
double SearchRadius(Structure const& structure, std::string const& element, Options const& options)
{
    if (options.cutoff) {
        return *options.cutoff;
    }
    double radius = 0.0;
    for (Atom const& atom : structure.atoms) {
        if (options.allContacts || !IsMetal(atom)) {
            radius = std::max(radius, ContactDistance(element, atom.element));
        }
    }
    return radius;
}

bool AreAlike(Structure const& structure, Centre const& first, Centre const& second)
{
    return std::equal(first.ligands.begin(), first.ligands.end(), second.ligands.begin(),
                      second.ligands.end(), [&](Ligand const& a, Ligand const& b) {
                          return structure.atoms[a.atom].element == structure.atoms[b.atom].element &&
                                 std::abs(a.distance - b.distance) <= sameDistance;
                      });
}

/// The largest distance at which any atom of the structure could find a ligand.
double LargestSearchRadius(Structure const& structure, Options const& options)
{
    double radius = options.cutoff.value_or(0.0);
    std::set<std::string> elements;
    for (Atom const& atom : structure.atoms) {
        if (!options.cutoff && elements.insert(atom.element).second) {
            radius = std::max(radius, ContactDistance(atom.element, atom.element));
        }
    }
    return radius;
}

/// The atoms of one structure, ready to be asked for ligands.
class LigandFinder
{
public:
    LigandFinder(Structure const& structure, Options const& options)
        : m_structure(structure), m_options(options),
          // The list leaves out what lies exactly at its cutoff. The bounds keep its squares in range.
          m_cutoff(std::clamp(LargestSearchRadius(structure, options) * (1.0 + 1e-9), 0.1, 1e100)),
          m_neighbours(m_cutoff, static_cast<int>(std::min<std::size_t>(structure.atoms.size() + 1, 100000)))
    {
        for (Atom const& atom : structure.atoms) {
            m_neighbours.Add(atom.position);
        }
    }

    /// The atoms within the distance that the options allow, those at equal distances in the order of the
    /// file.
    std::vector<Ligand> FindContacts(std::size_t centre) const
    {
        Atom const& middle = m_structure.atoms[centre];
        Vorlane::IntArray near;
        m_neighbours.GetNeighbors(middle.position, near);
        std::vector<std::size_t> inOrder;
        for (int k = 0; k < near.GetSize(); ++k) {
            inOrder.push_back(static_cast<std::size_t>(near[k]));
        }
        std::sort(inOrder.begin(), inOrder.end());
        std::vector<Ligand> within;
        for (std::size_t const atom : inOrder) {
            Atom const& other = m_structure.atoms[atom];
            double const distance = Distance(middle, other);
            double const limit =
                m_options.cutoff ? *m_options.cutoff : ContactDistance(middle.element, other.element);
            if (atom != centre && distance <= limit) {
                within.push_back({atom, distance});
            }
        }
        // As they are printed, so that equal distances stay in the order of the file.
        auto const shown = [](Ligand const& ligand) {
            return std::round(ligand.distance * 1000.0);
        };
        std::stable_sort(within.begin(), within.end(),
                         [&](Ligand const& a, Ligand const& b) { return shown(a) < shown(b); });
        return within;
    }

    /// The ligands of an atom by the rules of the options.
    Centre MakeCentre(std::size_t centre) const
    {
        std::vector<Ligand> const within = FindContacts(centre);
        if (m_options.cutoff || m_options.allContacts) {
            return {centre, within};
        }
        std::vector<Ligand> ligands;
        for (Ligand const& candidate : within) {
            bool const metals =
                IsMetal(m_structure.atoms[centre]) && IsMetal(m_structure.atoms[candidate.atom]);
            if (!metals && !BelongsToNearer(m_structure, candidate, ligands)) {
                ligands.push_back(candidate);
            }
        }
        return {centre, ligands};
    }

private:
    Structure const& m_structure;
    Options const& m_options;
    double m_cutoff;
    Vorlane::NeighborList m_neighbours;
};

/// Of many atoms of one element, which stand in the order of their distances from the middle: one of each
/// kind.
void ChooseKinds(Structure const& structure, std::string const& element,
                 std::vector<std::size_t> const& atoms, Extent const& extent, Options const& options,
                 LigandFinder const& finder, CentreChoice& choice)
{
    double const search = SearchRadius(structure, element, options);
    std::size_t cutOff = 0;
    std::vector<Centre> kinds;
    for (std::size_t atom : atoms) {
        double const fromMiddle = std::sqrt(structure.atoms[atom].position.Distance2(extent.middle));
        // The atom nearest to the middle stands for its element however small the piece is.
        if (atom != atoms.front() && fromMiddle + search > extent.reach) {
            ++cutOff;
            continue;
        }
        Centre const centre = finder.MakeCentre(atom);
        auto const known = std::find_if(kinds.begin(), kinds.end(), [&](Centre const& kind) {
            return AreAlike(structure, kind, centre);
        });
        if (known == kinds.end()) {
            kinds.push_back(centre);
        } else {
            ++known->alike;
        }
    }
    choice.centres.insert(choice.centres.end(), kinds.begin(), kinds.end());
    if (cutOff > 0) {
        choice.remarks.push_back(std::to_string(cutOff) + " more " + element +
                                 " left out: so near the edge that ligands may be missing");
    }
}

/// The only atom that the option --centre may mean, if it names one, or the element it names.
std::size_t AtomOfOption(Structure const& structure, std::string const& text, std::string& element)
{
    std::size_t const digits = std::min(text.find_first_of("0123456789"), text.size());
    Element const* const known = FindElement(text.substr(0, digits));
    element = known != nullptr ? known->symbol : "";
    std::size_t number = 0;
    auto const result = std::from_chars(text.data() + digits, text.data() + text.size(), number);
    bool const isNumber = result.ec == std::errc() && result.ptr == text.data() + text.size();
    if ((digits > 0 && known == nullptr) || (digits < text.size() && !isNumber) || text.empty()) {
        throw BadFile(structure.path, 0, "--centre wants an element, a number or both, not '" + text + "'");
    }
    if (digits == text.size()) {
        return structure.atoms.size();
    }
    if (number < 1 || number > structure.atoms.size()) {
        throw BadFile(structure.path, 0,
                      "there is no atom " + text.substr(digits) + " among " +
                          std::to_string(structure.atoms.size()));
    }
    if (!element.empty() && structure.atoms[number - 1].element != element) {
        throw BadFile(structure.path, 0,
                      "the atom " + std::to_string(number) + " is " + structure.atoms[number - 1].element +
                          ", not " + element);
    }
    return number - 1;
}

CentreChoice AtomWithMostLigands(LigandFinder const& finder, std::vector<std::size_t> const& byMiddle)
{
    Centre best = finder.MakeCentre(byMiddle.front());
    for (std::size_t atom : byMiddle) {
        Centre const centre = finder.MakeCentre(atom);
        if (centre.ligands.size() > best.ligands.size()) {
            best = centre;
        }
    }
    return {{best}, {"no metal here: the atom with most ligands is taken"}};
}

} // namespace

CentreChoice FindCentres(Structure const& structure, Options const& options)
{
    LigandFinder const finder(structure, options);
    std::string wanted;
    if (options.centre) {
        std::size_t const atom = AtomOfOption(structure, *options.centre, wanted);
        if (atom < structure.atoms.size()) {
            return {{finder.MakeCentre(atom)}, {}};
        }
    }
    Extent const extent = ExtentOf(structure);
    std::vector<std::size_t> byMiddle(structure.atoms.size());
    for (std::size_t atom = 0; atom < byMiddle.size(); ++atom) {
        byMiddle[atom] = atom;
    }
    auto const fromMiddle = [&](std::size_t atom) {
        // Rounded, so that atoms at one distance stay in the order of the file.
        return std::round(std::sqrt(structure.atoms[atom].position.Distance2(extent.middle)) * 1000.0);
    };
    std::stable_sort(byMiddle.begin(), byMiddle.end(),
                     [&](std::size_t a, std::size_t b) { return fromMiddle(a) < fromMiddle(b); });

    std::map<std::string, std::vector<std::size_t>> atomsOfElement;
    std::vector<std::string> order; // of the elements' first atoms in the file
    for (Atom const& atom : structure.atoms) {
        bool const taken = options.centre ? atom.element == wanted : IsMetal(atom);
        if (taken && atomsOfElement.try_emplace(atom.element).second) {
            order.push_back(atom.element);
        }
    }
    for (std::size_t atom : byMiddle) {
        auto const found = atomsOfElement.find(structure.atoms[atom].element);
        if (found != atomsOfElement.end()) {
            found->second.push_back(atom);
        }
    }
    if (order.empty()) {
        if (options.centre) {
            throw BadFile(structure.path, 0, "there is no " + wanted + " in it");
        }
        return AtomWithMostLigands(finder, byMiddle);
    }

    CentreChoice choice;
    for (std::string const& element : order) {
        std::vector<std::size_t>& atoms = atomsOfElement[element];
        if (atoms.size() > fewCentres && !options.allCentres) {
            ChooseKinds(structure, element, atoms, extent, options, finder, choice);
            continue;
        }
        std::sort(atoms.begin(), atoms.end());
        for (std::size_t atom : atoms) {
            choice.centres.push_back(finder.MakeCentre(atom));
        }
    }
    return choice;
}

} // namespace CoordinationReport
