#include "vorlane/text/Font.h"

#include "tests/support/ArchivedBytes.h"

#include "gtest/gtest.h"

using Vorlane::Font;

TEST(FontTest, OrderAndEqualityDifferInCase)
{
    struct
    {
        Font a;
        Font b;
        bool less;
        bool greater;
        bool equal;
    } const rows[] = {{Font("Arial", 12), Font("Arial", 12), false, false, true},
                      {Font("Arial", 12), Font("arial", 12), false, false, false},
                      {Font("Zapf", 10), Font("Arial", 12), true, false, false},
                      {Font("arial", 12), Font("Courier", 12), true, false, false},
                      {Font("courier", 12), Font("Arial", 12), false, true, false},
                      {Font(), Font("", 0), false, false, true}};
    for (auto const& row : rows) {
        SCOPED_TRACE(std::string(row.a.GetFace()) + " and " + std::string(row.b.GetFace()));
        EXPECT_EQ(row.a < row.b, row.less);
        EXPECT_EQ(row.b < row.a, row.greater);
        EXPECT_EQ(row.a == row.b, row.equal);
        EXPECT_EQ(row.a != row.b, !row.equal);
    }
}

TEST(FontTest, SetSizeAloneRefusesSizesBelowOne)
{
    Font font("Arial", -3);
    EXPECT_EQ(font.GetSize(), -3);
    font.SetSize(7);
    font.SetSize(0);
    font.SetSize(-3);
    EXPECT_EQ(font.GetSize(), 7);
    font.SetFace("Times");
    EXPECT_EQ(font, Font("Times", 7));
    EXPECT_EQ(Font::DefaultFont(), Font("Arial", 12));
    EXPECT_EQ(Font::DefaultBigFont(), Font("Arial", 16));
}

TEST(FontTest, ArchiveHoldsFaceAndSize)
{
    struct
    {
        Font font;
        VorlaneTest::Bytes bytes;
    } const rows[] = {{Font("Arial", 12), {5, 'A', 'r', 'i', 'a', 'l', 12, 0, 0, 0}},
                      {Font(), {0, 0, 0, 0, 0}},
                      {Font("\xE9", -2), {1, 0xE9, 0xFE, 0xFF, 0xFF, 0xFF}}};
    for (auto const& row : rows) {
        Font stored(row.font);
        auto const serialize = [](Font& font) {
            return [&font](CArchive& ar) {
                font.Serialize(ar);
            };
        };
        EXPECT_EQ(VorlaneTest::StoredBytes(VorlaneTest::unsetSchema, serialize(stored)), row.bytes);
        Font loaded("old", 99);
        EXPECT_EQ(VorlaneTest::LoadBytes(VorlaneTest::unsetSchema, row.bytes, serialize(loaded)), 0);
        EXPECT_EQ(loaded, row.font);
        // Cut off in the size: the face is there already.
        VorlaneTest::Bytes const cut(row.bytes.begin(), row.bytes.end() - 1);
        loaded = Font("old", 99);
        EXPECT_EQ(VorlaneTest::LoadBytes(VorlaneTest::unsetSchema, cut, serialize(loaded)),
                  CArchiveException::endOfFile);
        EXPECT_EQ(loaded, Font(row.font.GetFace(), 99));
    }
}
