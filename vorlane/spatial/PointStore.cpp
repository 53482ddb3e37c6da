#include "vorlane/spatial/PointStoreInternal.h"

#include <utility>

namespace Vorlane {

/// Takes the index of the waiting points in.
void PointStore::Sort(VoxelIndex index)
{
    std::size_t kept = m_indexes.size();
    while (kept != 0 && m_indexes[kept - 1].GetPointCount() <= mostTimesAsLarge * index.GetPointCount()) {
        index = VoxelIndex(m_indexes[--kept], index);
    }
    m_indexes.reserve(kept + 1);
    m_indexes.erase(m_indexes.begin() + static_cast<std::ptrdiff_t>(kept), m_indexes.end());
    m_indexes.push_back(std::move(index));
    m_indexedCount += m_waiting.GetSize();
    m_waiting.Clear();
}

} // namespace Vorlane
