#ifndef VORLANE_SPATIAL_VOXELSTOREINTERNAL_H
#define VORLANE_SPATIAL_VOXELSTOREINTERNAL_H

#include "vorlane/foundation/ValueTypes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Vorlane {

/// The occupied voxels of a NeighborList: a flat hash table from voxel key to voxel, and the points of each
/// voxel in the order of addition.
///
/// Points lie in lines of two, one cache line each, with their coordinates side by side, so that a search
/// tests both at once. The lines of a voxel come in chunks of 1, 1, 2, 4, ... up to 16 lines, taken from
/// slabs that all voxels share: nothing is copied or given back while a voxel grows, and no more than half of
/// it is unused.
///
/// Where memory runs out, std::bad_alloc leaves the store as it was.
class VoxelStore
{
public:
    static constexpr int lanes = 2;

    struct alignas(64) Line
    {
        double x[lanes]; ///< infinite where no point is yet, which is near nothing
        double y[lanes];
        double z[lanes];
        int index[lanes];
        std::uint32_t nextChunk; ///< in the last line of a chunk, if another chunk follows
    };

    struct Voxel
    {
        int key;
        int count;               ///< of points; 0 marks a free entry of the table
        std::uint32_t firstLine; ///< larger in newer voxels
        std::uint32_t lastLine;
    };

    VoxelStore() : m_table(16) {}

    void Add(int key, int index, Spatia::Point3d const& point);

    /// Null if there is no such voxel.
    Voxel const* Find(int key) const
    {
        Voxel const& entry = m_table[GetEntry(key)];
        return entry.count != 0 ? &entry : nullptr;
    }

    std::size_t GetVoxelCount() const { return m_voxelCount; }

    /// Calls `visit(voxel)` for every voxel, in no particular order.
    template <typename Visit>
    void ForEachVoxel(Visit&& visit) const
    {
        for (Voxel const& voxel : m_table) {
            if (voxel.count != 0) {
                visit(voxel);
            }
        }
    }

    /// Calls `visit(line)` for the lines of the voxel with this first line and number of points, oldest
    /// points first.
    template <typename Visit>
    void ForEachLine(std::uint32_t firstLine, int count, Visit&& visit) const
    {
        std::uint32_t const lineCount = (static_cast<std::uint32_t>(count) + 1) / lanes;
        std::uint32_t visited = 0;
        for (Line const* chunk = GetLine(firstLine);;) {
            std::uint32_t const size = GetChunkSize(visited);
            std::uint32_t const end = std::min(size, lineCount - visited);
            for (std::uint32_t i = 0; i != end; ++i) {
                visit(chunk[i]);
            }
            visited += end;
            if (visited == lineCount) {
                return;
            }
            chunk = GetLine(chunk[size - 1].nextChunk);
        }
    }

private:
    static constexpr std::uint32_t largestChunk = 16;
    static constexpr std::uint32_t slabBits = 8;
    static constexpr std::uint32_t slabSize = 1u << slabBits;

    /// The size of the chunk that follows `linesBefore` lines of a voxel.
    static std::uint32_t GetChunkSize(std::uint32_t linesBefore)
    {
        return std::clamp(linesBefore, std::uint32_t(1), largestChunk);
    }

    /// Where a chunk begins: at 0, 1, 2, 4, 8, 16, 32, 48, ... lines.
    static bool IsChunkStart(std::uint32_t linesBefore)
    {
        bool const isPowerOfTwo = (linesBefore & (linesBefore - 1)) == 0;
        return linesBefore < largestChunk ? isPowerOfTwo : linesBefore % largestChunk == 0;
    }

    Line* GetLine(std::uint32_t line) const
    {
        return m_slabs[line >> slabBits].get() + (line & (slabSize - 1));
    }

    /// The entry of the voxel with this key, or the free entry where it would be.
    std::size_t GetEntry(int key) const
    {
        // Four voxels in a row along z share a cache line of the table.
        std::uint32_t const group = static_cast<std::uint32_t>(key) >> 2;
        std::uint64_t mixed = group * std::uint64_t(0x9E3779B97F4A7C15);
        mixed = (mixed ^ (mixed >> 32)) * std::uint64_t(0xD6E8FEB86659FD93);
        std::size_t const mask = m_table.size() - 1;
        std::size_t entry = ((mixed >> 32 << 2) | (static_cast<std::uint32_t>(key) & 3)) & mask;
        while (m_table[entry].count != 0 && m_table[entry].key != key) {
            entry = (entry + 1) & mask;
        }
        return entry;
    }

    void GrowTable();
    std::uint32_t AllocateChunk(std::uint32_t size);

    std::vector<Voxel> m_table; ///< its size is a power of two, and three tenths of it or more are free
    std::size_t m_voxelCount = 0;
    std::vector<std::unique_ptr<Line[]>> m_slabs; ///< of slabSize lines each, but the last one may be smaller
    std::uint32_t m_slabCapacity = 0;             ///< of the last slab
    std::uint32_t m_slabUsed = 0;                 ///< lines taken from the last slab
};

} // namespace Vorlane

#endif
