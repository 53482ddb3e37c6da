#ifndef VORLANE_SPATIAL_BLOCKAPPENDERINTERNAL_H
#define VORLANE_SPATIAL_BLOCKAPPENDERINTERNAL_H

#include "vorlane/foundation/TypedArrays.h"

#include <algorithm>
#include <climits>
#include <string>
#include <vector>

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
        if (count > INT_MAX - m_size) {
            AfxThrowInvalidArgException("an array of " + std::to_string(m_size) + " numbers can't take " +
                                        std::to_string(count) + " more");
        }
        int const needed = m_size + count;
        if (needed > m_array.GetSize()) {
            // In steps of an eighth, so that the copies of a large array stay in proportion to its size.
            int const roomy = m_size + std::min(m_size / 8, INT_MAX - m_size);
            m_array.SetSize(needed <= m_array.GetCapacity() ? needed : std::max(needed, roomy), -1);
        }
    }

    void Append(int const* values, int count)
    {
        std::copy_n(values, count, m_array.GetData() + m_size);
        m_size += count;
    }

private:
    IntArray& m_array;
    int m_size;
};

/// Appends pairs to two different arrays, by way of a buffer that stays in the processor's cache.
class PairAppender
{
public:
    static constexpr int capacity = 8192;

    PairAppender(IntArray& first, IntArray& second)
        : m_first(first), m_second(second), m_firstBuffer(capacity), m_secondBuffer(capacity)
    {}

    /// Makes room for `count` pairs, at most `capacity`, at the ends of the buffers.
    void MakeRoom(int count)
    {
        if (m_count + count > capacity) {
            Flush();
        }
    }

    /// The ends of the buffers. What was written there belongs to the pairs after Advance.
    int* GetFirst() { return m_firstBuffer.data() + m_count; }
    int* GetSecond() { return m_secondBuffer.data() + m_count; }
    void Advance(int count) { m_count += count; }

    /// The size of the arrays after a Flush, if they were equally long.
    int GetCount() const { return m_first.GetSize() + m_count; }

    void Flush()
    {
        if (m_count != 0) {
            m_first.Reserve(m_count);
            m_second.Reserve(m_count);
            m_first.Append(m_firstBuffer.data(), m_count);
            m_second.Append(m_secondBuffer.data(), m_count);
            m_count = 0;
        }
    }

private:
    BlockAppender m_first;
    BlockAppender m_second;
    std::vector<int> m_firstBuffer;
    std::vector<int> m_secondBuffer;
    int m_count = 0;
};

} // namespace Vorlane

#endif
