#ifndef VORLANE_SPATIAL_POINTSTOREINTERNAL_H
#define VORLANE_SPATIAL_POINTSTOREINTERNAL_H

#include "vorlane/spatial/PointLogInternal.h"
#include "vorlane/spatial/VoxelIndexInternal.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace Vorlane {

/// The points of a NeighborList. New ones are only written down; the first query behind many of them sorts
/// them into an index, which is cheaper than to find the voxel of each point as it comes. A few are left as
/// they are, for the queries to look at one by one.
///
/// An index takes in the one before it unless that is more than eight times as large. So where points and
/// queries come by turns, a point is copied some times for each doubling of the list.
///
/// Where memory runs out, std::bad_alloc leaves everything as it was.
class PointStore
{
public:
    /// Each index has more than eight times as many points as the next, and none more than 2^31.
    static constexpr std::size_t mostIndexes = 11;

    /// So many points may wait for an index.
    static constexpr std::size_t mostWaiting = 64;

    void Add(Spatia::Point3d const& point)
    {
        m_waiting.Add(point);
        if (m_waiting.GetSize() > mostWaiting) {
            m_isReady.store(false, std::memory_order_relaxed);
        }
    }

    /// Brings the points into indexes if many wait. To be called in front of what follows, by several threads
    /// at once if need be. `getKey(point)` gives a voxel key.
    template <typename GetKey>
    void Prepare(GetKey&& getKey)
    {
        if (!m_isReady.load(std::memory_order_acquire)) {
            std::lock_guard<std::mutex> const lock(m_mutex);
            if (!m_isReady.load(std::memory_order_relaxed)) {
                Sort(IndexWaiting(getKey));
                m_isReady.store(true, std::memory_order_release);
            }
        }
    }

    /// The points that are in no index, and the number of the first of them.
    PointLog const& GetWaiting() const { return m_waiting; }
    int GetFirstWaiting() const { return static_cast<int>(m_indexedCount); }

    /// The indexes of all other points, the oldest first.
    std::vector<VoxelIndex> const& GetIndexes() const { return m_indexes; }

    /// An index of all points: the only one there is, or one made in `merged`.
    template <typename GetKey>
    VoxelIndex const& GetWhole(GetKey&& getKey, std::optional<VoxelIndex>& merged) const
    {
        std::size_t left = m_indexes.size();
        if (left == 0 || m_waiting.GetSize() != 0) {
            merged = IndexWaiting(getKey);
        } else {
            --left;
        }
        while (left != 0) {
            --left;
            merged = VoxelIndex(m_indexes[left], merged ? *merged : m_indexes[left + 1]);
        }
        return merged ? *merged : m_indexes[0];
    }

private:
    template <typename GetKey>
    VoxelIndex IndexWaiting(GetKey&& getKey) const
    {
        std::vector<Keyed> keys;
        keys.reserve(m_waiting.GetSize());
        for (std::size_t n = 0; n != m_waiting.GetSize(); ++n) {
            std::uint32_t const key = static_cast<std::uint32_t>(getKey(m_waiting[n]));
            keys.push_back(MakeKeyed(key, static_cast<std::uint32_t>(n)));
        }
        return VoxelIndex(m_waiting, GetFirstWaiting(), std::move(keys));
    }

    static constexpr std::size_t mostTimesAsLarge = 8;

    void Sort(VoxelIndex index);

    std::vector<VoxelIndex> m_indexes;
    std::size_t m_indexedCount = 0;
    PointLog m_waiting;
    std::atomic<bool> m_isReady = true; ///< few points wait, and nothing changes until the next Add
    std::mutex m_mutex;
};

} // namespace Vorlane

#endif
