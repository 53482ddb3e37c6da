#ifndef VORLANE_SPATIAL_POINTSTOREINTERNAL_H
#define VORLANE_SPATIAL_POINTSTOREINTERNAL_H

#include "vorlane/spatial/PointLogInternal.h"
#include "vorlane/spatial/VoxelIndexInternal.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <utility>
#include <vector>

namespace Vorlane {

/// The points of a NeighborList. New ones are only written down; the first query behind them sorts them into
/// an index, which is cheaper than to find the voxel of each point as it comes.
///
/// An index takes in the one before it unless that is more than twice as large. So where points and queries
/// come by turns, a point is copied a few times for each doubling of the list.
///
/// Where memory runs out, std::bad_alloc leaves everything as it was.
class PointStore
{
public:
    /// Each index has more than twice as many points as the next, and none more than 2^31.
    static constexpr std::size_t mostIndexes = 32;

    void Add(Spatia::Point3d const& point)
    {
        m_log.Add(point);
        m_isSorted.store(false, std::memory_order_relaxed);
    }

    /// The indexes of all points, the oldest points first. `getKey(point)` gives a voxel key. May be called
    /// by several threads at once.
    template <typename GetKey>
    std::vector<VoxelIndex> const& GetIndexes(GetKey&& getKey)
    {
        if (!m_isSorted.load(std::memory_order_acquire)) {
            std::lock_guard<std::mutex> const lock(m_mutex);
            if (!m_isSorted.load(std::memory_order_relaxed)) {
                std::vector<Keyed> keys;
                keys.reserve(m_log.GetSize());
                for (std::size_t n = 0; n != m_log.GetSize(); ++n) {
                    std::uint32_t const key = static_cast<std::uint32_t>(getKey(m_log[n]));
                    keys.push_back(MakeKeyed(key, static_cast<std::uint32_t>(n)));
                }
                Sort(std::move(keys));
                m_isSorted.store(true, std::memory_order_release);
            }
        }
        return m_indexes;
    }

private:
    void Sort(std::vector<Keyed> keys);

    std::vector<VoxelIndex> m_indexes;
    std::size_t m_indexedCount = 0;
    PointLog m_log; ///< the points that are in no index yet
    std::atomic<bool> m_isSorted = true;
    std::mutex m_mutex;
};

} // namespace Vorlane

#endif
