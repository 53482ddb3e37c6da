#ifndef VORLANE_PLATFORM_ORRIN_LEGACYARRAY_H
#define VORLANE_PLATFORM_ORRIN_LEGACYARRAY_H

/// \file
/// The array that the value types share.

#include "platform/Export.h"
#include "platform/framework/AfxExceptions.h"
#include "platform/orrin/Held.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace Orrin {

/// Gives `vector` `size` entries, new ones as copies of `fill`.
///
/// \throws std::length_error "vector<T> too long" if `size` is negative, or too large for a signed 32-bit
///         number or for the vector.
/// \throws CMemoryException if the memory cannot be had; the vector is then as it was.
template <typename T>
void ResizeVector(std::vector<T>& vector, std::int64_t size, T const& fill)
{
    if (size < 0 || size > std::numeric_limits<std::int32_t>::max() ||
        static_cast<std::uint64_t>(size) > vector.max_size()) {
        AfxThrowVectorTooLong();
    }
    AfxWithMemoryException([&] { vector.resize(static_cast<std::size_t>(size), fill); });
}

/// A polymorphic holder of a vector. Indexes run from 0 to the size minus 1 and are the caller's duty: they
/// are asserted in debug builds and not tested otherwise. Whatever takes memory raises CMemoryException if
/// there is none, and then leaves the array as it was.
template <typename T>
class VORLANE_PLATFORM_EXPORT LegacyArray
{
public:
    LegacyArray() = default;

    /// Copies hold the entries; moves leave an empty array.
    LegacyArray(LegacyArray const&) = default;
    LegacyArray(LegacyArray&&) noexcept = default;
    LegacyArray& operator=(LegacyArray const&) = default;
    LegacyArray& operator=(LegacyArray&&) noexcept = default;
    virtual ~LegacyArray() = default;

    /// The number of entries.
    long GetSize() const { return static_cast<long>(m_vector.size()); }
    unsigned int size() const { return static_cast<unsigned int>(m_vector.size()); }

    /// Gives the array `size` entries, new ones default-constructed. `growBy` has no effect.
    ///
    /// \throws std::length_error "vector<T> too long" if `size` is negative or does not fit in 32 bits.
    void SetSize(long size, long /*growBy*/) { ResizeVector(m_vector, size, T()); }

    /// Gives the array `size` entries, new ones as copies of `fill`.
    ///
    /// \throws std::length_error "vector<T> too long" if `size` does not fit in 32 bits with a sign.
    void resize(unsigned int size, T const& fill) { ResizeVector(m_vector, size, fill); }

    /// The entry at `index`.
    T& GetAt(long index) { return m_vector[Checked(index)]; }
    T const& GetAt(long index) const { return m_vector[Checked(index)]; }
    T& operator[](long index) { return m_vector[Checked(index)]; }
    T const& operator[](long index) const { return m_vector[Checked(index)]; }

    /// Assigns a copy of `value` to the entry at `index`.
    void SetAt(long index, T const& value) { m_vector[Checked(index)] = value; }

    /// The first entry, or null for an empty array, also for one that keeps storage.
    T* GetData() { return m_vector.empty() ? nullptr : m_vector.data(); }
    T const* GetData() const { return m_vector.empty() ? nullptr : m_vector.data(); }

    /// Appends a copy of `value`, which may be an entry of this array.
    void push_back(T const& value)
    {
        AfxWithMemoryException([&] { m_vector.push_back(value); });
    }

    /// Makes room for `capacity` entries.
    ///
    /// \throws std::length_error "vector<T> too long" if `capacity` does not fit in 32 bits with a sign.
    void reserve(unsigned int capacity)
    {
        if (capacity > static_cast<unsigned int>(std::numeric_limits<std::int32_t>::max())) {
            AfxThrowVectorTooLong();
        }
        AfxWithMemoryException([&] { m_vector.reserve(capacity); });
    }

    /// Drops all entries and keeps the storage.
    void clear() { m_vector.clear(); }

    /// The entries, in their order, for loops and algorithms.
    typename std::vector<T>::iterator begin() { return m_vector.begin(); }
    typename std::vector<T>::iterator end() { return m_vector.end(); }
    typename std::vector<T>::const_iterator begin() const { return m_vector.begin(); }
    typename std::vector<T>::const_iterator end() const { return m_vector.end(); }

private:
    std::size_t Checked(long index) const
    {
        assert(index >= 0 && static_cast<std::size_t>(index) < m_vector.size());
        return static_cast<std::size_t>(index);
    }

    Held<std::vector<T>> m_vector;
};

} // namespace Orrin

#endif
