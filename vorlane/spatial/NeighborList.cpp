#include "vorlane/spatial/NeighborList.h"

#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/spatial/BlockAppenderInternal.h"
#include "vorlane/spatial/PairSearchInternal.h"
#include "vorlane/spatial/VoxelGridInternal.h"
#include "vorlane/spatial/VoxelStoreInternal.h"

#include <climits>
#include <cstddef>
#include <string>

namespace Vorlane {

using Spatia::Point3d;

namespace {

/// Puts the voxels at all offsets from the voxel (i, j, k) into `voxels`, null where there is none.
void FindVoxels(VoxelStore const& store, int i, int j, int k,
                VoxelStore::Voxel const* (&voxels)[allVoxelOffsets.size()])
{
    bool const isInterior = IsInterior(i, j, k);
    for (std::size_t n = 0; n != allVoxelOffsets.size(); ++n) {
        VoxelOffset const& offset = allVoxelOffsets[n];
        bool const isVoxel = isInterior || IsInGrid(i, j, k, offset);
        voxels[n] = isVoxel ? store.Find(MakeVoxelKey(i + offset.dx, j + offset.dy, k + offset.dz)) : nullptr;
    }
}

/// The squared distances between `point` and the points of `line`, with the bits of Point3d::Distance2.
struct LineDistances
{
    double squared[VoxelStore::lanes];

    LineDistances(Point3d const& point, VoxelStore::Line const& line)
    {
        for (int lane = 0; lane != VoxelStore::lanes; ++lane) {
            double const dx = point.x - line.x[lane];
            double const dy = point.y - line.y[lane];
            double const dz = point.z - line.z[lane];
            squared[lane] = dx * dx + dy * dy + dz * dz;
        }
    }
};

/// Collects the neighbours of a point and finds the closest of them.
class NeighborSearch
{
public:
    NeighborSearch(Point3d const& point, double distanceSquared, double best, IntArray& neighbors)
        : m_point(point), m_distanceSquared(distanceSquared), m_best(best), m_neighbors(neighbors)
    {}

    /// Takes a line in. Lines are collected, so that fetching them and testing them do not wait for one
    /// another.
    void Add(VoxelStore::Line const& line)
    {
        if (m_lineCount == lineCapacity) {
            Test();
        }
        m_lines[m_lineCount++] = &line;
    }

    /// Hands over what was found; the index of the closest point, -1 for none.
    int Finish()
    {
        Test();
        return m_closest;
    }

private:
    void Test()
    {
        constexpr int capacity = lineCapacity * VoxelStore::lanes;
        int indices[capacity];
        double squares[capacity];
        int count = 0;
        for (int n = 0; n != m_lineCount; ++n) {
            // Whether a point is near is hard to predict: write each one, and count those that are.
            VoxelStore::Line const& line = *m_lines[n];
            LineDistances const distances(m_point, line);
            for (int lane = 0; lane != VoxelStore::lanes; ++lane) {
                indices[count] = line.index[lane];
                squares[count] = distances.squared[lane];
                count += distances.squared[lane] < m_distanceSquared ? 1 : 0;
            }
        }
        m_lineCount = 0;
        if (count == 0) {
            return;
        }
        for (int i = 0; i != count; ++i) {
            if (squares[i] < m_best) {
                m_best = squares[i];
                m_closest = indices[i];
            }
        }
        m_neighbors.Reserve(count);
        m_neighbors.Append(indices, count);
    }

    static constexpr int lineCapacity = 256;

    Point3d m_point;
    double m_distanceSquared;
    double m_best;
    int m_closest = -1;
    BlockAppender m_neighbors;
    int m_lineCount = 0;
    VoxelStore::Line const* m_lines[lineCapacity];
};

} // namespace

NeighborList::NeighborList(double cutoff, int hashSize)
    : m_voxels(AfxWithMemoryException([] { return std::make_unique<VoxelStore>(); }))
{
    if (!(cutoff > 0.0)) {
        return;
    }
    if (hashSize < 1) {
        AfxThrowInvalidArgException("a hash size of " + std::to_string(hashSize) + " is below 1");
    }
    m_hashSize = static_cast<unsigned int>(hashSize);
    m_cutoff = cutoff;
    m_inverseCutoff = 1.0 / cutoff;
    m_cutoffSquared = cutoff * cutoff;
    m_voxelsPerAxis = voxelsPerAxis;
    m_voxelsPerPlane = voxelsPerAxis * voxelsPerAxis;
    m_maximum = (m_voxelsPerAxis / 2) * cutoff;
    m_minimum = -m_maximum;
}

NeighborList::~NeighborList() = default;

int NeighborList::Add(Point3d const& point)
{
    if (m_count == INT_MAX) {
        AfxThrowInvalidArgException("a neighbour list can't hold more than 2147483647 points");
    }
    AfxWithMemoryException([&] { m_voxels->Add(GetIndex(point), m_count, point); });
    return m_count++;
}

int NeighborList::GetNeighbors(Point3d const& point, double distance, IntArray& neighbors) const
{
    if (m_voxelsPerAxis == 0) {
        return -1;
    }
    VoxelStore::Voxel const* voxels[allVoxelOffsets.size()];
    FindVoxels(*m_voxels, GetSubIndex(point.x), GetSubIndex(point.y), GetSubIndex(point.z), voxels);
    NeighborSearch search(point, distance * distance, m_maximum, neighbors);
    for (VoxelStore::Voxel const* voxel : voxels) {
        if (voxel != nullptr) {
            m_voxels->ForEachLine(voxel->firstLine, voxel->count,
                                  [&](VoxelStore::Line const& line) { search.Add(line); });
        }
    }
    return search.Finish();
}

int NeighborList::GetNeighbors(Point3d const& point, IntArray& neighbors) const
{
    return GetNeighbors(point, m_cutoff, neighbors);
}

int NeighborList::GetPairs(IntArray& first, IntArray& second) const
{
    if (!(m_cutoffSquared > 0.0)) {
        // No pair is closer than 0.
        return first.GetSize();
    }
    if (&first == &second) {
        IntArray firstOnly;
        IntArray secondOnly;
        int const pairCount = GetPairs(firstOnly, secondOnly);
        for (int n = 0; n != pairCount; ++n) {
            first.Add(firstOnly[n]);
            first.Add(secondOnly[n]);
        }
        return first.GetSize();
    }
    AfxWithMemoryException(
        [&] { PairSearch(*m_voxels, m_cutoffSquared).AppendPairs(m_hashSize, first, second); });
    return first.GetSize();
}

} // namespace Vorlane
