#include "tests/support/AllocationFailure.h"
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

// The number of cases and the lengths of texts are divided by this, so that a run with sanitizers is quick.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VORLANE_WITH_SANITIZER
#endif
#endif
#if defined(VORLANE_WITH_SANITIZER) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int sanitizerFactor = 8;
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

/// A random expression of the dialect, mostly valid.
std::string RandomExpression(SeededEngine& engine, int depth)
{
    char const* const atoms[] = {"a",   "b", "c", ".",   "[ab]", "[^a]", "ab",
                                 "abc", "^", "$", "\\<", "\\>",  "\\.",  " "};
    char const* const quantifiers[] = {"", "", "", "*", "+", "?"};
    std::string expression;
    int const pieces = engine.Integer(1, 4);
    for (int i = 0; i < pieces; ++i) {
        if (depth > 0 && engine.Integer(0, 2) == 0)
            expression += "(" + RandomExpression(engine, depth - 1) + ")";
        else
            expression += atoms[engine.Integer(0, static_cast<int>(std::size(atoms)) - 1)];
        expression += quantifiers[engine.Integer(0, 5)];
        if (engine.Integer(0, 5) == 0)
            expression += "|";
    }
    return expression;
}

/// Random characters, sometimes in long runs and repetitions, so that ways fail late.
std::string RandomText(SeededEngine& engine, int length)
{
    std::string text;
    while (static_cast<int>(text.size()) < length) {
        std::string part;
        for (int i = engine.Integer(1, 4); i > 0; --i)
            part += "aaabbc ._"[engine.Integer(0, 8)];
        for (int i = engine.Integer(0, 2) == 0 ? engine.Integer(1, 40) : 1; i > 0; --i)
            text += part;
    }
    return text;
}

TEST(ExpressionMatcher, AgreesWithTheSlowMatcherOnRandomLargerCases)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    Comparison comparison;
    for (int i = 0; i < 20000 / sanitizerFactor && !HasFatalFailure(); ++i) {
        std::vector<std::string> texts;
        for (int length : {0, 7, 30, 90, 300})
            texts.push_back(RandomText(engine, length));
        comparison.Compare(RandomExpression(engine, 3), texts);
    }
    comparison.Print("random larger cases");
}

// The scanners work on blocks; a match must be found wherever it lies in one, and nowhere behind the end.
TEST(ExpressionMatcher, FindsAMatchAtEveryOffset)
{
    struct Row
    {
        char const* expression;
        char const* match;
        char filler;
    };
    Row const rows[] = {
        {"Z", "Z", 'e'},         {"Zwitterion", "Zwitterion", 'i'}, {"tea", "tea", 'e'},
        {"[0-9]+x", "0x", ' '},  {"[-+]?[0-9]\\.", "+7.", 'e'},     {"(teal|east|lost)", "east", 's'},
        {"\\<ab\\>", "ab", ' '}, {"abcabd", "abcabd", 'a'},         {"e*x$", "x", ' '},
        {"[^e]q", "\xFFq", 'e'},
    };
    for (Row const& row : rows) {
        Compiled const compiled = Compile(row.expression);
        ASSERT_NE(compiled, nullptr);
        for (std::size_t before = 0; before < 200; ++before) {
            std::string const text = std::string(before, row.filler) + row.match;
            SCOPED_TRACE(std::string(row.expression) + " behind " + std::to_string(before));
            ASSERT_TRUE(SearchExpression(compiled.get(), text.c_str(), text.size()));
            EXPECT_EQ(compiled->m_groupStart[0] - text.c_str(), static_cast<std::ptrdiff_t>(before));
            EXPECT_EQ(compiled->m_groupEnd[0], text.c_str() + text.size());
            // A zero byte ends the text, though more of it is stored.
            std::string cut = std::string(before, row.filler) + '\0' + row.match;
            EXPECT_FALSE(SearchExpression(compiled.get(), cut.c_str(), cut.size()));
            std::string const none(text, 0, text.size() - 1);
            EXPECT_FALSE(SearchExpression(compiled.get(), none.c_str(), none.size()));
        }
    }
}

// A long match is walked in stretches; groups begin and end far from their borders, at them and next to them.
TEST(ExpressionMatcher, FindsTheGroupsOfLongMatches)
{
    Compiled const compiled = Compile("(a*)(b*)((c|d)*)(a*)(e)");
    for (int shift = -2; shift <= 2; ++shift) {
        std::string text;
        std::vector<std::ptrdiff_t> ends;
        for (std::pair<int, char> const& part : {std::pair(4096 + shift, 'a'), std::pair(8192, 'b'),
                                                 std::pair(3000, 'd'), std::pair(20000 - shift, 'a')}) {
            text.append(static_cast<std::size_t>(part.first), part.second);
            ends.push_back(static_cast<std::ptrdiff_t>(text.size()));
        }
        text += 'e';
        ASSERT_TRUE(SearchExpression(compiled.get(), text.c_str(), text.size()));
        int const groups[] = {1, 2, 3, 5};
        for (std::size_t i = 0; i < ends.size(); ++i) {
            EXPECT_EQ(compiled->m_groupEnd[groups[i]] - text.c_str(), ends[i]) << "group " << groups[i];
            EXPECT_EQ(compiled->m_groupStart[groups[i]] - text.c_str(), i == 0 ? 0 : ends[i - 1]);
        }
        EXPECT_EQ(compiled->m_groupEnd[4] - compiled->m_groupStart[4], 1);
    }
}

// The states of this expression are as many as there are texts of fifteen letters, so the tables overflow.
TEST(ExpressionMatcher, StartsItsTablesAfreshWhenTheyAreFull)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    std::string text;
    for (int i = 0; i < 400000 / sanitizerFactor; ++i)
        text += "ab"[engine.Integer(0, 1)];
    Compiled const compiled =
        Compile("(a|b)*(a)(a|b)(a|b)(a|b)(a|b)(a|b)[ab][ab][ab][ab][ab][ab][ab][ab][ab]");
    ASSERT_TRUE(SearchExpression(compiled.get(), text.c_str(), text.size()));
    std::size_t const lastA = text.rfind('a', text.size() - 15);
    EXPECT_EQ(compiled->m_groupEnd[0] - text.c_str(), static_cast<std::ptrdiff_t>(lastA + 15));
    EXPECT_EQ(compiled->m_groupStart[2] - text.c_str(), static_cast<std::ptrdiff_t>(lastA));
    EXPECT_EQ(compiled->m_groupEnd[1], compiled->m_groupStart[2]);
    // So are those of the walk backwards; nothing that is kept grows beyond a few MB.
    text[15] = 'a';
    Compiled const backward =
        Compile("([ab][ab][ab][ab][ab][ab][ab][ab][ab][ab][ab][ab][ab][ab][ab])a([ab]*)");
    VorlaneTest::AllocationLimit const limit(std::size_t(8) << 20);
    ASSERT_TRUE(SearchExpression(backward.get(), text.c_str(), text.size()));
    EXPECT_EQ(backward->m_groupEnd[1] - text.c_str(), 15);
    EXPECT_EQ(backward->m_groupEnd[2], text.c_str() + text.size());
}

// Each of these sends plain backtracking through exponentially many ways, or deep into recursion.
TEST(ExpressionMatcher, TakesTimeLinearInTheText)
{
    struct Row
    {
        char const* expression;
        char repeated;
        char const* end;
        bool matches;
    };
    Row const rows[] = {
        {"(a+)+b", 'a', "", false},    {"(a+)+b", 'a', "b", true},
        {"(a+)+b", 'a', "cb", false},  {"(a|aa)+$", 'a', "", true},
        {"(a|aa)+$", 'a', "b", false}, {"(x+x+)+y", 'x', "zy", false},
        {"(x+x+)+y", 'x', "y", true},  {"a*a*a*a*c", 'a', "bc", true},
        {".*.*=.*", 'x', "", false},   {"aaaaaaaaaaaaaaaaab", 'a', "", false},
    };
    for (Row const& row : rows) {
        std::printf("[ %-18s on %c...%-2s ", row.expression, row.repeated, row.end);
        for (std::size_t length : {10000u, 100000u, 1000000u, 10000000u / sanitizerFactor}) {
            std::string const text = std::string(length, row.repeated) + row.end;
            Compiled const compiled = Compile(row.expression);
            auto const before = std::chrono::steady_clock::now();
            EXPECT_EQ(SearchExpression(compiled.get(), text.c_str(), text.size()), row.matches)
                << row.expression;
            std::chrono::duration<double, std::micro> const time = std::chrono::steady_clock::now() - before;
            std::printf("%10.0f us", time.count());
        }
        std::printf(" for 1e4, 1e5, 1e6, %.0e ]\n", 1e7 / sanitizerFactor);
    }
}

struct HugeText
{
    bool matches = false;
    int groupLength = 0;
};

void* MatchHugeText(void* result)
{
    int const length = 100000000 / sanitizerFactor / 3 * 3;
    CString text;
    char* const characters = text.GetBuffer(length);
    for (int i = 0; i < length; ++i)
        characters[i] = i % 3 == 1 ? 'a' : 'b';
    text.ReleaseBuffer(length);
    RegExpression expression("((a|b)*)(ab|b)", false);
    static_cast<HugeText*>(result)->matches = expression.Match(text, true);
    static_cast<HugeText*>(result)->groupLength = length - expression.GetSubstring(1).GetLength();
    return nullptr;
}

TEST(ExpressionMatcher, MatchesHugeTextsOnASmallStack)
{
    HugeText result;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 1 << 20), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, MatchHugeText, &result), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_TRUE(result.matches);
    EXPECT_EQ(result.groupLength, 1); // the star leaves as little as it can
}

TEST(ExpressionMatcher, WorksInDistinctObjectsOnDistinctThreads)
{
    RegExpression const original("(a|b)+c", false);
    std::vector<int> matches(4);
    std::vector<std::thread> threads;
    for (int& count : matches)
        threads.emplace_back([&original, &count] {
            RegExpression expression(original);
            for (int i = 0; i < 200; ++i)
                count += expression.Match(i % 2 == 0 ? "xxabac" : "abab", false);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(matches, std::vector<int>(4, 100));
}

} // namespace
