/// \file
/// Deterministic automata over ordered lists of instructions.
///
/// Forwards, a state is the list of instructions that stand behind the last character, the one that the
/// backtracking order would try first in front. A step follows each through forks and marks as far as the
/// next character, and drops what stands behind an instruction that accepts: a way of lower priority cannot
/// win any more. So the last accepting step gives the end of the match that backtracking would find, in one
/// pass. A step knows the characters on both sides of the position that it starts from, so the tests of
/// positions need no states of their own, and an accepting step notes the end in front of its character.
///
/// Backwards, a state is the set of the consuming instructions that took part in some way to the known end.
/// Its leftmost begin is that of the match. With those sets at hand a walk forwards makes each choice as
/// backtracking would, since a choice is good just if it leads to an instruction of the set: the groups cost
/// one more pass and never a step back. (Frisch and Cardelli, "Greedy Regular Expression Matching", 2004.
/// Tables that are filled while the text is read: Aho, Sethi, Ullman, "Compilers", 1986.) Tested by
/// tests/text/ExpressionMatcherTest.cpp.

#include "vorlane/text/RegularExpressionAutomatonInternal.h"

#include <algorithm>
#include <cmath>

namespace Vorlane {
namespace {

unsigned char Byte(char c)
{
    return static_cast<unsigned char>(c);
}

std::size_t Place(Neighbour neighbour)
{
    return static_cast<std::size_t>(neighbour);
}

/// So many bytes of a match are read in the loop that suits short ones.
constexpr int shortMatch = 24;

/// A match up to this length is walked at once; more is walked in stretches, so that the memory that a walk
/// needs stays small.
constexpr std::ptrdiff_t shortestStretch = 4096;

/// So many ways are kept; those of the states behind them are found anew each time.
constexpr std::size_t maximumWays = std::size_t(1) << 18;

constexpr Neighbour allNeighbours[] = {Neighbour::edge, Neighbour::word, Neighbour::other};

} // namespace

StateTable::StateTable(std::size_t classCount)
{
    while (std::size_t(1) << m_rowShift < classCount)
        ++m_rowShift;
    Clear();
}

void StateTable::Clear()
{
    m_rows.assign(std::size_t(1) << m_rowShift, dead);
    m_states.assign(1, State());
    m_items.clear();
    m_index.assign(16, 0);
    m_bytes = 0;
}

StateTable::Entry StateTable::Find(std::vector<InstructionIndex> const& items, Neighbour context, bool& isNew)
{
    std::uint32_t hash = static_cast<std::uint32_t>(context) + 1;
    for (InstructionIndex const item : items)
        hash = (hash ^ item) * 0x9E3779B1u ^ hash >> 15;
    std::size_t const mask = m_index.size() - 1;
    std::size_t slot = hash & mask;
    for (; m_index[slot] != 0; slot = (slot + 1) & mask) {
        State const& state = m_states[m_index[slot]];
        if (state.context == context && state.itemCount == items.size() && state.hash == hash &&
            std::equal(items.begin(), items.end(), ItemsOf(state))) {
            isNew = false;
            return m_index[slot] << m_rowShift;
        }
    }
    isNew = true;
    auto const number = static_cast<std::uint32_t>(m_states.size());
    State state;
    state.firstItem = static_cast<std::uint32_t>(m_items.size());
    state.itemCount = static_cast<std::uint32_t>(items.size());
    state.hash = hash;
    state.context = context;
    m_items.insert(m_items.end(), items.begin(), items.end());
    std::size_t const rowLength = std::size_t(1) << m_rowShift;
    m_rows.resize(m_rows.size() + rowLength, unknown);
    m_states.push_back(state);
    m_index[slot] = number;
    m_bytes += rowLength * sizeof(Entry) + items.size() * sizeof(InstructionIndex) + 2 * sizeof(State);
    if (m_states.size() * 2 > m_index.size())
        Grow();
    return number << m_rowShift;
}

void StateTable::Grow()
{
    m_index.assign(m_index.size() * 4, 0);
    std::size_t const mask = m_index.size() - 1;
    for (std::uint32_t number = 1; number < m_states.size(); ++number) {
        std::size_t slot = m_states[number].hash & mask;
        while (m_index[slot] != 0)
            slot = (slot + 1) & mask;
        m_index[slot] = number;
    }
}

ForwardAutomaton::ForwardAutomaton(ExpressionProgram const& program)
    : m_program(program), m_table(program.representatives.size()), m_seen(program.instructions.size()),
      m_isFound(program.instructions.size())
{
    m_startRows.fill(StateTable::dead);
}

ForwardAutomaton::Entry ForwardAutomaton::StartRow(Neighbour left, bool anchored)
{
    if (!m_program.looksLeft)
        left = Neighbour::other;
    Entry& row = m_startRows[2 * Place(left) + anchored];
    if (row == StateTable::dead) {
        bool isNew = false;
        m_found.assign(1, anchored ? m_program.start : ExpressionProgram::searchStart);
        row = m_table.Find(m_found, left, isNew);
    }
    return row;
}

/// Follows `from` to the next characters, in order of priority, and adds to the list found what stands behind
/// those that take a character of the class. True if it accepts, and nothing of lower priority counts.
bool ForwardAutomaton::Follow(InstructionIndex from, std::size_t byteClass, Neighbour left, Neighbour right)
{
    unsigned char const c = m_program.representatives[byteClass];
    m_pending.assign(1, from);
    while (!m_pending.empty()) {
        InstructionIndex const index = m_pending.back();
        m_pending.pop_back();
        if (!m_seen.Enter(index))
            continue;
        Instruction const& instruction = m_program.instructions[index];
        switch (instruction.kind) {
        case Instruction::character:
        case Instruction::set:
            if (m_program.Consumes(instruction, c) && m_isFound.Enter(instruction.next))
                m_found.push_back(instruction.next);
            break;
        case Instruction::fork:
            m_pending.push_back(instruction.other);
            m_pending.push_back(instruction.next);
            break;
        case Instruction::mark:
            m_pending.push_back(instruction.next);
            break;
        case Instruction::accept:
            return true;
        default:
            if (ExpressionProgram::Holds(instruction.kind, left, right))
                m_pending.push_back(instruction.next);
        }
    }
    return false;
}

/// Computes one entry, and keeps it unless the table had to be cleared for the state that it leads to.
ForwardAutomaton::Entry ForwardAutomaton::Step(Entry row, std::size_t byteClass)
{
    unsigned char const c = m_program.representatives[byteClass];
    Neighbour const right = m_program.NeighbourOf(c);
    StateTable::State const state = m_table.StateOf(row);
    m_found.clear();
    m_seen.Forget();
    m_isFound.Forget();
    bool accepts = false;
    for (std::size_t i = 0; i < state.itemCount && !accepts; ++i)
        accepts = Follow(m_table.ItemsOf(state)[i], byteClass, state.context, right);

    Entry entry = StateTable::dead | StateTable::special | StateTable::stopping;
    m_wasCleared = !m_found.empty() && m_table.IsFull();
    if (m_wasCleared) {
        m_table.Clear();
        m_startRows.fill(StateTable::dead);
        m_scanners.clear();
    }
    if (!m_found.empty()) {
        bool isNew = false;
        entry = m_table.Find(m_found, m_program.looksLeft ? right : Neighbour::other, isNew);
    }
    if (accepts)
        entry |= StateTable::noted | StateTable::special;
    if (!m_wasCleared)
        m_table.At(row, byteClass) = entry;
    return entry;
}

/// Where a state leads back to itself for most bytes, a scanner for the others takes over. `loop` is an entry
/// of `row` that leads back.
void ForwardAutomaton::PrepareScanner(Entry row, Entry loop)
{
    constexpr int worthwhileLoop = 8800; // of the 10,000 bytes of usual text
    constexpr std::size_t maximumScanners = 64;
    std::size_t const classCount = m_program.representatives.size();
    auto const leadsBack = [&](Entry entry) {
        return (entry | StateTable::special) == (loop | StateTable::special);
    };
    int looping = 0;
    for (unsigned int c = 0; c < 256; ++c)
        if (leadsBack(m_table.At(row, m_program.classOf[c])))
            looping += ByteFrequency(static_cast<unsigned char>(c));
    if (looping < worthwhileLoop || m_scanners.size() == maximumScanners)
        return;
    for (std::size_t i = 0; i < classCount; ++i) {
        if (m_table.IsFull())
            return;
        if (m_table.At(row, i) == StateTable::unknown)
            Step(row, i);
    }
    ByteSet others;
    for (unsigned int c = 0; c < 256; ++c)
        if (!leadsBack(m_table.At(row, m_program.classOf[c])))
            others.Add(static_cast<unsigned char>(c));
    IntervalScanner scanner;
    if (!scanner.Prepare(others))
        return;
    for (std::size_t i = 0; i < classCount; ++i)
        if (leadsBack(m_table.At(row, i)))
            m_table.At(row, i) |= StateTable::special | StateTable::stopping;
    m_table.StateOf(row).scanner = static_cast<signed char>(m_scanners.size());
    m_scanners.push_back(scanner);
}

char const* ForwardAutomaton::Run(char const* from, char const* begin, char const* end, bool anchored,
                                  char const*& last)
{
    Neighbour const left = from == begin ? Neighbour::edge : m_program.NeighbourOf(Byte(from[-1]));
    Entry row = StartRow(left, anchored);
    Entry const* rows = m_table.Rows();
    unsigned char const* const classOf = m_program.classOf.data();
    char const* matchEnd = nullptr;
    char const* at = from;
    // The column is added to the rows before the row is known, which takes a step off the chain of loads.
    auto const entryAt = [&] {
        return (rows + classOf[Byte(*at)])[row];
    };
    // Short matches first, with one branch a byte, which is seldom mistaken; a zero byte stops.
    if (anchored) {
        Entry entry = entryAt();
        for (int i = 0; i < shortMatch && (entry & StateTable::stopping) == 0; ++i) {
            matchEnd = (entry & StateTable::noted) != 0 ? at : matchEnd;
            row = entry & StateTable::rowMask;
            ++at;
            entry = entryAt();
        }
        if ((entry & (StateTable::stopping | StateTable::rowMask)) ==
            (StateTable::stopping | StateTable::dead)) {
            last = at;
            return (entry & StateTable::noted) != 0 ? at : matchEnd;
        }
    }
    for (;;) {
        Entry entry = entryAt();
        if ((entry & StateTable::special) == 0) {
            row = entry;
            ++at;
            continue;
        }
        if ((entry & StateTable::stopping) == 0) {
            matchEnd = at;
            row = entry & StateTable::rowMask;
            ++at;
            continue;
        }
        if (entry == StateTable::unknown) {
            entry = Step(row, classOf[Byte(*at)]);
            if (m_wasCleared)
                row = StateTable::dead;
            else if ((entry & StateTable::rowMask) == row)
                PrepareScanner(row, entry);
            rows = m_table.Rows();
        }
        if ((entry & StateTable::noted) != 0)
            matchEnd = at;
        Entry const next = entry & StateTable::rowMask;
        if (next == StateTable::dead)
            break;
        ++at;
        if (next == row) {
            signed char const scanner = m_table.StateOf(row).scanner;
            if (scanner != StateTable::noScanner) {
                at = m_scanners[static_cast<std::size_t>(scanner)].Find(at, end);
                if ((entry & StateTable::noted) != 0)
                    matchEnd = at - 1;
            }
        }
        row = next;
    }
    last = at;
    return matchEnd;
}

BackwardAutomaton::BackwardAutomaton(ExpressionProgram const& program)
    : m_program(program), m_table(program.representatives.size()), m_seen(program.instructions.size()),
      m_isFound(program.instructions.size()),
      m_keepsWays(!program.looksLeft && program.instructions.size() <= 128)
{
    m_startRows.fill(StateTable::dead);
    // The sources of each instruction, sorted by counting; the loop in front of the program is no way to it.
    std::size_t const count = program.instructions.size();
    auto const forEachLink = [&](auto const& link) {
        for (std::size_t i = 2; i < count; ++i) {
            Instruction const& instruction = program.instructions[i];
            if (instruction.kind != Instruction::accept)
                link(instruction.next, static_cast<InstructionIndex>(i));
            if (instruction.kind == Instruction::fork)
                link(instruction.other, static_cast<InstructionIndex>(i));
        }
    };
    m_firstSource.assign(count + 1, 0);
    forEachLink([&](InstructionIndex to, InstructionIndex) { ++m_firstSource[to + 1u]; });
    for (std::size_t i = 0; i < count; ++i)
        m_firstSource[i + 1] += m_firstSource[i];
    m_sources.resize(m_firstSource[count]);
    std::vector<std::uint32_t> free = m_firstSource;
    forEachLink([&](InstructionIndex to, InstructionIndex from) { m_sources[free[to]++] = from; });
}

Neighbour BackwardAutomaton::LeftOf(char const* begin, char const* at) const
{
    return !m_program.looksLeft ? Neighbour::other
           : at == begin        ? Neighbour::edge
                                : m_program.NeighbourOf(Byte(at[-1]));
}

/// Marks what leads to the items of a state without consuming, and lists the consuming instructions that lead
/// to what is marked.
void BackwardAutomaton::MarkSources(StateTable::State const& state, Neighbour left)
{
    m_seen.Forget();
    m_consuming.clear();
    InstructionIndex const* const items = m_table.ItemsOf(state);
    m_pending.assign(items, items + state.itemCount);
    for (InstructionIndex const item : m_pending)
        m_seen.Enter(item);
    while (!m_pending.empty()) {
        InstructionIndex const to = m_pending.back();
        m_pending.pop_back();
        for (std::uint32_t i = m_firstSource[to]; i < m_firstSource[to + 1u]; ++i) {
            InstructionIndex const from = m_sources[i];
            Instruction::Kind const kind = m_program.instructions[from].kind;
            if (kind == Instruction::character || kind == Instruction::set)
                m_consuming.push_back(from);
            else if (kind == Instruction::fork || kind == Instruction::mark ||
                     ExpressionProgram::Holds(kind, left, state.context))
                if (m_seen.Enter(from))
                    m_pending.push_back(from);
        }
    }
}

void BackwardAutomaton::Clear()
{
    m_table.Clear();
    m_startRows.fill(StateTable::dead);
    m_ways.clear();
}

/// The row of the state of the instructions found.
BackwardAutomaton::Entry BackwardAutomaton::AddState(Neighbour context)
{
    bool isNew = false;
    std::sort(m_found.begin(), m_found.end());
    Entry const row = m_table.Find(m_found, context, isNew);
    if (isNew) {
        for (Neighbour const left : allNeighbours) {
            MarkSources(m_table.StateOf(row), left);
            if (m_seen.Has(m_program.start))
                m_table.StateOf(row).begins |= static_cast<unsigned char>(1u << Place(left));
        }
    }
    return row;
}

BackwardAutomaton::Entry BackwardAutomaton::StartRow(Neighbour right)
{
    if (!m_program.looksRight)
        right = Neighbour::other;
    Entry& row = m_startRows[Place(right)];
    if (row == StateTable::dead) {
        auto const accept = static_cast<InstructionIndex>(m_program.instructions.size() - 1);
        m_found.assign(1, accept);
        row = AddState(right);
    }
    return row;
}

BackwardAutomaton::Entry BackwardAutomaton::Step(Entry row, unsigned char c)
{
    Neighbour const neighbour = m_program.NeighbourOf(c);
    MarkSources(m_table.StateOf(row), neighbour);
    m_isFound.Forget();
    m_found.clear();
    for (InstructionIndex const index : m_consuming)
        if (m_program.Consumes(m_program.instructions[index], c) && m_isFound.Enter(index))
            m_found.push_back(index);
    bool const clears = m_mayClear && m_table.IsFull();
    if (clears)
        Clear();
    Entry entry = StateTable::dead;
    if (!m_found.empty()) {
        entry = AddState(m_program.looksRight ? neighbour : Neighbour::other);
        if (m_table.StateOf(entry).begins != 0)
            entry |= StateTable::noted;
    }
    if (!clears)
        m_table.At(row, m_program.classOf[c]) = entry;
    return entry;
}

char const* BackwardAutomaton::FindBegin(char const* begin, char const* low, char const* matchEnd,
                                         char const*& last)
{
    Entry row = StartRow(m_program.NeighbourOf(Byte(*matchEnd)));
    bool notes = m_table.StateOf(row).begins != 0;
    char const* matchBegin = nullptr;
    for (char const* at = matchEnd;; --at) {
        if (notes &&
            (!m_program.looksLeft || (m_table.StateOf(row).begins >> Place(LeftOf(begin, at)) & 1) != 0))
            matchBegin = at;
        last = at;
        if (at == low)
            break;
        Entry const entry = StepTo(row, Byte(at[-1]));
        row = entry & StateTable::rowMask;
        if (row == StateTable::dead)
            break;
        notes = (entry & StateTable::noted) != 0;
    }
    return matchBegin;
}

BackwardAutomaton::Way BackwardAutomaton::MakeWay(std::uint32_t bounds, InstructionIndex next)
{
    Way way;
    way.next = next;
    way.isKnown = true;
    way.bounds.fill(unusedGroupBound);
    for (unsigned char& bound : way.bounds) {
        if (bounds == 0)
            break;
        bound = static_cast<unsigned char>(__builtin_ctz(bounds));
        bounds &= bounds - 1;
    }
    way.more = bounds;
    return way;
}

/// The first choice in order of priority that leads to an instruction of the state.
BackwardAutomaton::Way BackwardAutomaton::FindWay(Entry row, InstructionIndex from, Neighbour left)
{
    StateTable::State const& state = m_table.StateOf(row);
    InstructionIndex const* const items = m_table.ItemsOf(state);
    m_seen.Forget();
    m_choices.assign(1, {from, 0});
    while (!m_choices.empty()) {
        Choice const choice = m_choices.back();
        m_choices.pop_back();
        if (!m_seen.Enter(choice.index))
            continue;
        Instruction const& instruction = m_program.instructions[choice.index];
        switch (instruction.kind) {
        case Instruction::character:
        case Instruction::set:
        case Instruction::accept:
            if (std::binary_search(items, items + state.itemCount, choice.index))
                return MakeWay(choice.bounds, instruction.next);
            break;
        case Instruction::fork:
            m_choices.push_back({instruction.other, choice.bounds});
            m_choices.push_back({instruction.next, choice.bounds});
            break;
        case Instruction::mark:
            m_choices.push_back({instruction.next, choice.bounds | 1u << instruction.operand});
            break;
        default:
            if (ExpressionProgram::Holds(instruction.kind, left, state.context))
                m_choices.push_back({instruction.next, choice.bounds});
        }
    }
    return {};
}

/// One step of the walk, at a position whose state is known.
InstructionIndex BackwardAutomaton::Walk(Entry row, InstructionIndex from, char const* begin, char const* at,
                                         GroupBounds& bounds)
{
    Way way;
    std::size_t const place = m_table.NumberOf(row) * m_program.instructions.size() + from;
    if (m_keepsWays && place < maximumWays) {
        if (place >= m_ways.size())
            m_ways.resize(std::min(m_table.StateCount() * m_program.instructions.size(), maximumWays));
        if (!m_ways[place].isKnown)
            m_ways[place] = FindWay(row, from, Neighbour::other);
        way = m_ways[place];
    } else {
        way = FindWay(row, from, LeftOf(begin, at));
    }
    // Without a branch: bounds that a way does not use are written to a place that nobody reads.
    for (unsigned char const bound : way.bounds)
        bounds[bound] = at;
    for (std::uint32_t more = way.more; more != 0; more &= more - 1)
        bounds[static_cast<std::size_t>(__builtin_ctz(more))] = at;
    return way.next;
}

/// Notes the states at [low, high), given that at `high`, and walks over them from `index`; gives where the
/// walk stands at `high`.
InstructionIndex BackwardAutomaton::WalkStretch(Entry row, InstructionIndex index, char const* begin,
                                                char const* low, char const* high, GroupBounds& bounds)
{
    auto const length = static_cast<std::size_t>(high - low);
    if (m_trail.size() < length)
        m_trail.resize(length);
    m_mayClear = false; // the rows of the trail stay valid
    for (std::size_t i = length; i-- > 0;) {
        row = StepTo(row, Byte(low[i])) & StateTable::rowMask;
        m_trail[i] = row;
    }
    m_mayClear = true;
    for (std::size_t i = 0; i < length; ++i)
        index = Walk(m_trail[i], index, begin, low + i, bounds);
    return index;
}

/// A long match is walked in stretches. Their borders are visited once from right to left, where the items of
/// each border's state are kept, and then the stretches are walked from left to right.
InstructionIndex BackwardAutomaton::WalkInStretches(Entry row, char const* begin, char const* matchBegin,
                                                    char const* matchEnd, GroupBounds& bounds)
{
    std::ptrdiff_t const length = matchEnd - matchBegin;
    auto const root = static_cast<std::ptrdiff_t>(std::sqrt(static_cast<double>(length)));
    std::ptrdiff_t const stretch = std::max(shortestStretch, root);
    struct Border
    {
        std::vector<InstructionIndex> items;
        Neighbour context;
    };
    std::vector<Border> borders(static_cast<std::size_t>((length - 1) / stretch));
    for (std::ptrdiff_t at = length; at > stretch;) {
        row = StepTo(row, Byte(matchBegin[--at])) & StateTable::rowMask;
        if (at % stretch == 0) {
            StateTable::State const& state = m_table.StateOf(row);
            InstructionIndex const* const items = m_table.ItemsOf(state);
            borders[static_cast<std::size_t>(at / stretch - 1)] = {{items, items + state.itemCount},
                                                                   state.context};
        }
    }
    InstructionIndex index = m_program.start;
    char const* low = matchBegin;
    for (Border const& border : borders) {
        if (m_table.IsFull())
            Clear();
        m_found = border.items;
        index = WalkStretch(AddState(border.context), index, begin, low, low + stretch, bounds);
        low += stretch;
    }
    if (m_table.IsFull())
        Clear();
    return WalkStretch(StartRow(m_program.NeighbourOf(Byte(*matchEnd))), index, begin, low, matchEnd, bounds);
}

void BackwardAutomaton::FindGroups(char const* begin, char const* matchBegin, char const* matchEnd,
                                   GroupBounds& bounds)
{
    std::fill_n(bounds.begin(), 2 * m_program.groupCount, nullptr);
    Neighbour const right = m_program.NeighbourOf(Byte(*matchEnd));
    Entry const row = StartRow(right);
    InstructionIndex const index =
        matchEnd - matchBegin <= shortestStretch
            ? WalkStretch(row, m_program.start, begin, matchBegin, matchEnd, bounds)
            : WalkInStretches(row, begin, matchBegin, matchEnd, bounds);
    Walk(StartRow(right), index, begin, matchEnd, bounds);
}

} // namespace Vorlane
