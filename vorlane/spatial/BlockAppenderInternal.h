#ifndef VORLANE_SPATIAL_BLOCKAPPENDERINTERNAL_H
#define VORLANE_SPATIAL_BLOCKAPPENDERINTERNAL_H

#include "vorlane/foundation/TypedArrays.h"

#include <algorithm>
#include <climits>
#include <string>

namespace Vorlane {

/// Appends blocks of numbers to an array. In between, the array may be longer than what was appended.
class BlockAppender
{
public:
    explicit BlockAppender(IntArray& array) : m_array(array), m_size(array.GetSize()) {}
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

private:
    void Grow(int count)
    {
        if (count > INT_MAX - m_size) {
            AfxThrowInvalidArgException("an array of " + std::to_string(m_size) + " numbers can't take " +
                                        std::to_string(count) + " more");
        }
        // In steps of an eighth, so that the copies of a large array stay in proportion to its size.
        int const needed = m_size + count;
        int const roomy = m_size + std::min(m_size / 8, INT_MAX - m_size);
        m_array.SetSize(needed <= m_array.GetCapacity() ? needed : std::max(needed, roomy), -1);
    }

    IntArray& m_array;
    int m_size;
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
