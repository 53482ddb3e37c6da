#include "vorlane/colour/CustomColorSpectrum.h"
#include "tests/colour/ColourTesting.h"
#include "tests/support/Seed.h"

#include "gtest/gtest.h"

#include <string>
#include <vector>

using Orrin::Color;
using Vorlane::CustomColorSpectrum;
using namespace VorlaneTest;

namespace {

using Packed = std::vector<std::uint32_t>;

constexpr std::uint32_t red = 0xFF0000FFu, blue = 0xFFFF0000u, black = 0xFF000000u;

Packed ColorsOf(CustomColorSpectrum const& spectrum)
{
    Packed packed;
    for (Color const& color : spectrum.GetColorArray()) {
        packed.push_back(color.GetPacked());
    }
    return packed;
}

/// One character a position: 'x' for a defined one, '-' for a computed one.
std::string FlagsOf(CustomColorSpectrum const& spectrum)
{
    std::string flags;
    Color color;
    for (int index = 0; index < spectrum.GetColorArray().GetSize(); ++index) {
        flags += spectrum.GetColor(index, color) ? 'x' : '-';
    }
    return flags;
}

CustomColorSpectrum WithFlags(char const* name, std::string const& flags, bool editable = true,
                              Color color = red)
{
    CustomColorSpectrum spectrum(name, static_cast<int>(flags.size()), editable);
    for (std::size_t at = flags.find('x'); at != std::string::npos; at = flags.find('x', at + 1)) {
        spectrum.SetColor(static_cast<int>(at), color);
    }
    return spectrum;
}

int Load(CustomColorSpectrum& spectrum, std::string const& bytes, std::uint32_t schema = 24)
{
    return CauseOfLoad(schema, bytes, [&](CArchive& ar) { spectrum.Serialize(ar); });
}

} // namespace

TEST(CustomColorSpectrumTest, FreshSpectraAreUndefinedAndOfAClampedSize)
{
    CustomColorSpectrum const plain;
    EXPECT_EQ(plain.GetColorArray().GetName() + FlagsOf(plain), "Default Spectrum--");
    EXPECT_TRUE(plain.IsEditable());
    for (auto const& [asked, given] :
         {std::pair(-5, 2u), {1, 2u}, {2, 2u}, {10, 10u}, {128, 128u}, {129, 128u}}) {
        CustomColorSpectrum const spectrum(CString("a\0b", 3), asked, false);
        EXPECT_EQ(ColorsOf(spectrum), Packed(given, black));
        EXPECT_EQ(spectrum.GetColorArray().GetName() + FlagsOf(spectrum), "a" + std::string(given, '-'));
        EXPECT_FALSE(spectrum.IsEditable());
    }
    EXPECT_FALSE(CustomColorSpectrum::Rainbow1().IsEditable());
}

TEST(CustomColorSpectrumTest, EveryChangeComputesTheUndefinedPositions)
{
    CustomColorSpectrum spectrum("edited", 10, false);
    spectrum.SetColor(4, red);
    EXPECT_EQ(ColorsOf(spectrum), Packed(10, red));
    CustomColorSpectrum const copy(spectrum);
    spectrum.SetColor(8, blue);
    // A quarter, a half and three quarters of the way: 191.25, 127.5 and 63.75, and the same upwards in blue.
    Packed const mixed = {red, red, red, red, red, 0xFF4000BFu, 0xFF800080u, 0xFFBF0040u, blue, blue};
    for (int const index : {-1, 10, 0x7FFFFFFF}) {
        Color color(7);
        spectrum.SetColor(index, color);
        spectrum.UndefineColor(index);
        EXPECT_FALSE(spectrum.GetColor(index, color));
        EXPECT_EQ(color, Color(7));
    }
    EXPECT_EQ(ColorsOf(spectrum), mixed);
    EXPECT_EQ(FlagsOf(spectrum), "----x---x-");
    CustomColorSpectrum assigned;
    assigned = spectrum;
    spectrum.UndefineColor(4);
    EXPECT_EQ(ColorsOf(spectrum), Packed(10, blue));
    spectrum.UndefineColor(8);
    EXPECT_EQ(ColorsOf(spectrum), Packed(10, black));
    // Copies keep the state of their time.
    EXPECT_EQ(ColorsOf(copy), Packed(10, red));
    EXPECT_EQ(FlagsOf(copy), "----x-----");
    EXPECT_EQ(ColorsOf(assigned), mixed);
    EXPECT_FALSE(assigned.IsEditable());
}

TEST(CustomColorSpectrumTest, AgreesWithARampComputedForEachPosition)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int round = 0; round < 100; ++round) {
        int const size = engine.Integer(2, 128);
        CustomColorSpectrum spectrum("edited", size, true);
        for (int change = engine.Integer(1, 20); change > 0; --change) {
            spectrum.SetColor(engine.Integer(0, size - 1), static_cast<std::uint32_t>(engine()));
            spectrum.UndefineColor(engine.Integer(0, size - 1));
        }
        Packed const colors = ColorsOf(spectrum);
        std::string const flags = FlagsOf(spectrum);
        for (std::size_t at = 0; at < flags.size(); ++at) {
            std::size_t const left = flags.rfind('x', at), right = flags.find('x', at),
                              no = std::string::npos;
            std::size_t const before = left == no ? right : left, after = right == no ? left : right;
            double const share = before < after ? double(at - before) / double(after - before) : 0.0;
            for (int shift = 0; shift < 32; shift += 8) {
                auto const byte = [&](std::size_t stop) {
                    return (stop == no ? black : colors[stop]) >> shift & 0xFF;
                };
                double const mixed = byte(before) * (1 - share) + byte(after) * share;
                ASSERT_NEAR(colors[at] >> shift & 0xFF, mixed, 0.5 + 1e-9) << flags << " at " << at;
            }
        }
    }
}

TEST(CustomColorSpectrumTest, OrderTakesNameSizeMarkAndFlagsInTurn)
{
    std::vector<CustomColorSpectrum> all; // each beside its equal with other case and colours
    for (auto const& [name, sameName] : {std::pair("", ""), {"Ab", "aB"}, {"b", "B"}, {"\xE9", "\xE9"}}) {
        for (auto const& flags : {std::vector{"--", "-x", "x-", "xx"}, {"---", "--x", "-xx", "x--", "xx-"}}) {
            for (bool const editable : {false, true}) {
                for (char const* each : flags) {
                    all.push_back(WithFlags(name, each, editable, red));
                    all.push_back(WithFlags(sameName, each, editable, blue));
                }
            }
        }
    }
    ExpectRankedPairs(all);
}

TEST(CustomColorSpectrumTest, ArchiveHoldsRowNameAndFlags)
{
    std::string const row = Raw("\3\0\xFF\0\0\xFF\x80\0\x80\xFF\0\0\xFF\xFF"), flags = Raw("\3\0\0\0\1\0\1");
    for (std::uint32_t const schema : {21u, 23u, 24u, unsetSchema}) {
        CustomColorSpectrum spectrum("old", 3, false);
        EXPECT_EQ(Load(spectrum, row + (schema == 23 ? "" : "\1n") + flags, schema), 0);
        EXPECT_EQ(ColorsOf(spectrum), (Packed{red, 0xFF800080u, blue}));
        EXPECT_EQ(FlagsOf(spectrum) + spectrum.GetColorArray().GetName(), schema == 23 ? "x-xold" : "x-xn");
        EXPECT_FALSE(spectrum.IsEditable());
        EXPECT_EQ(Stored(schema, [&](CArchive& ar) { spectrum.Serialize(ar); }),
                  row + (schema == 23 ? "\3old" : "\1n") + flags);
    }
}

TEST(CustomColorSpectrumTest, LoadsTakeWhateverIsStored)
{
    std::string const four = Raw("\4\0\1\0\0\x9\2\0\0\x9\3\0\0\x9\4\0\0\x9\1n");
    struct
    {
        char const *what, *flagsBefore;
        std::string bytes, flags;
        int cause = 0;
    } const rows[] = {
        {"any byte but 0 is a flag", "----", four + Raw("\4\0\0\0\0\1\2\xFF"), "-xxx"},
        {"a row longer than the flags", "xx", four + Raw("\4\0\0\0\0\0\0\1"), "---x"},
        {"fewer flags than positions", "xx", four + Raw("\1\0\0\0\0"), "-x--"},
        {"more flags than positions", "xx", four + Raw("\6\0\0\0\1\0\1\0\1\1"), "x-x-"},
        {"no flags", "xx", four + Raw("\0\0\0\0"), "xx--"},
        {"a negative number of flags", "x-", four + "\xFF\xFF\xFF\xFF", "x---"},
        {"a shorter row", "-xxxx", Raw("\1\0\1\0\0\x9\0\1\0\0\0\1"), "x"},
        {"an empty row", "xxx", Raw("\0\0\0\0\0\0\0"), ""},
        {"an end after two flags", "--", four + Raw("\4\0\0\0\1\1"), "xx--", 3},
        {"an end before the flags", "-x", four, "-x--", 3},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.what);
        CustomColorSpectrum spectrum = WithFlags("old", row.flagsBefore);
        EXPECT_EQ(Load(spectrum, row.bytes), row.cause);
        EXPECT_EQ(FlagsOf(spectrum), row.flags);
        // What is no position changes nothing, and computes nothing.
        int const size = static_cast<int>(row.flags.size());
        spectrum.SetColor(size, blue);
        spectrum.UndefineColor(-1);
        Packed const stored = {0x09000001u, 0x09000002u, 0x09000003u, 0x09000004u};
        EXPECT_EQ(ColorsOf(spectrum), Packed(stored.begin(), stored.begin() + size));
        // A position is computed from nothing, or defined, in a row of any size.
        for (int index = 0; index < size; ++index) {
            spectrum.UndefineColor(index);
        }
        EXPECT_EQ(ColorsOf(spectrum), Packed(row.flags.size(), black));
        spectrum.SetColor(size - 1, blue);
        EXPECT_EQ(ColorsOf(spectrum), Packed(row.flags.size(), blue));
    }
}
