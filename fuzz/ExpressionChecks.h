#ifndef VORLANE_FUZZ_EXPRESSIONCHECKS_H
#define VORLANE_FUZZ_EXPRESSIONCHECKS_H

/// \file
/// The engine of expressions beside the slow matcher of the tests.

#include "fuzz/Require.h"
#include "fuzz/SlowExpression.h"
#include "vorlane/text/RegularExpressionInternal.h"

#include <memory>
#include <string>
#include <vector>

namespace VorlaneFuzz {

using Compiled = std::unique_ptr<Vorlane::CompiledExpression, void (*)(Vorlane::CompiledExpression*)>;

inline Compiled Compile(std::string const& expression)
{
    return Compiled(Vorlane::CompileExpression(expression.c_str()),
                    [](Vorlane::CompiledExpression* compiled) { Vorlane::ReleaseExpression(compiled); });
}

/// Whether it compiles, and for each text whether it matches, and the bounds of the match and of every group.
/// The groups of an empty match are of no use to anybody, and not looked for. Gives the number of
/// comparisons: texts that are too slow for the slow matcher are left out.
inline long CheckExpression(std::string const& expression, std::vector<std::string> const& texts,
                            long maximumSteps)
{
    SlowExpression slow(expression);
    Compiled const compiled = Compile(expression);
    Require((compiled != nullptr) == slow.IsValid());
    long comparisons = 1;
    for (std::size_t t = 0; compiled != nullptr && t < texts.size(); ++t) {
        char const* const text = texts[t].c_str();
        SlowExpression::Spans expected;
        SlowExpression::Result const result = slow.Search(text, expected, maximumSteps);
        bool const matches = Vorlane::SearchExpression(compiled.get(), text, texts[t].size());
        if (result == SlowExpression::tooSlow) {
            continue;
        }
        ++comparisons;
        Require(matches == (result == SlowExpression::matches));
        std::size_t const slots = !matches ? 0 : expected[0].first == expected[0].second ? 1 : 10;
        for (std::size_t i = 0; i < slots; ++i) {
            auto const isAt = [text](char const* bound, int place) {
                return bound == (place < 0 ? nullptr : text + place);
            };
            Require(isAt(compiled->m_groupStart[i], expected[i].first) &&
                    isAt(compiled->m_groupEnd[i], expected[i].second));
        }
    }
    return comparisons;
}

} // namespace VorlaneFuzz

#endif
