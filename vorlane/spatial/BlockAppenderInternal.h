#ifndef VORLANE_SPATIAL_BLOCKAPPENDERINTERNAL_H
#define VORLANE_SPATIAL_BLOCKAPPENDERINTERNAL_H

#include "vorlane/foundation/TypedArrays.h"

#include <algorithm>
#include <climits>

namespace Vorlane {

/// Appends blocks of numbers to an array. In between, the array may be longer than what was appended.
class BlockAppender
{
public:
    explicit BlockAppender(IntArray& array) : m_array(array), m_begin(array.GetSize()), m_size(m_begin) {}
    BlockAppender(BlockAppender const&) = delete;
    BlockAppender& operator=(BlockAppender const&) = delete;

    ~BlockAppender()
    {
        if (m_size < m_array.GetSize()) {
            m_array.SetSize(m_size, -1);
        }
    }

    int GetSize() const { return m_size; }

    /// Makes the array hold `count` numbers more, so that Append cannot fail.
    void Reserve(int count)
    {
        if (count > m_array.GetSize() - m_size) {
            Grow(count);
        }
    }

    void Append(int const* values, int count)
    {
        std::copy_n(values, count, GetEnd());
        m_size += count;
    }

    /// Where the next number goes, and that `count` numbers have gone there.
    int* GetEnd() { return m_array.GetData() + m_size; }
    void Advance(int count) { m_size += count; }

    /// Goes back to the beginning of the array, which keeps its storage.
    void Restart() { m_size = 0; }

    /// Says that what was appended is about `share` of all that will be, so that the array can grow at once.
    /// Little of it says nothing.
    void ExpectShare(double share)
    {
        constexpr double tolerance = 1.05;
        constexpr double leastShare = 0.125;
        m_expected = share < leastShare ? 0 : m_begin + tolerance * (m_size - m_begin) / share;
    }

private:
    void Grow(int count)
    {
        if (count > INT_MAX - m_size) {
            AfxThrowInvalidArgException("an array of ", m_size, " numbers can't take ", count, " more");
        }
        // In steps of an eighth at least, so that the copies of a large array stay in proportion to its size;
        // and what is expected is believed up to twice what is there.
        int const needed = m_size + count;
        double const expected = std::min(m_expected, 2.0 * m_size);
        int const roomy = static_cast<int>(std::min(std::max(1.125 * m_size, expected), double(INT_MAX)));
        if (needed <= m_array.GetCapacity() || needed >= roomy) {
            m_array.SetSize(needed, -1);
            return;
        }
        try {
            m_array.SetSize(roomy, -1);
        } catch (CMemoryException const&) {
            m_array.SetSize(needed, -1);
        }
    }

    IntArray& m_array;
    int m_begin;
    int m_size;
    double m_expected = 0; ///< the size in the end, as far as one can tell
};

/// Appends pairs to two different arrays.
class PairAppender
{
public:
    PairAppender(IntArray& first, IntArray& second) : m_first(first), m_second(second) {}

    /// Makes room for `count` pairs at the ends of the arrays.
    void Reserve(int count)
    {
        m_first.Reserve(count);
        m_second.Reserve(count);
    }

    /// The ends of the arrays. What was written there belongs to them after Advance.
    int* GetFirstEnd() { return m_first.GetEnd(); }
    int* GetSecondEnd() { return m_second.GetEnd(); }
    void Advance(int count)
    {
        m_first.Advance(count);
        m_second.Advance(count);
    }
    void Append(int const* firsts, int const* seconds, int count)
    {
        m_first.Append(firsts, count);
        m_second.Append(seconds, count);
    }

    /// Says that the pairs so far are about `share` of all.
    void ExpectShare(double share)
    {
        m_first.ExpectShare(share);
        m_second.ExpectShare(share);
    }

    /// The number of pairs, if the arrays were empty.
    int GetCount() const { return m_first.GetSize(); }

    void Restart()
    {
        m_first.Restart();
        m_second.Restart();
    }

private:
    BlockAppender m_first;
    BlockAppender m_second;
};

} // namespace Vorlane

#endif
