#include "vorlane/text/Font.h"

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
    } const rows[] = {
        {Font("Arial", 12), Font("Arial", 12), false, false, true},
        {Font("Arial", 12), Font("arial", 12), false, false, false},
        {Font("Zapf", 10), Font("Arial", 12), true, false, false},
        {Font("arial", 12), Font("Courier", 12), true, false, false},
        {Font("courier", 12), Font("Arial", 12), false, true, false},
        {Font(), Font("", 0), false, false, true},
    };
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
