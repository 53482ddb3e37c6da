#include "vorlane/spatial/PointStoreInternal.h"

#include <utility>

namespace Vorlane {

/// Brings the points of the log into the indexes.
void PointStore::Sort(std::vector<Keyed> keys)
{
    VoxelIndex index(m_log, static_cast<int>(m_indexedCount), std::move(keys));
    std::size_t kept = m_indexes.size();
    while (kept != 0 && m_indexes[kept - 1].GetPointCount() <= 2 * index.GetPointCount()) {
        index = VoxelIndex(m_indexes[--kept], index);
    }
    m_indexes.reserve(kept + 1);
    m_indexes.erase(m_indexes.begin() + static_cast<std::ptrdiff_t>(kept), m_indexes.end());
    m_indexes.push_back(std::move(index));
    m_indexedCount += m_log.GetSize();
    m_log.Clear();
}

} // namespace Vorlane
