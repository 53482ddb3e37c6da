#include "vorlane/text/RomanNumerals.h"

#include "tests/text/TextTesting.h"

namespace Numerals = Vorlane::RomanNumerals;

namespace {

template <typename Text>
std::string Read(Text const& text)
{
    int value = 77;
    bool const isNumeral = Numerals::RomanNumeralToInteger(text, value);
    return (isNumeral ? "" : "no ") + std::to_string(value);
}

std::string Write(int value)
{
    std::string text("old");
    Numerals::IntegerToRomanNumeral(value, text);
    return text;
}

} // namespace

TEST(RomanNumeralsTest, AreReadAndWrittenAsTheTablesShow)
{
    VorlaneTest::CheckTables("text/numerals.txt", {{"RomanNumeralToInteger", Read<std::string>},
                                                   {"RomanNumeralToInteger CString",
                                                    [](auto& text) {
                                                        return Read(VorlaneTest::ToText(text));
                                                    }},
                                                   {"IntegerToRomanNumeral", [](auto& text) {
                                                        return Write(std::stoi(text));
                                                    }}});
}

TEST(RomanNumeralsTest, WhatIsWrittenReadsBack)
{
    for (int expected = -4100; expected <= 4100; ++expected) {
        for (int time = 0; time < 2; ++time) { // the second time from the cache
            CString text("old");
            Numerals::IntegerToRomanNumeral(expected, text);
            ASSERT_EQ(VorlaneTest::Print(text), Write(expected));
            ASSERT_EQ(Read(text), std::to_string(expected));
        }
    }
}
