#ifndef VORLANE_TEXT_REGULAREXPRESSIONONEPASSINTERNAL_H
#define VORLANE_TEXT_REGULAREXPRESSIONONEPASSINTERNAL_H

/// \file
/// Match and groups in one pass, for expressions where the next byte alone decides which way to go, as it
/// does in most that describe short texts, such as ([A-Z][a-z]?)([0-9]+). (The condition and its use are
/// those of Cox, "Regular Expression Matching in the Wild", 2010.)

#include "vorlane/text/RegularExpressionProgramInternal.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vorlane {

/// An automaton whose state is one instruction, the only one where a match can go on, and the neighbour on
/// the left where some instruction asks for it. Its table has a row for each instruction and is filled as the
/// text asks for it. That two ways are open is found only when an entry is: the automaton then gives up, at
/// this text and for good.
class OnePassAutomaton
{
public:
    enum class Outcome : unsigned char
    {
        matches,
        fails,
        isTooLong, ///< more bytes would have to be read than a try may read
        gaveUp
    };

    explicit OnePassAutomaton(ExpressionProgram const& program);

    /// Whether it can still be used.
    bool IsUsable() const { return m_isUsable; }

    /// Looks for a match that begins at `from`, in the text that begins at `begin`. Only a match sets
    /// `matchEnd` and the bounds of its groups. `last` is where the search found that nothing can change.
    Outcome Try(char const* from, char const* begin, char const*& matchEnd, char const*& last,
                GroupBounds& bounds);

    /// Sets the bounds of the groups of the match [matchBegin, matchEnd), or gives false.
    bool FindGroups(char const* begin, char const* matchBegin, char const* matchEnd, GroupBounds& bounds);

private:
    struct Entry
    {
        /// The row of the next state and the bits below.
        std::uint32_t next;
        /// The bounds to be set to the position in front of the byte, unused ones filled up. Those of the way
        /// that takes the byte, or, where nothing does, those of the way to the end of the match.
        std::array<unsigned char, 4> bounds;
    };

    static constexpr std::uint32_t stopping = 0x80000000; ///< no way takes the byte, or none is known
    static constexpr std::uint32_t noted = 0x40000000;    ///< a match ends before the byte
    static constexpr std::uint32_t undecided = 0x20000000;
    static constexpr std::uint32_t unknown = 0xFFFFFFFF;
    static constexpr std::uint32_t rowMask = 0x1FFFFFFF;

    /// What stands behind one state and one class of bytes.
    struct Ways
    {
        InstructionIndex next = 0; ///< behind the byte; 0 for none
        bool isDecided = true;
        bool accepts = false;
        std::uint32_t takenBounds = 0; ///< bits, on the way to `next`
        std::uint32_t acceptBounds = 0;
    };

    template <bool withGroups>
    Outcome Walk(char const* from, char const* begin, char const*& matchEnd, char const*& last,
                 GroupBounds& bounds);
    std::uint32_t StartRow(char const* from, char const* begin) const;
    Entry const& Fill(std::uint32_t row, std::size_t byteClass);
    Ways Explore(std::uint32_t row, std::size_t byteClass);
    void SetBits(std::uint32_t bits, char const* at, GroupBounds& bounds) const;
    static void SetBounds(Entry const& entry, char const* at, GroupBounds& bounds)
    {
        for (unsigned char const bound : entry.bounds)
            bounds[bound] = at;
    }
    void ClearBounds(GroupBounds& bounds) const;

    struct Choice
    {
        InstructionIndex index;
        std::uint32_t bounds;
    };

    ExpressionProgram const& m_program;
    std::uint32_t m_contexts;   ///< rows for each instruction
    std::uint32_t m_classCount; ///< entries of a row
    bool m_isUsable;
    std::vector<Entry> m_entries;
    std::vector<Choice> m_pending;
    std::vector<bool> m_seen;
};

} // namespace Vorlane

#endif
