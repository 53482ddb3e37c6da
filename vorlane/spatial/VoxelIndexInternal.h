#ifndef VORLANE_SPATIAL_VOXELINDEXINTERNAL_H
#define VORLANE_SPATIAL_VOXELINDEXINTERNAL_H

#include "vorlane/spatial/KeyedSortInternal.h"
#include "vorlane/spatial/PointLogInternal.h"
#include "vorlane/spatial/VoxelGridInternal.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Vorlane {

/// Points sorted by voxel, in a voxel in the order of their addition.
///
/// An occupied voxel is a cell; cells are numbered by key. So voxels that are neighbours along z are
/// neighbours in memory, and a place is surrounded by nine short rows. They are found in a hash table of
/// blocks of 64 voxels along z, each with a bit for every voxel that is occupied.
class VoxelIndex
{
public:
    /// How many numbers may be read past the end of a cell's coordinates.
    static constexpr std::size_t padding = 4;

    /// The points of one cell.
    struct Cell
    {
        std::size_t count = 0;
        double const* numbers = nullptr;

        double const* GetX() const { return numbers; }
        double const* GetY() const { return numbers + count; }
        double const* GetZ() const { return numbers + 2 * count; }
        double const* GetIndices() const { return numbers + 3 * count; }
    };

    /// Of `points`, whose first one has `firstIndex`. `keys` are their voxel keys with their numbers in
    /// `points`.
    VoxelIndex(PointLog const& points, int firstIndex, std::vector<Keyed> keys);

    /// Of the points of both.
    VoxelIndex(VoxelIndex const& older, VoxelIndex const& newer);

    std::size_t GetPointCount() const { return m_pointCount; }
    std::size_t GetCellCount() const { return m_keys.size(); }
    int GetKey(std::size_t number) const { return m_keys[number]; }
    Cell GetCell(std::size_t number) const
    {
        std::size_t const begin = m_begins[number];
        return {m_begins[number + 1] - begin, m_points.get() + 4 * begin};
    }

    /// The number of the cell without points that stands for all empty voxels.
    std::size_t GetEmptyCell() const { return m_keys.size(); }

    /// Writes the numbers of the cells with `count` keys in a row to `cells`. Keys may be outside the grid.
    void FindCells(std::uint32_t firstKey, std::uint32_t count, std::uint32_t* cells) const
    {
        while (count != 0) {
            std::uint32_t const bit = firstKey % 64;
            std::uint32_t const size = std::min(count, 64 - bit);
            Block const& block = m_blocks[GetEntry(firstKey / 64)];
            std::uint64_t const voxels = block.voxels >> bit;
            std::uint32_t const empty = static_cast<std::uint32_t>(GetEmptyCell());
            std::uint32_t cell = block.firstCell + CountBits(block.voxels & ((std::uint64_t(1) << bit) - 1));
            for (std::uint32_t n = 0; n != size; ++n) {
                // Whether a voxel is occupied is hard to predict: no branch.
                std::uint32_t const isOccupied = voxels >> n & 1;
                cells[n] = empty ^ ((empty ^ cell) & (0u - isOccupied));
                cell += isOccupied;
            }
            firstKey += size;
            cells += size;
            count -= size;
        }
    }

private:
    /// The occupied ones of 64 voxels in a row.
    struct Block
    {
        std::uint64_t voxels = 0; ///< 0 marks a free entry of the table
        std::uint32_t number = 0;
        std::uint32_t firstCell = 0;
    };

    static std::uint32_t CountBits(std::uint64_t bits)
    {
        bits -= bits >> 1 & 0x5555555555555555;
        bits = (bits & 0x3333333333333333) + (bits >> 2 & 0x3333333333333333);
        bits = (bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0F;
        return static_cast<std::uint32_t>(bits * 0x0101010101010101 >> 56);
    }

    /// The block with this number, or the free entry where it would be.
    std::size_t GetEntry(std::uint32_t number) const
    {
        std::size_t const mask = m_blocks.size() - 1;
        std::size_t entry = (number * std::uint64_t(0x9E3779B97F4A7C15) >> 32) & mask;
        while (m_blocks[entry].voxels != 0 && m_blocks[entry].number != number) {
            entry = (entry + 1) & mask;
        }
        return entry;
    }

    void Reserve(std::size_t cellCount, std::size_t pointCount);
    void Finish();

    std::size_t m_pointCount = 0;
    std::vector<int> m_keys;             ///< of the cells
    std::vector<std::uint32_t> m_begins; ///< the number of each cell's first point, and of the end twice
    std::unique_ptr<double[]> m_points;  ///< for each cell all x, then all y, all z and all indices
    std::vector<Block> m_blocks;         ///< its size is a power of two
};

} // namespace Vorlane

#endif
