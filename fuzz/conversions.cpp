// The conversions of whole texts, beside the C library's in the C locale.

#include "vorlane/text/StringUtils.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

using Vorlane::StringUtils;

namespace {

void Require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

bool SameBits(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void CheckReal(char const* text)
{
    char* end = nullptr;
    errno = 0;
    double const expected = std::strtod(text, &end);
    int const error = errno;
    bool const converts = *text != '\0' && *end == '\0' && end != text && error == 0;
    double value = 0.5;
    errno = error;
    Require(StringUtils::StringToReal(text, value) == converts && errno == error);
    Require(SameBits(value, converts ? expected : 0.5));
    CString rest(text);
    Require(SameBits(StringUtils::ParseRealNumber(rest, ""), expected) && rest.IsEmpty());
    float narrow = 0.5f;
    Require(StringUtils::StringToReal(text, narrow) == converts);
}

void CheckInteger(char const* text)
{
    char* end = nullptr;
    errno = 0;
    long const expected = std::strtol(text, &end, 10);
    int const error = expected == static_cast<std::int32_t>(expected) ? errno : ERANGE;
    bool const converts = *text != '\0' && *end == '\0' && end != text && error == 0;
    long value = 7;
    errno = error;
    Require(StringUtils::StringToInteger(text, value) == converts && errno == error);
    Require(value == (converts ? expected : 7));
    short low = 7;
    Require(StringUtils::StringToInteger(text, low) == converts);
}

void CheckPoint(char const* text)
{
    Spatia::Point3d point(7, 8, 9);
    CString rest(text);
    Spatia::Point3d expected = point;
    bool converts = true;
    for (double* coordinate : {&expected.x, &expected.y, &expected.z}) {
        converts = StringUtils::StringToReal(StringUtils::Parse(rest), *coordinate) && converts;
    }
    Require(StringUtils::StringToPoint(text, point) == converts);
    Require(SameBits(point.z, converts ? expected.z : 9));
}

/// Each edit leaves nothing for a second one to do, except that quotes may come to stand next to each other.
void CheckEdits(CString const& text)
{
    CString clean(text);
    StringUtils::CleanString(clean);
    CString again(clean);
    StringUtils::CleanString(again);
    Require(again.GetLength() == clean.GetLength() && clean.GetLength() <= text.GetLength());
    CString squeezed(text);
    StringUtils::RemoveSpaces(squeezed);
    again = squeezed;
    StringUtils::RemoveSpaces(again);
    Require(again.GetLength() == squeezed.GetLength());
    bool boolean = true;
    StringUtils::StringToBoolean(text, boolean);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const text(reinterpret_cast<char const*>(data), size);
    CheckReal(text.c_str());
    CheckInteger(text.c_str());
    CheckPoint(text.c_str());
    CheckEdits(CString(text.data(), static_cast<int>(size)));
    return 0;
}
