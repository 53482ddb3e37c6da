#include "fuzz/ExpressionChecks.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Seed.h"
#include "tests/text/TextTesting.h"
#include "vorlane/text/Pattern.h"

#include <chrono>

#include <pthread.h>

using namespace VorlaneFuzz;
using namespace VorlaneTest;
using Vorlane::RegExpression;
using Vorlane::SearchExpression;

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

constexpr long maximumSteps = 100000; // of the slow matcher

/// All texts of up to `length` pieces out of `pieces`, the empty one included.
Texts AllOf(Texts const& pieces, int length)
{
    Texts all{""};
    std::size_t shorter = 0;
    for (int i = 0; i < length; ++i) {
        std::size_t const end = all.size();
        for (; shorter < end; ++shorter)
            for (std::string const& piece : pieces)
                all.push_back(all[shorter] + piece);
    }
    return all;
}

} // namespace

TEST(ExpressionMatcher, AgreesWithTheSlowMatcherOnAllSmallCases)
{
    struct
    {
        Texts pieces;
        int expressionLength;
        Texts characters;
        int textLength;
    } const families[] = {
        {{"a", "b", "(", ")", "|", "*", "+", "?", ".", "^", "$", "\\<", "\\>", "[ab]", "[^a]", " "},
         4,
         {"a", "b", " "},
         4},
        {{"a", "b", "(", ")", "|", "*"}, 7, {"a", "b"}, 5},
        {{"(a", "(", ")", "|", "b", "+", "?", ")*"}, 6, {"a", "b"}, 6},
        {{"[", "]", "-", "^", "a", "c", "\\"}, 6, {"a", "b", "c", "-", "]", "^"}, 2},
    };
    long comparisons = 0;
    for (auto const& family : families) {
        Texts const texts = AllOf(family.characters, family.textLength);
        Texts const expressions = AllOf(family.pieces, family.expressionLength);
        for (std::size_t i = 0; i < expressions.size(); i += sanitizerFactor)
            ASSERT_NO_THROW(comparisons += CheckExpression(expressions[i], texts, maximumSteps))
                << expressions[i];
    }
    std::printf("[ all small cases: %ld ]\n", comparisons);
    EXPECT_GT(comparisons, 1000000 / sanitizerFactor);
}

// The scanners work on blocks; a match must be found wherever it lies in one, and nowhere behind the end.
TEST(ExpressionMatcher, FindsAMatchAtEveryOffset)
{
    for (Case const& row : ReadCases("text/expressions.txt", "offsets")) {
        Texts texts;
        for (std::size_t before = 0; before < 200; ++before) {
            std::string const filler(before, row.at("filler")[0]);
            std::string const text = filler + row.at("match");
            // A zero byte ends the text, though more of it is stored.
            texts.insert(texts.end(),
                         {text, filler + '\0' + row.at("match"), text.substr(0, text.size() - 1)});
        }
        EXPECT_NO_THROW(EXPECT_EQ(CheckExpression(row.at("expression"), texts, maximumSteps), 601))
            << row.at("where");
    }
}

// A long match is walked in one pass, or, where the next byte does not decide the way, in stretches; groups
// begin and end far from their borders, at them and next to them.
TEST(ExpressionMatcher, FindsTheGroupsOfLongMatches)
{
    for (char const* expression : {"(a*)(b*)((c|d)*)(a*)(e)", "(a*)(b*)((c|d)*)(a*)(e|ef)"}) {
        Compiled const compiled = Compile(expression);
        for (int shift = -2; shift <= 2; ++shift) {
            int const lengths[] = {4096 + shift, 8192, 3000, 20000 - shift, 1};
            std::string text;
            for (std::size_t part = 0; part != std::size(lengths); ++part)
                text.append(static_cast<std::size_t>(lengths[part]), "abdae"[part]);
            SCOPED_TRACE(expression);
            ASSERT_TRUE(SearchExpression(compiled.get(), text.c_str(), text.size()));
            char const* begin = text.c_str();
            for (std::size_t part = 0; part != std::size(lengths); ++part) {
                int const group = "12356"[part] - '0';
                EXPECT_EQ(compiled->m_groupStart[group], begin) << group;
                EXPECT_EQ(compiled->m_groupEnd[group], begin + lengths[part]) << group;
                begin += lengths[part];
            }
            EXPECT_EQ(compiled->m_groupEnd[4] - compiled->m_groupStart[4], 1);
        }
    }
}

// The states of this expression are as many as there are texts of fifteen letters, so the tables overflow.
TEST(ExpressionMatcher, StartsItsTablesAfreshWhenTheirMemoryIsFull)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    std::string text;
    for (int i = 0; i < 400000 / sanitizerFactor; ++i)
        text += "ab"[engine.Integer(0, 1)];
    Compiled const compiled =
        Compile("(a|b)*(a)(a|b)(a|b)(a|b)(a|b)(a|b)[ab][ab][ab][ab][ab][ab][ab][ab][ab]");
    ASSERT_TRUE(SearchExpression(compiled.get(), text.c_str(), text.size()));
    char const* const lastA = text.c_str() + text.rfind('a', text.size() - 15);
    EXPECT_EQ(compiled->m_groupEnd[0], lastA + 15);
    EXPECT_EQ(compiled->m_groupStart[2], lastA);
    EXPECT_EQ(compiled->m_groupEnd[1], lastA);
    // So are those of the walk backwards; nothing that is kept grows beyond a few MB.
    text[15] = 'a';
    Compiled const backward =
        Compile("([ab][ab][ab][ab][ab][ab][ab][ab][ab][ab][ab][ab][ab][ab][ab])a([ab]*c|[ab]*)");
    AllocationLimit const limit(std::size_t(8) << 20);
    ASSERT_TRUE(SearchExpression(backward.get(), text.c_str(), text.size()));
    EXPECT_EQ(backward->m_groupEnd[1], text.c_str() + 15);
    EXPECT_EQ(backward->m_groupEnd[2], text.c_str() + text.size());
}

TEST(ExpressionMatcher, TakesTimeLinearInTheText)
{
    for (Case const& row : ReadCases("text/expressions.txt", "linear")) {
        std::printf("[ %-18s on %s...%-2s", row.at("expression").c_str(), row.at("repeated").c_str(),
                    row.at("end").c_str());
        for (std::size_t length = 10000; length <= 10000000 / sanitizerFactor; length *= 10) {
            std::string const text = std::string(length, row.at("repeated")[0]) + row.at("end");
            Compiled const compiled = Compile(row.at("expression"));
            auto const before = std::chrono::steady_clock::now();
            EXPECT_EQ(SearchExpression(compiled.get(), text.c_str(), text.size()), row.at("matches") == "yes")
                << row.at("where");
            std::chrono::duration<double, std::micro> const time = std::chrono::steady_clock::now() - before;
            std::printf(" %8.0f us", time.count());
        }
        std::printf(" for 1e4, 1e5, ... ]\n");
    }
}

TEST(ExpressionMatcher, MatchesHugeTextsOnASmallStack)
{
    auto const match = [](void*) -> void* {
        int const length = 100000000 / sanitizerFactor / 3 * 3;
        CString text;
        char* const characters = text.GetBuffer(length);
        for (int i = 0; i < length; ++i)
            characters[i] = i % 3 == 1 ? 'a' : 'b';
        text.ReleaseBuffer(length);
        RegExpression expression("((a|b)*)(ab|b)", false);
        EXPECT_TRUE(expression.Match(text, true));
        EXPECT_EQ(expression.GetSubstring(1).GetLength(), length - 1); // the star leaves as little as it can
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 1 << 20), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, match, nullptr), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}
