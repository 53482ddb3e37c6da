#include "vorlane/colour/CustomColorSpectrum.h"
#include "tests/support/ArchivedBytes.h"
#include "tests/support/Seed.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

using Orrin::Color;
using Vorlane::CustomColorSpectrum;
using namespace VorlaneTest;

namespace {

constexpr std::uint32_t red = 0xFF0000FFu;
constexpr std::uint32_t blue = 0xFFFF0000u;
constexpr std::uint32_t black = 0xFF000000u;

std::vector<std::uint32_t> ColorsOf(CustomColorSpectrum const& spectrum)
{
    std::vector<std::uint32_t> packed;
    for (Color const& color : spectrum.GetColorArray()) {
        packed.push_back(color.GetPacked());
    }
    return packed;
}

/// One character a position: 'x' for a defined one, '-' for a computed one.
std::string FlagsOf(CustomColorSpectrum const& spectrum)
{
    std::string flags;
    for (int index = 0; index < static_cast<int>(ColorsOf(spectrum).size()); ++index) {
        Color color;
        flags += spectrum.GetColor(index, color) ? 'x' : '-';
        EXPECT_EQ(color.GetPacked(), ColorsOf(spectrum)[static_cast<std::size_t>(index)]);
    }
    return flags;
}

/// A spectrum whose flags are those of a text as FlagsOf gives it.
CustomColorSpectrum WithFlags(char const* name, std::string const& flags, bool editable = true,
                              Color color = red)
{
    CustomColorSpectrum spectrum(name, static_cast<int>(flags.size()), editable);
    for (std::size_t index = 0; index < flags.size(); ++index) {
        if (flags[index] == 'x') {
            spectrum.SetColor(static_cast<int>(index), color);
        }
    }
    return spectrum;
}

int Load(CustomColorSpectrum& spectrum, Bytes const& bytes, std::uint32_t schema = 24)
{
    return LoadBytes(schema, bytes, [&](CArchive& ar) { spectrum.Serialize(ar); });
}

Bytes Store(CustomColorSpectrum& spectrum, std::uint32_t schema = 24)
{
    return StoredBytes(schema, [&](CArchive& ar) { spectrum.Serialize(ar); });
}

} // namespace

TEST(CustomColorSpectrumTest, FreshSpectraAreUndefinedAndOfAClampedSize)
{
    CustomColorSpectrum const plain;
    EXPECT_EQ(plain.GetColorArray().GetName(), "Default Spectrum");
    EXPECT_EQ(FlagsOf(plain), "--");
    EXPECT_TRUE(plain.IsEditable());
    struct
    {
        int asked, given;
    } const rows[] = {{-5, 2}, {1, 2}, {2, 2}, {10, 10}, {128, 128}, {129, 128}, {0x7FFFFFFF, 128}};
    for (auto const& row : rows) {
        CustomColorSpectrum const spectrum(CString("a\0b", 3), row.asked, false);
        EXPECT_EQ(ColorsOf(spectrum), std::vector<std::uint32_t>(static_cast<std::size_t>(row.given), black));
        EXPECT_EQ(spectrum.GetColorArray().GetName(), "a");
        EXPECT_FALSE(spectrum.IsEditable());
    }
    EXPECT_EQ(CustomColorSpectrum::GetDefaultMinimumSize(), 2);
    EXPECT_EQ(CustomColorSpectrum::GetDefaultMaximumSize(), 128);
}

TEST(CustomColorSpectrumTest, EveryChangeComputesTheUndefinedPositions)
{
    CustomColorSpectrum spectrum("edited", 10, true);
    spectrum.SetColor(4, red);
    EXPECT_EQ(FlagsOf(spectrum), "----x-----");
    EXPECT_EQ(ColorsOf(spectrum), std::vector<std::uint32_t>(10, red));

    spectrum.SetColor(8, blue);
    // A quarter, a half and three quarters of the way: 191.25, 127.5 and 63.75, and the same upwards in blue.
    std::vector<std::uint32_t> const expected = {red,         red,         red,         red,  red,
                                                 0xFF4000BFu, 0xFF800080u, 0xFFBF0040u, blue, blue};
    EXPECT_EQ(FlagsOf(spectrum), "----x---x-");
    EXPECT_EQ(ColorsOf(spectrum), expected);

    for (int const index : {-1, 10, 0x7FFFFFFF}) {
        Color color(7);
        spectrum.SetColor(index, color);
        spectrum.UndefineColor(index);
        EXPECT_FALSE(spectrum.GetColor(index, color));
        EXPECT_EQ(color, Color(7));
        EXPECT_EQ(ColorsOf(spectrum), expected);
    }
    spectrum.UndefineColor(8);
    EXPECT_EQ(ColorsOf(spectrum), std::vector<std::uint32_t>(10, red));
    spectrum.UndefineColor(4);
    EXPECT_EQ(FlagsOf(spectrum), "----------");
    EXPECT_EQ(ColorsOf(spectrum), std::vector<std::uint32_t>(10, black));
}

TEST(CustomColorSpectrumTest, InvalidIndexesComputeNothing)
{
    CustomColorSpectrum spectrum("loaded", 2, true);
    // A defined and a computed position whose colours do not follow from each other.
    ASSERT_EQ(Load(spectrum, {2, 0, 1, 0, 0, 9, 2, 0, 0, 9, 0, 2, 0, 0, 0, 1, 0}), 0);
    spectrum.SetColor(2, red);
    spectrum.UndefineColor(-1);
    EXPECT_EQ(ColorsOf(spectrum), (std::vector<std::uint32_t>{0x09000001u, 0x09000002u}));
}

TEST(CustomColorSpectrumTest, AgreesWithARampComputedForEachPosition)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int round = 0; round < 100; ++round) {
        int const size = engine.Integer(2, 128);
        CustomColorSpectrum spectrum("edited", size, true);
        std::vector<std::int64_t> defined(static_cast<std::size_t>(size), -1); // the packed colour, or -1
        for (int change = engine.Integer(1, 20); change > 0; --change) {
            std::size_t const index = static_cast<std::size_t>(engine.Integer(0, size - 1));
            if (engine.Integer(0, 3) == 0) {
                defined[index] = -1;
                spectrum.UndefineColor(static_cast<int>(index));
            } else {
                defined[index] = static_cast<std::uint32_t>(engine());
                spectrum.SetColor(static_cast<int>(index), static_cast<std::uint32_t>(defined[index]));
            }
        }
        std::vector<std::uint32_t> const colors = ColorsOf(spectrum);
        for (int index = 0; index < size; ++index) {
            int before = index, after = index;
            while (before >= 0 && defined[static_cast<std::size_t>(before)] < 0) {
                --before;
            }
            while (after < size && defined[static_cast<std::size_t>(after)] < 0) {
                ++after;
            }
            if (before < 0 && after == size) {
                ASSERT_EQ(colors[static_cast<std::size_t>(index)], black);
                continue;
            }
            std::int64_t const from = defined[static_cast<std::size_t>(before < 0 ? after : before)];
            std::int64_t const to = defined[static_cast<std::size_t>(after == size ? before : after)];
            double const share = before < 0 || after == size || before == after
                                     ? 0.0
                                     : double(index - before) / (after - before);
            for (int shift = 0; shift < 32; shift += 8) {
                double const exact =
                    double(from >> shift & 0xFF) * (1 - share) + double(to >> shift & 0xFF) * share;
                ASSERT_NEAR(colors[static_cast<std::size_t>(index)] >> shift & 0xFF, exact, 0.5 + 1e-9)
                    << "position " << index << " of " << size;
            }
        }
    }
}

TEST(CustomColorSpectrumTest, BuiltInSpectraAreDefinedThroughoutAndCanBeChanged)
{
    CustomColorSpectrum spectrum = CustomColorSpectrum::Rainbow2Reversed();
    EXPECT_FALSE(spectrum.IsEditable());
    EXPECT_EQ(FlagsOf(spectrum), "xxxx");
    std::vector<std::uint32_t> colors = ColorsOf(spectrum);
    spectrum.SetColor(1, 0x01020304u);
    colors[1] = 0x01020304u;
    EXPECT_EQ(ColorsOf(spectrum), colors);
}

TEST(CustomColorSpectrumTest, CopiesAreIndependentAndKeepTheState)
{
    CustomColorSpectrum source("source", 5, false);
    source.SetColor(1, red);
    CustomColorSpectrum copy(source);
    CustomColorSpectrum assigned;
    assigned = source;
    CustomColorSpectrum const& self = assigned;
    assigned = self;
    source.SetColor(4, blue);
    for (CustomColorSpectrum const* each : {&copy, &assigned}) {
        EXPECT_EQ(each->GetColorArray().GetName(), "source");
        EXPECT_FALSE(each->IsEditable());
        EXPECT_EQ(FlagsOf(*each), "-x---");
        EXPECT_EQ(ColorsOf(*each), std::vector<std::uint32_t>(5, red));
    }
}

TEST(CustomColorSpectrumTest, OrderTakesItsKeysInTurn)
{
    // From the least to the greatest.
    CustomColorSpectrum const ordered[] = {
        WithFlags("a", "xxx", true),  WithFlags("B", "xx", true),   WithFlags("b", "---", false),
        WithFlags("B", "x--", false), WithFlags("b", "x-x", false), WithFlags("b", "xx-", false),
        WithFlags("b", "---", true),  WithFlags("c", "--", false),
    };
    for (CustomColorSpectrum const& left : ordered) {
        for (CustomColorSpectrum const& right : ordered) {
            EXPECT_EQ(left < right, &left < &right);
            EXPECT_EQ(left == right, &left == &right);
            EXPECT_NE(left == right, left != right);
        }
    }
    CustomColorSpectrum const one = WithFlags("Name", "x-", true, red);
    CustomColorSpectrum const other = WithFlags("nAME", "x-", true, blue);
    EXPECT_TRUE(one == other);
    EXPECT_FALSE(one < other || other < one);
}

TEST(CustomColorSpectrumTest, OrderIsAStrictWeakOne)
{
    std::vector<CustomColorSpectrum> spectra;
    for (char const* name : {"", "a", "A", "b", "\xE9"}) {
        for (char const* flags : {"--", "x-", "-x", "---", "--x"}) {
            for (bool const editable : {false, true}) {
                spectra.push_back(WithFlags(name, flags, editable));
            }
        }
    }
    auto const tie = [](auto const& left, auto const& right) {
        return !(left < right) && !(right < left);
    };
    for (CustomColorSpectrum const& a : spectra) {
        EXPECT_FALSE(a < a);
        for (CustomColorSpectrum const& b : spectra) {
            ASSERT_FALSE(a < b && b < a);
            ASSERT_EQ(tie(a, b), a == b);
            for (CustomColorSpectrum const& c : spectra) {
                ASSERT_TRUE(!(a < b && b < c) || a < c);
                ASSERT_TRUE(!(tie(a, b) && tie(b, c)) || tie(a, c));
            }
        }
    }
}

TEST(CustomColorSpectrumTest, ArchiveHoldsRowNameAndFlags)
{
    Bytes const row = {3, 0, 0xFF, 0, 0, 0xFF, 0x80, 0, 0x80, 0xFF, 0, 0, 0xFF, 0xFF};
    Bytes const flags = {3, 0, 0, 0, 1, 0, 1};
    Bytes const bytes = Joined({row, {1, 'n'}, flags});
    CustomColorSpectrum stored("n", 3, false);
    stored.SetColor(0, red);
    stored.SetColor(2, blue);
    for (std::uint32_t const schema : {21u, 23u, 24u, unsetSchema}) {
        SCOPED_TRACE(schema);
        EXPECT_EQ(Store(stored, schema), bytes);
        CustomColorSpectrum loaded("old", 3, true);
        EXPECT_EQ(Load(loaded, schema == 23 ? Joined({row, flags}) : bytes, schema), 0);
        EXPECT_EQ(ColorsOf(loaded), ColorsOf(stored));
        EXPECT_EQ(FlagsOf(loaded), "x-x");
        EXPECT_EQ(loaded.GetColorArray().GetName(), schema == 23 ? "old" : "n");
        EXPECT_TRUE(loaded.IsEditable());
    }
}

TEST(CustomColorSpectrumTest, LoadsTakeWhateverIsStored)
{
    Bytes const four = {4, 0, 1, 0, 0, 9, 2, 0, 0, 9, 3, 0, 0, 9, 4, 0, 0, 9, 1, 'n'};
    struct
    {
        char const* what;
        std::string flagsBefore;
        Bytes bytes;
        std::string flags;
    } const rows[] = {
        {"any byte but 0 is a flag", "----", Joined({four, {4, 0, 0, 0, 0, 1, 2, 0xFF}}), "-xxx"},
        {"a row longer than the flags", "xx", Joined({four, {4, 0, 0, 0, 0, 0, 0, 1}}), "---x"},
        {"fewer flags than positions", "xx", Joined({four, {1, 0, 0, 0, 0}}), "-x--"},
        {"more flags than positions", "xx", Joined({four, {6, 0, 0, 0, 1, 0, 1, 0, 1, 1}}), "x-x-"},
        {"no flags", "xx", Joined({four, {0, 0, 0, 0}}), "xx--"},
        {"a negative number of flags", "x-", Joined({four, {0xFF, 0xFF, 0xFF, 0xFF}}), "x---"},
        {"a shorter row", "-xxxx", {1, 0, 5, 0, 0, 9, 0, 1, 0, 0, 0, 1}, "x"},
        {"an empty row", "xxx", {0, 0, 0, 0, 0, 0, 0}, ""},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.what);
        CustomColorSpectrum spectrum = WithFlags("old", row.flagsBefore);
        EXPECT_EQ(Load(spectrum, row.bytes), 0);
        EXPECT_EQ(FlagsOf(spectrum), row.flags);
        for (std::size_t index = 0; index < row.flags.size(); ++index) {
            std::uint32_t const low = row.flags.size() == 1 ? 5 : static_cast<std::uint32_t>(index) + 1;
            EXPECT_EQ(ColorsOf(spectrum)[index], 0x09000000u + low);
        }
    }
}

TEST(CustomColorSpectrumTest, RowsOfEverySizeSurviveChangesAfterALoad)
{
    CustomColorSpectrum single;
    ASSERT_EQ(Load(single, {1, 0, 5, 0, 0, 9, 0, 1, 0, 0, 0, 1}), 0);
    single.UndefineColor(0);
    EXPECT_EQ(ColorsOf(single), std::vector<std::uint32_t>{black});
    single.SetColor(0, red);
    single.SetColor(1, blue);
    EXPECT_EQ(ColorsOf(single), std::vector<std::uint32_t>{red});

    CustomColorSpectrum empty;
    ASSERT_EQ(Load(empty, {0, 0, 0, 0, 0, 0, 0}), 0);
    empty.SetColor(0, red);
    empty.UndefineColor(0);
    EXPECT_EQ(Store(empty), Bytes({0, 0, 0, 0, 0, 0, 0}));

    Bytes const longRow = Joined({{200, 0}, Bytes(800, 0xFF), {0}});
    CustomColorSpectrum large;
    ASSERT_EQ(Load(large, Joined({longRow, {0xFF, 0xFF, 0xFF, 0xFF}})), 0);
    large.SetColor(199, red); // beyond the flags that the load left
    EXPECT_EQ(FlagsOf(large), std::string(199, '-') + "x");
    EXPECT_EQ(ColorsOf(large), std::vector<std::uint32_t>(200, red));
}

TEST(CustomColorSpectrumTest, AnArchiveThatEndsEarlyLeavesWhatWasRead)
{
    CustomColorSpectrum stored = WithFlags("name", "x-xx");
    Bytes const whole = Store(stored);
    std::size_t const flagsBegin = whole.size() - 4;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        CustomColorSpectrum spectrum = WithFlags("old", "-x");
        EXPECT_EQ(Load(spectrum, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))),
                  3);
        std::string expected = length < 2 ? "-x" : "-x--";
        for (std::size_t flag = 0; flagsBegin + flag < length; ++flag) {
            expected[flag] = "x-xx"[flag];
        }
        EXPECT_EQ(FlagsOf(spectrum), expected) << length;
    }
}
