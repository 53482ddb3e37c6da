#include "vorlane/colour/NamedColorArrays.h"
#include "tests/support/ArchivedBytes.h"

#include "gtest/gtest.h"

#include <cstdint>
#include <stdexcept>
#include <string>

using Orrin::Color;
using Orrin::ColorArray;
using namespace VorlaneTest;

namespace {

ColorArray TwoColors()
{
    ColorArray array("map", 2, 1);
    array.SetAt(0, 0x40302010u);
    array.SetAt(1, 0x00CCBBAAu);
    return array;
}

Bytes const twoColors = {2, 0, 0x10, 0x20, 0x30, 0x40, 0xAA, 0xBB, 0xCC, 0x00};
Bytes const itsName = {3, 'm', 'a', 'p'};

} // namespace

TEST(NamedColorArraysTest, BuiltInRampsAreThoseOfTheTable)
{
    Color const black = Color::Black(), white = Color::White(), red = Color::Red(), green = Color::Green(),
                blue = Color::Blue(), cyan = Color::Cyan(), yellow = Color::Yellow(),
                magenta = Color::Magenta();
    struct
    {
        ColorArray (*make)();
        char const* name;
        std::vector<Color> stops;
    } const rows[] = {
        {Vorlane::BlackWhiteColorArray, "Black-White", {black, white}},
        {Vorlane::WhiteBlackColorArray, "White-Black", {white, black}},
        {Vorlane::RedBlueColorArray, "Red-Blue", {red, blue}},
        {Vorlane::BlueRedColorArray, "Blue-Red", {blue, red}},
        {Vorlane::RedWhiteBlueColorArray, "Red-White-Blue", {red, white, blue}},
        {Vorlane::BlueWhiteRedColorArray, "Blue-White-Red", {blue, white, red}},
        {Vorlane::RedGreenBlueColorArray, "Red-Green-Blue", {red, green, blue}},
        {Vorlane::BlueGreenRedColorArray, "Blue-Green-Red", {blue, green, red}},
        {Vorlane::Rainbow1ColorArray, "Rainbow 1", {red, yellow, green, cyan}},
        {Vorlane::Rainbow1ReversedColorArray, "Rainbow 1 Reversed", {cyan, green, yellow, red}},
        {Vorlane::Rainbow2ColorArray, "Rainbow 2", {red, magenta, blue, cyan}},
        {Vorlane::Rainbow2ReversedColorArray, "Rainbow 2 Reversed", {cyan, blue, magenta, red}},
    };
    for (auto const& row : rows) {
        for (ColorArray const& array : {row.make(), Vorlane::NamedColorArray(row.name)}) {
            EXPECT_EQ(array.GetName(), row.name);
            EXPECT_EQ(std::vector<Color>(array.begin(), array.end()), row.stops) << row.name;
        }
    }
}

TEST(NamedColorArraysTest, OldArchivesGetAnOpaqueAlphaForAnEmptyOne)
{
    struct
    {
        std::uint32_t schema;
        Bytes bytes;
        std::uint32_t packed;
    } const rows[] = {
        {0, {0x10, 0x20, 0x30, 0x00}, 0xFF302010u},
        {21, {0x10, 0x20, 0x30, 0x00}, 0xFF302010u},
        {21, {0x10, 0x20, 0x30, 0x01}, 0x01302010u},
        {22, {0x10, 0x20, 0x30, 0x00}, 0x00302010u},
        {22, {0, 0, 0, 0}, 0u},
        {0x80000000u, {0x10, 0x20, 0x30, 0x00}, 0x00302010u},
        {unsetSchema, {0x10, 0x20, 0x30, 0x00}, 0x00302010u},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.schema);
        Color color;
        EXPECT_EQ(LoadBytes(row.schema, row.bytes, [&](CArchive& ar) { Vorlane::SerializeColor(ar, color); }),
                  0);
        EXPECT_EQ(color.GetPacked(), row.packed);
        // Storing does not look at the number.
        Color const stored(0x00302010u);
        EXPECT_EQ(StoredBytes(row.schema, [&](CArchive& ar) { Vorlane::operator<<(ar, stored); }),
                  Bytes({0x10, 0x20, 0x30, 0x00}));
    }
}

TEST(NamedColorArraysTest, OperatorsFollowTheModeOfTheArchive)
{
    using Vorlane::operator<<;
    using Vorlane::operator>>;
    Color first(1), second(2);
    EXPECT_EQ(StoredBytes(24, [&](CArchive& ar) { ar >> first << second; }), Bytes({1, 0, 0, 0, 2, 0, 0, 0}));
    EXPECT_EQ(LoadBytes(24, {3, 0, 0, 0, 4, 0, 0, 0}, [&](CArchive& ar) { ar << first >> second; }), 0);
    EXPECT_EQ(first, Color(3));
    EXPECT_EQ(second, Color(4));
}

TEST(NamedColorArraysTest, OnlySchema23ReadsNoName)
{
    for (std::uint32_t const schema : {0u, 22u, 23u, 24u, unsetSchema}) {
        SCOPED_TRACE(schema);
        ColorArray stored = TwoColors();
        EXPECT_EQ(StoredBytes(schema, [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, stored); }),
                  Joined({twoColors, itsName}));

        ColorArray loaded("old", 5, 1);
        Bytes const bytes = schema == 23 ? twoColors : Joined({twoColors, itsName});
        EXPECT_EQ(LoadBytes(schema, bytes, [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, loaded); }),
                  0);
        EXPECT_EQ(loaded.GetName(), schema == 23 ? "old" : "map");
        ASSERT_EQ(loaded.GetSize(), 2);
        EXPECT_EQ(loaded[0].GetPacked(), 0x40302010u);
        EXPECT_EQ(loaded[1].GetPacked(), schema < 22 ? 0xFFCCBBAAu : 0x00CCBBAAu);
    }
}

TEST(NamedColorArraysTest, EmptyArraysAndNamesWithAZeroByte)
{
    ColorArray array("old", 5, 1);
    EXPECT_EQ(LoadBytes(24, {0, 0, 4, 'a', 'b', 0, 'c'},
                        [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, array); }),
              0);
    EXPECT_EQ(array.GetSize(), 0);
    EXPECT_EQ(array.GetName(), "ab");
    EXPECT_EQ(StoredBytes(24, [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, array); }),
              Bytes({0, 0, 2, 'a', 'b'}));
}

TEST(NamedColorArraysTest, AnArchiveThatEndsEarlyLeavesWhatWasRead)
{
    Bytes const whole = Joined({twoColors, itsName});
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        ColorArray array("old", 1, 1);
        array.SetAt(0, Color::Red());
        Bytes const part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(LoadBytes(24, part, [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, array); }), 3);
        EXPECT_EQ(array.GetName(), "old");
        ASSERT_EQ(array.GetSize(), length < 2 ? 1 : 2);
        EXPECT_EQ(array[0], length < 6 ? Color::Red() : Color(0x40302010u));
        if (length >= 2) {
            EXPECT_EQ(array[1], length < 10 ? Color() : Color(0x00CCBBAAu));
        }
    }
}

TEST(NamedColorArraysTest, HostileCountsEndWithoutTakingTheirMemory)
{
    for (unsigned char const highest : {std::uint8_t{0x80}, std::uint8_t{0xFF}}) {
        ColorArray array("old", 3, 1);
        try {
            LoadBytes(24, {0xFF, 0xFF, 0, 0, 0, highest},
                      [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, array); });
            ADD_FAILURE() << "loaded";
        } catch (std::length_error const& error) {
            EXPECT_STREQ(error.what(), "vector<T> too long");
        }
        EXPECT_EQ(array.GetSize(), 3);
    }
    ColorArray array(0, 1);
    EXPECT_EQ(LoadBytes(24, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 1, 2, 3, 4},
                        [&](CArchive& ar) { Vorlane::SerializeColorArray(ar, array); }),
              3);
    EXPECT_LE(array.GetSize(), 1 << 20);
    EXPECT_EQ(array[0].GetPacked(), 0x04030201u);
}
