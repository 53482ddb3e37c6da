#include "platform/lumora/ColorMap.h"
#include "tests/support/Seed.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

using Lumora::ColorMap;
using Orrin::Color;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();
constexpr double smallest = std::numeric_limits<double>::denorm_min();

double Above(double value)
{
    return std::nextafter(value, infinity);
}
double Below(double value)
{
    return std::nextafter(value, -infinity);
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

/// The bin of a value by a walk over the edges, for finite ranges whose arithmetic stays in range.
int WalkToBin(double value, int size, double begin, double end)
{
    int bin = 0;
    for (int index = 1; index < size; ++index) {
        double const edge = begin + (end - begin) * index / size;
        if (begin < end ? edge <= value : value <= edge) {
            bin = index;
        }
    }
    return bin;
}

Orrin::ColorArray MakeColors(std::vector<std::uint32_t> const& packed)
{
    Orrin::ColorArray colors(0, 1);
    for (std::uint32_t color : packed) {
        colors.push_back(color);
    }
    return colors;
}

} // namespace

TEST(ColorMapTest, PutsValuesIntoBins)
{
    struct
    {
        double begin, end;
        int size;
        double value;
        int bin;
    } const rows[] = {
        // The ends, an edge, and the numbers beside them.
        {0, 1, 32, 0.0, 0},
        {0, 1, 32, -0.0, 0},
        {0, 1, 32, -smallest, 0},
        {0, 1, 32, Below(0.5), 15},
        {0, 1, 32, 0.5, 16},
        {0, 1, 32, Above(0.5), 16},
        {0, 1, 32, Below(1), 31},
        {0, 1, 32, 1, 31},
        {0, 1, 32, Above(1), 31},
        {0, 1, 1, 0.5, 0},
        // Edges at which a product with the reciprocal of the width would fall short, or go too far.
        {0, 98, 2, 49, 1},
        {0, 98, 2, Below(49), 0},
        {0, 1, 49, 1.0 / 49, 1},
        {0, 1, 49, Below(1.0 / 49), 0},
        {0, 1, 10, 0.3, 3},
        {0, 1, 10, 0.7, 7},
        {0.1, 0.8, 7, 0.1 + (0.8 - 0.1) * 3 / 7, 3},
        {-273.15, 1000, 100, 1000, 99},
        // Outside.
        {0, 1, 32, 1e300, 31},
        {0, 1, 32, -1e300, 0},
        {0, 1, 32, infinity, 31},
        {0, 1, 32, -infinity, 0},
        {0, 1, 32, notANumber, 0},
        // Downwards: an edge belongs to the bin that starts there, which lies below it.
        {1, 0, 32, 1, 0},
        {1, 0, 32, 2, 0},
        {1, 0, 32, infinity, 0},
        {1, 0, 32, Above(0.5), 15},
        {1, 0, 32, 0.5, 16},
        {1, 0, 32, Below(0.5), 16},
        {1, 0, 32, 0, 31},
        {1, 0, 32, -infinity, 31},
        {1, 0, 32, notANumber, 0},
        // Empty ranges.
        {2, 2, 32, 2, 0},
        {2, 2, 32, 3, 0},
        {2, 2, 32, infinity, 0},
        {notANumber, 1, 32, 0.9, 0},
        {0, notANumber, 32, 0.9, 0},
        {infinity, infinity, 32, infinity, 0},
        // Infinite ranges.
        {0, infinity, 32, 0, 0},
        {0, infinity, 32, largest, 0},
        {0, infinity, 32, infinity, 31},
        {-infinity, 0, 32, -infinity, 0},
        {-infinity, 0, 32, -largest, 31},
        {-infinity, 0, 32, 0, 31},
        {-infinity, infinity, 32, -infinity, 0},
        {-infinity, infinity, 32, -smallest, 15},
        {-infinity, infinity, 32, 0, 16},
        {-infinity, infinity, 32, infinity, 31},
        {-infinity, infinity, 33, -largest, 16},
        {-infinity, infinity, 33, largest, 16},
        {infinity, 0, 32, infinity, 0},
        {infinity, 0, 32, largest, 31},
        {infinity, -infinity, 32, smallest, 15},
        {infinity, -infinity, 32, 0, 16},
        // Widths that overflow, and ranges with fewer numbers than bins.
        {-largest, largest, 32, Below(0), 15},
        {-largest, largest, 32, 0, 16},
        {-largest, largest, 32, largest / 2, 24},
        {-largest, largest, 32, largest * 0.499, 23},
        {largest, -largest, 4, largest, 0},
        {largest, -largest, 4, 0, 2},
        {0, largest, 1000, largest, 999},
        {0, smallest, 32, 0, 0},
        {0, smallest, 32, smallest, 31},
        {1e16, 1e16 + 2, 128, 1e16, 0},
        {1e16, 1e16 + 2, 128, 1e16 + 2, 127},
        {1e16 + 2, 1e16, 128, 1e16 + 2, 0},
        {1e16 + 2, 1e16, 128, 1e16, 127},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(testing::Message()
                     << row.value << " in " << row.size << " bins from " << row.begin << " to " << row.end);
        ColorMap const map = NumberedMap(row.size, row.begin, row.end);
        EXPECT_EQ(static_cast<int>(map.ColorAtValue(row.value).GetPacked()), row.bin);
        Color color;
        map.ColorsAtValues(&row.value, 1, &color);
        EXPECT_EQ(static_cast<int>(color.GetPacked()), row.bin);
    }
}

TEST(ColorMapTest, AgreesWithAWalkOverTheEdges)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int round = 0; round < 300; ++round) {
        int const size = engine.Integer(1, 200);
        double const begin = engine.Real(-1, 1) * std::pow(10, engine.Integer(-5, 5));
        double const end = begin + engine.Real(-1, 1) * std::pow(10, engine.Integer(-18, 5));
        ColorMap const map = NumberedMap(size, begin, end);
        if (begin == end) {
            continue;
        }
        std::vector<double> values;
        for (int i = 0; i < 400; ++i) {
            double const edge = begin + (end - begin) * engine.Integer(0, size) / size;
            values.insert(values.end(),
                          {begin + (end - begin) * engine.Real(-0.3, 1.3), Below(edge), edge, Above(edge)});
        }
        std::vector<Color> colors(values.size());
        map.ColorsAtValues(values.data(), static_cast<int>(values.size()), colors.data());
        for (std::size_t i = 0; i < values.size(); ++i) {
            // The begin and the end are fixed, wherever rounding puts the edges beside them.
            int const expected = values[i] == begin ? 0
                                 : values[i] == end ? size - 1
                                                    : WalkToBin(values[i], size, begin, end);
            ASSERT_EQ(static_cast<int>(map.ColorAtValue(values[i]).GetPacked()), expected)
                << values[i] << " in " << size << " bins from " << begin << " to " << end;
            ASSERT_EQ(colors[i], map.ColorAtValue(values[i]));
        }
    }
}

TEST(ColorMapTest, InterpolatedRampRoundsToNearestWithHalvesUp)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int round = 0; round < 300; ++round) {
        std::vector<std::uint32_t> stops(static_cast<std::size_t>(engine.Integer(1, 9)));
        for (std::uint32_t& stop : stops) {
            stop = static_cast<std::uint32_t>(engine());
        }
        int const size = engine.Integer(1, 140);
        ColorMap map(size);
        map.Ramp(MakeColors(stops), true);
        ASSERT_EQ(map.ColorAtIndex(0), Color(stops.front()));
        ASSERT_EQ(map.ColorAtIndex(size - 1), Color(size > 1 ? stops.back() : stops.front()));
        for (int index = 0; index < size; ++index) {
            // The exact value is `sum / steps`; nearest with halves up means c - 1/2 <= sum / steps < c +
            // 1/2.
            int const steps = std::max(size - 1, 1);
            int const position = index * (static_cast<int>(stops.size()) - 1);
            std::size_t const before = static_cast<std::size_t>(position / steps);
            std::size_t const after = std::min(before + 1, stops.size() - 1);
            for (int shift = 0; shift < 32; shift += 8) {
                int const from = stops[before] >> shift & 0xFF;
                int const to = stops[after] >> shift & 0xFF;
                int const sum = from * steps + (to - from) * (position % steps);
                int const component = map.ColorAtIndex(index).GetPacked() >> shift & 0xFF;
                ASSERT_LE((2 * component - 1) * steps, 2 * sum) << index << " of " << size;
                ASSERT_GT((2 * component + 1) * steps, 2 * sum) << index << " of " << size;
            }
        }
    }
}

TEST(ColorMapTest, SteppedRampTakesTheColourAtTheMiddleOfABin)
{
    struct
    {
        std::vector<std::uint32_t> colors;
        std::vector<std::uint32_t> bins;
    } const rows[] = {
        {{7}, {7, 7, 7}},
        {{1, 2}, {1, 1, 2, 2}},
        {{1, 2}, {1, 1, 2, 2, 2}}, // the middle bin lies between two steps
        {{1, 2, 3}, {1, 1, 2, 3, 3}},
        {{1, 2, 3}, {1, 3}},
        {{1, 2, 3}, {2}},
        {{}, {0xFF000000u, 0xFF000000u}},
        {{1}, {}},
    };
    for (auto const& row : rows) {
        ColorMap map(static_cast<int>(row.bins.size()));
        map.Ramp(MakeColors({9, 9}), true);
        map.Ramp(MakeColors(row.colors), false);
        for (std::size_t i = 0; i < row.bins.size(); ++i) {
            EXPECT_EQ(map.ColorAtIndex(static_cast<int>(i)), Color(row.bins[i]))
                << i << " of " << row.bins.size() << ", " << row.colors.size() << " colours";
        }
    }
}

TEST(ColorMapTest, SizesAndIndexesOutsideTheirRangesDoNothing)
{
    ColorMap map(-3);
    EXPECT_EQ(map.GetSize(), 0);
    EXPECT_EQ(map.ColorAtValue(0.5), Color::Black());
    double const value = 0.5;
    Color color = Color::Red();
    map.ColorsAtValues(&value, -1, &color);
    map.ColorsAtValues(nullptr, 0, nullptr);
    EXPECT_EQ(color, Color::Red());
    map.ColorsAtValues(&value, 1, &color);
    EXPECT_EQ(color, Color::Black());

    map = NumberedMap(3, 0, 3);
    map.SetColorAtIndex(-1, Color::Red());
    map.SetColorAtIndex(3, Color::Red());
    EXPECT_EQ(map.ColorAtIndex(-1), Color::Black());
    EXPECT_EQ(map.ColorAtIndex(3), Color::Black());
    map.Ramp(MakeColors({}), true);
    EXPECT_EQ(map.ColorAtIndex(2), Color::Black());
}

TEST(ColorMapTest, ResizingKeepsColoursByIndexAndMovesTheEdges)
{
    ColorMap map = NumberedMap(4, 0, 12);
    EXPECT_EQ(map.ColorAtValue(11).GetPacked(), 3u);
    map.Resize(6);
    EXPECT_EQ(map.ColorAtIndex(3).GetPacked(), 3u);
    EXPECT_EQ(map.ColorAtValue(7).GetPacked(), 3u);
    EXPECT_EQ(map.ColorAtValue(8), Color::Black());
    ColorMap const copy = map;
    map.Resize(1);
    EXPECT_EQ(map.ColorAtValue(11).GetPacked(), 0u);
    EXPECT_EQ(copy.ColorAtValue(7).GetPacked(), 3u);
}
