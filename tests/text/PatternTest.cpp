#include "vorlane/text/Pattern.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

using Vorlane::Pattern;
using Vorlane::RegExpression;
using Vorlane::RegNumber;

using Texts = std::vector<std::string>;

Texts SubstringsOf(RegExpression const& expression)
{
    Texts substrings;
    for (int i = 0; i < expression.GetSubstringCount(); ++i)
        substrings.emplace_back(expression.GetSubstring(i));
    return substrings;
}

CString Text(std::string const& characters)
{
    return CString(characters.data(), static_cast<int>(characters.size()));
}

TEST(RegExpression, TellsTheMatchAndItsSubstrings)
{
    using namespace std::string_literals;
    struct Row
    {
        std::string expression;
        std::string text;
        bool exact;
        bool matches;
        Texts substrings;
    };
    Row const rows[] = {
        {"a.c", "xabcx", true, false, {"abc"}}, // a match that is not exact keeps its substrings
        {"a.c", "abc", true, true, {"abc"}},
        {"a|ab", "ab", true, false, {"a"}}, // the first way, not the longest
        {"*abc", "xxabc", true, true, {"xxabc"}},
        {"*", "any\nthing", true, true, {"any\nthing"}},
        {" \t\n*abc\r\v\f", "xxabc", true, true, {"xxabc"}},
        {"**", "a", false, false, {}},
        {"a\\ ", "a ", false, false, {}}, // the blank goes, and the backslash quotes nothing
        {"a\\ b", "a b", true, true, {"a b"}},
        {"\\<cat\\>", "a cat.", false, true, {"cat"}},
        {"\\<\xE4", "\xE4", false, false, {}}, // word characters are ASCII
        {"\\>.", "-a", false, true, {"-"}},    // the character before a word's end does not count
        {"[\x80-\xFF]+",
         "a\xE4\xFF"
         "b",
         false,
         true,
         {"\xE4\xFF"}},
        {"[\n]b", "\nb", false, true, {"\nb"}},
        {"x*a(longer)*b", "ab", false, true, {"ab"}},
        {"", "a", false, false, {}},
        {"", "", false, false, {}},
        {"a*", "", false, false, {}},
        {"^$", "", true, false, {}},
        {"ab\0cd"s, "ab", true, true, {"ab"}}, // a zero byte ends an expression
        {"ab", "ab\0cd"s, true, true, {"ab"}}, // and a text
        {"cd", "ab\0cd"s, false, false, {}},
        {"a*", "\0a"s, false, false, {}},
        {".$", "ab\0cd"s, false, true, {"b"}},
    };
    for (Row const& row : rows) {
        RegExpression expression(Text(row.expression), false);
        SCOPED_TRACE("'" + row.expression + "' on '" + row.text + "'");
        EXPECT_EQ(expression.Match(Text(row.text), row.exact), row.matches);
        EXPECT_EQ(SubstringsOf(expression), row.substrings);
    }
}

TEST(RegExpression, KeepsOrDropsTheSubstringsOfTheLastMatch)
{
    RegExpression expression("(a+)(b?)", false);
    EXPECT_EQ(expression.GetSubstringCount(), 0);
    EXPECT_TRUE(expression.Match("xaab", false));
    EXPECT_EQ(SubstringsOf(expression), (Texts{"aab", "aa", "b"}));
    EXPECT_EQ(expression.GetSubstringStart(0), 1);
    EXPECT_EQ(expression.GetSubstringStart(2), 3);
    for (int outside : {-1, 3, 2147483647}) {
        EXPECT_TRUE(expression.GetSubstring(outside).IsEmpty());
        EXPECT_EQ(expression.GetSubstringStart(outside), -1);
    }
    EXPECT_TRUE(expression.Match(expression.GetSubstring(1), true));
    EXPECT_EQ(SubstringsOf(expression), (Texts{"aa", "aa"}));
    CString const before = expression.GetSubstring(0);
    EXPECT_TRUE(expression.Match("a" + CString(std::string(1000, 'b').c_str()), false));
    EXPECT_EQ(SubstringsOf(expression), (Texts{"ab", "a", "b"}));
    EXPECT_STREQ(before, "aa"); // what was handed out stays
    EXPECT_FALSE(expression.Match("", false));
    EXPECT_EQ(expression.GetSubstringCount(), 0);

    // The empty text matches ".*" alone, and that leaves the substrings as they were.
    RegExpression all("*", true);
    EXPECT_TRUE(all.Match("ab", true));
    EXPECT_TRUE(all.Match("", true));
    EXPECT_EQ(SubstringsOf(all), (Texts{"ab"}));
    // So does an expression that does not compile, each time.
    all = RegExpression("(a", false);
    expression.Match("aab", false);
    RegExpression broken(expression);
    EXPECT_EQ(SubstringsOf(broken), (Texts{"aab", "aa", "b"}));
    EXPECT_FALSE(all.Match("(a", false));
    EXPECT_FALSE(all.Match("(a", false));
}

TEST(RegExpression, CopiesByValue)
{
    RegExpression source("(a)b", true);
    EXPECT_TRUE(source == "ab");
    EXPECT_TRUE(source != "xab"); // exact
    source.Match("ab", false);
    std::unique_ptr<Pattern<CString>> const copy(source.Copy());
    auto* const expression = dynamic_cast<RegExpression*>(copy.get());
    ASSERT_NE(expression, nullptr);
    EXPECT_EQ(SubstringsOf(*expression), (Texts{"ab", "a"}));
    EXPECT_TRUE(*copy == "ab");

    RegExpression target("z+", false);
    EXPECT_TRUE(target == "xz");
    target = source;
    EXPECT_EQ(SubstringsOf(target), (Texts{"ab", "a"}));
    EXPECT_TRUE(target == "ab"); // the new expression, and the source's exactness
    EXPECT_FALSE(target == "abz");
    RegExpression const& self = target;
    target = self;
    EXPECT_TRUE(target == "ab");
}

TEST(RegExpression, SurvivesFailedAllocations)
{
    CString const text("xx" + CString(std::string(300, 'a').c_str()) + "bcd");
    CString const pattern("(x*)(a+)((b|c)*)d");
    std::unique_ptr<RegExpression> expression;
    auto const prepare = [&] {
        expression = std::make_unique<RegExpression>(pattern, false);
    };
    auto const match = [&] {
        EXPECT_TRUE(expression->Match(text, true));
    };
    auto const check = [&] {
        EXPECT_EQ(expression->GetSubstringCount(), 0);
        EXPECT_TRUE(expression->Match(text, true)); // and works again
        EXPECT_EQ(SubstringsOf(*expression).back(), "c");
    };
    EXPECT_GT(VorlaneTest::ForEachFailedAllocation(prepare, match, check), 20);
    auto const copy = [&] {
        std::unique_ptr<Pattern<CString>>(expression->Copy());
    };
    auto const checkOriginal = [&] {
        EXPECT_EQ(expression->GetSubstringCount(), 5);
    };
    EXPECT_GT(VorlaneTest::ForEachFailedAllocation([] {}, copy, checkOriginal), 0);
}

TEST(RegExpression, TellsExpressionsByTheirCharacters)
{
    for (char const* text : {"a&b", "a.b", "*", "+", "\\", "^", "[", "]", "$", "(", ")"})
        EXPECT_TRUE(RegExpression::IsRegExpression(text)) << text;
    for (char const* text : {"", "a|b", "a?b", "a-b{2}", "CA"})
        EXPECT_FALSE(RegExpression::IsRegExpression(text)) << text;
}

/// The fields of one row of a Markdown table, without the marks of code.
Texts FieldsOf(std::string const& line)
{
    Texts fields;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '|')
            fields.emplace_back();
        else if (line.compare(i, 2, "\\|") == 0)
            fields.back() += line[++i];
        else
            fields.back() += line[i];
    }
    for (std::string& field : fields) {
        field.erase(0, field.find_first_not_of(' '));
        field.erase(field.find_last_not_of(' ') + 1);
        for (std::size_t at; (at = field.find("\xE2\x86\xB5")) != std::string::npos;)
            field.replace(at, 3, "\n");
    }
    return fields;
}

/// The pieces of code in a field.
Texts CodeIn(std::string const& field)
{
    Texts pieces;
    for (std::size_t at = 0; (at = field.find('`', at)) != std::string::npos;) {
        std::size_t const end = field.find('`', at + 1);
        pieces.push_back(field.substr(at + 1, end - at - 1));
        at = end + 1;
    }
    return pieces;
}

TEST(RegExpression, DoesWhatItsPageSays)
{
    std::ifstream page(VORLANE_SOURCE_DIR "/docs/expressions.md");
    ASSERT_TRUE(page.is_open());
    int rows = 0;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind("| `", 0) != 0)
            continue;
        SCOPED_TRACE(line);
        Texts const fields = FieldsOf(line);
        ASSERT_GE(fields.size(), 5u);
        Texts const expressions = CodeIn(fields[2]);
        Texts const texts = CodeIn(fields[3]);
        ASSERT_EQ(expressions.size(), 1u);
        ASSERT_EQ(texts.size(), 1u);
        RegExpression expression(Text(expressions[0]), false);
        Texts const expected = CodeIn(fields[4]);
        EXPECT_EQ(expression.Match(Text(texts[0]), false), !expected.empty());
        EXPECT_EQ(SubstringsOf(expression), expected);
        ++rows;
    }
    EXPECT_GT(rows, 40);
}

TEST(RegNumber, ReadsRanges)
{
    struct Row
    {
        char const* range;
        bool isRange;
        Texts inside;
        Texts outside;
        char const* exact; ///< the text that is both ends, or null
    };
    Row const rows[] = {
        {"1-5", true, {"3", "1", "5", " \t+3abc"}, {"0", "6", "abc", "-3", "- 3"}, nullptr},
        {"-5--2", true, {"-5", "-2"}, {"-1", "-6", "2"}, nullptr},
        {"+1-+3", true, {"2"}, {"4"}, nullptr},
        {"-5-5", true, {"0", "-5", "5"}, {"6"}, nullptr},
        {"5-1", true, {}, {"3", "5", "1"}, nullptr},
        {"7-7", true, {"7"}, {"6"}, "7"},
        {"5", false, {"5"}, {"4"}, "5"},
        {"-5", false, {"-5"}, {"5"}, "-5"},
        {"", false, {"0", "1", "abc", ""}, {"2"}, nullptr},
        {"1-", false, {"1"}, {"0"}, "1"},
        {"-", false, {"0"}, {"1"}, "x"},
        {"--5", true, {"5", "0"}, {"-1"}, nullptr}, // a sign alone is a number, and is 0
        {"1-2-3", false, {"2"}, {"3"}, nullptr},
        {"a-b", false, {"0"}, {"1"}, ""},
        {"1--", true, {}, {"1", "0"}, nullptr},
        {"1+-2", false, {"2"}, {"3"}, nullptr},
        {"2147483647-9999999999", true, {"2147483648", "2147483647"}, {"2147483646"}, "99999999999999999999"},
        {"-99999999999--2147483647", true, {"-2147483649", "-2147483648"}, {"-2147483646"}, nullptr},
    };
    for (Row const& row : rows) {
        RegNumber number(row.range);
        std::unique_ptr<Pattern<CString>> const copy(number.Copy());
        EXPECT_EQ(RegNumber::IsRegNumber(row.range), row.isRange) << row.range;
        for (bool inside : {true, false})
            for (std::string const& text : inside ? row.inside : row.outside) {
                SCOPED_TRACE(std::string(row.range) + " on " + text);
                EXPECT_EQ(number.Match(Text(text), false), inside);
                EXPECT_EQ(*copy == Text(text), inside); // the operator asks for the range
                EXPECT_EQ(*copy != Text(text), !inside);
                EXPECT_TRUE(row.exact != nullptr || !number.Match(Text(text), true));
            }
        EXPECT_TRUE(row.exact == nullptr || number.Match(row.exact, true)) << row.range;
    }
}

TEST(Pattern, GivesABodyToMatch)
{
    class Anything : public Pattern<CString>
    {
    public:
        Pattern<CString>* Copy() const override { return new Anything(*this); }
        bool Match(CString const& text, bool exact) override { return Pattern<CString>::Match(text, exact); }
    };
    Anything anything;
    EXPECT_TRUE(anything == "a");
    EXPECT_FALSE(anything != "");
}

} // namespace
