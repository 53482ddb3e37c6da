#ifndef VORLANE_TEXT_REGULAREXPRESSIONAUTOMATONINTERNAL_H
#define VORLANE_TEXT_REGULAREXPRESSIONAUTOMATONINTERNAL_H

/// \file
/// The two deterministic automata of a search. Both are built as the text asks for them, one table entry for
/// a state and a class of bytes, within a budget of memory; when it is used up they start afresh.

#include "vorlane/text/RegularExpressionProgramInternal.h"
#include "vorlane/text/RegularExpressionScannersInternal.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Vorlane {

/// States that are lists of instructions with one word of context, and the table of their transitions.
class StateTable
{
public:
    /// An entry of the table: the row of the next state, and two bits. An entry of `unknown` is yet to be
    /// found.
    using Entry = std::uint32_t;
    static constexpr Entry special = 0x80000000; ///< the next state, or the way to it, needs a closer look
    static constexpr Entry noted = 0x40000000;   ///< a match ends before the byte, or begins before it
    static constexpr Entry unknown = 0xFFFFFFFF;
    static constexpr Entry stopping = 0x20000000; ///< the next state is dead, or a scanner takes over
    static constexpr Entry rowMask = 0x1FFFFFFF;
    static constexpr Entry dead = 0; ///< the row of the state without instructions

    static constexpr signed char noScanner = -1;

    struct State
    {
        std::uint32_t firstItem = 0;
        std::uint32_t itemCount = 0;
        std::uint32_t hash = 0;
        Neighbour context = Neighbour::other;
        unsigned char begins = 0; ///< backwards: a bit for each Neighbour with which a match begins here
        signed char scanner = noScanner; ///< forwards: the number of the scanner for the loop of this state
    };

    explicit StateTable(std::size_t classCount);

    Entry const* Rows() const { return m_rows.data(); }
    Entry& At(Entry row, std::size_t byteClass) { return m_rows[row + byteClass]; }
    State& StateOf(Entry row) { return m_states[NumberOf(row)]; }
    std::size_t NumberOf(Entry row) const { return row >> m_rowShift; }
    std::size_t StateCount() const { return m_states.size(); }
    InstructionIndex const* ItemsOf(State const& state) const { return m_items.data() + state.firstItem; }

    /// The row of the state with these items and this context; `isNew` tells whether it was made now.
    Entry Find(std::vector<InstructionIndex> const& items, Neighbour context, bool& isNew);

    bool IsFull() const { return m_bytes > budget; }
    void Clear();

private:
    static constexpr std::size_t budget = std::size_t(4) << 20;

    void Grow();

    unsigned int m_rowShift = 0; ///< a row has a power of two of entries, no fewer than there are classes
    std::vector<Entry> m_rows;
    std::vector<State> m_states;
    std::vector<InstructionIndex> m_items;
    std::vector<std::uint32_t> m_index; ///< open addressing: numbers of states, 0 for none
    std::size_t m_bytes = 0;
};

/// Instructions seen in one step, forgotten at once by the next.
class SeenInstructions
{
public:
    explicit SeenInstructions(std::size_t count) : m_stamps(count) {}

    void Forget() { ++m_now; }

    /// Whether `index` is seen for the first time.
    bool Enter(InstructionIndex index)
    {
        if (m_stamps[index] == m_now)
            return false;
        m_stamps[index] = m_now;
        return true;
    }

    bool Has(InstructionIndex index) const { return m_stamps[index] == m_now; }

private:
    std::vector<std::uint64_t> m_stamps;
    std::uint64_t m_now = 1;
};

/// Finds where a match ends.
class ForwardAutomaton
{
public:
    explicit ForwardAutomaton(ExpressionProgram const& program);

    /// Where the match ends that is first in priority among those that begin at `from`, or, without
    /// `anchored`, the leftmost of all behind it; null for none. `last` is where the search found that
    /// nothing can change.
    char const* Run(char const* from, char const* begin, char const* end, bool anchored, char const*& last);

private:
    using Entry = StateTable::Entry;

    Entry StartRow(Neighbour left, bool anchored);
    Entry Step(Entry row, std::size_t byteClass);
    bool Follow(InstructionIndex from, std::size_t byteClass, Neighbour left, Neighbour right);
    void PrepareScanner(Entry row, Entry loop);

    ExpressionProgram const& m_program;
    StateTable m_table;
    bool m_wasCleared = false; ///< by the last Step
    std::array<Entry, 6> m_startRows;
    std::vector<IntervalScanner> m_scanners;
    std::vector<InstructionIndex> m_pending;
    std::vector<InstructionIndex> m_found;
    SeenInstructions m_seen;
    SeenInstructions m_isFound;
};

/// Finds where a match begins whose end is known, and which way the match went.
class BackwardAutomaton
{
public:
    explicit BackwardAutomaton(ExpressionProgram const& program);

    /// The leftmost position in [low, matchEnd] from which a match ends at `matchEnd`, or null. `last` is
    /// where the search found that no other begins further left, or `low`.
    char const* FindBegin(char const* begin, char const* low, char const* matchEnd, char const*& last);

    /// Sets the bounds of the groups of the match [matchBegin, matchEnd).
    void FindGroups(char const* begin, char const* matchBegin, char const* matchEnd, GroupBounds& bounds);

private:
    using Entry = StateTable::Entry;

    Entry StartRow(Neighbour right);
    void Clear();
    Entry AddState(Neighbour context);
    Entry Step(Entry row, unsigned char c);
    Entry StepTo(Entry row, unsigned char c)
    {
        Entry const entry = m_table.At(row, m_program.classOf[c]);
        return entry != StateTable::unknown ? entry : Step(row, c);
    }
    void MarkSources(StateTable::State const& state, Neighbour left);
    Neighbour LeftOf(char const* begin, char const* at) const;
    /// What a walk does at one position: the bounds that it passes there, and the instruction that stands
    /// behind the character.
    struct Way
    {
        std::array<unsigned char, 4> bounds{};
        std::uint32_t more = 0; ///< bounds beyond those four, as bits
        InstructionIndex next = 0;
        bool isKnown = false;
    };
    InstructionIndex Walk(Entry row, InstructionIndex from, char const* begin, char const* at,
                          GroupBounds& bounds);
    InstructionIndex WalkStretch(Entry row, InstructionIndex index, char const* begin, char const* low,
                                 char const* high, GroupBounds& bounds);
    InstructionIndex WalkInStretches(Entry row, char const* begin, char const* matchBegin,
                                     char const* matchEnd, GroupBounds& bounds);
    Way FindWay(Entry row, InstructionIndex from, Neighbour left);
    static Way MakeWay(std::uint32_t bounds, InstructionIndex next);

    struct Choice
    {
        InstructionIndex index;
        std::uint32_t bounds;
    };

    ExpressionProgram const& m_program;
    StateTable m_table;
    std::array<Entry, 3> m_startRows;
    bool m_mayClear = true;
    std::vector<std::uint32_t> m_firstSource;  ///< for each instruction, its first place in m_sources
    std::vector<InstructionIndex> m_sources;   ///< the instructions that lead to each instruction
    std::vector<InstructionIndex> m_consuming; ///< the consuming ones that MarkSources met
    std::vector<InstructionIndex> m_pending;
    std::vector<InstructionIndex> m_found;
    SeenInstructions m_seen;
    SeenInstructions m_isFound;
    std::vector<Entry> m_trail; ///< the states of a stretch of text, from left to right
    bool m_keepsWays;           ///< whether m_ways is in use: small programs that do not look left
    std::vector<Way> m_ways;    ///< for each state and each instruction
    std::vector<Choice> m_choices;
};

} // namespace Vorlane

#endif
