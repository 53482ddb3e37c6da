#ifndef VORLANE_TEXT_REGULAREXPRESSIONSEARCHINTERNAL_H
#define VORLANE_TEXT_REGULAREXPRESSIONSEARCHINTERNAL_H

/// \file
/// One expression's search: what is derived from its code, and the working state that is worth keeping from
/// one search to the next. Not to be used from two threads at once.

#include "vorlane/text/RegularExpressionAutomatonInternal.h"

namespace Vorlane {

class ExpressionSearch
{
public:
    explicit ExpressionSearch(CompiledExpression const& compiled);

    /// Fills the slots of the match, or gives false. Group bounds of an empty match stay unset.
    bool Run(CompiledExpression& compiled, char const* text, std::size_t length);

private:
    enum class Skip : unsigned char
    {
        none,
        literal,
        intervals,
        prefix
    };

    struct Span
    {
        char const* begin = nullptr;
        char const* end = nullptr;
    };

    void FindLiterals(CompiledExpression const& compiled);
    void ChooseSkip();
    char const* NextCandidate(char const* at, char const* end, bool& gaveUp) const;
    bool Find(char const* text, char const* end, bool anchored, Span& match);
    bool FindAnywhere(char const* text, char const* from, char const* end, Span& match);

    ExpressionProgram m_program;
    ForwardAutomaton m_forward;
    BackwardAutomaton m_backward;
    LiteralFinder m_prefix;   ///< the literal that each match begins with
    LiteralFinder m_required; ///< a literal in each match
    bool m_isLiteral = false; ///< the expression is m_prefix and no more
    bool m_begins[256] = {};  ///< the bytes that a match can begin with; all where it can be empty
    Skip m_skip = Skip::none;
    IntervalScanner m_intervals;
    PrefixFilter m_filter;
};

} // namespace Vorlane

#endif
