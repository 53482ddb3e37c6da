#ifndef VORLANE_SPATIAL_PAIRSEARCHINTERNAL_H
#define VORLANE_SPATIAL_PAIRSEARCHINTERNAL_H

#include "vorlane/spatial/BlockAppenderInternal.h"
#include "vorlane/spatial/VoxelGridInternal.h"
#include "vorlane/spatial/VoxelIndexInternal.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vorlane {

/// The search for all pairs closer than a cutoff, the voxel's edge.
///
/// For each cell the points of half of its neighbours, the candidates, are gathered into one buffer, and each
/// own point is tested against all of it in one go: most cells hold so few points that a loop for each
/// neighbour would spend its time in beginning and ending. That yields the pairs of the cell point by point,
/// where they are due neighbour by neighbour; a counting sort puts them right.
class PairSearch
{
public:
    PairSearch(VoxelIndex const& index, double cutoffSquared);

    /// Appends the pairs in the order of the voxels' buckets, in a bucket from the newest voxel to the
    /// oldest.
    void AppendPairs(unsigned int hashSize, IntArray& first, IntArray& second);

private:
    using Cell = VoxelIndex::Cell;

    /// The voxels with this many keys in a row share a bucket.
    static constexpr std::uint32_t runSize = 16;

    std::uint32_t GetRun(std::size_t number) const
    {
        return static_cast<std::uint32_t>(m_index.GetKey(number)) / runSize;
    }
    std::vector<Keyed> GetRuns(unsigned int hashSize) const;
    void AppendCells(std::size_t number, std::vector<Keyed>& cells) const;
    void AppendInOrder(std::vector<Keyed>& cells, PairAppender& pairs);
    void AppendBySweep(std::vector<Keyed>& cells, PairAppender& pairs);
    void AppendPairsOf(std::size_t number, PairAppender& pairs);
    void FindAround(std::uint32_t run);
    void GatherCandidates(std::size_t number);
    void Gather(Cell const& cell);
    std::size_t FindNear(std::size_t p, std::size_t begin, std::size_t end, int* near) const;
    void AppendPairsOfSmall(std::size_t own, PairAppender& pairs);
    void AppendPairsOfLarge(std::size_t own, PairAppender& pairs);

    VoxelIndex const& m_index;
    double m_cutoffSquared;

    // A run of voxels, and the numbers of the cells in it and around it, by dx, dy and place along z.
    std::uint32_t m_run = 0xFFFFFFFF;
    std::uint32_t m_around[3][3][runSize + 2];

    // The pairs of a sweep, and where those of each of its cells begin.
    IntArray m_foundFirst;
    IntArray m_foundSecond;
    PairAppender m_found;
    std::vector<int> m_foundBegin;

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
