// The input is a text, in which `{`, a count and a character stand for eight times so many of the character.
// After `#`, it is the text of a double or of a number half way to the next one: eight bytes are the bits,
// the next is odd for half way, and the last tells how the digits end.

#include "fuzz/ConversionChecks.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

namespace {

std::string Expanded(std::string const& input)
{
    std::string text;
    for (std::size_t n = 0; n < input.size(); ++n) {
        bool const isRun = input[n] == '{' && n + 2 < input.size();
        std::size_t const count = isRun ? 8u * static_cast<unsigned char>(input[n + 1]) : 1;
        n += isRun ? 2 : 0;
        text.append(count, input[n]);
    }
    return text;
}

/// All digits of the number; or up to 78 of them; or all and, right behind them or far away, one more.
std::string NumberText(std::string const& input)
{
    double value = 0.0;
    std::memcpy(&value, input.data() + 1, sizeof value);
    // Exact: a long double has more bits.
    long double const below = std::isfinite(value) ? std::fabs(value) : 1.0;
    long double const above =
        std::nextafter(static_cast<double>(below), std::numeric_limits<double>::infinity());
    long double const number = input[9] % 2 == 0 ? below : (below + above) / 2;
    int const ending = static_cast<unsigned char>(input[10]);
    char digits[1000];
    std::snprintf(digits, sizeof digits, "%s%.*Le", value < 0 ? "-" : "",
                  ending % 4 == 0 ? 15 + ending / 4 : 800, number);
    std::string const endings[] = {"", "", "1", std::string(2000, '0') + "1"};
    std::string text(digits);
    return text.insert(std::min(text.find('e'), text.size()), endings[ending % 4]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const input(reinterpret_cast<char const*>(data), size < 1000 ? size : 1000);
    std::string const text = input.size() == 11 && input[0] == '#' ? NumberText(input) : Expanded(input);
    VorlaneFuzz::CheckReal(text.c_str());
    VorlaneFuzz::CheckInteger(text.c_str());
    VorlaneFuzz::CheckPoint(text.c_str());
    VorlaneFuzz::CheckEdits(CString(text.data(), static_cast<int>(text.size())));
    return 0;
}
