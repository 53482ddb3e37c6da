/// \file
/// Most of a table is never asked for, so a row is found by its instruction and no state is looked up. A
/// match that ends while its last byte leads on needs no second look; where a longer one came to nothing, the
/// way to the end that counts is walked once more, for the bounds that the vain part has overwritten.
/// Tested by tests/text/ExpressionMatcherTest.cpp.

#include "vorlane/text/RegularExpressionOnePassInternal.h"

#include <algorithm>

namespace Vorlane {
namespace {

/// A larger table is not worth its memory.
constexpr std::size_t maximumEntries = std::size_t(1) << 14;

/// A try that reads more bytes is left to the forward automaton, which has a quicker loop for long runs.
constexpr std::ptrdiff_t longestTry = 128;
constexpr std::ptrdiff_t longestTryWithoutGroups = 24;

unsigned char Byte(char c)
{
    return static_cast<unsigned char>(c);
}

} // namespace

OnePassAutomaton::OnePassAutomaton(ExpressionProgram const& program)
    : m_program(program), m_contexts(program.looksLeft ? 3 : 1),
      m_classCount(static_cast<std::uint32_t>(program.representatives.size()))
{
    std::size_t const rows = program.instructions.size() * m_contexts;
    m_isUsable = rows * m_classCount <= maximumEntries;
    if (m_isUsable) {
        m_entries.resize(rows * m_classCount, Entry{unknown, {}});
        m_seen.resize(program.instructions.size());
    }
}

std::uint32_t OnePassAutomaton::StartRow(char const* from, char const* begin) const
{
    Neighbour const left = !m_program.looksLeft ? Neighbour::edge
                           : from == begin      ? Neighbour::edge
                                                : m_program.NeighbourOf(Byte(from[-1]));
    return (m_program.start * m_contexts + static_cast<std::uint32_t>(left)) * m_classCount;
}

/// Follows the instruction of a row, in order of priority, to those that take a byte of the class.
OnePassAutomaton::Ways OnePassAutomaton::Explore(std::uint32_t row, std::size_t byteClass)
{
    unsigned char const c = m_program.representatives[byteClass];
    std::uint32_t const place = row / m_classCount;
    auto const left = static_cast<Neighbour>(place % m_contexts);
    Ways ways;
    std::fill(m_seen.begin(), m_seen.end(), false);
    m_pending.assign(1, {static_cast<InstructionIndex>(place / m_contexts), 0});
    while (!m_pending.empty()) {
        Choice const choice = m_pending.back();
        m_pending.pop_back();
        if (m_seen[choice.index])
            continue;
        m_seen[choice.index] = true;
        Instruction const& instruction = m_program.instructions[choice.index];
        switch (instruction.kind) {
        case Instruction::character:
        case Instruction::set:
            if (!m_program.Consumes(instruction, c))
                break;
            // A second way that goes on behind the byte as the first does is of lower priority and no way.
            ways.isDecided = ways.isDecided && (ways.next == 0 || ways.next == instruction.next);
            if (ways.next == 0)
                ways.takenBounds = choice.bounds;
            ways.next = instruction.next;
            break;
        case Instruction::accept:
            ways.accepts = true;
            ways.acceptBounds = choice.bounds;
            return ways;
        case Instruction::fork:
            m_pending.push_back({instruction.other, choice.bounds});
            m_pending.push_back({instruction.next, choice.bounds});
            break;
        case Instruction::mark:
            m_pending.push_back({instruction.next, choice.bounds | 1u << instruction.operand});
            break;
        default:
            if (ExpressionProgram::Holds(instruction.kind, left, m_program.NeighbourOf(c)))
                m_pending.push_back({instruction.next, choice.bounds});
        }
    }
    return ways;
}

OnePassAutomaton::Entry const& OnePassAutomaton::Fill(std::uint32_t row, std::size_t byteClass)
{
    Ways const ways = Explore(row, byteClass);
    Entry entry{ways.accepts ? noted : 0, {}};
    std::uint32_t bits = 0;
    if (ways.next == 0) {
        entry.next |= stopping;
        bits = ways.acceptBounds;
    } else {
        std::uint32_t const left =
            m_program.looksLeft
                ? static_cast<std::uint32_t>(m_program.NeighbourOf(m_program.representatives[byteClass]))
                : 0;
        entry.next |= (ways.next * m_contexts + left) * m_classCount;
        bits = ways.takenBounds;
    }
    entry.bounds.fill(unusedGroupBound);
    for (unsigned char& bound : entry.bounds) {
        if (bits == 0)
            break;
        bound = static_cast<unsigned char>(__builtin_ctz(bits));
        bits &= bits - 1;
    }
    if (bits != 0 || !ways.isDecided) {
        entry.next = stopping | undecided;
        m_isUsable = false;
    }
    return m_entries[row + byteClass] = entry;
}

void OnePassAutomaton::SetBits(std::uint32_t bits, char const* at, GroupBounds& bounds) const
{
    for (; bits != 0; bits &= bits - 1)
        bounds[static_cast<std::size_t>(__builtin_ctz(bits))] = at;
}

void OnePassAutomaton::ClearBounds(GroupBounds& bounds) const
{
    std::fill_n(bounds.begin(), 2 * m_program.groupCount, nullptr);
}

template <bool withGroups>
OnePassAutomaton::Outcome OnePassAutomaton::Walk(char const* from, char const* begin, char const*& matchEnd,
                                                 char const*& last, GroupBounds& bounds)
{
    Entry const* const entries = m_entries.data();
    unsigned char const* const classOf = m_program.classOf.data();
    char const* const limit = from + (withGroups ? longestTry : longestTryWithoutGroups);
    std::uint32_t row = StartRow(from, begin);
    char const* end = nullptr;
    char const* at = from;
    Entry entry;
    for (;; ++at) {
        std::size_t const byteClass = classOf[Byte(*at)];
        entry = (entries + byteClass)[row];
        if ((entry.next & stopping) != 0) {
            if (entry.next == unknown)
                entry = Fill(row, byteClass);
            if ((entry.next & stopping) != 0)
                break;
        }
        if (at == limit)
            return Outcome::isTooLong;
        end = (entry.next & noted) != 0 ? at : end;
        if (withGroups)
            SetBounds(entry, at, bounds);
        row = entry.next & rowMask;
    }
    if ((entry.next & undecided) != 0)
        return Outcome::gaveUp;
    last = at;
    if ((entry.next & noted) != 0) {
        matchEnd = at;
        if (withGroups)
            SetBounds(entry, at, bounds);
        return Outcome::matches;
    }
    if (end == nullptr)
        return Outcome::fails;
    matchEnd = end;
    if (withGroups)
        FindGroups(begin, from, end, bounds);
    return Outcome::matches;
}

OnePassAutomaton::Outcome OnePassAutomaton::Try(char const* from, char const* begin, char const*& matchEnd,
                                                char const*& last, GroupBounds& bounds)
{
    if (m_program.groupCount == 0)
        return Walk<false>(from, begin, matchEnd, last, bounds);
    ClearBounds(bounds);
    return Walk<true>(from, begin, matchEnd, last, bounds);
}

bool OnePassAutomaton::FindGroups(char const* begin, char const* matchBegin, char const* matchEnd,
                                  GroupBounds& bounds)
{
    unsigned char const* const classOf = m_program.classOf.data();
    std::uint32_t row = StartRow(matchBegin, begin);
    ClearBounds(bounds);
    for (char const* at = matchBegin; at != matchEnd; ++at) {
        std::size_t const byteClass = classOf[Byte(*at)];
        Entry entry = m_entries[row + byteClass];
        if (entry.next == unknown)
            entry = Fill(row, byteClass);
        if ((entry.next & stopping) != 0)
            return false;
        SetBounds(entry, at, bounds);
        row = entry.next & rowMask;
    }
    Ways const ways = Explore(row, classOf[Byte(*matchEnd)]);
    SetBits(ways.acceptBounds, matchEnd, bounds);
    return ways.accepts;
}

} // namespace Vorlane
