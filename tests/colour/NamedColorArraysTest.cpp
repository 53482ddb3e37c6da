#include "vorlane/colour/NamedColorArrays.h"
#include "tests/colour/ColourTesting.h"

#include "gtest/gtest.h"

#include <stdexcept>
#include <string>
#include <vector>

using Orrin::Color;
using Orrin::ColorArray;
using namespace VorlaneTest;

namespace {

std::string const twoColors = Raw("\2\0\x10\x20\x30\x40\xAA\xBB\xCC\0");

int Load(ColorArray& array, std::string const& bytes, std::uint32_t schema = 24)
{
    return CauseOfLoad(schema, bytes, [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, array); });
}

} // namespace

TEST(NamedColorArraysTest, BuiltInRampsAreThoseOfTheTable)
{
    struct
    {
        ColorArray (*make)();
        char const *name, *stops; ///< stops by their first letter, k for black
    } const rows[] = {
        {Vorlane::BlackWhiteColorArray, "Black-White", "kw"},
        {Vorlane::WhiteBlackColorArray, "White-Black", "wk"},
        {Vorlane::RedBlueColorArray, "Red-Blue", "rb"},
        {Vorlane::BlueRedColorArray, "Blue-Red", "br"},
        {Vorlane::RedWhiteBlueColorArray, "Red-White-Blue", "rwb"},
        {Vorlane::BlueWhiteRedColorArray, "Blue-White-Red", "bwr"},
        {Vorlane::RedGreenBlueColorArray, "Red-Green-Blue", "rgb"},
        {Vorlane::BlueGreenRedColorArray, "Blue-Green-Red", "bgr"},
        {Vorlane::Rainbow1ColorArray, "Rainbow 1", "rygc"},
        {Vorlane::Rainbow1ReversedColorArray, "Rainbow 1 Reversed", "cgyr"},
        {Vorlane::Rainbow2ColorArray, "Rainbow 2", "rmbc"},
        {Vorlane::Rainbow2ReversedColorArray, "Rainbow 2 Reversed", "cbmr"},
    };
    std::string const letters = "krgybmcw"; // in the order of the bits of red, green and blue
    for (auto const& row : rows) {
        for (ColorArray const& array : {row.make(), Vorlane::NamedColorArray(row.name)}) {
            std::string stops;
            for (Color const& stop : array) {
                int const bits = (stop.GetRed() & 1) | (stop.GetGreen() & 2) | (stop.GetBlue() & 4);
                stops += letters[static_cast<std::size_t>(bits)];
            }
            EXPECT_EQ(array.GetName(), row.name);
            EXPECT_EQ(stops, row.stops);
        }
    }
}

TEST(NamedColorArraysTest, SchemaNumbersAndModesDecide)
{
    using Vorlane::operator<<;
    using Vorlane::operator>>;
    for (std::uint32_t const schema : {0u, 21u, 22u, 23u, 24u, 0x80000000u, unsetSchema}) {
        SCOPED_TRACE(schema);
        // An empty alpha becomes opaque below 22 on loading, by either operator.
        Color first, second;
        std::string const bytes = Raw("\x10\x20\x30\0\0\0\0\1");
        EXPECT_EQ(CauseOfLoad(schema, bytes, [&](CArchive& ar) { ar << first >> second; }), 0);
        EXPECT_EQ(first.GetPacked(), schema < 22 ? 0xFF302010u : 0x00302010u);
        EXPECT_EQ(second.GetPacked(), 0x01000000u);
        first = 0x00302010u;
        EXPECT_EQ(Stored(schema, [&](CArchive& ar) { ar >> first << second; }), bytes);

        // The name is always stored, and not read at 23.
        ColorArray array("old", 5, 1);
        EXPECT_EQ(Load(array, twoColors + (schema == 23 ? "" : "\3map"), schema), 0);
        EXPECT_EQ(array.GetName(), schema == 23 ? "old" : "map");
        ASSERT_EQ(array.GetSize(), 2);
        EXPECT_EQ(array[0].GetPacked(), 0x40302010u);
        EXPECT_EQ(array[1].GetPacked(), schema < 22 ? 0xFFCCBBAAu : 0x00CCBBAAu);
        array.SetName("map");
        array[1] = 0x00CCBBAAu;
        EXPECT_EQ(Stored(schema, [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, array); }),
                  twoColors + "\3map");
    }
    ColorArray array("old", 5, 1);
    EXPECT_EQ(Load(array, Raw("\0\0\4ab\0c")), 0);
    EXPECT_EQ(Stored(24, [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, array); }), Raw("\0\0\2ab"));
}

TEST(NamedColorArraysTest, BadArchivesLeaveWhatWasReadAndTakeNoMemory)
{
    std::string const whole = twoColors + "\3map";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        ColorArray array("old", 1, 1);
        EXPECT_EQ(Load(array, whole.substr(0, length)), 3);
        EXPECT_EQ(array.GetName(), "old");
        ASSERT_EQ(array.GetSize(), length < 2 ? 1 : 2);
        EXPECT_EQ(array[0], length < 6 ? Color() : Color(0x40302010u));
        EXPECT_EQ(array[array.GetSize() - 1], length < 10 ? Color() : Color(0x00CCBBAAu));
    }
    ColorArray array("old", 3, 1);
    EXPECT_THROW(Load(array, Raw("\xFF\xFF\0\0\0\x80")), std::length_error);
    EXPECT_THROW(Load(array, Raw("\xFF\xFF\xFF\xFF\xFF\xFF")), std::length_error);
    EXPECT_EQ(array.GetSize(), 3);
    EXPECT_EQ(Load(array, "\xFF\xFF\xFF\xFF\xFF\x7F\1\2\3\4"), 3);
    EXPECT_LE(array.GetSize(), 1 << 20);
    EXPECT_EQ(array[0].GetPacked(), 0x04030201u);
}
