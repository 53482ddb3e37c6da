#ifndef VORLANE_TESTS_TEXT_TEXTTESTING_H
#define VORLANE_TESTS_TEXT_TEXTTESTING_H

#include "tests/support/CaseTable.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/ValueTypes.h"

#include <cstdio>
#include <functional>
#include <map>
#include <string>

namespace VorlaneTest {

using Texts = std::vector<std::string>;

inline CString ToText(std::string const& bytes)
{
    return CString(bytes.data(), static_cast<int>(bytes.size()));
}

inline std::string Print(CString const& text)
{
    return std::string(text, static_cast<std::size_t>(text.GetLength()));
}

inline std::string Print(double value)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

inline std::string Print(Spatia::Point2d const& point)
{
    return Print(point.x) + ' ' + Print(point.y);
}

inline std::string Print(Spatia::Point3d const& point)
{
    return Print(point.x) + ' ' + Print(point.y) + ' ' + Print(point.z);
}

/// Functions that make a text of a text, by their names; forms that do the same share one.
using TextFunctions = std::multimap<std::string, std::function<std::string(std::string const&)>>;

/// Tries each function on the cases of the table of its name, which has the columns text and result.
inline void CheckTables(std::string const& file, TextFunctions const& functions)
{
    for (auto const& [name, function] : functions) {
        for (Case const& row : ReadCases(file, name)) {
            EXPECT_EQ(function(row.at("text")), row.at("result")) << row.at("where");
        }
    }
}

} // namespace VorlaneTest

#endif
