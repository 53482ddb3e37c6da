#include "vorlane/spatial/VoxelStoreInternal.h"

#include <limits>

namespace Vorlane {

void VoxelStore::Add(int key, int index, Spatia::Point3d const& point)
{
    std::size_t entry = GetEntry(key);
    bool const isNew = m_table[entry].count == 0;
    if (isNew && (m_voxelCount + 1) * 10 > m_table.size() * 7) {
        GrowTable();
        entry = GetEntry(key);
    }

    Voxel& voxel = m_table[entry];
    std::uint32_t const count = static_cast<std::uint32_t>(voxel.count);
    std::uint32_t const lane = count % lanes;
    if (lane == 0) {
        std::uint32_t const linesBefore = count / lanes;
        std::uint32_t line = voxel.lastLine + 1;
        if (IsChunkStart(linesBefore)) {
            line = AllocateChunk(GetChunkSize(linesBefore));
            if (isNew) {
                voxel.key = key;
                voxel.firstLine = line;
                ++m_voxelCount;
            } else {
                GetLine(voxel.lastLine)->nextChunk = line;
            }
        }
        voxel.lastLine = line;
    }

    Line& line = *GetLine(voxel.lastLine);
    line.x[lane] = point.x;
    line.y[lane] = point.y;
    line.z[lane] = point.z;
    line.index[lane] = index;
    if (lane == 0) {
        line.x[1] = std::numeric_limits<double>::infinity();
        line.y[1] = 0.0;
        line.z[1] = 0.0;
        line.index[1] = 0;
    }
    ++voxel.count;
}

void VoxelStore::GrowTable()
{
    std::vector<Voxel> smaller(m_table.size() * 2);
    smaller.swap(m_table);
    for (Voxel const& voxel : smaller) {
        if (voxel.count != 0) {
            m_table[GetEntry(voxel.key)] = voxel;
        }
    }
}

/// The number of the first of `size` neighbouring lines.
std::uint32_t VoxelStore::AllocateChunk(std::uint32_t size)
{
    if (m_slabUsed + size > m_slabCapacity) {
        // The last slab moves as it grows, so that a small list takes little more than it needs.
        bool const isNew = m_slabs.empty() || m_slabUsed + size > slabSize;
        std::uint32_t const used = isNew ? 0 : m_slabUsed;
        std::size_t const lines = m_slabs.empty() ? 0 : (m_slabs.size() - 1) * slabSize + m_slabUsed;
        std::uint32_t const capacity = static_cast<std::uint32_t>(
            std::clamp(used + std::max<std::size_t>(size, lines / 4), std::size_t(4), std::size_t(slabSize)));
        std::unique_ptr<Line[]> slab(new Line[capacity]);
        if (isNew) {
            m_slabs.push_back(std::move(slab));
        } else {
            std::copy_n(m_slabs.back().get(), used, slab.get());
            m_slabs.back() = std::move(slab);
        }
        m_slabCapacity = capacity;
        m_slabUsed = used;
    }
    std::uint32_t const line = static_cast<std::uint32_t>(m_slabs.size() - 1) * slabSize + m_slabUsed;
    m_slabUsed += size;
    return line;
}

} // namespace Vorlane
