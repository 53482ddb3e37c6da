#include "vorlane/text/Pattern.h"

#include "fuzz/ExpressionChecks.h"
#include "tests/support/AllocationFailure.h"
#include "tests/text/TextTesting.h"

#include <memory>
#include <regex>

using namespace VorlaneFuzz;
using namespace VorlaneTest;
using Vorlane::Pattern;
using Vorlane::RegExpression;
using Vorlane::RegNumber;

namespace {

char const* const cases = "text/expressions.txt";

Texts SubstringsOf(RegExpression const& expression)
{
    Texts substrings;
    for (int i = 0; i < expression.GetSubstringCount(); ++i)
        substrings.push_back(Print(expression.GetSubstring(i)));
    return substrings;
}

char const* YesOrNo(bool value)
{
    return value ? "yes" : "no";
}

std::string CodeOf(std::string const& expression)
{
    Compiled const compiled = Compile(expression);
    return std::string(compiled->Code(), compiled->Code() + compiled->m_codeLength);
}

std::string HintsOf(std::string const& expression)
{
    Compiled const compiled = Compile(expression);
    char const first[] = {compiled->m_firstCharacter, '\0'};
    std::string const required(compiled->m_requiredText != nullptr ? compiled->m_requiredText : "");
    EXPECT_EQ(static_cast<std::size_t>(compiled->m_requiredLength), required.size());
    return std::string(first) + '|' + YesOrNo(compiled->m_anchored) + '|' + required;
}

} // namespace

TEST(ExpressionCompiler, CompilesAsTheTablesShow)
{
    auto const compiles = [](std::string const& expression) {
        return YesOrNo(Compile(expression) != nullptr);
    };
    CheckTables(cases, {{"code", CodeOf}, {"compiles", compiles}, {"hints", HintsOf}});
    EXPECT_EQ(Compile(std::string(32755, 'x'))->m_codeLength, 32766);
}

TEST(ExpressionCompiler, SearchRefusesAForeignBlock)
{
    Compiled const compiled = Compile("a");
    EXPECT_FALSE(Vorlane::SearchExpression(nullptr, "a", 1));
    EXPECT_FALSE(Vorlane::SearchExpression(compiled.get(), nullptr, 0));
    *compiled->Code() = 0;
    EXPECT_FALSE(Vorlane::SearchExpression(compiled.get(), "a", 1));
}

// Rows without an expression go on with the one before.
TEST(RegExpression, TellsTheMatchAndItsSubstrings)
{
    RegExpression expression("", false);
    for (Case const& row : ReadCases(cases, "matches")) {
        SCOPED_TRACE(row.at("where"));
        if (row.at("expression") != "same")
            expression = RegExpression(ToText(row.at("expression")), false);
        std::string const& text = row.at("text");
        EXPECT_EQ(YesOrNo(expression.Match(ToText(text), row.at("exact") == "yes")), row.at("result"));
        Texts const substrings = SubstringsOf(expression);
        EXPECT_EQ(substrings, Split(row.at("substrings"), '|'));
        for (int outside : {-1, expression.GetSubstringCount(), 2147483647}) {
            EXPECT_TRUE(expression.GetSubstring(outside).IsEmpty());
            EXPECT_EQ(expression.GetSubstringStart(outside), -1);
        }
        EXPECT_EQ(substrings.empty()
                      ? ""
                      : std::to_string(expression.GetSubstringStart(static_cast<int>(substrings.size()) - 1)),
                  row.at("lastStart"));
    }
    CheckTables(cases, {{"IsRegExpression", [](std::string const& text) {
                             return YesOrNo(RegExpression::IsRegExpression(ToText(text)));
                         }}});
}

// The rows of its tables: form, meaning, expression, text, substrings.
TEST(RegExpression, DoesWhatItsPageSays)
{
    std::ifstream page(VORLANE_SOURCE_DIR "/docs/expressions.md");
    std::regex const fields("\\| `[^`]*` \\| .* \\| `([^`]*)` \\| `([^`]*)` \\| ((?:.|\n)*) \\|");
    std::regex const code("`([^`]*)`");
    int rows = 0;
    for (std::string line; std::getline(page, line);) {
        std::string const row = std::regex_replace(std::regex_replace(line, std::regex("\\\\\\|"), "|"),
                                                   std::regex("\u21b5"), "\n");
        std::smatch field;
        if (!std::regex_match(row, field, fields)) {
            EXPECT_NE(line.rfind("| `", 0), 0u) << line;
            continue;
        }
        SCOPED_TRACE(line);
        std::string const list = field[3];
        Texts const expected(std::sregex_token_iterator(list.begin(), list.end(), code, 1), {});
        RegExpression expression(ToText(field[1]), false);
        EXPECT_EQ(expression.Match(ToText(field[2]), false), !expected.empty());
        EXPECT_EQ(SubstringsOf(expression), expected);
        ++rows;
    }
    EXPECT_GT(rows, 40);
}

TEST(RegExpression, SurvivesWithoutMemory)
{
    CString const text = ToText("xx" + std::string(300, 'a') + "bcd");
    std::unique_ptr<RegExpression> expression;
    auto const prepare = [&] {
        expression = std::make_unique<RegExpression>("(x*)(a+)((b|c)*)d", false);
    };
    auto const match = [&] {
        EXPECT_TRUE(expression->Match(text, true));
    };
    auto const check = [&] {
        EXPECT_EQ(expression->GetSubstringCount(), 0);
        match(); // it works again
        EXPECT_EQ(SubstringsOf(*expression).back(), "c");
    };
    EXPECT_GT(ForEachFailedAllocation(prepare, match, check), 20);
    auto const copy = [&] {
        std::unique_ptr<Pattern<CString>>(expression->Copy());
    };
    EXPECT_GT(ForEachFailedAllocation([] {}, copy, [&] { EXPECT_EQ(expression->GetSubstringCount(), 5); }),
              0);
}

TEST(RegNumber, ReadsRanges)
{
    for (Case const& row : ReadCases(cases, "ranges")) {
        RegNumber number(ToText(row.at("range")));
        std::unique_ptr<Pattern<CString>> const copy(number.Copy());
        EXPECT_EQ(YesOrNo(RegNumber::IsRegNumber(ToText(row.at("range")))), row.at("isRange"))
            << row.at("where");
        bool const hasExact = row.at("exact") != "none";
        EXPECT_TRUE(!hasExact || number.Match(ToText(row.at("exact")), true)) << row.at("where");
        for (std::string const side : {"inside", "outside"})
            for (std::string const& text : Split(row.at(side), '|')) {
                SCOPED_TRACE(row.at("where") + " on " + text);
                EXPECT_EQ(number.Match(ToText(text), false), side == "inside");
                EXPECT_EQ(*copy == ToText(text), side == "inside"); // the operator asks for the range
                EXPECT_TRUE(hasExact || !number.Match(ToText(text), true));
            }
    }
}

TEST(Pattern, GivesABodyToMatch)
{
    struct Anything : Pattern<CString>
    {
        Pattern<CString>* Copy() const override { return new Anything(*this); }
        bool Match(CString const& text, bool exact) override { return Pattern<CString>::Match(text, exact); }
    } anything;
    EXPECT_TRUE(anything == "a");
    EXPECT_FALSE(anything != "");
}
