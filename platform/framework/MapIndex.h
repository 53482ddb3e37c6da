#ifndef VORLANE_PLATFORM_FRAMEWORK_MAPINDEX_H
#define VORLANE_PLATFORM_FRAMEWORK_MAPINDEX_H

/// \file
/// What keeps the look-up of a CMap fast when its buckets grow long.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>

/// The numbers of slots of an index: the largest primes below the powers of two from 64 on.
inline constexpr std::uint32_t afxMapIndexSizes[] = {
    61u,       127u,      251u,      509u,       1021u,      2039u,      4093u,       8191u,      16381u,
    32749u,    65521u,    131071u,   262139u,    524287u,    1048573u,   2097143u,    4194301u,   8388593u,
    16777213u, 33554393u, 67108859u, 134217689u, 268435399u, 536870909u, 1073741789u, 2147483647u};

/// A second set of chains through the entries of a map: a table of slots, each the head of a short chain
/// through `pNextInIndex`. An entry's slot is the remainder of a number, its key or hash, by the number of
/// slots, a prime: neighbouring keys lie in neighbouring slots, and regular steps between keys don't crowd.
/// The index only makes look-ups faster; where memory is short it stays as small as it was, or away.
template <class Entry>
class MapIndex
{
public:
    MapIndex() = default;
    MapIndex(MapIndex const&) = delete;
    MapIndex& operator=(MapIndex const&) = delete;
    ~MapIndex() { Clear(); }

    /// Whether there is a table.
    bool IsBuilt() const noexcept { return m_slots != nullptr; }

    /// Whether an index, or a larger one, is due for this many entries: buckets of up to 4 entries on average
    /// need none.
    bool IsTooSmallFor(int count, std::size_t bucketCount) const noexcept
    {
        std::size_t const entries = static_cast<std::size_t>(count);
        return IsBuilt() ? entries > m_slotCount : entries / 4 > bucketCount;
    }

    /// Takes an empty table of the next size above `count` in place of the old one: about twice as many
    /// slots, and no more, since what counts beside the chains is how many pages the table spans. False, and
    /// nothing changes, where memory is short.
    bool Extend(int count) noexcept
    {
        auto const* const found = std::upper_bound(
            std::begin(afxMapIndexSizes), std::end(afxMapIndexSizes) - 1, static_cast<std::uint32_t>(count));
        Entry** const slots = static_cast<Entry**>(std::calloc(*found, sizeof(Entry*)));
        if (slots == nullptr) {
            return false;
        }
        std::free(m_slots);
        m_slots = slots;
        m_slotCount = *found;
        return true;
    }

    /// The newest entry of the slot of a number, from which `pNextInIndex` leads on. The table must be built.
    Entry* Head(std::uint32_t number) const noexcept { return m_slots[number % m_slotCount]; }

    /// Puts an entry at the head of its slot. The table must be built.
    void Link(Entry& entry, std::uint32_t number) noexcept
    {
        Entry*& slot = m_slots[number % m_slotCount];
        entry.pNextInIndex = slot;
        slot = &entry;
    }

    /// Frees the table and leaves the entries alone.
    void Clear() noexcept
    {
        std::free(m_slots);
        m_slots = nullptr;
        m_slotCount = 0;
    }

private:
    Entry** m_slots = nullptr;
    std::uint32_t m_slotCount = 0;
};

#endif
