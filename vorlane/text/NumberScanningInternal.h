#ifndef VORLANE_TEXT_NUMBERSCANNINGINTERNAL_H
#define VORLANE_TEXT_NUMBERSCANNINGINTERNAL_H

/// \file
/// Numbers at the front of a text, read without the locale: what the C library's strtol, with a `long` of 32
/// bits, and strtod read in the C locale, to the last bit and with the same failures. Nothing here keeps
/// state, and ConvertReal alone touches errno.

#include "vorlane/foundation/FrameworkSurface.h"

#include <cstdint>

namespace Vorlane::NumberScanning {

constexpr bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Eight bytes, the highest bit set in each that is white space and cleared in all others.
constexpr std::uint64_t WhiteSpaceAmong(std::uint64_t bytes)
{
    constexpr std::uint64_t each = 0x0101010101010101;
    std::uint64_t const low = bytes & each * 0x7F;
    // Sums of numbers of seven bits stay in their byte, and set its highest bit from a certain number on.
    std::uint64_t const fromTab = low + each * (0x80 - '\t');
    std::uint64_t const behindReturn = low + each * (0x80 - '\r' - 1);
    std::uint64_t const notBlank = (low ^ each * ' ') + each * 0x7F;
    return ((fromTab & ~behindReturn) | ~notBlank) & ~bytes & each * 0x80;
}

/// The first character from `first` on that is, or is not, white space; or `last`.
template <bool isWhiteSpace>
char const* FindByWhiteSpace(char const* first, char const* last)
{
    for (; last - first >= 8; first += 8) {
        std::uint64_t const white =
            WhiteSpaceAmong(AfxGetLittleEndian<std::uint64_t>(reinterpret_cast<unsigned char const*>(first)));
        std::uint64_t const found = isWhiteSpace ? white : white ^ 0x8080808080808080;
        if (found != 0) {
            return first + __builtin_ctzll(found) / 8;
        }
    }
    while (first != last && AfxIsWhiteSpace(*first) != isWhiteSpace) {
        ++first;
    }
    return first;
}

/// The first character from `first` on that is no white space, or `last`.
inline char const* SkipWhiteSpace(char const* first, char const* last)
{
    bool const isThere = first == last || !AfxIsWhiteSpace(*first);
    return isThere ? first : FindByWhiteSpace<false>(first, last);
}

/// The first white space from `first` on, or `last`.
inline char const* FindWhiteSpace(char const* first, char const* last)
{
    return FindByWhiteSpace<true>(first, last);
}

struct ScannedInteger
{
    /// The number; the nearer 32-bit bound if it is out of range, 0 if there is none.
    std::int32_t value;
    /// Behind the number, or where the scan began if there is none.
    char const* end;
    bool outOfRange;
};

/// White space, a sign if there is one, decimal digits.
ScannedInteger ScanInteger(char const* first, char const* last);

struct ScannedReal
{
    /// The nearest double, ties to even; infinite if it is out of range above, 0.0 if there is no number.
    double value;
    /// Behind the number, or where the scan began if there is none.
    char const* end;
    /// The number is too large, or it is below the normal range and no double holds it exactly.
    bool outOfRange;
};

/// White space, a sign if there is one, and the longest of these, letters in either case: decimal digits with
/// at most one point and an exponent behind `e`; `0x` and hexadecimal digits with at most one point and a
/// binary exponent behind `p`; `inf` or `infinity`; `nan`, or `nan(...)` with letters, digits and
/// underscores, which as a decimal, octal or hexadecimal integer are the payload. Linear in the length of the
/// number.
ScannedReal ScanReal(char const* first, char const* last);

/// Converts a text that is a number from end to end. On failure `value` stays. An empty text fails; for any
/// other one errno is set to 0, or to ERANGE if the number is out of range.
bool ConvertReal(char const* first, char const* last, double& value);

} // namespace Vorlane::NumberScanning

#endif
