#include "vorlane/text/RomanNumerals.h"

#include "gtest/gtest.h"

#include <limits>

namespace Numerals = Vorlane::RomanNumerals;

namespace {

std::string Numeral(int value)
{
    std::string text;
    Numerals::IntegerToRomanNumeral(value, text);
    return text;
}

std::string Repeat(std::string const& text, int count)
{
    std::string result;
    for (; count > 0; --count) {
        result += text;
    }
    return result;
}

} // namespace

TEST(RomanNumeralsTest, ReadsMoreThanTheCanonicalNumerals)
{
    struct
    {
        std::string text;
        bool isNumeral;
        int value;
    } const rows[] = {{"", true, 0},
                      {"0", true, 0},
                      {"-", true, 0},
                      {"MCMXCIV", true, 1994},
                      {"-X", true, -10},
                      {"IIII", true, 4},
                      {"VIV", true, 9},
                      {"CMCM", true, 1800},
                      {"DCDXCXCXLIXIXIVIV", true, 1146},
                      {"IIX", false, 0},
                      {"IM", false, 0},
                      {"iv", false, 0},
                      {"-0", false, 0},
                      {"00", false, 0},
                      {"X Y", false, 0},
                      {"--X", false, 0},
                      {"X-", false, 0},
                      {" X", false, 0},
                      {"VX", false, 0},
                      {std::string("X\0", 2), false, 0}};
    for (auto const& row : rows) {
        int value = 77;
        EXPECT_EQ(Numerals::RomanNumeralToInteger(row.text, value), row.isNumeral) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
    int value = 77;
    EXPECT_TRUE(Numerals::RomanNumeralToInteger(CString("-XIV\0I", 6), value));
    EXPECT_EQ(value, -14);
}

TEST(RomanNumeralsTest, WritesWhatReadsBack)
{
    struct
    {
        int value;
        std::string text;
    } const rows[] = {{0, "0"},
                      {4, "IV"},
                      {1994, "MCMXCIV"},
                      {-9, "-IX"},
                      {4000, "MMMM"},
                      {3888, "MMMDCCCLXXXVIII"},
                      {-3999, "-MMMCMXCIX"},
                      {12345678, Repeat("M", 12345) + "DCLXXVIII"},
                      {std::numeric_limits<int>::min(), "-"}};
    for (auto const& row : rows) {
        EXPECT_EQ(Numeral(row.value), row.text) << row.value;
    }
    for (int expected = -4100; expected <= 4100; ++expected) {
        // The second time from the cache.
        for (int time = 0; time < 2; ++time) {
            CString text("old");
            Numerals::IntegerToRomanNumeral(expected, text);
            ASSERT_EQ(std::string(text), Numeral(expected));
            int value = 77;
            ASSERT_TRUE(Numerals::RomanNumeralToInteger(text, value));
            ASSERT_EQ(value, expected);
        }
    }
}

TEST(RomanNumeralsTest, SumsWrapAtThirtyTwoBits)
{
    struct
    {
        std::string text;
        int value;
    } const rows[] = {{Repeat("M", 2147483) + "DCXLVII", std::numeric_limits<int>::max()},
                      {Repeat("M", 2147483) + "DCXLVIII", std::numeric_limits<int>::min()},
                      {"-" + Repeat("M", 2147483) + "DCXLVIII", std::numeric_limits<int>::min()},
                      {Repeat("M", 4294967) + "CCXCVII", 1}};
    for (auto const& row : rows) {
        int value = 77;
        EXPECT_TRUE(Numerals::RomanNumeralToInteger(row.text, value));
        EXPECT_EQ(value, row.value);
    }
    EXPECT_EQ(Numeral(std::numeric_limits<int>::max()), rows[0].text);
}
