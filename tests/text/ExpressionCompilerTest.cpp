#include "vorlane/text/Pattern.h"
#include "vorlane/text/RegularExpressionInternal.h"

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Vorlane::CompiledExpression;
using Compiled = std::unique_ptr<CompiledExpression, void (*)(CompiledExpression*)>;

Compiled Compile(std::string const& expression)
{
    return Compiled(Vorlane::CompileExpression(expression.c_str()),
                    [](CompiledExpression* compiled) { Vorlane::ReleaseExpression(compiled); });
}

/// The nodes as text: opcode, offset to the next, operand; "6+16 8+5'a'".
std::string Describe(CompiledExpression const& compiled)
{
    unsigned char const* const code = compiled.Code();
    std::string text = std::to_string(code[0]);
    for (int node = 1; node < compiled.m_codeLength;) {
        int const next = Vorlane::NextNode(code, node);
        text += " " + std::to_string(code[node]) + (next != 0 && next < node ? "-" : "+") +
                std::to_string(next == 0 ? 0 : std::abs(next - node));
        bool const hasString = code[node] == Vorlane::OpExactly || code[node] == Vorlane::OpAnyOf ||
                               code[node] == Vorlane::OpAnyBut;
        node += Vorlane::nodeHeaderLength;
        if (hasString) {
            std::string const operand = reinterpret_cast<char const*>(code + node);
            text += "'" + operand + "'";
            node += static_cast<int>(operand.size()) + 1;
        }
    }
    return text;
}

TEST(ExpressionCompiler, WritesTheNodes)
{
    struct Row
    {
        char const* expression;
        char const* nodes;
    };
    Row const rows[] = {
        {"", "156 6+6 9+3 0+0"},
        {"abc", "156 6+10 8+7'abc' 0+0"},
        {"ab*|c", "156 6+16 8+5'a' 10+16 8+0'b' 6+8 8+5'c' 0+0"},
        {"a\nb", "156 6+8 8+13'a' 6+8 8+5'b' 0+0"},
        {"a\\.b\\*c", "156 6+12 8+9'a.b*c' 0+0"},
        {".+[a-c]", "156 6+16 11+6 3+0 4+7'abc' 0+0"},
        {"[^]a-]", "156 6+10 5+7']a-' 0+0"},
        {"^\\<x\\>$", "156 6+20 1+3 12+3 8+5'x' 13+3 2+3 0+0"},
        {"(ab)", "156 6+18 21+3 6+9 8+6'ab' 31+3 0+0"},
        {"(a)*", "156 6+29 6+20 21+3 6+8 8+5'a' 31+3 7-17 6+3 9+3 0+0"},
        {"(a)+", "156 6+29 21+3 6+8 8+5'a' 31+3 6+6 7-17 6+3 9+3 0+0"},
        {"a?", "156 6+17 6+8 8+8'a' 6+3 9+3 0+0"},
    };
    for (Row const& row : rows) {
        Compiled const compiled = Compile(row.expression);
        ASSERT_NE(compiled, nullptr) << row.expression;
        EXPECT_EQ(Describe(*compiled), row.nodes) << row.expression;
    }
}

std::vector<std::string> Words(char const* text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

TEST(ExpressionCompiler, RefusesWhatIsNotValid)
{
    auto const repeat = [](int count, char c) {
        return std::string(static_cast<std::size_t>(count), c);
    };
    std::vector<std::string> valid =
        Words("(a)(a)(a)(a)(a)(a)(a)(a)(a) ((((((((()))))))))  a\\** ^?$?\\<?\\>? (a*)? ()? "
              "(a?b)+ (^a)* ((a*)b|c)* a\\\\ []] [^]] [a-a] [\x80-\xFF] ]{}&-");
    std::vector<std::string> invalid =
        Words("(a a( a) (a)) (a)(a)(a)(a)(a)(a)(a)(a)(a)(a) (((((((((()))))))))) *a + ? (*a) a|*b (|?) a** "
              "a*? a?+ ^* "
              "$+ \\<* \\>+ (a*)* ()+ (a|)* (a|b?)+ a\\ \\ [a [ [] [^] [a- [z-a] [a--] [\xFF-\x80]");
    // The borders of the code's length, reached in several ways.
    valid.insert(valid.end(), {repeat(32755, 'x'), "[" + repeat(32755, 'x') + "]", repeat(32747, 'x') + "y*",
                               repeat(32746, 'x') + "|", "[a\nb]"});
    invalid.insert(invalid.end(),
                   {repeat(32756, 'x'), "[" + repeat(32756, 'x') + "]", repeat(32748, 'x') + "y*",
                    repeat(32750, 'x') + "|", repeat(100000, '.'), repeat(100000, '|'), "a\n+b"});
    for (std::string const& expression : valid)
        EXPECT_NE(Compile(expression), nullptr) << expression.substr(0, 40);
    for (std::string const& expression : invalid)
        EXPECT_EQ(Compile(expression), nullptr) << expression.substr(0, 40);
    EXPECT_EQ(Compile(repeat(32755, 'x'))->m_codeLength, 32766);
}

TEST(ExpressionCompiler, SetsTheHints)
{
    struct Row
    {
        char const* expression;
        char first;
        bool anchored;
        char const* required;
    };
    Row const rows[] = {
        {"abc", 'a', false, ""},          {"^abc", 0, true, "abc"},     {"abc|abd", 0, false, ""},
        {"x*abcd.ef", 0, false, "abcd"},  {"x?ab.cd", 0, false, "cd"},  {".abc", 0, false, ""},
        {"x*a(longer)*b", 0, false, "b"}, {"(x*)abc", 0, false, "abc"}, {"(x+)abc", 0, false, ""},
        {"\\^a", '^', false, ""},         {"x*", 0, false, ""},         {"x*|^a", 0, false, ""},
    };
    for (Row const& row : rows) {
        Compiled const compiled = Compile(row.expression);
        ASSERT_NE(compiled, nullptr) << row.expression;
        EXPECT_EQ(compiled->m_firstCharacter, row.first) << row.expression;
        EXPECT_EQ(compiled->m_anchored, row.anchored) << row.expression;
        std::string const required =
            compiled->m_requiredText != nullptr ? compiled->m_requiredText : std::string();
        EXPECT_EQ(required, row.required) << row.expression;
        EXPECT_EQ(compiled->m_requiredLength, static_cast<int>(required.size())) << row.expression;
    }
}

TEST(ExpressionCompiler, SearchRefusesAForeignBlock)
{
    Compiled const compiled = Compile("a");
    EXPECT_FALSE(Vorlane::SearchExpression(nullptr, "a", 1));
    EXPECT_FALSE(Vorlane::SearchExpression(compiled.get(), nullptr, 0));
    *compiled->Code() = 0;
    EXPECT_FALSE(Vorlane::SearchExpression(compiled.get(), "a", 1));
}

} // namespace
