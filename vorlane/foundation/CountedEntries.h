#ifndef VORLANE_FOUNDATION_COUNTEDENTRIES_H
#define VORLANE_FOUNDATION_COUNTEDENTRIES_H

/// \file
/// Lists that are as long as a count in an archive says.
///
/// A count is believed only as far as the archive backs it: a hostile one ends in the archive's end-of-file
/// and not in gigabytes of empty entries. A list of ordinary size has its whole length before its entries are
/// read.

#include "vorlane/foundation/FrameworkSurface.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace Vorlane {

/// The memory that a list may take on the word of its count alone: 16 MB.
constexpr std::size_t memoryOnTrust = std::size_t{16} << 20;

/// Gives the 32 bits of a count as a number of entries.
///
/// \throws std::length_error "vector<T> too long" if the count is negative as a signed number, or above
///         `maximum`, the most that the list can hold.
inline std::size_t CheckedEntryCount(std::uint32_t count, std::size_t maximum)
{
    if (count > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max()) || count > maximum) {
        AfxThrowVectorTooLong();
    }
    return count;
}

/// The part of `count` entries that may have memory before they have been read: as many as the rest of the
/// archive can hold, or as fit into `memoryOnTrust`, whichever is more. Both sizes are those of one entry.
inline std::size_t EntriesToTakeAhead(CArchive const& ar, std::size_t count, std::size_t bytesInArchive,
                                      std::size_t bytesInMemory)
{
    std::size_t const trusted = memoryOnTrust / bytesInMemory;
    if (count <= trusted) {
        return count; // without asking the file, which costs calls of the system
    }
    std::uint64_t const backed = ar.GetRemaining() / bytesInArchive;
    return static_cast<std::size_t>(std::min<std::uint64_t>(count, std::max<std::uint64_t>(backed, trusted)));
}

/// Gives `entries` the size `count` and loads them. `resize(size)` resizes the list, and `loadRange(begin,
/// end)` loads the entries from `begin` to `end`, without it, and raises the archive's exception where they
/// end early.
///
/// The list gets its whole size at once if EntriesToTakeAhead allows it. Otherwise it grows as its entries
/// come, to twice its size each time; it is never made shorter than it was, unless `count` is.
template <typename Resize, typename LoadRange>
void LoadCountedEntries(CArchive const& ar, std::size_t present, std::size_t count,
                        std::size_t bytesInArchive, std::size_t bytesInMemory, Resize resize,
                        LoadRange loadRange)
{
    std::size_t const ahead = EntriesToTakeAhead(ar, count, bytesInArchive, bytesInMemory);
    std::size_t size = std::max(ahead, std::min(present, count));
    resize(size);
    loadRange(std::size_t(0), size);
    while (size < count) {
        std::size_t const loaded = size;
        size += std::min(size, count - size);
        resize(size);
        loadRange(loaded, size);
    }
}

} // namespace Vorlane

#endif
