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

/// The first character from `first` on that is no white space, or `last`.
constexpr char const* SkipWhiteSpace(char const* first, char const* last)
{
    while (first != last && AfxIsWhiteSpace(*first)) {
        ++first;
    }
    return first;
}

/// The first white space from `first` on, or `last`.
constexpr char const* FindWhiteSpace(char const* first, char const* last)
{
    while (first != last && !AfxIsWhiteSpace(*first)) {
        ++first;
    }
    return first;
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
