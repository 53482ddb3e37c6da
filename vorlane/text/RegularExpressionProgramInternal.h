#ifndef VORLANE_TEXT_REGULAREXPRESSIONPROGRAMINTERNAL_H
#define VORLANE_TEXT_REGULAREXPRESSIONPROGRAMINTERNAL_H

/// \file
/// The nodes of a compiled expression as instructions of a nondeterministic automaton in the manner of
/// Thompson ("Regular expression search algorithm", 1968), with the order of the choices kept as their
/// priority (Pike; described by Cox, "Regular Expression Matching: the Virtual Machine Approach", 2009).

#include "vorlane/text/RegularExpressionInternal.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Vorlane {

/// A set of bytes.
class ByteSet
{
public:
    bool Has(unsigned char c) const { return m_words[c >> 6] >> (c & 63) & 1; }
    void Add(unsigned char c) { m_words[c >> 6] |= std::uint64_t(1) << (c & 63); }
    void Remove(unsigned char c) { m_words[c >> 6] &= ~(std::uint64_t(1) << (c & 63)); }
    void AddAll(ByteSet const& other);
    void Invert();

    /// The bytes, but for 0, that are members where their predecessor is not, or the other way round.
    ByteSet Borders() const;

    std::array<std::uint64_t, 4> const& Words() const { return m_words; }

private:
    std::array<std::uint64_t, 4> m_words{};
};

/// How often a byte stands in English and technical text, in parts of ten thousand; an estimate that only
/// chooses between ways of searching.
int ByteFrequency(unsigned char c);

/// What stands beside a position of the text.
enum class Neighbour : unsigned char
{
    edge,
    word,
    other
};

using InstructionIndex = std::uint16_t;

struct Instruction
{
    enum Kind : unsigned char
    {
        character, ///< one character, `operand`
        set,       ///< one character of set `other`
        fork,      ///< `next`, or else `other`
        mark,      ///< notes the position as bound `operand` of GroupBounds
        beginText,
        endText,
        wordStart,
        wordEnd,
        accept
    };

    Kind kind;
    unsigned char operand;
    InstructionIndex next;
    InstructionIndex other;
};

/// Where the groups begin and end: bound 2 (n - 1) is the start of group n, + 1 its end; null where unset.
/// One place more takes what nobody reads.
constexpr std::size_t unusedGroupBound = 2 * (groupSlots - 1);
using GroupBounds = std::array<char const*, unusedGroupBound + 1>;

/// The instructions, and the bytes sorted into classes that no instruction tells apart.
struct ExpressionProgram
{
    /// Indexes of the two instructions in front of all others, a loop over any character: starting at
    /// `searchStart` finds the expression anywhere.
    static constexpr InstructionIndex searchStart = 0;
    static constexpr InstructionIndex searchAny = 1;

    explicit ExpressionProgram(CompiledExpression const& compiled);

    bool Consumes(Instruction const& instruction, unsigned char c) const
    {
        return instruction.kind == Instruction::character ? instruction.operand == c
                                                          : sets[instruction.other].Has(c);
    }

    /// Whether an instruction of the four kinds that test a position holds there.
    static bool Holds(Instruction::Kind kind, Neighbour left, Neighbour right);

    Neighbour NeighbourOf(unsigned char c) const
    {
        return c == 0 ? Neighbour::edge : IsWordCharacter(c) ? Neighbour::word : Neighbour::other;
    }

    std::vector<Instruction> instructions;
    std::vector<ByteSet> sets;
    InstructionIndex start = 0;
    int groupCount = 0;
    bool looksLeft = false;  ///< some instruction tests what stands before a position
    bool looksRight = false; ///< or behind it

    /// The class of each byte. Class 0 is the zero byte, the end of the text, alone.
    std::array<unsigned char, 256> classOf{};
    std::vector<unsigned char> representatives; ///< the first byte of each class

private:
    void Emit(CompiledExpression const& compiled);
    void EmitNode(unsigned char const* code, int node, InstructionIndex next);
    InstructionIndex AddSet(ByteSet const& members);
    Instruction Single(unsigned char const* code, int node, InstructionIndex next);
    void SortIntoClasses();
};

} // namespace Vorlane

#endif
