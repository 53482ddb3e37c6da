#ifndef VORLANE_SPATIAL_NEIGHBORLIST_H
#define VORLANE_SPATIAL_NEIGHBORLIST_H

/// \file
/// A growing set of points in space that is asked for the points near a place and for all close pairs.

#include "vorlane/Export.h"
#include "vorlane/foundation/TypedArrays.h"
#include "vorlane/foundation/ValueTypes.h"

#include <memory>

namespace Vorlane {

class PointStore;

/// A sparse grid of cubic voxels whose edge is the cutoff; only voxels with points in them take memory.
///
/// The grid has 1290 voxels on each axis and is centred on the origin, so it reaches from -645 to 645 times
/// the cutoff. Points outside belong to its boundary voxels, with their true coordinates: every result stays
/// right, but far outside many points share a voxel, and time grows with the square of their number. A NaN
/// coordinate belongs to voxel 0 of its axis, and such a point is near nothing.
///
/// A cutoff that is not above 0, NaN included, makes an inert list: points get their numbers, queries find
/// nothing.
///
/// All distances are compared as squares and strictly: points exactly a cutoff apart are not a pair.
///
/// Memory: at most 64 bytes a point and 64 bytes a voxel, and 16 kilobytes.
///
/// The first query after more than 64 calls of Add sorts the new points, and takes memory for that too; so
/// the cost of a point is mostly paid there. Points and queries may well come by turns. Queries may run side
/// by side on several threads, as long as no Add runs.
///
/// Source: B. Quentrec and C. Brot, "New method for searching for neighbors in molecular dynamics
/// computations", Journal of Computational Physics 13 (1973).
class VORLANE_EXPORT NeighborList
{
public:
    /// One stored point.
    struct VoxelData
    {
        int index = 0;         ///< what Add returned for it
        Spatia::Point3d point; ///< where it lies
    };

    /// `cutoff`, in the unit of the coordinates, is the edge of a voxel, the default search distance and the
    /// limit of pairs. `hashSize` is the number of buckets that GetPairs' order follows; it has no part in
    /// the speed.
    ///
    /// \throws CInvalidArgException if `hashSize` is below 1 and `cutoff` above 0.
    NeighborList(double cutoff, int hashSize);
    virtual ~NeighborList();

    NeighborList(NeighborList const&) = delete;
    NeighborList& operator=(NeighborList const&) = delete;

    /// Stores a copy of `point` and gives its index: 0, 1, 2 and so on. Constant time.
    ///
    /// \throws CMemoryException and leaves the list as it was.
    int Add(Spatia::Point3d const& point);

    /// Appends to `neighbors` the indices of the points closer than `distance` to `point` and returns the
    /// index of the closest one, the first met of equally close ones; -1 if there is none.
    ///
    /// Only the 27 voxels around `point` are searched, so beyond the cutoff the result is not complete. The
    /// order is that of the voxels in a fixed table (the own one first; see docs/behaviour.md), and in a
    /// voxel that of addition. A negative `distance` counts as its absolute value, NaN finds nothing.
    ///
    /// The search for the closest point starts from 645 times the cutoff and compares this length with
    /// squared distances: points that are all farther than its square root are appended, but -1 is returned.
    /// With a `distance` up to the cutoff that takes a cutoff above 645.
    int GetNeighbors(Spatia::Point3d const& point, double distance, IntArray& neighbors) const;

    /// The same with the cutoff as the distance.
    int GetNeighbors(Spatia::Point3d const& point, IntArray& neighbors) const;

    /// Appends every pair of points closer than the cutoff once, at the same position of `first` and `second`
    /// if they were equally long, and returns the size of `first` afterwards. If both are one array, the
    /// indices of a pair follow one another.
    ///
    /// The pairs are ordered by the bucket, (key >> 4) mod hashSize, of the voxel they are met from; in a
    /// bucket the newest voxel comes first; then come the pairs inside the voxel and those with 13 of its
    /// neighbours in the order of a fixed table. Within a voxel, `first` holds the smaller index.
    ///
    /// Takes time in proportion to points and pairs inside the grid. With up to 8 points to a voxel, on
    /// average, it takes as much memory for the call as the results of the largest bucket; and where points
    /// and queries came by turns, some 32 bytes a point and 64 bytes a voxel.
    ///
    /// Where the first part of the pairs lets expect more of them, the arrays grow to up to twice the size
    /// that they need, and keep that capacity.
    ///
    /// \throws CInvalidArgException if there are more pairs than an array can hold.
    int GetPairs(IntArray& first, IntArray& second) const;

protected:
    /// The voxel coordinate on one axis, 0 to 1289.
    int GetSubIndex(double coordinate) const;

    /// The voxel key: (1290 i + j) 1290 + k.
    int GetIndex(int i, int j, int k) const;
    int GetIndex(Spatia::Point3d const& point) const;

private:
    struct NearWaiting;

    void PreparePoints() const;
    NearWaiting* FindNearWaiting(Spatia::Point3d const& point, double distanceSquared,
                                 NearWaiting* found) const;

    int m_count = 0;
    double m_cutoff = 0.0;
    double m_inverseCutoff = 0.0;
    double m_cutoffSquared = 0.0;
    double m_minimum = 0.0;
    double m_maximum = 0.0;
    int m_voxelsPerAxis = 0;
    int m_voxelsPerPlane = 0;
    unsigned int m_hashSize = 17;
    std::unique_ptr<PointStore> m_points;
};

inline int NeighborList::GetSubIndex(double coordinate) const
{
    // Not written as a test for "at or below", so that NaN comes here too.
    if (!(coordinate > m_minimum)) {
        return 0;
    }
    int const last = m_voxelsPerAxis - 1;
    if (coordinate >= m_maximum) {
        return last;
    }
    // Just below the upper bound the product can round to the number of voxels; with extreme cutoffs it is
    // infinite or NaN.
    double const position = (coordinate - m_minimum) * m_inverseCutoff;
    return position < last ? static_cast<int>(position) : last;
}

inline int NeighborList::GetIndex(int i, int j, int k) const
{
    return m_voxelsPerPlane * i + m_voxelsPerAxis * j + k;
}

inline int NeighborList::GetIndex(Spatia::Point3d const& point) const
{
    return GetIndex(GetSubIndex(point.x), GetSubIndex(point.y), GetSubIndex(point.z));
}

} // namespace Vorlane

#endif
