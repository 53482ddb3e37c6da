#ifndef VORLANE_FUZZ_NEIGHBORCHECKS_H
#define VORLANE_FUZZ_NEIGHBORCHECKS_H

/// \file
/// A list of points that is asked for neighbours and pairs, beside brute force over all points.

#include "fuzz/Require.h"
#include "vorlane/spatial/NeighborList.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace VorlaneFuzz {

using Voxel = std::array<int, 3>;

/// An order of the 27 voxels around one, or of some of them: a list of signs on x, y and z.
class VoxelOrder
{
public:
    static constexpr std::size_t none = 27;

    explicit VoxelOrder(std::string const& list)
    {
        m_places.fill(none);
        for (std::size_t n = 0; n < list.size(); n += 4) {
            std::string const signs = "-0+";
            m_places[signs.find(list[n]) * 9 + signs.find(list[n + 1]) * 3 + signs.find(list[n + 2])] = n / 4;
        }
    }

    std::size_t GetPlace(Voxel const& from, Voxel const& to) const
    {
        std::size_t number = 0;
        for (std::size_t axis = 0; axis != 3; ++axis) {
            int const step = to[axis] - from[axis];
            if (step < -1 || step > 1) {
                return none;
            }
            number = 3 * number + static_cast<std::size_t>(step + 1);
        }
        return m_places[number];
    }

private:
    std::array<std::size_t, 27> m_places;
};

/// The results by brute force over all points, then brought into their order by what it is told to depend on.
struct NeighborModel
{
    double cutoff;
    int hashSize;
    std::vector<Spatia::Point3d> points;

    /// Ordered by the bucket of the voxel that a pair is met from, the newest voxel first, and the place of
    /// the other voxel.
    std::vector<std::pair<int, int>> GetPairs() const
    {
        static VoxelOrder const order("000 +00 --0 0-0 +-0 -++ 0++ +++ -0+ 00+ +0+ --+ 0-+ +-+");
        std::vector<Voxel> voxels;
        std::map<Voxel, std::size_t> numbers;
        std::vector<std::size_t> ages;
        for (Spatia::Point3d const& point : points) {
            voxels.push_back(GetVoxel(point));
            ages.push_back(numbers.emplace(voxels.back(), numbers.size()).first->second);
        }
        std::vector<std::pair<std::size_t, std::pair<int, int>>> ordered;
        std::size_t closePairs = 0;
        for (std::size_t from = 0; from != points.size(); ++from) {
            auto const bucket = static_cast<std::size_t>(GetKey(voxels[from]) / 16 % hashSize);
            std::size_t const rank = (bucket * points.size() + points.size() - ages[from]) * VoxelOrder::none;
            for (std::size_t to = 0; to != points.size(); ++to) {
                if (from != to && points[from].Distance2(points[to]) < cutoff * cutoff) {
                    closePairs += from < to ? 1 : 0;
                    std::size_t const place = order.GetPlace(voxels[from], voxels[to]);
                    if (place != VoxelOrder::none && (place > 0 || from < to)) {
                        ordered.push_back({rank + place, {from, to}});
                    }
                }
            }
        }
        Require(ordered.size() == closePairs);
        return Sorted(ordered);
    }

    int GetNeighbors(Spatia::Point3d const& point, double distance, std::vector<int>& neighbors) const
    {
        static VoxelOrder const order("000 -00 +00 0+0 -+0 ++0 0-0 --0 +-0 0+- -+- ++- 00- -0- +0- 0-- --- "
                                      "+-- 0++ -++ +++ 00+ -0+ +0+ 0-+ --+ +-+");
        std::vector<std::pair<std::size_t, int>> ordered;
        std::size_t closePoints = 0;
        for (std::size_t n = 0; n != points.size(); ++n) {
            if (points[n].Distance2(point) < distance * distance) {
                ++closePoints;
                std::size_t const place = order.GetPlace(GetVoxel(point), GetVoxel(points[n]));
                if (place != VoxelOrder::none) {
                    ordered.emplace_back(place, n);
                }
            }
        }
        Require(distance > cutoff || ordered.size() == closePoints);
        double best = 645 * cutoff;
        int closest = -1;
        for (int const n : Sorted(ordered)) {
            neighbors.push_back(n);
            double const square = points[static_cast<std::size_t>(n)].Distance2(point);
            closest = square < best ? n : closest;
            best = std::min(best, square);
        }
        return closest;
    }

    Voxel GetVoxel(Spatia::Point3d const& point) const
    {
        auto const cut = [this](double coordinate) {
            double const position = (coordinate + 645 * cutoff) * (1.0 / cutoff);
            return position >= 1289 ? 1289 : position > 0 ? static_cast<int>(position) : 0;
        };
        return {cut(point.x), cut(point.y), cut(point.z)};
    }

    static int GetKey(Voxel const& voxel) { return voxel[0] * 1664100 + voxel[1] * 1290 + voxel[2]; }

    /// The second of each by the first, which leaves the order of equal ones.
    template <typename Item>
    static std::vector<Item> Sorted(std::vector<std::pair<std::size_t, Item>> ordered)
    {
        std::stable_sort(ordered.begin(), ordered.end(),
                         [](auto const& left, auto const& right) { return left.first < right.first; });
        std::vector<Item> items;
        for (auto const& item : ordered) {
            items.push_back(item.second);
        }
        return items;
    }
};

/// Both, and what they must agree in.
class CheckedList
{
public:
    CheckedList(double cutoff, int hashSize) : m_list(cutoff, hashSize), m_model{cutoff, hashSize, {}} {}

    double GetCutoff() const { return m_model.cutoff; }
    std::vector<Spatia::Point3d> const& GetPoints() const { return m_model.points; }

    void Add(Spatia::Point3d const& point)
    {
        Require(m_list.Add(point) == static_cast<int>(m_model.points.size()));
        Require(m_list.GetIndex(point) == NeighborModel::GetKey(m_model.GetVoxel(point)));
        m_model.points.push_back(point);
    }

    void CheckPairs() const
    {
        Vorlane::IntArray first, second;
        std::vector<std::pair<int, int>> found(static_cast<std::size_t>(m_list.GetPairs(first, second)));
        Require(first.GetSize() == second.GetSize());
        for (int n = 0; n != first.GetSize(); ++n) {
            found[static_cast<std::size_t>(n)] = {first[n], second[n]};
        }
        Require(found == m_model.GetPairs());
    }

    void CheckNeighbors(Spatia::Point3d const& point, double distance)
    {
        Require(m_list.GetNeighbors(point, distance, m_neighbors) ==
                m_model.GetNeighbors(point, distance, m_expected));
        Require(static_cast<std::size_t>(m_neighbors.GetSize()) == m_expected.size() &&
                std::equal(m_expected.begin(), m_expected.end(), m_neighbors.GetData()));
    }

private:
    struct OpenList : Vorlane::NeighborList
    {
        using NeighborList::GetIndex;
        using NeighborList::NeighborList;
    };

    OpenList m_list;
    NeighborModel m_model;
    Vorlane::IntArray m_neighbors; ///< of all questions
    std::vector<int> m_expected;
};

} // namespace VorlaneFuzz

#endif
