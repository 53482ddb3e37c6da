#ifndef VORLANE_FUZZ_CONVERSIONCHECKS_H
#define VORLANE_FUZZ_CONVERSIONCHECKS_H

/// \file
/// The conversions of whole texts, beside the C library's in the C locale.

#include "fuzz/Require.h"
#include "vorlane/text/StringUtils.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace VorlaneFuzz {

inline bool SameBits(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// The strict and the forgiving conversion to a real number.
inline void CheckReal(char const* text)
{
    char* end = nullptr;
    errno = 0;
    double const expected = std::strtod(text, &end);
    int const error = errno;
    bool const converts = *text != '\0' && *end == '\0' && end != text && error == 0;
    double value = 0.5;
    errno = -1;
    Require(Vorlane::StringUtils::StringToReal(text, value) == converts &&
            errno == (*text != '\0' ? error : -1));
    Require(SameBits(value, converts ? expected : 0.5));
    CString rest(text);
    Require(SameBits(Vorlane::StringUtils::ParseRealNumber(rest, ""), expected) && rest.IsEmpty());
    float narrow = 0.5f;
    Require(Vorlane::StringUtils::StringToReal(text, narrow) == converts);
}

/// The strict conversions to an integer, within the bounds of 32 bits.
inline void CheckInteger(char const* text)
{
    char* end = nullptr;
    errno = 0;
    long const expected = std::strtol(text, &end, 10);
    int const error = expected == static_cast<std::int32_t>(expected) ? errno : ERANGE;
    bool const converts = *text != '\0' && *end == '\0' && end != text && error == 0;
    long value = 7;
    errno = -1;
    Require(Vorlane::StringUtils::StringToInteger(text, value) == converts &&
            errno == (*text != '\0' ? error : -1));
    Require(value == (converts ? expected : 7));
    short low = 7;
    Require(Vorlane::StringUtils::StringToInteger(text, low) == converts);
}

inline void CheckPoint(char const* text)
{
    Spatia::Point3d point(7, 8, 9);
    CString rest(text);
    Spatia::Point3d expected = point;
    bool converts = true;
    for (double* coordinate : {&expected.x, &expected.y, &expected.z}) {
        converts =
            Vorlane::StringUtils::StringToReal(Vorlane::StringUtils::Parse(rest), *coordinate) && converts;
    }
    Require(Vorlane::StringUtils::StringToPoint(text, point) == converts);
    Require(SameBits(point.z, converts ? expected.z : 9));
}

/// Each edit leaves nothing for a second one to do, except that quotes may come to stand next to each other.
inline void CheckEdits(CString const& text)
{
    CString clean(text);
    Vorlane::StringUtils::CleanString(clean);
    CString again(clean);
    Vorlane::StringUtils::CleanString(again);
    Require(again.GetLength() == clean.GetLength() && clean.GetLength() <= text.GetLength());
    CString squeezed(text);
    Vorlane::StringUtils::RemoveSpaces(squeezed);
    again = squeezed;
    Vorlane::StringUtils::RemoveSpaces(again);
    Require(again.GetLength() == squeezed.GetLength());
    bool boolean = true;
    Vorlane::StringUtils::StringToBoolean(text, boolean);
}

} // namespace VorlaneFuzz

#endif
