#include "vorlane/spatial/NeighborList.h"

#include "tests/support/AllocationFailure.h"
#include "tests/support/PointArrays.h"
#include "tests/support/Seed.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <optional>
#include <thread>

using Spatia::Point3d;
using Vorlane::IntArray;
using namespace VorlaneTest;

namespace {

using Numbers = std::vector<int>;
using Pairs = std::vector<std::pair<int, int>>;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double none = std::numeric_limits<double>::quiet_NaN();

struct NeighborList : Vorlane::NeighborList
{
    using Vorlane::NeighborList::GetIndex;
    using Vorlane::NeighborList::GetSubIndex;

    NeighborList(Points const& points, double cutoff, int hashSize) : Vorlane::NeighborList(cutoff, hashSize)
    {
        for (std::size_t n = 0; n != points.size(); ++n) {
            EXPECT_EQ(Add(points[n]), static_cast<int>(n));
        }
    }

    Pairs FoundPairs() const
    {
        IntArray first, second;
        Pairs pairs(static_cast<std::size_t>(GetPairs(first, second)));
        EXPECT_EQ(first.GetSize(), second.GetSize());
        for (std::size_t n = 0; n != pairs.size(); ++n) {
            pairs[n] = {first[static_cast<int>(n)], second[static_cast<int>(n)]};
        }
        return pairs;
    }
};

Numbers ToNumbers(IntArray const& array)
{
    return Numbers(array.GetData(), array.GetData() + array.GetSize());
}

// The results by brute force over all points, then brought into their order by what it is told to depend on.
struct PlainModel
{
    using Voxel = std::array<int, 3>;

    Points const& points;
    double cutoff;
    unsigned int hashSize;

    /// Ordered by the bucket of the voxel that a pair is met from, the newest voxel first, and the offset of
    /// the other voxel.
    Pairs GetPairs() const
    {
        std::vector<Voxel> voxels;
        std::map<Voxel, std::size_t> ages;
        for (Point3d const& point : points) {
            voxels.push_back(GetVoxel(point));
            ages.emplace(voxels.back(), ages.size());
        }
        std::string const offsets = "000 +00 --0 0-0 +-0 -++ 0++ +++ -0+ 00+ +0+ --+ 0-+ +-+";
        std::vector<std::array<std::size_t, 5>> ordered;
        std::size_t closePairs = 0;
        for (std::size_t from = 0; from != points.size(); ++from) {
            std::size_t const bucket = static_cast<unsigned int>(GetKey(voxels[from])) / 16 % hashSize;
            for (std::size_t to = 0; to != points.size(); ++to) {
                if (from != to && points[from].Distance2(points[to]) < cutoff * cutoff) {
                    closePairs += from < to ? 1 : 0;
                    std::size_t const offset = offsets.find(Offset(voxels[from], voxels[to]));
                    if (offset != std::string::npos && (offset > 0 || from < to)) {
                        ordered.push_back({bucket, points.size() - ages[voxels[from]], offset, from, to});
                    }
                }
            }
        }
        EXPECT_EQ(ordered.size(), closePairs);
        std::sort(ordered.begin(), ordered.end());
        Pairs pairs;
        for (auto const& pair : ordered) {
            pairs.emplace_back(pair[3], pair[4]);
        }
        return pairs;
    }

    int GetNeighbors(Point3d const& point, double distance, Numbers& neighbors) const
    {
        std::string const offsets = "000 -00 +00 0+0 -+0 ++0 0-0 --0 +-0 0+- -+- ++- 00- -0- +0- 0-- --- +-- "
                                    "0++ -++ +++ 00+ -0+ +0+ 0-+ --+ +-+";
        Pairs ordered;
        for (std::size_t n = 0; n != points.size(); ++n) {
            std::size_t const offset = offsets.find(Offset(GetVoxel(point), GetVoxel(points[n])));
            if (points[n].Distance2(point) < distance * distance && offset != std::string::npos) {
                ordered.emplace_back(offset, n);
            }
        }
        std::sort(ordered.begin(), ordered.end());
        double best = 645 * cutoff;
        int closest = -1;
        for (auto const& [offset, n] : ordered) {
            neighbors.push_back(n);
            double const square = points[static_cast<std::size_t>(n)].Distance2(point);
            closest = square < best ? n : closest;
            best = std::min(best, square);
        }
        return closest;
    }

    Voxel GetVoxel(Point3d const& point) const
    {
        auto const cut = [this](double coordinate) {
            double const position = (coordinate + 645 * cutoff) * (1.0 / cutoff);
            return position >= 1289 ? 1289 : position > 0 ? static_cast<int>(position) : 0;
        };
        return {cut(point.x), cut(point.y), cut(point.z)};
    }

    static int GetKey(Voxel const& voxel) { return voxel[0] * 1664100 + voxel[1] * 1290 + voxel[2]; }

    /// By x, y and z, each -, 0 or +, or ? for what is no neighbour.
    static std::string Offset(Voxel const& from, Voxel const& to)
    {
        std::string offset;
        for (std::size_t axis = 0; axis != 3; ++axis) {
            offset += "?-0+?"[std::clamp(to[axis] - from[axis], -2, 2) + 2];
        }
        return offset;
    }
};

Point3d Anywhere(SeededEngine& engine, double low, double high)
{
    return {engine.Real(low, high), engine.Real(low, high), engine.Real(low, high)};
}

/// Random points from `low` to `high` on each axis, rounded to multiples of `grid`, and shifted by `start`
/// and by each of the first `period` multiples of `step` in turn. A few more are not finite.
struct Cloud
{
    char const* name;
    int count;
    double low, high, grid;
    Point3d start, step;
    int period;

    Points Make(SeededEngine& engine) const
    {
        Points points;
        for (int n = 0; n != count; ++n) {
            Point3d const p = Anywhere(engine, low, high);
            Point3d const cell(std::round(p.x / grid), std::round(p.y / grid), std::round(p.z / grid));
            points.push_back(grid * cell + start + (n % period) * step);
            if (n % 50 == 9) {
                points.push_back(Point3d(n % 4 == 1 ? none : infinity, -infinity, n % 3 == 0 ? none : 1e300));
            }
        }
        return points;
    }
};

Cloud const clouds[] = {
    {"random", 400, -6, 6, 1e-9, {}, {}, 1},
    {"sparse", 300, -60, 60, 1e-9, {}, {}, 1},
    {"negative", 200, -9, -1, 1e-9, {}, {}, 1},
    {"clustered", 400, 0, 0.7, 1e-9, {}, {3, -1, 2}, 5},
    {"one voxel", 500, 0.05, 0.45, 1e-9, {}, {}, 1},
    {"collinear", 300, 0, 0, 1, {}, {0, 0.125, 0}, 300},
    {"lattice", 300, -3, 3, 1, {}, {}, 1},
    {"duplicated", 200, -0.2, 1.2, 0.5, {}, {}, 1},
    {"far outside", 200, 0, 4, 1e-9, {-1e4, 0, 2e4}, {2e4, 0, 0}, 2},
    {"at the corners", 300, -2, 2, 1e-9, {-645, -645, -645}, {1290, 1290, 1290}, 2},
    {"at the edges", 300, -2, 2, 0.25, {-645, -645, 0}, {645, 645, 0}, 3},
};

} // namespace

TEST(NeighborList, EqualsThePlainModelAndBruteForce)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (Cloud const& cloud : clouds) {
        Points const points = cloud.Make(engine);
        for (auto const& [cutoff, hashSize] : {std::pair(1.0, 101), {0.5, 1}, {1.7, 7}, {4.0, 1000003}}) {
            SCOPED_TRACE(std::string(cloud.name) + ", cutoff " + std::to_string(cutoff));
            NeighborList const list(points, cutoff, hashSize);
            PlainModel const model{points, cutoff, static_cast<unsigned int>(hashSize)};
            EXPECT_EQ(list.FoundPairs(), model.GetPairs());
            IntArray neighbors;
            Numbers expected;
            for (std::size_t n = 0; n < points.size(); n += 5) {
                EXPECT_EQ(list.GetIndex(points[n]), PlainModel::GetKey(model.GetVoxel(points[n])));
                Point3d const query = n % 2 ? points[n] : Anywhere(engine, -3, 3);
                double const distance = cutoff * std::array{1.0, 0.5, -0.75, 3.0, none, 0.0}[n % 6];
                std::size_t const before = expected.size();
                EXPECT_EQ(list.GetNeighbors(query, distance, neighbors),
                          model.GetNeighbors(query, distance, expected));
                EXPECT_EQ(ToNumbers(neighbors), expected);
                if (distance <= cutoff) {
                    auto const isNear = [&](Point3d const& p) {
                        return p.Distance2(query) < distance * distance;
                    };
                    EXPECT_EQ(expected.size() - before, std::count_if(points.begin(), points.end(), isNear));
                }
            }
        }
    }
}

TEST(NeighborList, AnswersBetweenAdditions)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int const hashSize : {1, 7, 1000003}) {
        for (int const largestStep : {1, 3, 200}) {
            NeighborList list({}, 1.0, hashSize);
            Points points;
            PlainModel const model{points, 1.0, static_cast<unsigned int>(hashSize)};
            for (int round = 0; round != 60; ++round) {
                for (int n = engine.Integer(0, largestStep); n != 0; --n) {
                    points.push_back(Anywhere(engine, -2, 2) + double(n % 2) * Point3d(644, 1, 644));
                    list.Add(points.back());
                }
                Point3d const query = Anywhere(engine, -2, 2);
                IntArray neighbors;
                Numbers expected;
                EXPECT_EQ(list.GetNeighbors(query, neighbors), model.GetNeighbors(query, 1.0, expected));
                EXPECT_EQ(ToNumbers(neighbors), expected);
                if (round % 20 == 0) {
                    EXPECT_EQ(list.FoundPairs(), model.GetPairs());
                }
            }
        }
    }
}

// The first query sorts the points; here that is several at once.
TEST(NeighborList, AnswersSeveralThreads)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    Points const points = clouds[0].Make(engine);
    NeighborList const list(points, 1.0, 7);
    std::array<Pairs, 4> found;
    std::vector<std::thread> threads;
    for (Pairs& pairs : found) {
        threads.emplace_back([&list, &pairs] { pairs = list.FoundPairs(); });
    }
    for (std::size_t n = 0; n != found.size(); ++n) {
        threads[n].join();
        EXPECT_EQ(found[n], (PlainModel{points, 1.0, 7}.GetPairs()));
    }
}

TEST(NeighborList, CutsSpaceIntoVoxels)
{
    EXPECT_EQ(NeighborList({}, 1.0, 1).GetIndex(1289, 1289, 1289), 2146688999);
    // Just below the bound, the voxel coordinate of every cutoff stays inside the grid, also where it rounds
    // up.
    int roundedUp = 0;
    for (double cutoff : {5e-324, 1e-310, 0.1, 0.3, 0.7, 1.1, 2.3, 3.7, 4.9, 1e300, 1e308, infinity}) {
        NeighborList const list({}, cutoff, 1);
        double const bound = 645 * cutoff, below = std::nextafter(bound, 0.0);
        EXPECT_EQ(list.GetSubIndex(bound), 1289) << cutoff;
        EXPECT_EQ(list.GetSubIndex(below), 1289) << cutoff;
        EXPECT_EQ(list.GetSubIndex(-bound), 0) << cutoff;
        roundedUp += (below + bound) * (1.0 / cutoff) >= 1290 ? 1 : 0;
    }
    EXPECT_GT(roundedUp, 0);
}

TEST(NeighborList, AppendsPairsToOneOrTwoArrays)
{
    NeighborList const list({{0.1, 0, 0}, {-0.1, 0, 0}, {1.1, 0, 0}}, 1.0, 101);
    IntArray first, second;
    EXPECT_EQ(list.GetPairs(first, second), 1);
    EXPECT_EQ(list.GetPairs(first, second), 2);
    EXPECT_EQ(list.GetPairs(first, first), 4);
    EXPECT_EQ(ToNumbers(first), (Numbers{1, 1, 1, 0})); // the point of lower x comes first
    EXPECT_EQ(list.GetNeighbors(Point3d(0.1, 0, 0), first), 0);
    EXPECT_EQ(ToNumbers(first), (Numbers{1, 1, 1, 0, 0, 1}));

    // The closest point is sought below 645 cutoffs, compared with a square: 900 squared is more than
    // 645,000.
    NeighborList const wide({{900, 0, 0}}, 1000.0, 1);
    EXPECT_EQ(wide.GetNeighbors(Point3d(), first), -1);
    EXPECT_EQ(first.GetSize(), 7);
    EXPECT_EQ(wide.GetNeighbors(Point3d(100, 0, 0), first), 0);
}

TEST(NeighborList, WithoutAPositiveCutoffFindsNothing)
{
    for (double cutoff : {0.0, -1.0, none, -infinity}) {
        NeighborList const list(Points(20000), cutoff, -5);
        IntArray neighbors;
        EXPECT_EQ(list.GetNeighbors(Point3d(), 10.0, neighbors), -1);
        EXPECT_EQ(list.FoundPairs(), Pairs());
    }
    try {
        NeighborList({}, 1.0, 0);
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
         {std::pair(1, 512u), {3, 512u}, {17, 16384u}, {33, 16384u}, {129, 512u}, {20000, 512u}}) {
        for (bool const inTurn : {false, true}) {
            std::size_t const before = GetAllocatedBytes();
            NeighborList list({}, 1.0, 1000003);
            int const voxelCount = 20000 / perVoxel;
            for (int n = 0; n != voxelCount * perVoxel; ++n) {
                int const voxel = inTurn ? n % voxelCount : n / perVoxel;
                list.Add({voxel % 600 + 0.5, voxel / 600 + 0.5, 0.5});
                int const voxels = inTurn ? std::min(n + 1, voxelCount) : voxel + 1;
                std::size_t const share =
                    2 * sizeof(NeighborList::VoxelData) * static_cast<std::size_t>(n + 1) +
                    64 * static_cast<std::size_t>(voxels);
                if (n % 4999 == 4998) {
                    IntArray neighbors;
                    list.GetNeighbors(Point3d(0, 9, 9), neighbors);
                }
                ASSERT_LE(GetAllocatedBytes() - before, share + beyond) << perVoxel << ", " << n;
            }
        }
    }
}

TEST(NeighborList, SurvivesFailedAllocations)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    Points const points = clouds[0].Make(engine);
    Pairs const expected = PlainModel{points, 1.0, 7}.GetPairs();
    std::optional<NeighborList> list;
    IntArray first, second, neighbors;
    std::size_t added = 0;
    int failedSearches = 0;
    auto const addRest = [&] {
        for (; added != points.size(); ++added) {
            ASSERT_EQ(list->Add(points[added]), static_cast<int>(added));
        }
    };
    auto const begin = [&] {
        list.emplace(Points(), 1.0, 7);
        added = 0;
        first.RemoveAll();
        second.RemoveAll();
    };
    auto const addAndSearch = [&] {
        addRest();
        list->GetPairs(first, second);
        list->GetNeighbors(Point3d(), neighbors);
    };
    int const failures = ForEachFailedAllocation(begin, addAndSearch, [&] {
        failedSearches += added == points.size() ? 1 : 0;
        EXPECT_EQ(first.GetSize(), second.GetSize());
        addRest(); // the refused point once more
        EXPECT_EQ(list->FoundPairs(), expected);
    });
    EXPECT_GT(failedSearches, 10);
    EXPECT_GT(failures, failedSearches + 10);
}

TEST(NeighborList, CountsThePairsOfAProtein)
{
    PointArray const chain = ReadChain("7ddo_all");
    Points const points(chain.begin(), chain.end());
    for (auto const& [cutoff, count] : {std::pair(1.7, 6586u), {2.0, 6644u}, {4.5, 53812u}, {8.0, 268693u}}) {
        NeighborList const list(points, cutoff, 10007);
        IntArray aroundZinc;
        EXPECT_EQ(list.FoundPairs().size(), count) << cutoff;
        EXPECT_EQ(list.GetNeighbors(points.at(6404), std::min(cutoff, 2.5), aroundZinc), 6404);
        Numbers numbers = ToNumbers(aroundZinc);
        std::sort(numbers.begin(), numbers.end());
        EXPECT_EQ(numbers, cutoff < 2.2 ? Numbers{6404} : (Numbers{2893, 2924, 3117, 6404})) << cutoff;
    }
}
