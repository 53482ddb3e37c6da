#include "vorlane/colour/ColorMapParameters.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/ArchivedBytes.h"
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

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

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

int Load(ColorMapParameters& parameters, Bytes const& bytes)
{
    return LoadBytes(unsetSchema, bytes, [&](CArchive& ar) { parameters.Serialize(ar); });
}

Bytes Store(ColorMapParameters& parameters)
{
    return StoredBytes(unsetSchema, [&](CArchive& ar) { parameters.Serialize(ar); });
}

} // namespace

TEST(ColorMapParametersTest, StartsWithItsDefaults)
{
    ColorMapParameters parameters;
    EXPECT_EQ(parameters.GetSpectrumName(), "Red-White-Blue");
    EXPECT_FALSE(parameters.GetClip());
    EXPECT_EQ(parameters.GetMinimum(), 0.0);
    EXPECT_EQ(parameters.GetMaximum(), 1.0);
    EXPECT_EQ(EntriesOf(parameters), std::string(32, 'x'));
    EXPECT_EQ(ColorMapParameters::GetDefaultMaximumBinCount(), 128);
    for (int const binCount : {-1, 0}) {
        ColorMapParameters none("Red-Blue", false, 0.0, 1.0, binCount);
        EXPECT_EQ(EntriesOf(none), "");
        EXPECT_EQ(none.CalculateColor(0.5), Color::Black());
    }
    EXPECT_EQ(EntriesOf(ColorMapParameters("Red-Blue", true, 0.0, 1.0, 5)), "xxxxx");
}

TEST(ColorMapParametersTest, ColoursValues)
{
    double const belowHalf = std::nextafter(0.5, 0.0), aboveOne = std::nextafter(1.0, 2.0);
    Color const black = Color::Black(), red = Color::Red(), blue = Color::Blue(), white = Color::White();
    // Four bins of "Red-Blue": red, two thirds red, two thirds blue, blue.
    Color const second(0xFF5500AAu), third(0xFFAA0055u);
    struct
    {
        ColorMapParameters parameters;
        double value;
        Color color;
    } rows[] = {
        // With clipping, the ends lie inside and a NaN reaches the map.
        {Make("Red-Blue", true, 0, 1, "xxxx"), 0.0, red},
        {Make("Red-Blue", true, 0, 1, "xxxx"), -0.0, red},
        {Make("Red-Blue", true, 0, 1, "xxxx"), -5e-324, black},
        {Make("Red-Blue", true, 0, 1, "xxxx"), -0.5, black},
        {Make("Red-Blue", true, 0, 1, "xxxx"), 1.0, blue},
        {Make("Red-Blue", true, 0, 1, "xxxx"), aboveOne, black},
        {Make("Red-Blue", true, 0, 1, "xxxx"), infinity, black},
        {Make("Red-Blue", true, 0, 1, "xxxx"), -infinity, black},
        {Make("Red-Blue", true, 0, 1, "xxxx"), notANumber, red},
        {Make("Red-Blue", true, 0, 1, "xxxx"), belowHalf, second},
        {Make("Red-Blue", true, 0, 1, "xxxx"), 0.5, third},
        // Without it, the nearer end bin answers.
        {Make("Red-Blue", false, 0, 1, "xxxx"), -infinity, red},
        {Make("Red-Blue", false, 0, 1, "xxxx"), -0.5, red},
        {Make("Red-Blue", false, 0, 1, "xxxx"), aboveOne, blue},
        {Make("Red-Blue", false, 0, 1, "xxxx"), infinity, blue},
        // Bins that are switched off are black in place, clipped or not.
        {Make("Red-Blue", false, 0, 1, "x-x-"), 0.0, red},
        {Make("Red-Blue", false, 0, 1, "x-x-"), belowHalf, black},
        {Make("Red-Blue", false, 0, 1, "x-x-"), 0.5, third},
        {Make("Red-Blue", false, 0, 1, "x-x-"), 2.0, black},
        {Make("Red-Blue", false, 0, 1, "-xxx"), notANumber, black},
        // A reversed range runs downwards; with clipping, no number lies inside it.
        {Make("Red-Blue", false, 1, 0, "xxxx"), 1.0, red},
        {Make("Red-Blue", false, 1, 0, "xxxx"), 0.5, third},
        {Make("Red-Blue", false, 1, 0, "xxxx"), -7.0, blue},
        {Make("Red-Blue", true, 1, 0, "xxxx"), 0.5, black},
        {Make("Red-Blue", true, 1, 0, "xxxx"), 1.0, black},
        {Make("Red-Blue", true, 1, 0, "xxxx"), notANumber, red},
        // Empty and infinite ranges, and bounds that are not numbers, which clip nothing.
        {Make("Red-Blue", true, 1, 1, "xxxx"), 1.0, red},
        {Make("Red-Blue", false, 1, 1, "xxxx"), 9.0, red},
        {Make("Red-Blue", true, 0, infinity, "xxxx"), 1e300, red},
        {Make("Red-Blue", true, 0, infinity, "xxxx"), infinity, blue},
        {Make("Red-Blue", true, -infinity, infinity, "xxxx"), 0.0, third},
        {Make("Red-Blue", true, notANumber, 1, "xxxx"), -9.0, red},
        {Make("Red-Blue", true, notANumber, 1, "xxxx"), 9.0, black},
        // Names are looked up by the letter; an unknown one gives "Red-Green-Blue".
        {Make("Red-White-Blue", false, 0, 1, "xxx"), 0.5, white},
        {Make("RED-WHITE-BLUE", false, 0, 1, "xxx"), 0.5, Color::Green()},
        {Make("", false, 0, 1, "xxx"), 0.5, Color::Green()},
        {Make("Red-Blue", false, 0, 1, "x"), 0.9, red},
    };
    int number = 0;
    for (auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "row " << number++ << ", value " << row.value);
        EXPECT_EQ(row.parameters.CalculateColor(row.value).GetPacked(), row.color.GetPacked());
        row.parameters.SetClip(row.parameters.GetClip());
        Color color(7);
        row.parameters.CalculateColors(&row.value, 1, &color);
        EXPECT_EQ(color.GetPacked(), row.color.GetPacked());
    }
}

TEST(ColorMapParametersTest, BatchGivesTheColoursOfSingleCalls)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int const count : {1, 255, 256, 257, 1023, 1024, 1025, 5000}) {
        ColorMapParameters parameters("Rainbow 1", engine.Integer(0, 1) == 1, -1.0, 1.0,
                                      engine.Integer(1, 200));
        std::vector<double> values(static_cast<std::size_t>(count));
        for (double& value : values) {
            double const odd[] = {-1.0, 1.0, infinity, -infinity, notANumber};
            value = engine.Integer(0, 9) == 0 ? odd[engine.Integer(0, 4)] : engine.Real(-1.5, 1.5);
        }
        std::vector<Color> colors(values.size() + 1, Color(7));
        parameters.CalculateColors(values.data(), count, colors.data());
        for (std::size_t i = 0; i < values.size(); ++i) {
            ASSERT_EQ(colors[i], parameters.CalculateColor(values[i])) << values[i];
        }
        EXPECT_EQ(colors.back(), Color(7));
        parameters.CalculateColors(values.data(), 0, colors.data() + count);
        parameters.CalculateColors(nullptr, -5, nullptr);
        EXPECT_EQ(colors.back(), Color(7));
    }
}

TEST(ColorMapParametersTest, BuildsTheMapAnewAfterEachSetterAndNotBefore)
{
    Vorlane::ColorSpectrumRegistry registry;
    Vorlane::CustomColorSpectrum spectrum("mine", 2, true);
    auto const registerColor = [&](Color color) {
        registry.UnRegisterColorSpectrum("mine");
        spectrum.SetColor(0, color);
        registry.RegisterColorSpectrum(spectrum);
    };
    using Setter = void (*)(ColorMapParameters&);
    Setter const setters[] = {
        [](ColorMapParameters& parameters) { parameters.SetSpectrumName(parameters.GetSpectrumName()); },
        [](ColorMapParameters& parameters) { parameters.SetClip(parameters.GetClip()); },
        [](ColorMapParameters& parameters) { parameters.SetMinimum(parameters.GetMinimum()); },
        [](ColorMapParameters& parameters) { parameters.SetMaximum(parameters.GetMaximum()); },
        [](ColorMapParameters& parameters) { parameters.SetTransferFunction(Entries("xxxx")); },
        [](ColorMapParameters& parameters) { ASSERT_EQ(Load(parameters, Store(parameters)), 0); },
    };
    for (Setter const& set : setters) {
        registerColor(Color::Red());
        ColorMapParameters parameters = Make("mine", false, 0, 1, "xxxx");
        EXPECT_EQ(parameters.CalculateColor(0.5), Color::Red());
        registerColor(Color::Cyan());
        EXPECT_EQ(parameters.CalculateColor(0.5), Color::Red());
        ColorMapParameters copy(parameters), assigned;
        assigned = parameters;
        EXPECT_EQ(copy.CalculateColor(0.5), Color::Red());
        EXPECT_EQ(assigned.CalculateColor(0.5), Color::Red());
        set(parameters);
        EXPECT_EQ(parameters.CalculateColor(0.5), Color::Cyan());
        EXPECT_EQ(copy.CalculateColor(0.5), Color::Red());
    }
    registry.UnRegisterColorSpectrum("mine");
    ColorMapParameters late = Make("mine", false, 0, 1, "xxxx");
    EXPECT_EQ(late.CalculateColor(1.0), Color::Blue());
}

TEST(ColorMapParametersTest, SettersTakeEffect)
{
    ColorMapParameters parameters = Make("Red-Blue", false, 0, 1, "xx");
    EXPECT_EQ(parameters.CalculateColor(5), Color::Blue());
    parameters.SetMaximum(20);
    EXPECT_EQ(parameters.CalculateColor(5), Color::Red());
    parameters.SetMinimum(-15);
    EXPECT_EQ(parameters.CalculateColor(5), Color::Blue());
    parameters.SetSpectrumName("Blue-Red");
    EXPECT_EQ(parameters.CalculateColor(5), Color::Red());
    parameters.SetTransferFunction(Entries("x-"));
    EXPECT_EQ(parameters.CalculateColor(5), Color::Black());
    EXPECT_EQ(parameters.CalculateColor(-99), Color::Blue());
    parameters.SetClip(true);
    EXPECT_EQ(parameters.CalculateColor(-99), Color::Black());
}

TEST(ColorMapParametersTest, OrderTakesItsKeysInTurn)
{
    // From the least to the greatest.
    ColorMapParameters const ordered[] = {
        Make("a", true, 9, 9, "xxx"), Make("B", false, 9, 9, "xxx"), Make("b", true, 0, 9, "xxx"),
        Make("B", true, 1, 0, "xxx"), Make("b", true, 1, 1, "xx"),   Make("b", true, 1, 1, "---"),
        Make("B", true, 1, 1, "-xx"), Make("b", true, 1, 1, "x--"),  Make("c", false, 0, 0, ""),
    };
    for (ColorMapParameters const& left : ordered) {
        for (ColorMapParameters const& right : ordered) {
            EXPECT_EQ(left < right, &left < &right);
            EXPECT_EQ(left > right, &left > &right);
            EXPECT_EQ(left == right, &left == &right);
            EXPECT_NE(left == right, left != right);
        }
    }
    ColorMapParameters const same = Make("RED", false, -0.0, 1, "x"), other = Make("red", false, 0.0, 1, "x");
    EXPECT_TRUE(same == other);
    EXPECT_FALSE(same < other || same > other);
}

TEST(ColorMapParametersTest, NaNTiesInTheOrderAndEqualsNothingElse)
{
    ColorMapParameters const low = Make("n", false, notANumber, 1, "x"), high = Make("n", false, 5, 2, "x"),
                             highToo = Make("n", false, notANumber, 1, "x"),
                             max = Make("n", false, 0, notANumber, "x"),
                             maxBins = Make("n", false, 0, 7, "xx");
    EXPECT_TRUE(low < high && high > low);
    EXPECT_FALSE(high < low || low > high);
    EXPECT_FALSE(low < highToo || highToo < low);
    EXPECT_TRUE(max < maxBins && maxBins > max);
    EXPECT_TRUE(low == low && !(low != low));
    EXPECT_FALSE(low == highToo);
    EXPECT_FALSE(max == Make("n", false, 0, notANumber, "x"));
}

TEST(ColorMapParametersTest, OrderIsAStrictWeakOneWithoutNaN)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    std::vector<ColorMapParameters> all;
    for (int i = 0; i < 60; ++i) {
        char const* const names[] = {"", "a", "A", "b"};
        double const numbers[] = {-infinity, -0.0, 0.0, 1.0};
        char const* const entries[] = {"", "x", "-", "x-"};
        all.push_back(Make(names[engine.Integer(0, 3)], engine.Integer(0, 1) == 1,
                           numbers[engine.Integer(0, 3)], numbers[engine.Integer(1, 3)],
                           entries[engine.Integer(0, 3)]));
    }
    auto const tie = [](auto const& left, auto const& right) {
        return !(left < right) && !(right < left);
    };
    for (ColorMapParameters const& a : all) {
        for (ColorMapParameters const& b : all) {
            ASSERT_FALSE(a < b && b < a);
            ASSERT_EQ(a<b, b> a);
            ASSERT_EQ(tie(a, b), a == b);
            for (ColorMapParameters const& c : all) {
                ASSERT_TRUE(!(a < b && b < c) || a < c);
                ASSERT_TRUE(!(tie(a, b) && tie(b, c)) || tie(a, c));
            }
        }
    }
}

TEST(ColorMapParametersTest, ArchiveHoldsFiveFields)
{
    Bytes const head = {3, 'A', 0, 'b', 1, 0, 0, 0, 0, 0, 0, 0xF8, 0xBF, 0, 0, 0, 0, 0, 0, 0x10, 0x40};
    Bytes const whole = Joined({head, {3, 0, 0, 0, 1, 0, 1}});
    ColorMapParameters parameters(CString("A\0b", 3), true, -1.5, 4.0, Entries("x-x"));
    EXPECT_EQ(Store(parameters), whole);

    struct
    {
        Bytes bytes;
        char const* entries;
    } const rows[] = {
        {whole, "x-x"},
        {Joined({head, {3, 0, 0, 0, 2, 0xFF, 0}}), "xx-"},
        {Joined({head, {0, 0, 0, 0}}), ""},
        {Joined({head, {0xFF, 0xFF, 0xFF, 0xFF}}), ""},
        {Joined({head, {0, 0, 0, 0x80}}), ""},
    };
    for (auto const& row : rows) {
        ColorMapParameters loaded;
        EXPECT_EQ(Load(loaded, row.bytes), 0);
        EXPECT_EQ(loaded.GetSpectrumName().GetLength(), 3);
        EXPECT_TRUE(loaded.GetClip());
        EXPECT_EQ(loaded.GetMinimum(), -1.5);
        EXPECT_EQ(loaded.GetMaximum(), 4.0);
        EXPECT_EQ(EntriesOf(loaded), row.entries);
    }
}

TEST(ColorMapParametersTest, AnArchiveThatEndsEarlyLeavesWhatWasRead)
{
    ColorMapParameters stored("mine", true, -1.5, 4.0, Entries("--x"));
    Bytes const whole = Store(stored);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        ColorMapParameters loaded("Red-Blue", false, 0, 1, 2);
        EXPECT_EQ(loaded.CalculateColor(1), Color::Blue());
        EXPECT_EQ(Load(loaded, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))), 3);
        EXPECT_EQ(loaded.GetSpectrumName(), length < 5 ? "Red-Blue" : "mine");
        EXPECT_EQ(loaded.GetClip(), length >= 6);
        EXPECT_EQ(loaded.GetMinimum(), length < 14 ? 0.0 : -1.5);
        EXPECT_EQ(loaded.GetMaximum(), length < 22 ? 1.0 : 4.0);
        std::string const read = std::string("--x").substr(0, length < 26 ? 0 : length - 26);
        EXPECT_EQ(EntriesOf(loaded), length < 22 ? "xx" : read);
        loaded.SetClip(false);
        EXPECT_EQ(loaded.CalculateColor(1), length < 22 ? Color::Blue() : Color::Black());
    }
    // A hostile number of bins takes memory only for the entries that are there.
    AllocationLimit const limit(1 << 20);
    ColorMapParameters hostile;
    Bytes bytes(whole.begin(), whole.end() - 7);
    bytes.insert(bytes.end(), {0xFF, 0xFF, 0xFF, 0x7F, 1});
    EXPECT_EQ(Load(hostile, bytes), 3);
    EXPECT_EQ(EntriesOf(hostile), "x");
}
