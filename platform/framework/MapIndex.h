#ifndef VORLANE_PLATFORM_FRAMEWORK_MAPINDEX_H
#define VORLANE_PLATFORM_FRAMEWORK_MAPINDEX_H

/// \file
/// What keeps the look-up of a CMap fast when its buckets grow long.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Spreads a hash over all 32 bits, so that its low bits choose a slot well.
/// Source: the finalizer of MurmurHash3 by Austin Appleby, 2011.
inline std::uint32_t AfxMixHash(std::uint32_t hash) noexcept
{
    hash ^= hash >> 16;
    hash *= 0x85EBCA6Bu;
    hash ^= hash >> 13;
    hash *= 0xC2B2AE35u;
    return hash ^ (hash >> 16);
}

/// A second set of chains through the entries of a map: a table of slots, a power of two, at least as many as
/// there are entries, each the head of a short chain through `pNextInIndex`. It only makes look-ups faster;
/// so where memory is short it stays as small as it was, or away.
template <class Entry>
class MapIndex
{
public:
    MapIndex() = default;
    MapIndex(MapIndex const&) = delete;
    MapIndex& operator=(MapIndex const&) = delete;
    ~MapIndex() { Clear(); }

    bool IsBuilt() const noexcept { return m_slots != nullptr; }

    /// Whether an index is due for this many entries: buckets of up to 4 entries on average need none.
    bool IsTooSmallFor(int count, std::size_t bucketCount) const noexcept
    {
        std::size_t const entries = static_cast<std::size_t>(count);
        return IsBuilt() ? entries > m_mask + 1 : entries / 4 > bucketCount;
    }

    /// Takes an empty table for twice `count` entries in place of the old one. False, and nothing changes,
    /// where memory is short.
    bool Extend(int count) noexcept
    {
        std::size_t size = 64;
        while (size < 2 * static_cast<std::size_t>(count)) {
            size *= 2;
        }
        Entry** const slots = static_cast<Entry**>(std::calloc(size, sizeof(Entry*)));
        if (slots == nullptr) {
            return false;
        }
        std::free(m_slots);
        m_slots = slots;
        m_mask = size - 1;
        return true;
    }

    Entry* Head(std::uint32_t hash) const noexcept { return m_slots[hash & m_mask]; }

    void Link(Entry& entry, std::uint32_t hash) noexcept
    {
        Entry*& slot = m_slots[hash & m_mask];
        entry.pNextInIndex = slot;
        slot = &entry;
    }

    void Clear() noexcept
    {
        std::free(m_slots);
        m_slots = nullptr;
        m_mask = 0;
    }

private:
    Entry** m_slots = nullptr;
    std::size_t m_mask = 0;
};

#endif
