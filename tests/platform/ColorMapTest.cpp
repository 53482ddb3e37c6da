#include "platform/lumora/ColorMap.h"
#include "tests/support/CaseTable.h"

#include "gtest/gtest.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

using Lumora::ColorMap;
using Orrin::Color;
using VorlaneTest::Case;
using VorlaneTest::ReadCases;
using VorlaneTest::Split;

namespace {

constexpr double inf = std::numeric_limits<double>::infinity();

/// A number of the table of bins.
double ValueOf(std::string const& text)
{
    bool const isBeside = text.at(0) == '<' || text.at(0) == '>';
    double const value = std::strtod(text.c_str() + isBeside, nullptr);
    return isBeside ? std::nextafter(value, text[0] == '<' ? -inf : inf) : value;
}

/// A map whose colours are the indexes of its bins.
ColorMap NumberedMap(int size, double begin, double end)
{
    ColorMap map(size);
    for (int index = 0; index < size; ++index) {
        map.SetColorAtIndex(index, static_cast<std::uint32_t>(index));
    }
    map.SetBeginEnd(begin, end);
    return map;
}

/// The bin of a value, by the single and by the batch call.
int BinOf(ColorMap const& map, double value)
{
    Color color;
    map.ColorsAtValues(&value, 1, &color);
    EXPECT_EQ(color, map.ColorAtValue(value)) << value;
    return static_cast<int>(color.GetPacked());
}

} // namespace

TEST(ColorMapTest, PutsValuesIntoBins)
{
    for (Case const& row : ReadCases("platform/bins.txt", "bins")) {
        ColorMap const map =
            NumberedMap(std::stoi(row.at("size")), ValueOf(row.at("begin")), ValueOf(row.at("end")));
        for (std::string const& valueAndBin : Split(row.at("values"), ' ')) {
            std::vector<std::string> const parts = Split(valueAndBin, '=');
            EXPECT_EQ(BinOf(map, ValueOf(parts.at(0))), std::stoi(parts.at(1)))
                << row.at("where") << ", " << valueAndBin;
        }
    }
}

TEST(ColorMapTest, SizesAndIndexesOutsideTheirRangesDoNothing)
{
    ColorMap map(-3);
    EXPECT_EQ(map.GetSize(), 0);
    EXPECT_EQ(map.ColorAtValue(0.5), Color::Black());
    map.ColorsAtValues(nullptr, -1, nullptr);

    map = NumberedMap(4, 0, 12);
    map.SetColorAtIndex(-1, Color::Red());
    map.SetColorAtIndex(4, Color::Red());
    EXPECT_EQ(map.ColorAtIndex(4), Color::Black());
    map.Resize(6);
    ColorMap const copy = map;
    map.Resize(1);
    EXPECT_EQ(BinOf(copy, 7), 3);
    EXPECT_EQ(copy.ColorAtValue(8), Color::Black());
    EXPECT_EQ(BinOf(map, 11), 0);
}
