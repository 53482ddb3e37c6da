#include "vorlane/spatial/NeighborList.h"

#include "tests/support/AllocationFailure.h"
#include "tests/support/Seed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

using Spatia::Point3d;
using Vorlane::IntArray;
using Vorlane::NeighborList;

namespace {

using Points = std::vector<Point3d>;
using Numbers = std::vector<int>;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

Numbers ToNumbers(IntArray const& array)
{
    return Numbers(array.GetData(), array.GetData() + array.GetSize());
}

// The order of results told plainly: buckets of chained voxels, a neighbour at a time, one point after the
// other.
class PlainModel
{
    using Voxel = std::array<int, 3>;

public:
    PlainModel(Points const& points, double cutoff, unsigned int hashSize)
        : m_points(points), m_cutoff(cutoff)
    {
        for (int n = 0; n != static_cast<int>(points.size()); ++n) {
            Voxel const voxel = GetVoxel(points[static_cast<std::size_t>(n)]);
            Numbers& members = m_members[voxel];
            if (members.empty()) {
                auto const key = static_cast<unsigned int>(voxel[0] * 1664100 + voxel[1] * 1290 + voxel[2]);
                std::vector<Voxel>& chain = m_buckets[key / 16 % hashSize];
                chain.insert(chain.begin(), voxel);
            }
            members.push_back(n);
        }
    }

    void GetPairs(Numbers& first, Numbers& second) const
    {
        for (auto const& bucket : m_buckets) {
            for (Voxel const& voxel : bucket.second) {
                for (char const* offset : {"000", "+00", "--0", "0-0", "+-0", "-++", "0++", "+++", "-0+",
                                           "00+", "+0+", "--+", "0-+", "+-+"}) {
                    bool const isOwn = voxel == Shift(voxel, offset);
                    Numbers const* const others = Find(Shift(voxel, offset));
                    Numbers const& own = m_members.at(voxel);
                    for (std::size_t p = 0; others != nullptr && p != own.size(); ++p) {
                        for (std::size_t q = isOwn ? p + 1 : 0; q != others->size(); ++q) {
                            if (Distance2(own[p], At((*others)[q])) < m_cutoff * m_cutoff) {
                                first.push_back(own[p]);
                                second.push_back((*others)[q]);
                            }
                        }
                    }
                }
            }
        }
    }

    int GetNeighbors(Point3d const& point, double distance, Numbers& neighbors) const
    {
        double best = 645 * m_cutoff;
        int closest = -1;
        for (char const* offset : {"000", "-00", "+00", "0+0", "-+0", "++0", "0-0", "--0", "+-0",
                                   "0+-", "-+-", "++-", "00-", "-0-", "+0-", "0--", "---", "+--",
                                   "0++", "-++", "+++", "00+", "-0+", "+0+", "0-+", "--+", "+-+"}) {
            Numbers const* const members = Find(Shift(GetVoxel(point), offset));
            for (std::size_t n = 0; members != nullptr && n != members->size(); ++n) {
                double const square = Distance2((*members)[n], point);
                if (square < distance * distance) {
                    neighbors.push_back((*members)[n]);
                    closest = square < best ? (*members)[n] : closest;
                    best = std::min(best, square);
                }
            }
        }
        return closest;
    }

private:
    Point3d const& At(int n) const { return m_points[static_cast<std::size_t>(n)]; }
    double Distance2(int n, Point3d const& point) const { return At(n).Distance2(point); }

    Voxel GetVoxel(Point3d const& point) const
    {
        Voxel voxel = {};
        double const coordinates[] = {point.x, point.y, point.z};
        for (std::size_t axis = 0; axis != 3; ++axis) {
            double const position = (coordinates[axis] + 645 * m_cutoff) * (1.0 / m_cutoff);
            voxel[axis] = position >= 1289 ? 1289 : position > 0 ? static_cast<int>(position) : 0;
        }
        return voxel;
    }

    // Offsets by x, y, z, each -, 0 or +.
    static Voxel Shift(Voxel voxel, char const* offset)
    {
        for (std::size_t axis = 0; axis != 3; ++axis) {
            voxel[axis] += offset[axis] == '+' ? 1 : offset[axis] == '-' ? -1 : 0;
        }
        return voxel;
    }

    Numbers const* Find(Voxel const& voxel) const
    {
        auto const found = m_members.find(voxel);
        return found == m_members.end() ? nullptr : &found->second;
    }

    Points const& m_points;
    double m_cutoff;
    std::map<Voxel, Numbers> m_members;
    std::map<unsigned int, std::vector<Voxel>> m_buckets;
};

using Engine = VorlaneTest::SeededEngine;
Point3d Anywhere(Engine& engine, double low, double high)
{
    return {engine.Real(low, high), engine.Real(low, high), engine.Real(low, high)};
}

struct Cloud
{
    char const* name;
    int count;
    std::function<Point3d(Engine&, int)> makePoint;
};

std::vector<Cloud> const clouds = {
    {"random", 400,
     [](Engine& e, int) {
         return Anywhere(e, -6, 6);
     }},
    {"sparse", 300,
     [](Engine& e, int) {
         return Anywhere(e, -60, 60);
     }},
    {"negative", 200,
     [](Engine& e, int) {
         return Anywhere(e, -9, -1);
     }},
    {"clustered", 400,
     [](Engine& e, int n) {
         return Anywhere(e, 0, 0.7) + double(n % 5) * Point3d(3, -1, 2);
     }},
    {"one voxel", 500,
     [](Engine& e, int) {
         return Anywhere(e, 0.05, 0.45);
     }},
    {"collinear", 300,
     [](Engine&, int n) {
         return 0.125 * n * Point3d(0, 1, 0);
     }},
    {"lattice", 343,
     [](Engine&, int n) {
         return Point3d(n % 7, n / 7 % 7, n / 49) - Point3d(3, 3, 3);
     }},
    {"duplicated", 200,
     [](Engine& e, int) {
         return Point3d(e.Integer(0, 2), e.Integer(0, 2), 0);
     }},
    {"far outside", 200,
     [](Engine& e, int n) {
         return Anywhere(e, 0, 4) + Point3d(n % 2 ? 1e4 : -1e4, 0, 2e4);
     }},
    {"at the bounds", 300,
     [](Engine& e, int n) {
         return Anywhere(e, -2, 2) + (n % 2 ? 645 : -645) * Point3d(1, 1, n % 3 ? 1 : 0);
     }},
    {"not finite", 60,
     [](Engine& e, int n) {
         return n % 3 ? Anywhere(e, 0, 2) : Point3d(n % 2 ? nan : infinity, -infinity, 1e300);
     }},
};

TEST(NeighborList, EqualsThePlainModelAndBruteForce)
{
    Engine engine;
    SCOPED_TRACE(engine.Describe());
    for (Cloud const& cloud : clouds) {
        Points points;
        for (int n = 0; n != cloud.count; ++n) {
            points.push_back(cloud.makePoint(engine, n));
        }
        for (auto const& [cutoff, hashSize] :
             {std::pair(1.0, 101), std::pair(0.5, 1), std::pair(1.7, 7), std::pair(4.0, 1000003)}) {
            SCOPED_TRACE(std::string(cloud.name) + ", cutoff " + std::to_string(cutoff));
            NeighborList list(cutoff, hashSize);
            PlainModel const model(points, cutoff, static_cast<unsigned int>(hashSize));
            std::set<std::pair<int, int>> close;
            for (std::size_t n = 0; n != points.size(); ++n) {
                ASSERT_EQ(list.Add(points[n]), static_cast<int>(n));
                for (std::size_t m = 0; m != n; ++m) {
                    if (points[n].Distance2(points[m]) < cutoff * cutoff) {
                        close.emplace(m, n);
                    }
                }
            }

            IntArray first, second;
            int const pairCount = list.GetPairs(first, second);
            Numbers modelFirst, modelSecond;
            model.GetPairs(modelFirst, modelSecond);
            EXPECT_EQ(ToNumbers(first), modelFirst);
            EXPECT_EQ(ToNumbers(second), modelSecond);
            std::set<std::pair<int, int>> found;
            for (int n = 0; n != pairCount; ++n) {
                EXPECT_TRUE(found.insert(std::minmax<int>({first[n], second[n]})).second);
            }
            EXPECT_EQ(found, close);

            for (std::size_t n = 0; n < points.size(); n += 7) {
                Point3d const query = n % 2 ? points[n] : Anywhere(engine, -3, 3);
                double const distance = cutoff * std::array{1.0, 0.5, -0.75, 3.0}[n % 4];
                IntArray neighbors;
                Numbers modelNeighbors;
                int const closest = list.GetNeighbors(query, distance, neighbors);
                EXPECT_EQ(closest, model.GetNeighbors(query, distance, modelNeighbors));
                EXPECT_EQ(ToNumbers(neighbors), modelNeighbors);
                if (distance <= cutoff) {
                    EXPECT_EQ(neighbors.GetSize(),
                              std::count_if(points.begin(), points.end(), [&](Point3d const& p) {
                                  return p.Distance2(query) < distance * distance;
                              }));
                }
            }
        }
    }
}

TEST(NeighborList, AnswersBetweenAdditions)
{
    Engine engine;
    SCOPED_TRACE(engine.Describe());
    for (int const hashSize : {1, 7, 1000003}) {
        for (int const largestStep : {1, 3, 200}) {
            NeighborList list(1.0, hashSize);
            Points points;
            for (int round = 0; round != 60; ++round) {
                for (int n = engine.Integer(1, largestStep); n != 0; --n) {
                    points.push_back(Anywhere(engine, -2, 2) + double(n % 2) * Point3d(644, 1, 644));
                    list.Add(points.back());
                }
                PlainModel const model(points, 1.0, static_cast<unsigned int>(hashSize));
                Point3d const query = Anywhere(engine, -2, 2);
                IntArray first, second, neighbors;
                Numbers modelFirst, modelSecond, modelNeighbors;
                EXPECT_EQ(list.GetNeighbors(query, neighbors),
                          model.GetNeighbors(query, 1.0, modelNeighbors));
                EXPECT_EQ(ToNumbers(neighbors), modelNeighbors);
                if (round % 7 == 0) {
                    list.GetPairs(first, second);
                    model.GetPairs(modelFirst, modelSecond);
                    EXPECT_EQ(ToNumbers(first), modelFirst);
                    EXPECT_EQ(ToNumbers(second), modelSecond);
                }
            }
        }
    }
}

// The first query sorts the points; here that is several at once.
TEST(NeighborList, AnswersSeveralThreads)
{
    Engine engine;
    SCOPED_TRACE(engine.Describe());
    Points points;
    std::generate_n(std::back_inserter(points), 3000, [&] { return Anywhere(engine, -4, 4); });
    Numbers first, second;
    PlainModel(points, 1.0, 7).GetPairs(first, second);
    NeighborList list(1.0, 7);
    for (Point3d const& point : points) {
        list.Add(point);
    }
    std::array<IntArray, 4> firsts, seconds;
    std::vector<std::thread> threads;
    for (std::size_t n = 0; n != firsts.size(); ++n) {
        threads.emplace_back([&list, &firsts, &seconds, n] { list.GetPairs(firsts[n], seconds[n]); });
    }
    for (std::size_t n = 0; n != firsts.size(); ++n) {
        threads[n].join();
        EXPECT_TRUE(ToNumbers(firsts[n]) == first && ToNumbers(seconds[n]) == second) << n;
    }
}

struct OpenList : NeighborList
{
    using NeighborList::GetIndex;
    using NeighborList::GetSubIndex;
    using NeighborList::NeighborList;
};

TEST(NeighborList, CutsSpaceIntoVoxels)
{
    OpenList const list(1.0, 101);
    for (auto const& [coordinate, voxel] : std::vector<std::pair<double, int>>{{0.0, 645},
                                                                               {-0.1, 644},
                                                                               {644.999, 1289},
                                                                               {645.0, 1289},
                                                                               {1e300, 1289},
                                                                               {infinity, 1289},
                                                                               {-644.5, 0},
                                                                               {-645.0, 0},
                                                                               {-1e300, 0},
                                                                               {-infinity, 0},
                                                                               {nan, 0}}) {
        EXPECT_EQ(list.GetSubIndex(coordinate), voxel) << coordinate;
    }
    EXPECT_EQ(list.GetIndex(1289, 1289, 1289), 2146688999);
    EXPECT_EQ(list.GetIndex(Point3d(0, -0.1, 1)), 645 * 1664100 + 644 * 1290 + 646);

    // Just below the bound, the voxel coordinate of every cutoff stays inside the grid, also where it rounds
    // up.
    int roundedUp = 0;
    for (double cutoff : {5e-324, 1e-310, 0.1, 0.3, 0.7, 1.1, 2.3, 3.7, 4.9, 1e300, 1e308, infinity}) {
        OpenList const other(cutoff, 1);
        double const below = std::nextafter(645 * cutoff, 0.0);
        EXPECT_EQ(other.GetSubIndex(below), 1289) << cutoff;
        roundedUp += (below + 645 * cutoff) * (1.0 / cutoff) >= 1290 ? 1 : 0;
    }
    EXPECT_GT(roundedUp, 0);
}

TEST(NeighborList, AppendsAndComparesStrictly)
{
    NeighborList list(1.0, 101);
    IntArray first, second, neighbors;
    neighbors.Add(7);
    EXPECT_EQ(list.GetNeighbors(Point3d(), neighbors), -1);
    EXPECT_EQ(list.GetPairs(neighbors, neighbors), 1);
    list.Add({0.1, 0, 0});
    list.Add({-0.1, 0, 0});
    list.Add({1.1, 0, 0});
    EXPECT_EQ(list.GetNeighbors(Point3d(0.1, 0, 0), 0.0, neighbors), -1);
    EXPECT_EQ(list.GetNeighbors(Point3d(0.1, 0, 0), nan, neighbors), -1);
    EXPECT_EQ(list.GetNeighbors(Point3d(0.1, 0, 0), neighbors), 0);
    EXPECT_EQ(ToNumbers(neighbors), (Numbers{7, 0, 1}));
    EXPECT_EQ(list.GetPairs(first, second), 1);
    EXPECT_EQ(list.GetPairs(first, second), 2);
    EXPECT_EQ(ToNumbers(first), (Numbers{1, 1})); // the point of lower x comes first
    EXPECT_EQ(ToNumbers(second), (Numbers{0, 0}));
    EXPECT_EQ(list.GetPairs(neighbors, neighbors), 5);
    EXPECT_EQ(ToNumbers(neighbors), (Numbers{7, 0, 1, 1, 0}));

    // The closest point is sought below 645 cutoffs, compared with a square: 900 squared is more than
    // 645,000.
    NeighborList wide(1000.0, 1);
    wide.Add({900, 0, 0});
    EXPECT_EQ(wide.GetNeighbors(Point3d(), first), -1);
    EXPECT_EQ(first.GetSize(), 3);
    EXPECT_EQ(wide.GetNeighbors(Point3d(100, 0, 0), first), 0);
}

TEST(NeighborList, WithoutAPositiveCutoffFindsNothing)
{
    for (double cutoff : {0.0, -1.0, nan, -infinity}) {
        NeighborList list(cutoff, -5);
        IntArray first, second;
        for (int n = 0; n != 20000; ++n) {
            EXPECT_EQ(list.Add(Point3d(n % 3 - 1, 0, 0)), n);
        }
        EXPECT_EQ(list.GetNeighbors(Point3d(), 10.0, first), -1);
        EXPECT_EQ(list.GetPairs(first, second), 0);
    }
    try {
        NeighborList(1.0, 0);
        FAIL();
    } catch (CInvalidArgException const& exception) {
        EXPECT_STREQ(exception.what(), "a hash size of 0 is below 1");
    }
}

TEST(NeighborList, KeepsToItsShareOfMemory)
{
    // Points to a voxel, of which 17, 33 and 129 are just too many for what held them, and bytes beyond the
    // share.
    for (auto const& [perVoxel, beyond] :
         std::map<int, std::size_t>{{1, 512}, {3, 512}, {17, 16384}, {33, 16384}, {129, 512}, {20000, 512}}) {
        for (bool const inTurn : {false, true}) {
            std::size_t const before = VorlaneTest::GetAllocatedBytes();
            NeighborList list(1.0, 1000003);
            int const voxelCount = 20000 / perVoxel;
            for (int n = 0; n != voxelCount * perVoxel; ++n) {
                int const voxel = inTurn ? n % voxelCount : n / perVoxel;
                list.Add({voxel % 600 + 0.5, voxel / 600 + 0.5, 0.5});
                std::size_t const voxels =
                    static_cast<std::size_t>(inTurn ? std::min(n + 1, voxelCount) : n / perVoxel + 1);
                std::size_t const points = static_cast<std::size_t>(n) + 1;
                std::size_t const share = 2 * sizeof(NeighborList::VoxelData) * points + 64 * voxels;
                if (n % 4999 == 4998) {
                    IntArray none;
                    list.GetNeighbors(Point3d(0, 9, 9), none);
                }
                ASSERT_LE(VorlaneTest::GetAllocatedBytes() - before, share + beyond) << perVoxel << ", " << n;
            }
        }
    }
}

TEST(NeighborList, SurvivesFailedAllocations)
{
    Engine engine;
    SCOPED_TRACE(engine.Describe());
    Points points;
    std::generate_n(std::back_inserter(points), 1500, [&] { return Anywhere(engine, -3, 3); });
    Numbers first, second;
    PlainModel(points, 1.0, 7).GetPairs(first, second);
    std::optional<NeighborList> list;
    std::size_t added = 0;
    int failures = VorlaneTest::ForEachFailedAllocation(
        [&] {
            added = 0;
            list.emplace(1.0, 7);
        },
        [&] {
            for (; added != points.size(); ++added) {
                ASSERT_EQ(list->Add(points[added]), static_cast<int>(added));
            }
        },
        [&] {
            // The refused point may be added again.
            for (; added != points.size(); ++added) {
                ASSERT_EQ(list->Add(points[added]), static_cast<int>(added));
            }
            IntArray foundFirst, foundSecond;
            list->GetPairs(foundFirst, foundSecond);
            EXPECT_TRUE(ToNumbers(foundFirst) == first && ToNumbers(foundSecond) == second);
        });
    EXPECT_GT(failures, 10);
    IntArray foundFirst, foundSecond, neighbors;
    auto const forget = [&] {
        for (IntArray* array : {&foundFirst, &foundSecond, &neighbors}) {
            array->RemoveAll();
        }
    };
    failures = VorlaneTest::ForEachFailedAllocation(
        forget,
        [&] {
            list->GetPairs(foundFirst, foundSecond);
            list->GetNeighbors(Point3d(), neighbors);
        },
        [&] { EXPECT_EQ(foundFirst.GetSize(), foundSecond.GetSize()); });
    EXPECT_GT(failures, 10);
    EXPECT_TRUE(ToNumbers(foundFirst) == first && ToNumbers(foundSecond) == second);
}

TEST(NeighborList, CountsThePairsOfAProtein)
{
    std::ifstream file(VORLANE_EXAMPLE_DATA "/chains/7ddo_all.xyz");
    Points points;
    std::string name;
    std::getline(file, name);
    std::getline(file, name);
    for (Point3d point; file >> name >> point.x >> point.y >> point.z;) {
        points.push_back(point);
    }
    ASSERT_EQ(points.size(), 6461u);
    for (auto const& [cutoff, count] :
         {std::pair(1.7, 6586), std::pair(2.0, 6644), std::pair(4.5, 53812), std::pair(8.0, 268693)}) {
        NeighborList list(cutoff, 10007);
        for (Point3d const& point : points) {
            list.Add(point);
        }
        IntArray first, second, aroundZinc;
        EXPECT_EQ(list.GetPairs(first, second), count) << cutoff;
        EXPECT_EQ(list.GetNeighbors(points[6404], std::min(cutoff, 2.5), aroundZinc), 6404);
        Numbers numbers = ToNumbers(aroundZinc);
        std::sort(numbers.begin(), numbers.end());
        EXPECT_EQ(numbers, cutoff < 2.2 ? Numbers{6404} : (Numbers{2893, 2924, 3117, 6404})) << cutoff;
    }
}

} // namespace
