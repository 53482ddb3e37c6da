#include "vorlane/spatial/NeighborList.h"

#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/spatial/VoxelStoreInternal.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <string>
#include <vector>

namespace Vorlane {

using Spatia::Point3d;

namespace {

/// The largest number of voxels on an axis whose cube, and so every key, fits a signed 32-bit number: the
/// cube root of 2^31 - 1, truncated.
constexpr int voxelsPerAxis = 1290;

struct VoxelOffset
{
    int dx;
    int dy;
    int dz;
};

// The order of these tables is the order of the results.
constexpr std::array<VoxelOffset, 27> allVoxelOffsets = {{
    {0, 0, 0},  {-1, 0, 0},  {1, 0, 0},    {0, 1, 0},   {-1, 1, 0},
    {1, 1, 0},  {0, -1, 0},  {-1, -1, 0},  {1, -1, 0}, //
    {0, 1, -1}, {-1, 1, -1}, {1, 1, -1},   {0, 0, -1},  {-1, 0, -1},
    {1, 0, -1}, {0, -1, -1}, {-1, -1, -1}, {1, -1, -1}, //
    {0, 1, 1},  {-1, 1, 1},  {1, 1, 1},    {0, 0, 1},   {-1, 0, 1},
    {1, 0, 1},  {0, -1, 1},  {-1, -1, 1},  {1, -1, 1},
}};

// One of each two opposite offsets, so that two neighbouring voxels meet from one side only.
constexpr std::array<VoxelOffset, 13> halfVoxelOffsets = {{
    {1, 0, 0},
    {-1, -1, 0},
    {0, -1, 0},
    {1, -1, 0}, //
    {-1, 1, 1},
    {0, 1, 1},
    {1, 1, 1}, //
    {-1, 0, 1},
    {0, 0, 1},
    {1, 0, 1}, //
    {-1, -1, 1},
    {0, -1, 1},
    {1, -1, 1},
}};

int MakeKey(int i, int j, int k)
{
    return (i * voxelsPerAxis + j) * voxelsPerAxis + k;
}

/// Puts the voxels at `offsets` from the voxel (i, j, k) into `neighbors`, null where there is none.
template <std::size_t size>
void FindVoxels(VoxelStore const& voxels, int i, int j, int k, std::array<VoxelOffset, size> const& offsets,
                VoxelStore::Voxel const* (&neighbors)[size])
{
    auto const isInside = [](int coordinate) {
        return coordinate >= 0 && coordinate < voxelsPerAxis;
    };
    auto const isInterior = [](int coordinate) {
        return coordinate > 0 && coordinate < voxelsPerAxis - 1;
    };
    if (isInterior(i) && isInterior(j) && isInterior(k)) {
        int const key = MakeKey(i, j, k);
        for (std::size_t n = 0; n != size; ++n) {
            neighbors[n] = voxels.Find(key + MakeKey(offsets[n].dx, offsets[n].dy, offsets[n].dz));
        }
        return;
    }
    for (std::size_t n = 0; n != size; ++n) {
        int const ni = i + offsets[n].dx;
        int const nj = j + offsets[n].dy;
        int const nk = k + offsets[n].dz;
        bool const isVoxel = isInside(ni) && isInside(nj) && isInside(nk);
        neighbors[n] = isVoxel ? voxels.Find(MakeKey(ni, nj, nk)) : nullptr;
    }
}

/// Appends blocks of numbers to an array. In between, the array may be longer than what was appended.
class BlockAppender
{
public:
    explicit BlockAppender(IntArray& array) : m_array(array), m_size(array.GetSize()) {}
    BlockAppender(BlockAppender const&) = delete;
    BlockAppender& operator=(BlockAppender const&) = delete;

    ~BlockAppender()
    {
        if (m_size < m_array.GetSize()) {
            m_array.SetSize(m_size, -1);
        }
    }

    /// Makes the array hold `count` numbers more, so that Append cannot fail.
    void Reserve(int count)
    {
        if (count > INT_MAX - m_size) {
            AfxThrowInvalidArgException("an array of " + std::to_string(m_size) + " numbers can't take " +
                                        std::to_string(count) + " more");
        }
        int const needed = m_size + count;
        if (needed > m_array.GetSize()) {
            // In steps of an eighth, so that the copies of a large array stay in proportion to its size.
            int const roomy = m_size + std::min(m_size / 8, INT_MAX - m_size);
            m_array.SetSize(needed <= m_array.GetCapacity() ? needed : std::max(needed, roomy), -1);
        }
    }

    void Append(int const* values, int count)
    {
        std::copy_n(values, count, m_array.GetData() + m_size);
        m_size += count;
    }

private:
    IntArray& m_array;
    int m_size;
};

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

    void Test(VoxelStore::Line const& line)
    {
        if (m_count > capacity - VoxelStore::lanes) {
            Flush();
        }
        // Whether a point is near is hard to predict: write each one, and count those that are.
        LineDistances const distances(m_point, line);
        for (int lane = 0; lane != VoxelStore::lanes; ++lane) {
            m_indices[m_count] = line.index[lane];
            m_squares[m_count] = distances.squared[lane];
            m_count += distances.squared[lane] < m_distanceSquared ? 1 : 0;
        }
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
        for (int i = 0; i != m_count; ++i) {
            if (m_squares[i] < m_best) {
                m_best = m_squares[i];
                m_closest = m_indices[i];
            }
        }
        m_neighbors.Reserve(m_count);
        m_neighbors.Append(m_indices, m_count);
        m_count = 0;
    }

    static constexpr int capacity = 256;

    Point3d m_point;
    double m_distanceSquared;
    double m_best;
    int m_closest = -1;
    BlockAppender m_neighbors;
    int m_count = 0;
    int m_indices[capacity];
    double m_squares[capacity];
};

/// Collects pairs in two buffers and hands them over in blocks.
class PairSearch
{
public:
    /// The points of one voxel.
    struct Points
    {
        std::vector<VoxelStore::Line const*> lines;
        std::size_t count = 0;
    };

    PairSearch(double cutoffSquared, IntArray& first, IntArray& second)
        : m_cutoffSquared(cutoffSquared), m_first(first), m_second(second)
    {}

    /// The pairs inside one voxel.
    void TestInside(Points const& points)
    {
        for (std::size_t p = 0; p + 1 < points.count; ++p) {
            if (p % 2 == 0) {
                // The other point of the line; testing the whole line would also find the point itself.
                MakeRoom(1);
                VoxelStore::Line const& line = *points.lines[p / 2];
                Put(line.index[0], line.index[1], GetPoint(line, 0).Distance2(GetPoint(line, 1)));
            }
            TestPoint(points, p, points, p / 2 + 1);
        }
    }

    /// The pairs between two voxels.
    void TestBetween(Points const& points, Points const& others)
    {
        for (std::size_t p = 0; p != points.count; ++p) {
            TestPoint(points, p, others, 0);
        }
    }

    void Flush()
    {
        if (m_count == 0) {
            return;
        }
        m_first.Reserve(m_count);
        m_second.Reserve(m_count);
        m_first.Append(m_firstIndices, m_count);
        m_second.Append(m_secondIndices, m_count);
        m_count = 0;
    }

private:
    static Point3d GetPoint(VoxelStore::Line const& line, std::size_t lane)
    {
        return Point3d(line.x[lane], line.y[lane], line.z[lane]);
    }

    /// The pairs of point `p` with the points of `others`, from line `begin` on.
    void TestPoint(Points const& points, std::size_t p, Points const& others, std::size_t begin)
    {
        constexpr std::size_t blockSize = 64;
        VoxelStore::Line const& line = *points.lines[p / VoxelStore::lanes];
        Point3d const point = GetPoint(line, p % VoxelStore::lanes);
        int const index = line.index[p % VoxelStore::lanes];
        while (begin < others.lines.size()) {
            std::size_t const end = std::min(others.lines.size(), begin + blockSize);
            MakeRoom(static_cast<int>(blockSize) * VoxelStore::lanes);
            for (; begin != end; ++begin) {
                VoxelStore::Line const& other = *others.lines[begin];
                LineDistances const distances(point, other);
                for (int lane = 0; lane != VoxelStore::lanes; ++lane) {
                    Put(index, other.index[lane], distances.squared[lane]);
                }
            }
        }
    }

    void MakeRoom(int count)
    {
        if (m_count + count > capacity) {
            Flush();
        }
    }

    /// Whether a pair is close is hard to predict: write each one, and count those that are.
    void Put(int first, int second, double distanceSquared)
    {
        m_firstIndices[m_count] = first;
        m_secondIndices[m_count] = second;
        m_count += distanceSquared < m_cutoffSquared ? 1 : 0;
    }

    static constexpr int capacity = 4096;

    double m_cutoffSquared;
    BlockAppender m_first;
    BlockAppender m_second;
    int m_count = 0;
    int m_firstIndices[capacity];
    int m_secondIndices[capacity];
};

struct OrderedVoxel
{
    std::uint64_t order;
    VoxelStore::Voxel const* voxel;
};

/// Sorts by `order`, byte by byte from the lowest, leaving out the bytes that are the same everywhere.
void SortByOrder(std::vector<OrderedVoxel>& voxels)
{
    std::vector<OrderedVoxel> sorted(voxels.size());
    for (int shift = 0; shift != 64; shift += 8) {
        auto const digit = [shift](OrderedVoxel const& voxel) {
            return (voxel.order >> shift) & 255u;
        };
        std::array<std::size_t, 256> position = {};
        for (OrderedVoxel const& voxel : voxels) {
            ++position[digit(voxel)];
        }
        if (position[digit(voxels.front())] == voxels.size()) {
            continue;
        }
        std::size_t next = 0;
        for (std::size_t& entry : position) {
            std::size_t const count = entry;
            entry = next;
            next += count;
        }
        for (OrderedVoxel const& voxel : voxels) {
            sorted[position[digit(voxel)]++] = voxel;
        }
        voxels.swap(sorted);
    }
}

/// The voxels by bucket, and in a bucket the newest first.
std::vector<OrderedVoxel> GetVoxelsInOrder(VoxelStore const& voxels, unsigned int hashSize)
{
    std::vector<OrderedVoxel> ordered;
    ordered.reserve(voxels.GetVoxelCount());
    voxels.ForEachVoxel([&](VoxelStore::Voxel const& voxel) {
        std::uint64_t const bucket = (static_cast<std::uint32_t>(voxel.key) >> 4) % hashSize;
        ordered.push_back({bucket << 32 | static_cast<std::uint32_t>(~voxel.firstLine), &voxel});
    });
    if (!ordered.empty()) {
        SortByOrder(ordered);
    }
    return ordered;
}

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
    FindVoxels(*m_voxels, GetSubIndex(point.x), GetSubIndex(point.y), GetSubIndex(point.z), allVoxelOffsets,
               voxels);
    NeighborSearch search(point, distance * distance, m_maximum, neighbors);
    for (VoxelStore::Voxel const* voxel : voxels) {
        if (voxel != nullptr) {
            m_voxels->ForEachLine(*voxel, [&](VoxelStore::Line const& line) { search.Test(line); });
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
    AfxWithMemoryException([&] {
        PairSearch search(m_cutoffSquared, first, second);
        PairSearch::Points points;
        PairSearch::Points others;
        auto const collect = [this](VoxelStore::Voxel const& voxel, PairSearch::Points& target) {
            target.lines.clear();
            target.count = static_cast<std::size_t>(voxel.count);
            m_voxels->ForEachLine(voxel,
                                  [&](VoxelStore::Line const& line) { target.lines.push_back(&line); });
        };
        for (OrderedVoxel const& ordered : GetVoxelsInOrder(*m_voxels, m_hashSize)) {
            collect(*ordered.voxel, points);
            search.TestInside(points);
            int const key = ordered.voxel->key;
            VoxelStore::Voxel const* neighbors[halfVoxelOffsets.size()];
            FindVoxels(*m_voxels, key / m_voxelsPerPlane, key / m_voxelsPerAxis % m_voxelsPerAxis,
                       key % m_voxelsPerAxis, halfVoxelOffsets, neighbors);
            for (VoxelStore::Voxel const* neighbor : neighbors) {
                if (neighbor != nullptr) {
                    collect(*neighbor, others);
                    search.TestBetween(points, others);
                }
            }
        }
        search.Flush();
    });
    return first.GetSize();
}

int NeighborList::GetSubIndex(double coordinate) const
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

int NeighborList::GetIndex(int i, int j, int k) const
{
    return m_voxelsPerPlane * i + m_voxelsPerAxis * j + k;
}

int NeighborList::GetIndex(Point3d const& point) const
{
    return GetIndex(GetSubIndex(point.x), GetSubIndex(point.y), GetSubIndex(point.z));
}

} // namespace Vorlane
