#ifndef VORLANE_BENCHMARKS_NEIGHBORPEERS_H
#define VORLANE_BENCHMARKS_NEIGHBORPEERS_H

/// \file
/// What the benchmarks of the neighbour list share: clouds of points, a flat cell list as the estimate of the
/// limit, and a k-d tree.

#include "vorlane/spatial/NeighborList.h"

#ifdef VORLANE_HAVE_NANOFLANN
#include <nanoflann.hpp>
#endif

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace Benchmarks {

using Spatia::Point3d;
using Points = std::vector<Point3d>;

/// Points in random order in a cube around the origin, 0.1 of them per unit of volume, like atoms per cubic
/// angstrom.
inline Points MakeCloud(std::size_t count)
{
    std::mt19937_64 engine(4711);
    double const half = 0.5 * std::cbrt(static_cast<double>(count) / 0.1);
    std::uniform_real_distribution<double> coordinate(-half, half);
    Points points(count);
    for (Point3d& point : points) {
        point.x = coordinate(engine);
        point.y = coordinate(engine);
        point.z = coordinate(engine);
    }
    return points;
}

/// Pairs of indices, without the order or the growth of a NeighborList.
struct PairList
{
    std::vector<int> first;
    std::vector<int> second;
};

/// All points sorted into the cells of a bounding box, built at once. Each cell's candidates, its own points
/// and those of half of its neighbours, are gathered into one buffer as floats, tested in blocks and
/// confirmed exactly.
class FlatCells
{
public:
    FlatCells(Points const& points, double cutoff) : m_cutoff(cutoff)
    {
        Point3d low = points[0];
        Point3d high = points[0];
        for (Point3d const& p : points) {
            low = Point3d(std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z));
            high = Point3d(std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z));
        }
        m_low = low;
        m_cells = {Along(high.x - low.x) + 1, Along(high.y - low.y) + 1, Along(high.z - low.z) + 1};
        std::vector<std::size_t> cellOf(points.size());
        m_start.assign(m_cells[0] * m_cells[1] * m_cells[2] + 1, 0);
        for (std::size_t n = 0; n != points.size(); ++n) {
            Point3d const p = points[n] - low;
            cellOf[n] = (Along(p.x) * m_cells[1] + Along(p.y)) * m_cells[2] + Along(p.z);
            ++m_start[cellOf[n] + 1];
        }
        for (std::size_t c = 1; c != m_start.size(); ++c) {
            m_start[c] += m_start[c - 1];
        }
        std::vector<std::size_t> next(m_start.begin(), m_start.end() - 1);
        m_sorted.resize(points.size());
        for (std::size_t n = 0; n != points.size(); ++n) {
            m_sorted[next[cellOf[n]]++] = {points[n], static_cast<int>(n)};
        }
    }

    void GetPairs(PairList& pairs)
    {
        for (std::size_t i = 0; i != m_cells[0]; ++i) {
            for (std::size_t j = 0; j != m_cells[1]; ++j) {
                for (std::size_t k = 0; k != m_cells[2]; ++k) {
                    PairsOfCell(i, j, k, pairs);
                }
            }
        }
    }

    /// Appends the points closer than the cutoff.
    void GetNeighbors(Point3d const& point, std::vector<int>& neighbors) const
    {
        std::array<std::size_t, 3> first = {};
        std::array<std::size_t, 3> last = {};
        Point3d const p = point - m_low;
        double const coordinates[] = {p.x, p.y, p.z};
        for (std::size_t axis = 0; axis != 3; ++axis) {
            std::size_t const cell = std::min(Along(std::max(coordinates[axis], 0.0)), m_cells[axis] - 1);
            first[axis] = cell == 0 ? 0 : cell - 1;
            last[axis] = std::min(cell + 1, m_cells[axis] - 1);
        }
        double const limit = m_cutoff * m_cutoff;
        for (std::size_t i = first[0]; i <= last[0]; ++i) {
            for (std::size_t j = first[1]; j <= last[1]; ++j) {
                std::size_t const row = (i * m_cells[1] + j) * m_cells[2];
                for (std::size_t n = m_start[row + first[2]]; n != m_start[row + last[2] + 1]; ++n) {
                    if (m_sorted[n].point.Distance2(point) < limit) {
                        neighbors.push_back(m_sorted[n].index);
                    }
                }
            }
        }
    }

private:
    static constexpr std::size_t block = 64;

    std::size_t Along(double length) const { return static_cast<std::size_t>(length / m_cutoff); }

    void Gather(std::size_t begin, std::size_t end)
    {
        for (std::size_t n = begin; n != end; ++n) {
            Point3d const p = m_sorted[n].point - m_origin;
            m_x.push_back(static_cast<float>(p.x));
            m_y.push_back(static_cast<float>(p.y));
            m_z.push_back(static_cast<float>(p.z));
            m_candidates.push_back(m_sorted[n]);
        }
    }

    void PairsOfCell(std::size_t i, std::size_t j, std::size_t k, PairList& pairs)
    {
        std::size_t const cell = (i * m_cells[1] + j) * m_cells[2] + k;
        std::size_t const own = m_start[cell + 1] - m_start[cell];
        if (own == 0) {
            return;
        }
        m_origin = m_sorted[m_start[cell]].point;
        m_x.clear();
        m_y.clear();
        m_z.clear();
        m_candidates.clear();
        // The own cell and the next in its row, then three cells of each of the four rows behind.
        Gather(m_start[cell], m_start[cell + (k + 1 != m_cells[2] ? 2 : 1)]);
        for (int row = 0; row != 4; ++row) {
            std::size_t const ni = row == 0 ? i : i + 1;
            std::size_t const nj = row == 0 ? j + 1 : j + static_cast<std::size_t>(row) - 2;
            if (ni < m_cells[0] && nj < m_cells[1]) {
                std::size_t const first = (ni * m_cells[1] + nj) * m_cells[2];
                Gather(m_start[first + (k == 0 ? 0 : k - 1)], m_start[first + std::min(k + 2, m_cells[2])]);
            }
        }
        std::size_t const count = m_x.size();
        m_x.resize(count + block, 1e30F);
        m_y.resize(count + block);
        m_z.resize(count + block);
        for (std::size_t p = 0; p != own; ++p) {
            PairsOfPoint(p, count, pairs);
        }
    }

    void PairsOfPoint(std::size_t p, std::size_t count, PairList& pairs)
    {
        double const limit = m_cutoff * m_cutoff;
        float const filter = static_cast<float>(limit * 1.0001);
        float const x = m_x[p];
        float const y = m_y[p];
        float const z = m_z[p];
        Entry const own = m_candidates[p];
        for (std::size_t begin = p + 1; begin < count; begin += block) {
            std::size_t const size = std::min(block, count - begin);
            float squares[block];
            for (std::size_t n = 0; n < (size + 3) / 4 * 4; ++n) {
                float const dx = m_x[begin + n] - x;
                float const dy = m_y[begin + n] - y;
                float const dz = m_z[begin + n] - z;
                squares[n] = dx * dx + dy * dy + dz * dz;
            }
            std::size_t near[block];
            std::size_t nearCount = 0;
            for (std::size_t n = 0; n != size; ++n) {
                near[nearCount] = begin + n;
                nearCount += squares[n] < filter ? 1 : 0;
            }
            int found[block];
            std::size_t foundCount = 0;
            for (std::size_t n = 0; n != nearCount; ++n) {
                Entry const& candidate = m_candidates[near[n]];
                found[foundCount] = candidate.index;
                foundCount += own.point.Distance2(candidate.point) < limit ? 1 : 0;
            }
            pairs.first.insert(pairs.first.end(), foundCount, own.index);
            pairs.second.insert(pairs.second.end(), found, found + foundCount);
        }
    }

    struct Entry
    {
        Point3d point;
        int index;
    };

    double m_cutoff;
    Point3d m_low;
    std::array<std::size_t, 3> m_cells;
    std::vector<std::size_t> m_start;
    std::vector<Entry> m_sorted;
    Point3d m_origin;
    std::vector<float> m_x;
    std::vector<float> m_y;
    std::vector<float> m_z;
    std::vector<Entry> m_candidates;
};

#ifdef VORLANE_HAVE_NANOFLANN
/// The points behind the interface that nanoflann asks for, and its tree over them.
class KdTree
{
public:
    explicit KdTree(Points const& points) : m_points(points), m_tree(3, *this, {10}) {}

    std::size_t kdtree_get_point_count() const { return m_points.size(); }
    double kdtree_get_pt(std::size_t index, std::size_t axis) const
    {
        Point3d const& point = m_points[index];
        return axis == 0 ? point.x : axis == 1 ? point.y : point.z;
    }
    template <typename Box>
    bool kdtree_get_bbox(Box&) const
    {
        return false;
    }

    /// Sets `found` to index and squared distance of the points closer than `distance`.
    void GetNeighbors(Point3d const& point, double distance,
                      std::vector<std::pair<unsigned int, double>>& found) const
    {
        nanoflann::SearchParams parameters;
        parameters.sorted = false;
        double const coordinates[] = {point.x, point.y, point.z};
        m_tree.radiusSearch(coordinates, distance * distance, found, parameters);
    }

    void GetPairs(double cutoff, PairList& pairs) const
    {
        std::vector<std::pair<unsigned int, double>> found;
        for (std::size_t n = 0; n != m_points.size(); ++n) {
            GetNeighbors(m_points[n], cutoff, found);
            for (auto const& neighbor : found) {
                if (neighbor.first > n) {
                    pairs.first.push_back(static_cast<int>(n));
                    pairs.second.push_back(static_cast<int>(neighbor.first));
                }
            }
        }
    }

private:
    using Distance = nanoflann::L2_Simple_Adaptor<double, KdTree>;

    Points const& m_points;
    nanoflann::KDTreeSingleIndexAdaptor<Distance, KdTree, 3, unsigned int> m_tree;
};
#endif

/// Calls `registerCase(cutoff, size)` for the cases of the table.
template <typename RegisterCase>
void ForEachCase(RegisterCase&& registerCase)
{
    for (int const cutoff : {3, 5, 8}) {
        for (std::size_t const size : {10000, 100000, 1000000}) {
            registerCase(cutoff, size);
        }
    }
}

inline std::string Name(char const* operation, int cutoff, char const* peer, std::size_t size)
{
    return std::string(operation) + "/rc" + std::to_string(cutoff) + "/" + peer + "/" + std::to_string(size);
}

/// The clouds, made once.
inline Points const& GetCloud(std::size_t size)
{
    static std::map<std::size_t, Points> clouds;
    Points& cloud = clouds[size];
    if (cloud.empty()) {
        cloud = MakeCloud(size);
    }
    return cloud;
}

inline void Fill(Vorlane::NeighborList& list, Points const& points)
{
    for (Point3d const& point : points) {
        list.Add(point);
    }
}

/// The number of buckets in the benchmarks.
constexpr int hashSize = 100003;

} // namespace Benchmarks

#endif
