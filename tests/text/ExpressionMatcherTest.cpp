#include "tests/support/Seed.h"
#include "tests/text/SlowExpression.h"
#include "vorlane/text/Pattern.h"
#include "vorlane/text/RegularExpressionInternal.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <pthread.h>

using Vorlane::CompiledExpression;
using Vorlane::CompileExpression;
using Vorlane::RegExpression;
using Vorlane::SearchExpression;
using VorlaneTest::SeededEngine;
using VorlaneTest::SlowExpression;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr int sanitizerFactor = 8; // the work of the comparisons and the lengths are divided by it
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr int sanitizerFactor = 8;
#else
constexpr int sanitizerFactor = 1;
#endif
#else
constexpr int sanitizerFactor = 1;
#endif

using Compiled = std::unique_ptr<CompiledExpression, void (*)(CompiledExpression*)>;

Compiled Compile(std::string const& expression)
{
    return Compiled(CompileExpression(expression.c_str()),
                    [](CompiledExpression* compiled) { Vorlane::ReleaseExpression(compiled); });
}

/// All texts of up to `length` pieces out of `pieces`, the empty one included.
std::vector<std::string> AllOf(std::vector<std::string> const& pieces, int length)
{
    std::vector<std::string> all{""};
    std::size_t shorter = 0;
    for (int i = 0; i < length; ++i) {
        std::size_t const end = all.size();
        for (; shorter < end; ++shorter)
            for (std::string const& piece : pieces)
                all.push_back(all[shorter] + piece);
    }
    return all;
}

/// Compares the engine with the slow matcher; counts what was compared.
class Comparison
{
public:
    void Compare(std::string const& expression, std::vector<std::string> const& texts)
    {
        SlowExpression slow(expression);
        Compiled const compiled = Compile(expression);
        ++m_cases;
        ASSERT_EQ(compiled != nullptr, slow.IsValid()) << "'" << expression << "'";
        if (compiled == nullptr)
            return;
        for (std::string const& text : texts) {
            SlowExpression::Spans expected;
            SlowExpression::Result const result = slow.Search(text, expected);
            if (result == SlowExpression::tooSlow) {
                ++m_leftOut;
                continue;
            }
            ++m_cases;
            bool const matches = SearchExpression(compiled.get(), text.c_str(), text.size());
            ASSERT_EQ(matches, result == SlowExpression::matches)
                << "'" << expression << "' on '" << text << "'";
            // The groups of an empty match are of no use to anybody, and not looked for.
            std::size_t const slots = !matches ? 0 : expected[0].first == expected[0].second ? 1 : 10;
            for (std::size_t i = 0; i < slots; ++i) {
                auto const at = [&](char const* bound) {
                    return bound != nullptr ? static_cast<int>(bound - text.c_str()) : -1;
                };
                std::pair<int, int> const found{at(compiled->m_groupStart[i]), at(compiled->m_groupEnd[i])};
                ASSERT_EQ(found, expected[i]) << "'" << expression << "' on '" << text << "', group " << i;
            }
        }
    }

    void Print(char const* what) const
    {
        std::printf("[ %s: %ld cases, %ld left out as too slow for the slow matcher ]\n", what, m_cases,
                    m_leftOut);
    }

    long Cases() const { return m_cases; }

private:
    long m_cases = 0;
    long m_leftOut = 0;
};

TEST(ExpressionMatcher, AgreesWithTheSlowMatcherOnAllSmallCases)
{
    struct Family
    {
        std::vector<std::string> pieces;
        int expressionLength;
        std::vector<std::string> characters;
        int textLength;
    };
    Family const families[] = {
        {{"a", "b", "(", ")", "|", "*", "+", "?", ".", "^", "$", "\\<", "\\>", "[ab]", "[^a]", " "},
         4,
         {"a", "b", " "},
         4},
        {{"a", "b", "(", ")", "|", "*"}, 7, {"a", "b"}, 5},
        {{"(a", "(", ")", "|", "b", "+", "?", ")*"}, 6, {"a", "b"}, 6},
        {{"[", "]", "-", "^", "a", "c", "\\"}, 6, {"a", "b", "c", "-", "]", "^"}, 2},
    };
    Comparison comparison;
    for (Family const& family : families) {
        std::vector<std::string> const texts = AllOf(family.characters, family.textLength);
        std::vector<std::string> const expressions = AllOf(family.pieces, family.expressionLength);
        for (std::size_t i = 0; i < expressions.size(); i += sanitizerFactor) {
            comparison.Compare(expressions[i], texts);
            if (HasFatalFailure())
                return;
        }
    }
    comparison.Print("all small cases");
    EXPECT_GT(comparison.Cases(), 1000000 / sanitizerFactor);
}

} // namespace
