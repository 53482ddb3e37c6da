#ifndef VORLANE_TEXT_REGULAREXPRESSIONINTERNAL_H
#define VORLANE_TEXT_REGULAREXPRESSIONINTERNAL_H

/// \file
/// The compiled form of a regular expression, and the three calls that RegExpression makes: compile, search,
/// release. The dialect is described in docs/expressions.md.
///
/// The code is a sequence of nodes behind one check byte. A node is an opcode byte, two bytes of offset to
/// the node that follows it in sequence (high byte first, 0 for none, counted from the node's own start,
/// backwards for OpBack and forwards for all others), and an operand:
///
///     OpAnyOf, OpAnyBut, OpExactly    a zero-terminated string
///     OpBranch, OpStar, OpPlus        the node that stands behind the header
///     all others                      none
///
/// Example: "ab*|c" is 9C, Branch(+16) Exactly "a" (+5) Star(+16) Exactly "b" (0), Branch(+8) Exactly "c"
/// (+5), End(0).

#include <cstddef>
#include <cstdint>

namespace Vorlane {

enum Opcode : unsigned char
{
    OpEnd = 0,       ///< the match is complete
    OpBeginText = 1, ///< at the start of the text
    OpEndText = 2,   ///< at the end of the text
    OpAny = 3,       ///< any one character
    OpAnyOf = 4,     ///< one character of the operand
    OpAnyBut = 5,    ///< one character that is not in the operand
    OpBranch = 6,    ///< the operand, or the next OpBranch of the chain
    OpBack = 7,      ///< goes backwards
    OpExactly = 8,   ///< the operand literally
    OpNothing = 9,   ///< the empty text
    OpStar = 10,     ///< the one-character operand, as often as possible, also no time
    OpPlus = 11,     ///< the one-character operand, as often as possible, at least once
    OpWordStart = 12,
    OpWordEnd = 13,
    OpOpen = 20, ///< OpOpen + n: start of group n, from 1 to 9
    OpClose = 30 ///< OpClose + n: end of group n
};

inline constexpr unsigned char compiledCheckValue = 0x9C;
inline constexpr int maximumCodeLength = 32766; ///< a longer code does not compile
inline constexpr int nodeHeaderLength = 3;
inline constexpr int groupSlots = 10; ///< slot 0 is the whole match

class ExpressionSearch;

/// One heap block: these fields, and behind them the code.
struct CompiledExpression
{
    char const* m_groupStart[groupSlots]; ///< into the text of the last search; null when unset
    char const* m_groupEnd[groupSlots];   ///< one past the last character
    char m_firstCharacter;                ///< a match can only begin with it; 0 when unknown
    bool m_anchored;                      ///< a match can only begin at the start of the text
    char const* m_requiredText;           ///< into the code: a literal in each match; null when none
    int m_requiredLength;
    int m_codeLength;           ///< check value and nodes, in bytes
    ExpressionSearch* m_search; ///< what the search derives from the code, built by the first one; owned

    unsigned char* Code() { return reinterpret_cast<unsigned char*>(this + 1); }
    unsigned char const* Code() const { return reinterpret_cast<unsigned char const*>(this + 1); }
};

/// The compiled form of a zero-terminated expression, or null where it is not valid. Throws std::bad_alloc.
CompiledExpression* CompileExpression(char const* expression);

/// Gives a compiled form back; null does nothing.
void ReleaseExpression(CompiledExpression* compiled) noexcept;

/// Finds the leftmost match, in order of priority, in `text`, which ends at its first zero byte;
/// `text[length]` is zero. True fills the slots, false leaves them unset. Takes time linear in the length of
/// the text, and memory that depends on the expression, with at most a square root of the text's length
/// beside it. False also for a null compiled form or text, or a wrong check value. Throws std::bad_alloc.
bool SearchExpression(CompiledExpression* compiled, char const* text, std::size_t length);

/// The offset of the node that follows `node` in sequence, or 0 for none.
inline int NextNode(unsigned char const* code, int node)
{
    int const offset = code[node + 1] << 8 | code[node + 2];
    if (offset == 0)
        return 0;
    return code[node] == OpBack ? node - offset : node + offset;
}

/// Letters, digits and '_', in ASCII.
constexpr bool IsWordCharacter(unsigned char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

} // namespace Vorlane

#endif
