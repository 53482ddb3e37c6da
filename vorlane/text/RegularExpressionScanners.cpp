/// \file
/// The scanners work on sixteen bytes at a time where the machine has SSE2, as every x86-64 has, and byte by
/// byte elsewhere and in the last bytes of a text. None reads behind the end that it is given.

#include "vorlane/text/RegularExpressionScannersInternal.h"

#include <algorithm>
#include <cstring>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace Vorlane {
namespace {

#if defined(__SSE2__)
__m128i LoadBlock(char const* at)
{
    return _mm_loadu_si128(reinterpret_cast<__m128i const*>(at));
}

__m128i Repeat(unsigned char c)
{
    return _mm_set1_epi8(static_cast<char>(c));
}

unsigned int Mask(__m128i block)
{
    return static_cast<unsigned int>(_mm_movemask_epi8(block));
}
#endif

/// Above this share (in ten thousand) a single character is no good guide to a literal.
constexpr int rareEnough = 30;

/// A finder may compare this many bytes in vain for each byte that it passes, and this many more.
constexpr std::ptrdiff_t vainComparisons = 4;
constexpr std::ptrdiff_t vainComparisonsAtFirst = 1024;

} // namespace

bool IntervalScanner::Prepare(ByteSet const& members)
{
    m_members = members;
    m_count = 0;
    for (int c = 0; c < 256; ++c) {
        if (!members.Has(static_cast<unsigned char>(c)))
            continue;
        if (m_count == maximumIntervals)
            return false;
        auto const place = static_cast<std::size_t>(m_count);
        m_low[place] = static_cast<unsigned char>(c);
        while (c < 255 && members.Has(static_cast<unsigned char>(c + 1)))
            ++c;
        m_span[place] = static_cast<unsigned char>(c - m_low[place]);
        ++m_count;
    }
    return m_count > 0;
}

char const* IntervalScanner::Find(char const* at, char const* end) const
{
#if defined(__SSE2__)
    __m128i low[maximumIntervals];
    __m128i span[maximumIntervals];
    for (std::size_t i = 0; i < maximumIntervals; ++i) {
        // Intervals that are not needed repeat the first.
        std::size_t const place = i < static_cast<std::size_t>(m_count) ? i : 0;
        low[i] = Repeat(m_low[place]);
        span[i] = Repeat(m_span[place]);
    }
    for (; end - at >= 16; at += 16) {
        __m128i const block = LoadBlock(at);
        __m128i hits = _mm_setzero_si128();
        for (int i = 0; i < maximumIntervals; ++i) {
            // c lies in [low, low + span] just if c - low, modulo 256, is its own minimum with span.
            __m128i const distance = _mm_sub_epi8(block, low[i]);
            hits = _mm_or_si128(hits, _mm_cmpeq_epi8(_mm_min_epu8(distance, span[i]), distance));
        }
        if (unsigned int const mask = Mask(hits))
            return at + __builtin_ctz(mask);
    }
#endif
    while (at < end && !m_members.Has(static_cast<unsigned char>(*at)))
        ++at;
    return at;
}

LiteralFinder::LiteralFinder(char const* literal, std::size_t length) : m_literal(literal, length)
{
    auto const frequency = [&](std::size_t i) {
        return ByteFrequency(static_cast<unsigned char>(m_literal[i]));
    };
    for (std::size_t i = 1; i < length; ++i)
        if (frequency(i) < frequency(m_rarest))
            m_rarest = i;
    m_second = m_rarest == 0 && length > 1 ? 1 : 0;
    for (std::size_t i = 0; i < length; ++i)
        if (i != m_rarest && frequency(i) < frequency(m_second))
            m_second = i;
    m_byOne = length < 2 || frequency(m_rarest) <= rareEnough;
}

char const* LiteralFinder::Find(char const* at, char const* end, bool& gaveUp) const
{
    gaveUp = false;
    if (end - at < static_cast<std::ptrdiff_t>(m_literal.size()))
        return nullptr;
    return m_byOne ? FindByOne(at, end, gaveUp) : FindByTwo(at, end, gaveUp);
}

char const* LiteralFinder::FindByOne(char const* at, char const* end, bool& gaveUp) const
{
    std::size_t const length = m_literal.size();
    char const* const lastGuide = end - length + m_rarest;
    std::ptrdiff_t inVain = -vainComparisonsAtFirst;
    char const* const from = at;
    for (char const* guide = at + m_rarest; guide <= lastGuide; ++guide) {
        guide = static_cast<char const*>(
            std::memchr(guide, m_literal[m_rarest], static_cast<std::size_t>(lastGuide - guide) + 1));
        if (guide == nullptr)
            return nullptr;
        char const* const candidate = guide - m_rarest;
        if (length == 1 || std::memcmp(candidate, m_literal.data(), length) == 0)
            return candidate;
        inVain += static_cast<std::ptrdiff_t>(std::min<std::size_t>(length, 64));
        if (length > 64) {
            auto const differs = std::mismatch(m_literal.begin(), m_literal.end(), candidate).first;
            inVain += differs - m_literal.begin();
        }
        if (inVain > vainComparisons * (candidate - from)) {
            // A character that is frequent here: the two rarest are the better guide, or the automaton.
            if (length > 1 && length <= 64)
                return FindByTwo(candidate + 1, end, gaveUp);
            gaveUp = true;
            return candidate;
        }
    }
    return nullptr;
}

char const* LiteralFinder::FindByTwo(char const* at, char const* end, bool& gaveUp) const
{
    std::size_t const length = m_literal.size();
    char const* const lastStart = end - length;
    char const* const from = at;
    std::ptrdiff_t inVain = -vainComparisonsAtFirst;
    // Whether the literal stands at a candidate; counts what a failure cost.
    auto const isHere = [&](char const* candidate) {
        auto const differs = std::mismatch(m_literal.begin(), m_literal.end(), candidate).first;
        if (differs == m_literal.end())
            return true;
        inVain += differs - m_literal.begin();
        return false;
    };
#if defined(__SSE2__)
    __m128i const rarest = Repeat(static_cast<unsigned char>(m_literal[m_rarest]));
    __m128i const second = Repeat(static_cast<unsigned char>(m_literal[m_second]));
    for (; lastStart - at >= 15; at += 16) {
        __m128i const hits = _mm_and_si128(_mm_cmpeq_epi8(LoadBlock(at + m_rarest), rarest),
                                           _mm_cmpeq_epi8(LoadBlock(at + m_second), second));
        for (unsigned int mask = Mask(hits); mask != 0; mask &= mask - 1) {
            char const* const candidate = at + __builtin_ctz(mask);
            if (isHere(candidate))
                return candidate;
            if (inVain > vainComparisons * (candidate - from)) {
                gaveUp = true;
                return candidate;
            }
        }
    }
#endif
    for (; at <= lastStart; ++at) {
        if (at[m_rarest] == m_literal[m_rarest] && isHere(at))
            return at;
        if (inVain > vainComparisons * (at - from)) {
            gaveUp = true;
            return at;
        }
    }
    return nullptr;
}

bool PrefixFilter::Prepare(ExpressionProgram const& program)
{
    constexpr std::size_t maximumWays = 8;
    constexpr std::size_t maximumReach = 64;
    constexpr double worthwhileShare = 0.06;
    Reach entrance(program);
    AddReach(program, program.start, entrance);
    if (entrance.accepts || entrance.consuming.size() > maximumWays)
        return false;
    double passed = 0;
    for (std::size_t way = 0; way < entrance.consuming.size(); ++way) {
        Reach reach(program);
        reach.consuming.push_back(entrance.consuming[way]);
        double share = 1;
        for (auto& open : m_open) {
            ByteSet bytes;
            if (reach.accepts || reach.consuming.size() > maximumReach)
                bytes.Invert(); // anything may follow, the end of the text included
            else
                bytes = BytesOf(program, reach);
            int frequency = 0;
            for (unsigned int c = 0; c < 256; ++c) {
                if (!bytes.Has(static_cast<unsigned char>(c)))
                    continue;
                open[c] = static_cast<unsigned char>(open[c] | 1u << way);
                frequency += ByteFrequency(static_cast<unsigned char>(c));
            }
            share *= std::min(1.0, frequency / 10000.0);
            Reach further(program);
            further.accepts = reach.accepts;
            for (InstructionIndex const index : reach.consuming)
                AddReach(program, program.instructions[index].next, further);
            reach = std::move(further);
        }
        passed += share;
    }
    return passed < worthwhileShare;
}

char const* PrefixFilter::Find(char const* at, char const* end) const
{
    auto const byte = [&](char const* p) {
        return static_cast<unsigned char>(*p);
    };
    for (; end - at >= 6; at += 4) {
        unsigned int const b2 = byte(at + 2);
        unsigned int const b3 = byte(at + 3);
        unsigned int const first = m_open[0][byte(at)] & m_open[1][byte(at + 1)] & m_open[2][b2];
        unsigned int const second = m_open[0][byte(at + 1)] & m_open[1][b2] & m_open[2][b3];
        unsigned int const third = m_open[0][b2] & m_open[1][b3] & m_open[2][byte(at + 4)];
        unsigned int const fourth = m_open[0][b3] & m_open[1][byte(at + 4)] & m_open[2][byte(at + 5)];
        if ((first | second | third | fourth) != 0)
            return at + (first != 0 ? 0 : second != 0 ? 1 : third != 0 ? 2 : 3);
    }
    for (; at < end; ++at) {
        unsigned int open = m_open[0][byte(at)] & m_open[1][byte(at + 1)];
        if (end - at >= 2)
            open &= m_open[2][byte(at + 2)];
        if (open != 0)
            return at;
    }
    return end;
}

void AddReach(ExpressionProgram const& program, InstructionIndex from, Reach& reach)
{
    std::vector<InstructionIndex> pending{from};
    while (!pending.empty()) {
        InstructionIndex const index = pending.back();
        pending.pop_back();
        if (reach.seen[index])
            continue;
        reach.seen[index] = true;
        Instruction const& instruction = program.instructions[index];
        switch (instruction.kind) {
        case Instruction::character:
        case Instruction::set:
            reach.consuming.push_back(index);
            break;
        case Instruction::accept:
            reach.accepts = true;
            break;
        case Instruction::fork:
            pending.push_back(instruction.other);
            pending.push_back(instruction.next);
            break;
        default:
            pending.push_back(instruction.next);
        }
    }
}

ByteSet BytesOf(ExpressionProgram const& program, Reach const& reach)
{
    ByteSet bytes;
    for (InstructionIndex const index : reach.consuming) {
        Instruction const& instruction = program.instructions[index];
        if (instruction.kind == Instruction::character)
            bytes.Add(instruction.operand);
        else
            bytes.AddAll(program.sets[instruction.other]);
    }
    return bytes;
}

} // namespace Vorlane
