#ifndef VORLANE_SPATIAL_PAIRSEARCHINTERNAL_H
#define VORLANE_SPATIAL_PAIRSEARCHINTERNAL_H

#include "vorlane/spatial/BlockAppenderInternal.h"
#include "vorlane/spatial/VoxelGridInternal.h"
#include "vorlane/spatial/VoxelStoreInternal.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Vorlane {

/// The search for all pairs closer than a cutoff, the voxel's edge.
///
/// It works on a copy of the points that is sorted by voxel, so that one sweep finds the neighbours of all
/// voxels. For each voxel the points of half of its neighbours, the candidates, are gathered into one buffer,
/// and each own point is tested against all of it in one go: most voxels hold so few points that a loop for
/// each neighbour would spend its time in beginning and ending. That yields the pairs of the voxel point by
/// point, where they are due neighbour by neighbour; a counting sort puts them right.
class PairSearch
{
public:
    PairSearch(VoxelStore const& voxels, double cutoffSquared);

    /// Appends the pairs in the order of the voxels' buckets, in a bucket from the newest voxel to the
    /// oldest.
    void AppendPairs(unsigned int hashSize, IntArray& first, IntArray& second);

private:
    static constexpr int none = -1;

    /// The points of one voxel: all x, then all y, all z and all indices, from `4 * begin` on in m_points.
    struct Cell
    {
        int key;
        int count;
        std::size_t begin;
        std::uint32_t firstLine;
    };

    /// The numbers of a cell's neighbours, or none.
    using Neighbors = std::array<int, halfVoxelOffsets.size()>;

    /// Finds the neighbours of all cells, one after the other. Those at one offset come in the order of the
    /// cells, so each offset has a cursor that only advances.
    class NeighborSweep
    {
    public:
        explicit NeighborSweep(std::vector<Cell> const& cells) : m_cells(cells) {}
        Neighbors Next();

    private:
        std::vector<Cell> const& m_cells;
        std::size_t m_next = 0;
        std::array<std::size_t, halfVoxelOffsets.size()> m_cursors = {};
    };

    void CopyPoints(VoxelStore const& voxels);
    std::vector<int> GetCellsInOrder(unsigned int hashSize) const;
    void AppendInOrder(std::vector<int> const& order, PairAppender& pairs);
    void AppendBySweep(std::vector<int> const& order, IntArray& first, IntArray& second);
    void GatherCandidates(Cell const& cell, Neighbors const& neighbors);
    void Gather(Cell const& cell);
    std::size_t FindNear(std::size_t p, std::size_t begin, std::size_t end, int* near) const;
    void AppendPairsOf(Cell const& cell, Neighbors const& neighbors, PairAppender& pairs);
    void AppendPairsOfSmall(Cell const& cell, PairAppender& pairs);
    void AppendPairsOfLarge(Cell const& cell, PairAppender& pairs);

    double m_cutoffSquared;
    std::vector<Cell> m_cells; ///< by key
    std::size_t m_pointCount = 0;
    std::unique_ptr<double[]> m_points;

    // The candidates of the present cell: its own points, then those of its neighbours.
    std::size_t m_candidateCount = 0;
    std::vector<double> m_x;
    std::vector<double> m_y;
    std::vector<double> m_z;
    std::vector<double> m_indices;
    std::vector<unsigned char> m_groups; ///< 0 for own points, then the neighbour's number
    std::array<std::size_t, halfVoxelOffsets.size() + 2> m_groupBegin; ///< of each group, and the end
    std::vector<int> m_near;
    std::vector<std::size_t> m_nearEnd;
};

} // namespace Vorlane

#endif
