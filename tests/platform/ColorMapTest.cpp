#include "platform/lumora/ColorMap.h"
#include "tests/support/CaseTable.h"
#include "tests/support/Seed.h"

#include "gtest/gtest.h"

#include <algorithm>
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

Orrin::ColorArray MakeColors(std::vector<std::uint32_t> const& packed)
{
    Orrin::ColorArray colors(0, 1);
    std::for_each(packed.begin(), packed.end(), [&](std::uint32_t color) { colors.push_back(color); });
    return colors;
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

TEST(ColorMapTest, AgreesWithAWalkOverTheEdges)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int round = 0; round < 300; ++round) {
        int const size = engine.Integer(1, 200);
        double const begin = engine.Real(-1, 1) * std::pow(10, engine.Integer(-5, 5));
        double const end =
            begin + engine.Real(0.01, 1) * std::pow(10, engine.Integer(-9, 5)) * (round % 2 ? 1 : -1);
        ColorMap const map = NumberedMap(size, begin, end);
        auto const edge = [&](int index) {
            return begin + (end - begin) * index / size;
        };
        for (int i = 0; i < 400; ++i) {
            double const at = edge(engine.Integer(0, size));
            for (double const value : {begin + (end - begin) * engine.Real(-0.3, 1.3),
                                       std::nextafter(at, -inf), at, std::nextafter(at, inf)}) {
                int bin = 0;
                for (int index = 1; index < size; ++index) {
                    bin += begin < end ? edge(index) <= value : value <= edge(index);
                }
                ASSERT_EQ(BinOf(map, value), bin)
                    << value << ", " << size << " from " << begin << " to " << end;
            }
        }
    }
}

TEST(ColorMapTest, InterpolatedRampRoundsToNearestWithHalvesUp)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int round = 0; round < 300; ++round) {
        std::vector<std::uint32_t> stops(static_cast<std::size_t>(engine.Integer(1, 9)));
        std::generate(stops.begin(), stops.end(), [&] { return static_cast<std::uint32_t>(engine()); });
        int const size = engine.Integer(1, 140), steps = std::max(size - 1, 1);
        ColorMap map(size);
        map.Ramp(MakeColors(stops), true);
        ASSERT_EQ(map.ColorAtIndex(size - 1), Color(size > 1 ? stops.back() : stops.front()));
        for (int index = 0; index < size; ++index) {
            // The exact value is `sum / steps`; nearest with halves up: c - 1/2 <= sum / steps < c + 1/2.
            int const position = index * (static_cast<int>(stops.size()) - 1);
            std::size_t const before = static_cast<std::size_t>(position / steps);
            std::size_t const after = std::min(before + 1, stops.size() - 1);
            for (int shift = 0; shift < 32; shift += 8) {
                int const from = stops[before] >> shift & 0xFF, to = stops[after] >> shift & 0xFF;
                int const sum = from * steps + (to - from) * (position % steps);
                int const component = map.ColorAtIndex(index).GetPacked() >> shift & 0xFF;
                ASSERT_TRUE((2 * component - 1) * steps <= 2 * sum && 2 * sum < (2 * component + 1) * steps)
                    << index << " of " << size;
            }
        }
    }
}

TEST(ColorMapTest, SteppedRampTakesTheColourAtTheMiddleOfABin)
{
    std::pair<std::vector<std::uint32_t>, std::vector<std::uint32_t>> const rows[] = {
        {{7}, {7, 7, 7}},    {{1, 2}, {1, 1, 2, 2}}, {{1, 2}, {1, 1, 2, 2, 2}}, {{1, 2, 3}, {1, 1, 2, 3, 3}},
        {{1, 2, 3}, {1, 3}}, {{1, 2, 3}, {2}},       {{}, {0xFF000000u}},       {{1}, {}},
    };
    for (auto const& [colors, bins] : rows) {
        ColorMap map(static_cast<int>(bins.size()));
        map.Ramp(MakeColors({9, 9}), true);
        map.Ramp(MakeColors(colors), false);
        for (std::size_t i = 0; i < bins.size(); ++i) {
            EXPECT_EQ(map.ColorAtIndex(static_cast<int>(i)).GetPacked(), bins[i])
                << i << " of " << bins.size();
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
