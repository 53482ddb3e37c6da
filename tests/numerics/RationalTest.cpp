#include "vorlane/numerics/Rational.h"
#include "vorlane/numerics/NumericUtils.h"

#include "gtest/gtest.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using Vorlane::Rational;

namespace {

std::string Text(Rational const& value)
{
    return std::string(value.String());
}

} // namespace

TEST(RationalTest, WritesEachItemInTheWidthOfTheStream)
{
    for (auto const& [width, text] :
         {std::pair(0, "-1/2"), std::pair(-4, "-1/2"), std::pair(4, "  -1   /   2")}) {
        std::ostringstream stream;
        stream.width(width);
        stream << Rational(-1, 2);
        EXPECT_EQ(stream.str(), text);
        EXPECT_EQ(stream.width(), 0);
    }
}

TEST(RationalTest, ReadsFractionsAndLeavesWhatIsNone)
{
    struct Row
    {
        char const* text;
        char const* value; // 7/9 where none is read
        char const* rest;
    } const rows[] = {{"3/4", "3/4", ""},     {"6/8 x", "3/4", " x"}, {" 3 / -4z", "-3/4", "z"},
                      {"3 4", "7/9", "4"},    {"3x/4", "7/9", "x/4"}, {"70000/3", "7/9", "/3"},
                      {"3/70000", "7/9", ""}, {"3", "7/9", ""},       {"3/", "7/9", ""},
                      {"x", "7/9", "x"}};
    for (Row const& row : rows) {
        std::istringstream stream(row.text);
        Rational value(7, 9);
        bool const isRead = static_cast<bool>(stream >> value);
        EXPECT_EQ(isRead, row.value != std::string("7/9")) << row.text;
        EXPECT_EQ(Text(value), row.value) << row.text;
        stream.clear();
        std::string rest;
        std::getline(stream, rest, '\0');
        EXPECT_EQ(rest, row.rest) << row.text;
    }
}

TEST(RationalTest, ArchivesHoldTwoShorts)
{
    Rational variable(3, 4);
    Rational const constant(-1, 2);
    CMemFile stored;
    CArchive storing(&stored, CArchive::store);
    storing << variable << constant << variable + constant;
    EXPECT_THROW(storing >> variable, CArchiveException);
    storing.Close();
    std::vector<unsigned char> const bytes = {3, 0, 4, 0, 0xFF, 0xFF, 2, 0, 1, 0, 4, 0};
    EXPECT_EQ(stored.Bytes(), bytes);

    CMemFile file(std::vector<unsigned char>{6, 0, 8, 0, 1, 0, 0xFE, 0xFF, 5, 0, 7});
    CArchive loading(&file, CArchive::load);
    for (char const* const expected : {"3/4", "-1/2"}) {
        loading >> variable;
        EXPECT_EQ(Text(variable), expected);
    }
    EXPECT_THROW(loading << constant, CArchiveException);
    EXPECT_THROW(loading >> variable, CArchiveException); // ends in the denominator
    EXPECT_EQ(Text(variable), "-1/2");
}

TEST(NumericUtilsTest, RoundsTiesToEven)
{
    double const infinity = std::numeric_limits<double>::infinity();
    std::pair<double, double> const rows[] = {{0.5, 0},
                                              {1.5, 2},
                                              {2.5, 2},
                                              {-2.5, -2},
                                              {3.5, 4},
                                              {-0.3, -0.0},
                                              {-0.0, 0.0},
                                              {1e300, 1e300},
                                              {-1e300, -1e300},
                                              {infinity, infinity},
                                              {0.49999999999999994, 0.0},
                                              {4503599627370495.5, 4503599627370496.0},
                                              {4503599627370497.0, 4503599627370496.0},
                                              {5e-324, 0.0}};
    for (auto const& [value, expected] : rows) {
        double const rounded = Vorlane::NumericUtils::RoundToInteger(value);
        EXPECT_EQ(rounded, expected) << value;
        EXPECT_EQ(std::signbit(rounded), std::signbit(expected)) << value;
    }
    EXPECT_TRUE(std::isnan(Vorlane::NumericUtils::RoundToInteger(std::nan(""))));
}
