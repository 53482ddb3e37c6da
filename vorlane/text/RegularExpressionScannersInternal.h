#ifndef VORLANE_TEXT_REGULAREXPRESSIONSCANNERSINTERNAL_H
#define VORLANE_TEXT_REGULAREXPRESSIONSCANNERSINTERNAL_H

/// \file
/// Fast ways over the parts of a text where no match can begin.

#include "vorlane/text/RegularExpressionProgramInternal.h"

#include <array>
#include <cstddef>
#include <string>

namespace Vorlane {

/// Finds the next byte of a set that is a few intervals, sixteen bytes at a time.
class IntervalScanner
{
public:
    static constexpr int maximumIntervals = 4;

    /// Whether the set is no more intervals than the scanner can take; then it is ready.
    bool Prepare(ByteSet const& members);

    /// The first member in [at, end), or `end`.
    char const* Find(char const* at, char const* end) const;

private:
    std::array<unsigned char, maximumIntervals> m_low{};
    std::array<unsigned char, maximumIntervals> m_span{};
    int m_count = 0;
    ByteSet m_members;
};

/// Finds a literal by its rarest character, or by its two rarest where even those are frequent.
class LiteralFinder
{
public:
    LiteralFinder() = default;
    LiteralFinder(char const* literal, std::size_t length);

    std::size_t Length() const { return m_literal.size(); }

    /// The first occurrence that lies in [at, end), or null. Where comparisons that fail late cost more than
    /// a few steps a byte, it stops: `gaveUp` is set, and no occurrence begins before the result.
    char const* Find(char const* at, char const* end, bool& gaveUp) const;

private:
    char const* FindByOne(char const* at, char const* end, bool& gaveUp) const;
    char const* FindByTwo(char const* at, char const* end, bool& gaveUp) const;

    std::string m_literal;
    std::size_t m_rarest = 0; ///< offset of the rarest character
    std::size_t m_second = 0; ///< offset of the second rarest
    bool m_byOne = true;
};

/// Tells by the first three bytes whether a match can begin. Each of up to eight ways into the expression has
/// a bit, and a table for each of the three places tells which ways a byte leaves open.
class PrefixFilter
{
public:
    /// Whether the filter leaves out enough positions of usual text to be worth its time.
    bool Prepare(ExpressionProgram const& program);

    /// The first position in [at, end) where a match can begin, or `end`; `*end` is zero.
    char const* Find(char const* at, char const* end) const;

private:
    std::array<std::array<unsigned char, 256>, 3> m_open{};
};

/// What an instruction leads to without consuming, every test of a position taken as passed.
struct Reach
{
    explicit Reach(ExpressionProgram const& program) : seen(program.instructions.size()) {}

    std::vector<InstructionIndex> consuming;
    std::vector<bool> seen;
    bool accepts = false;
};

/// Adds to `reach` what `from` leads to.
void AddReach(ExpressionProgram const& program, InstructionIndex from, Reach& reach);

/// The bytes that the consuming instructions take.
ByteSet BytesOf(ExpressionProgram const& program, Reach const& reach);

} // namespace Vorlane

#endif
