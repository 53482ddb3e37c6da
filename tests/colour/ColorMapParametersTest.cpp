#include "vorlane/colour/ColorMapParameters.h"
#include "tests/colour/ColourTesting.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Seed.h"
#include "vorlane/colour/ColorSpectrumRegistry.h"

#include "gtest/gtest.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

using Orrin::Color;
using Vorlane::BoolArray;
using Vorlane::ColorMapParameters;
using namespace VorlaneTest;

namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double none = std::numeric_limits<double>::quiet_NaN();

/// Entries that are true where the text has an 'x'.
BoolArray Entries(std::string const& text)
{
    BoolArray entries;
    for (char const entry : text) {
        entries.Add(entry == 'x');
    }
    return entries;
}

std::string EntriesOf(ColorMapParameters const& parameters)
{
    BoolArray entries(3, 1);
    parameters.GetTransferFunction(entries);
    std::string text;
    for (int bin = 0; bin < entries.GetSize(); ++bin) {
        text += entries[bin] ? 'x' : '-';
    }
    return text;
}

ColorMapParameters Make(char const* name, bool clip, double minimum, double maximum,
                        std::string const& entries)
{
    return ColorMapParameters(name, clip, minimum, maximum, Entries(entries));
}

int Load(ColorMapParameters& parameters, std::string const& bytes)
{
    return CauseOfLoad(unsetSchema, bytes, [&](CArchive& ar) { parameters.Serialize(ar); });
}

std::string Store(ColorMapParameters& parameters)
{
    return Stored(unsetSchema, [&](CArchive& ar) { parameters.Serialize(ar); });
}

} // namespace

TEST(ColorMapParametersTest, StartsWithItsDefaults)
{
    ColorMapParameters const plain;
    EXPECT_TRUE(plain == Make("Red-White-Blue", false, 0, 1, std::string(32, 'x')));
    EXPECT_EQ(EntriesOf(ColorMapParameters("Red-Blue", true, 0.0, 1.0, 5)), "xxxxx");
    EXPECT_EQ(EntriesOf(ColorMapParameters("Red-Blue", true, 0.0, 1.0, 0)), "");
    EXPECT_EQ(ColorMapParameters("Red-Blue", false, 0.0, 1.0, -1).CalculateColor(0.5), Color::Black());
}

TEST(ColorMapParametersTest, ColoursValues)
{
    // In four bins of "Red-Blue": red, two thirds red, two thirds blue, blue.
    std::uint32_t const red = 0xFF0000FFu, second = 0xFF5500AAu, third = 0xFFAA0055u, blue = 0xFFFF0000u,
                        black = 0xFF000000u, green = 0xFF00FF00u, white = 0xFFFFFFFFu;
    double const belowHalf = std::nextafter(0.5, 0.0), aboveOne = std::nextafter(1.0, 2.0);
    struct
    {
        ColorMapParameters parameters;
        std::vector<std::pair<double, std::uint32_t>> colors;
    } rows[] = {
        // With clipping, the ends lie inside and a NaN reaches the map.
        {Make("Red-Blue", true, 0, 1, "xxxx"),
         {{0, red}, {-0.0, red}, {1, blue}, {belowHalf, second}, {0.5, third}}},
        {Make("Red-Blue", true, 0, 1, "xxxx"),
         {{-5e-324, black}, {aboveOne, black}, {inf, black}, {none, red}}},
        {Make("Red-Blue", false, 0, 1, "xxxx"), {{-inf, red}, {-0.5, red}, {aboveOne, blue}, {inf, blue}}},
        // Bins that are switched off are black in place, clipped or not.
        {Make("Red-Blue", false, 0, 1, "x-x-"), {{0, red}, {belowHalf, black}, {0.5, third}, {2, black}}},
        {Make("Red-Blue", true, 0, 1, "-xxx"), {{none, black}, {0, black}, {belowHalf, second}}},
        // Reversed, empty and infinite ranges, and bounds that are not numbers, which clip nothing.
        {Make("Red-Blue", false, 1, 0, "xxxx"), {{1, red}, {0.5, third}, {-7, blue}}},
        {Make("Red-Blue", true, 1, 0, "xxxx"), {{0.5, black}, {1, black}, {none, red}}},
        {Make("Red-Blue", true, 1, 1, "xxxx"), {{1, red}, {9, black}}},
        {Make("Red-Blue", true, 0, inf, "xxxx"), {{1e300, red}, {inf, blue}, {-1, black}}},
        {Make("Red-Blue", true, -inf, inf, "xxxx"), {{-1, second}, {0, third}}},
        {Make("Red-Blue", true, none, 1, "xxxx"), {{-9, red}, {9, black}}},
        // Names are looked up by the letter; an unknown one gives "Red-Green-Blue".
        {Make("Red-White-Blue", false, 0, 1, "xxx"), {{0.5, white}}},
        {Make("RED-WHITE-BLUE", false, 0, 1, "xxx"), {{0.5, green}}},
    };
    for (auto& row : rows) {
        for (auto const& [value, packed] : row.colors) {
            SCOPED_TRACE(testing::Message() << value << " in row " << &row - rows);
            EXPECT_EQ(row.parameters.CalculateColor(value).GetPacked(), packed);
            Color color(7);
            row.parameters.CalculateColors(&value, 1, &color);
            EXPECT_EQ(color.GetPacked(), packed);
        }
    }
}

TEST(ColorMapParametersTest, BatchGivesTheColoursOfSingleCalls)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int const count : {-5, 0, 1, 255, 257, 1024, 1025, 5000}) {
        ColorMapParameters parameters("Rainbow 1", count % 2 != 0, -1.0, 1.0, engine.Integer(1, 200));
        std::vector<double> values(5000);
        double const odd[] = {-1.0, 1.0, inf, -inf, none};
        for (double& value : values) {
            value = engine.Integer(0, 9) == 0 ? odd[engine.Integer(0, 4)] : engine.Real(-1.5, 1.5);
        }
        std::vector<Color> colors(values.size(), Color(7));
        parameters.CalculateColors(values.data(), count, colors.data());
        for (std::size_t i = 0; i < values.size(); ++i) {
            ASSERT_EQ(colors[i], int(i) < count ? parameters.CalculateColor(values[i]) : Color(7))
                << values[i];
        }
    }
}

TEST(ColorMapParametersTest, BuildsTheMapAnewAfterEachSetterAndNotBefore)
{
    Vorlane::ColorSpectrumRegistry registry;
    auto const registerColor = [&](Color color) {
        Vorlane::CustomColorSpectrum spectrum("mine", 2, true);
        spectrum.SetColor(0, color);
        registry.UnRegisterColorSpectrum("mine");
        registry.RegisterColorSpectrum(spectrum);
    };
    using Parameters = ColorMapParameters;
    void (*const setters[])(Parameters&) = {
        [](Parameters& parameters) { parameters.SetSpectrumName("mine"); },
        [](Parameters& parameters) { parameters.SetClip(false); },
        [](Parameters& parameters) { parameters.SetMinimum(0); },
        [](Parameters& parameters) { parameters.SetMaximum(1); },
        [](Parameters& parameters) { parameters.SetTransferFunction(Entries("xxxx")); },
        [](Parameters& parameters) { EXPECT_EQ(Load(parameters, Store(parameters)), 0); },
    };
    for (auto const set : setters) {
        registerColor(Color::Red());
        ColorMapParameters parameters = Make("mine", false, 0, 1, "xxxx"), assigned;
        EXPECT_EQ(parameters.CalculateColor(0.5), Color::Red());
        registerColor(Color::Cyan());
        ColorMapParameters copy(parameters);
        assigned = parameters;
        for (ColorMapParameters* each : {&parameters, &copy, &assigned}) {
            EXPECT_EQ(each->CalculateColor(0.5), Color::Red());
            set(*each);
            EXPECT_EQ(each->CalculateColor(0.5), Color::Cyan());
        }
    }
    registry.UnRegisterColorSpectrum("mine");
}

TEST(ColorMapParametersTest, OrderTakesItsKeysInTurn)
{
    std::vector<ColorMapParameters> all; // each beside its equal, with other case and zeros of the other sign
    for (auto const& [name, sameName] : {std::pair("", ""), {"Ab", "aB"}, {"b", "B"}}) {
        for (int key = 0; key < 18; ++key) {
            double const numbers[] = {-inf, 0.0, 1.0};
            double const minimum = numbers[key / 3 % 3], maximum = numbers[key % 3];
            for (char const* entries : {"", "-", "x", "--", "-x", "x-", "xx", "---"}) {
                all.push_back(Make(name, key >= 9, minimum, maximum, entries));
                all.push_back(Make(sameName, key >= 9, minimum == 0 ? -0.0 : minimum, maximum, entries));
            }
        }
    }
    ExpectRankedPairs(all);
    // A NaN ties in the order, so that the next key decides, and equals nothing but its own object.
    ColorMapParameters const low = Make("n", false, none, 1, "x"), high = Make("n", false, 5, 2, "x"),
                             top = Make("n", false, 0, none, "x"), more = Make("n", false, 0, 7, "xx");
    EXPECT_TRUE(low < high && high > low && !(high < low) && !(low > high) && !(high > high));
    EXPECT_TRUE(top < more && more > top && !(more < top));
    EXPECT_TRUE(low == low && !(low == ColorMapParameters(low)) && top != ColorMapParameters(top));
}

TEST(ColorMapParametersTest, ArchiveHoldsFiveFieldsAndMayEndEarly)
{
    std::string const head = Raw("\3A\0b\1\0\0\0\0\0\0\xF8\xBF\0\0\0\0\0\0\x10\x40");
    std::string const whole = head + Raw("\3\0\0\0\1\0\1");
    ColorMapParameters stored(CString("A\0b", 3), true, -1.5, 4.0, Entries("x-x"));
    EXPECT_EQ(Store(stored), whole);
    std::pair<std::string, char const*> const rows[] = {{whole, "x-x"},
                                                        {head + Raw("\3\0\0\0\2\xFF\0"), "xx-"},
                                                        {head + Raw("\0\0\0\0"), ""},
                                                        {head + "\xFF\xFF\xFF\xFF", ""},
                                                        {head + Raw("\0\0\0\x80"), ""}};
    for (auto const& [bytes, entries] : rows) {
        ColorMapParameters loaded;
        EXPECT_EQ(Load(loaded, bytes), 0);
        EXPECT_EQ(Store(loaded).substr(0, head.size()), head);
        EXPECT_EQ(EntriesOf(loaded), entries);
    }
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        ColorMapParameters loaded = Make("Red-Blue", false, 0, 1, "xx");
        EXPECT_EQ(loaded.CalculateColor(1), Color::Blue());
        EXPECT_EQ(Load(loaded, whole.substr(0, length)), 3);
        EXPECT_EQ(loaded.GetSpectrumName(), length < 4 ? "Red-Blue" : "A");
        EXPECT_EQ(loaded.GetClip(), length >= 5);
        EXPECT_EQ(loaded.GetMinimum(), length < 13 ? 0.0 : -1.5);
        EXPECT_EQ(loaded.GetMaximum(), length < 21 ? 1.0 : 4.0);
        EXPECT_EQ(EntriesOf(loaded),
                  length < 21 ? "xx" : std::string("x-x").substr(0, length < 25 ? 0 : length - 25));
        EXPECT_EQ(loaded.CalculateColor(1), length < 21   ? Color::Blue()
                                            : length < 26 ? Color::Black()
                                                          : Color::Red());
    }
    // A hostile number of bins takes memory only for the entries that are there.
    AllocationLimit const limit(1 << 20);
    ColorMapParameters hostile;
    EXPECT_EQ(Load(hostile, head + "\xFF\xFF\xFF\x7F\1"), 3);
    EXPECT_EQ(EntriesOf(hostile), "x");
}
