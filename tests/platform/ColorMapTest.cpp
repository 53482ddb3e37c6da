#include "platform/lumora/ColorMap.h"
#include "tests/support/Seed.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using Lumora::ColorMap;
using Orrin::Color;

namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double most = std::numeric_limits<double>::max();
constexpr double least = std::numeric_limits<double>::denorm_min();

double Above(double value)
{
    return std::nextafter(value, inf);
}
double Below(double value)
{
    return std::nextafter(value, -inf);
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
    struct
    {
        double begin, end;
        int size;
        std::vector<std::pair<double, int>> bins;
    } const rows[] = {
        {0, 1, 32, {{0, 0}, {-0.0, 0}, {-least, 0}, {Below(0.5), 15}, {0.5, 16}, {Above(0.5), 16}}},
        {0, 1, 32, {{Below(1), 31}, {1, 31}, {Above(1), 31}, {-1e300, 0}, {inf, 31}, {-inf, 0}, {none, 0}}},
        {0, 1, 1, {{-1, 0}, {0.5, 0}, {1, 0}}},
        // Edges at which a product with the reciprocal of the width falls short, or goes too far.
        {0, 98, 2, {{49, 1}, {Below(49), 0}}},
        {0, 1, 49, {{1.0 / 49, 1}, {Below(1.0 / 49), 0}}},
        {0, 1, 10, {{0.3, 3}, {Below(0.3), 2}, {0.7, 7}}},
        // Downwards, an edge is the largest number of its bin.
        {1, 0, 32, {{2, 0}, {1, 0}, {Above(0.5), 15}, {0.5, 16}, {Below(0.5), 16}, {0, 31}}},
        {1, 0, 32, {{inf, 0}, {-inf, 31}, {none, 0}}},
        // Empty ranges.
        {2, 2, 32, {{2, 0}, {3, 0}, {inf, 0}}},
        {none, 1, 32, {{0.9, 0}, {inf, 0}}},
        {0, none, 32, {{0.9, 0}}},
        {inf, inf, 32, {{inf, 0}, {0, 0}}},
        {2, 2, 2, {{3, 0}, {inf, 0}, {none, 0}}},
        // Infinite ranges.
        {0, inf, 32, {{0, 0}, {most, 0}, {inf, 31}}},
        {-inf, 0, 32, {{-inf, 0}, {-most, 31}, {0, 31}}},
        {inf, 0, 32, {{inf, 0}, {most, 31}, {0, 31}}},
        {-inf, inf, 32, {{-inf, 0}, {-least, 15}, {0, 16}, {inf, 31}}},
        {-inf, inf, 33, {{-most, 16}, {most, 16}}},
        {inf, -inf, 32, {{least, 15}, {0, 16}}},
        // Widths that overflow, and ranges with fewer numbers than bins.
        {-most, most, 32, {{Below(0), 15}, {0, 16}, {most / 2, 24}, {most * 0.499, 23}}},
        {most, -most, 4, {{most, 0}, {0, 2}}},
        {0, least, 32, {{0, 0}, {least, 31}}},
        {1e16, 1e16 + 2, 128, {{1e16, 0}, {1e16 + 2, 127}}},
        {1e16 + 2, 1e16, 128, {{1e16, 127}, {1e16 + 2, 0}}},
    };
    for (auto const& row : rows) {
        for (auto const& [value, bin] : row.bins) {
            EXPECT_EQ(BinOf(NumberedMap(row.size, row.begin, row.end), value), bin)
                << value << " in " << row.size << " bins from " << row.begin << " to " << row.end;
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
            for (double const value :
                 {begin + (end - begin) * engine.Real(-0.3, 1.3), Below(at), at, Above(at)}) {
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
