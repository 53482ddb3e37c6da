#ifndef VORLANE_TEXT_REGULAREXPRESSIONSEARCHINTERNAL_H
#define VORLANE_TEXT_REGULAREXPRESSIONSEARCHINTERNAL_H

/// \file
/// One expression's search: what is derived from its code, and the working state that is worth keeping from
/// one search to the next. Not to be used from two threads at once.

#include "vorlane/text/RegularExpressionAutomatonInternal.h"
#include "vorlane/text/RegularExpressionOnePassInternal.h"
#include "vorlane/text/RegularExpressionScannersInternal.h"

#include <memory>
#include <optional>

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
        undecided,
        none,
        literal,
        intervals,
        prefix
    };

    struct FoundMatch
    {
        char const* begin = nullptr;
        char const* end = nullptr; ///< null for no match
        bool hasGroups = false;    ///< whether their bounds are known
        GroupBounds groups;
    };

    void PrepareForLongTexts(CompiledExpression const& compiled);
    void FindLiterals(CompiledExpression const& compiled);
    char const* NextCandidate(char const* at, char const* end, bool& gaveUp) const;
    bool Find(char const* text, char const* end, bool anchored, FoundMatch& match);
    bool FindAnywhere(char const* text, char const* from, char const* end, FoundMatch& match);
    void Try(char const* from, char const* text, char const* end, FoundMatch& match, char const*& last);
    void FindGroups(char const* text, FoundMatch& match);
    bool EndsInVain(char const* text, char const* end);
    ForwardAutomaton& Forward();
    BackwardAutomaton& Backward();

    ExpressionProgram m_program;
    ByteSet m_begins; ///< the bytes that a match can begin with; all where it can be empty
    bool m_mayBeEmpty = false;
    bool m_endsText = false;  ///< each match ends with the text
    unsigned int m_tries = 0; ///< by the one-pass automaton
    // The automata are made by the first search that needs them.
    std::optional<OnePassAutomaton> m_onePass;
    std::unique_ptr<ForwardAutomaton> m_forward;
    std::unique_ptr<BackwardAutomaton> m_backward;

    // Prepared by the first search of a long text.
    Skip m_skip = Skip::undecided;
    bool m_isLiteral = false; ///< the expression is m_prefix and no more
    LiteralFinder m_prefix;   ///< the literal that each match begins with
    LiteralFinder m_required; ///< another literal in each match
    IntervalScanner m_intervals;
    PrefixFilter m_filter;
};

} // namespace Vorlane

#endif
