#include "vorlane/text/Font.h"

#include "tests/support/ArchivedBytes.h"

#include <array>

using namespace VorlaneTest;
using Vorlane::Font;

TEST(FontTest, OrderAndEqualityDifferInCase)
{
    // '<' and '>' for the order, '=' for equal fonts, '~' for neither.
    std::pair<std::array<Font, 2>, char> const rows[] = {
        {{Font("Arial", 12), Font("Arial", 12)}, '='},   {{Font("Arial", 12), Font("arial", 12)}, '~'},
        {{Font("Zapf", 10), Font("Arial", 12)}, '<'},    {{Font("arial", 12), Font("Courier", 12)}, '<'},
        {{Font("courier", 12), Font("Arial", 12)}, '>'}, {{Font(), Font("", 0)}, '='}};
    for (auto const& [fonts, relation] : rows) {
        SCOPED_TRACE(std::string(fonts[0].GetFace()) + relation + std::string(fonts[1].GetFace()));
        EXPECT_EQ(fonts[0] < fonts[1], relation == '<');
        EXPECT_EQ(fonts[1] < fonts[0], relation == '>');
        EXPECT_EQ(fonts[0] == fonts[1], relation == '=');
        EXPECT_EQ(fonts[0] != fonts[1], relation != '=');
    }
}

TEST(FontTest, SetSizeAloneRefusesSizesBelowOne)
{
    Font font("Arial", -3);
    EXPECT_EQ(font.GetSize(), -3);
    font.SetSize(7);
    font.SetSize(0);
    font.SetSize(-3);
    font.SetFace("Times");
    EXPECT_EQ(font, Font("Times", 7));
    EXPECT_EQ(Font::DefaultFont(), Font("Arial", 12));
    EXPECT_EQ(Font::DefaultBigFont(), Font("Arial", 16));
}

TEST(FontTest, ArchiveHoldsFaceAndSize)
{
    std::pair<Font, Bytes> const rows[] = {{Font("Arial", 12), {5, 'A', 'r', 'i', 'a', 'l', 12, 0, 0, 0}},
                                           {Font("\xE9", -2), {1, 0xE9, 0xFE, 0xFF, 0xFF, 0xFF}}};
    for (auto const& [expected, bytes] : rows) {
        Font font(expected);
        auto const serialize = [&font](CArchive& ar) {
            font.Serialize(ar);
        };
        EXPECT_EQ(StoredBytes(unsetSchema, serialize), bytes);
        font = Font("old", 99);
        EXPECT_EQ(LoadBytes(unsetSchema, bytes, serialize), 0);
        EXPECT_EQ(font, expected);
        // Cut off in the size: the face is there already.
        font = Font("old", 99);
        Bytes const cut(bytes.begin(), bytes.end() - 1);
        EXPECT_EQ(LoadBytes(unsetSchema, cut, serialize), CArchiveException::endOfFile);
        EXPECT_EQ(font, Font(expected.GetFace(), 99));
    }
}
