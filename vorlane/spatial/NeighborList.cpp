#include "vorlane/spatial/NeighborList.h"

#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/spatial/BlockAppenderInternal.h"
#include "vorlane/spatial/PairSearchInternal.h"
#include "vorlane/spatial/PointStoreInternal.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <vector>

namespace Vorlane {

using Spatia::Point3d;

namespace {

/// Collects the neighbours of a point and finds the closest of them.
class NeighborSearch
{
public:
    NeighborSearch(Point3d const& point, double distanceSquared, double best, IntArray& neighbors)
        : m_point(point), m_distanceSquared(distanceSquared), m_best(best), m_neighbors(neighbors)
    {}

    /// Takes the points of a cell in.
    void Add(VoxelIndex::Cell const& cell)
    {
        double const* const xs = cell.GetX();
        double const* const ys = cell.GetY();
        double const* const zs = cell.GetZ();
        double const* const indices = cell.GetIndices();
        for (std::size_t begin = 0; begin < cell.count; begin += block) {
            std::size_t const size = std::min(block, cell.count - begin);
            double squares[block];
            // Up to a whole number of steps of four, with the bits of Point3d::Distance2.
            for (std::size_t n = 0; n < size; n += 4) {
                for (std::size_t lane = n; lane != n + 4; ++lane) {
                    double const dx = m_point.x - xs[begin + lane];
                    double const dy = m_point.y - ys[begin + lane];
                    double const dz = m_point.z - zs[begin + lane];
                    squares[lane] = dx * dx + dy * dy + dz * dz;
                }
            }
            if (m_count + block > capacity) {
                Flush();
            }
            // Whether a point is near is hard to predict: write each one, and count those that are.
            for (std::size_t n = 0; n != size; ++n) {
                m_indices[m_count] = static_cast<int>(indices[begin + n]);
                m_squares[m_count] = squares[n];
                m_count += squares[n] < m_distanceSquared ? 1 : 0;
            }
        }
    }

    /// Takes a point in that is known to be near.
    void AddNear(int index, double square)
    {
        if (m_count == capacity) {
            Flush();
        }
        m_indices[m_count] = index;
        m_squares[m_count] = square;
        ++m_count;
    }

    /// Hands over what was found; the index of the closest point, -1 for none.
    int Finish()
    {
        Flush();
        return m_closest;
    }

private:
    void Flush()
    {
        if (m_count == 0) {
            return;
        }
        for (std::size_t n = 0; n != m_count; ++n) {
            if (m_squares[n] < m_best) {
                m_best = m_squares[n];
                m_closest = m_indices[n];
            }
        }
        m_neighbors.Reserve(static_cast<int>(m_count));
        m_neighbors.Append(m_indices, static_cast<int>(m_count));
        m_count = 0;
    }

    static constexpr std::size_t block = 32;
    static constexpr std::size_t capacity = 512;

    Point3d m_point;
    double m_distanceSquared;
    double m_best;
    int m_closest = -1;
    BlockAppender m_neighbors;
    std::size_t m_count = 0;
    int m_indices[capacity];
    double m_squares[capacity];
};

} // namespace

NeighborList::NeighborList(double cutoff, int hashSize)
    : m_points(AfxWithMemoryException([] { return std::make_unique<PointStore>(); }))
{
    if (!(cutoff > 0.0)) {
        return;
    }
    if (hashSize < 1) {
        AfxThrowInvalidArgException("a hash size of ", hashSize, " is below 1");
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
    AfxWithMemoryException([&] { m_points->Add(point); });
    return m_count++;
}

void NeighborList::PreparePoints() const
{
    AfxWithMemoryException(
        [&] { m_points->Prepare([this](Point3d const& point) { return GetIndex(point); }); });
}

/// A point near a place that is in no index yet.
struct NeighborList::NearWaiting
{
    std::size_t place; ///< of its voxel, as GetPlace numbers the voxels around
    int index;
    double square; ///< of its distance
};

/// Writes those that are near `point` to `found`; the end of them.
NeighborList::NearWaiting* NeighborList::FindNearWaiting(Point3d const& point, double distanceSquared,
                                                         NearWaiting* found) const
{
    PointLog const& waiting = m_points->GetWaiting();
    for (std::size_t n = 0; n != waiting.GetSize(); ++n) {
        Point3d const& other = waiting[n];
        double const square = other.Distance2(point);
        if (square < distanceSquared) {
            VoxelOffset const offset = {GetSubIndex(other.x) - GetSubIndex(point.x),
                                        GetSubIndex(other.y) - GetSubIndex(point.y),
                                        GetSubIndex(other.z) - GetSubIndex(point.z)};
            if (std::abs(offset.dx) <= 1 && std::abs(offset.dy) <= 1 && std::abs(offset.dz) <= 1) {
                *found++ = {GetPlace(offset), m_points->GetFirstWaiting() + static_cast<int>(n), square};
            }
        }
    }
    return found;
}

int NeighborList::GetNeighbors(Point3d const& point, double distance, IntArray& neighbors) const
{
    if (m_voxelsPerAxis == 0) {
        return -1;
    }
    PreparePoints();
    auto const& indexes = m_points->GetIndexes();
    int const i = GetSubIndex(point.x);
    int const j = GetSubIndex(point.y);
    int const k = GetSubIndex(point.z);
    // The cells around the point in each index, by GetPlace.
    std::uint32_t cells[PointStore::mostIndexes][allVoxelOffsets.size()];
    for (std::size_t n = 0; n != indexes.size(); ++n) {
        std::uint32_t* row = cells[n];
        for (int dx = -1; dx != 2; ++dx) {
            for (int dy = -1; dy != 2; ++dy) {
                indexes[n].FindCells(MakeVoxelKey(i + dx, j + dy, k - 1), 3, row);
                row += 3;
            }
        }
    }
    double const distanceSquared = distance * distance;
    NearWaiting waiting[PointStore::mostWaiting];
    NearWaiting const* const waitingEnd = FindNearWaiting(point, distanceSquared, waiting);
    NeighborSearch search(point, distanceSquared, m_maximum, neighbors);
    bool const isInterior = IsInterior(i, j, k);
    for (VoxelOffset const& offset : allVoxelOffsets) {
        if (isInterior || IsInGrid(i, j, k, offset)) {
            std::size_t const place = GetPlace(offset);
            for (std::size_t n = 0; n != indexes.size(); ++n) {
                search.Add(indexes[n].GetCell(cells[n][place]));
            }
            for (NearWaiting const* near = waiting; near != waitingEnd; ++near) {
                if (near->place == place) {
                    search.AddNear(near->index, near->square);
                }
            }
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
    PreparePoints();
    AfxWithMemoryException([&] {
        std::optional<VoxelIndex> merged;
        VoxelIndex const& index =
            m_points->GetWhole([this](Point3d const& point) { return GetIndex(point); }, merged);
        PairSearch(index, m_cutoffSquared).AppendPairs(m_hashSize, first, second);
    });
    return first.GetSize();
}

} // namespace Vorlane
