#include "vorlane/spatial/NeighborList.h"

#include "fuzz/NeighborChecks.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/PointArrays.h"
#include "tests/support/Seed.h"

#include <algorithm>
#include <array>
#include <limits>
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

Points RandomPoints(SeededEngine& engine, int count, double reach)
{
    Points points;
    for (int n = 0; n != count; ++n) {
        double const x = engine.Real(-reach, reach), y = engine.Real(-reach, reach);
        points.push_back({x, y, engine.Real(-reach, reach)});
    }
    return points;
}

Points RandomPoints()
{
    SeededEngine engine;
    return RandomPoints(engine, 400, 6);
}

} // namespace

// So many points that they are sorted, gathered and handed over in several blocks; few at a time are the
// affair of the fuzz target.
TEST(NeighborList, EqualsBruteForce)
{
    SeededEngine engine;
    std::printf("[ %s ]\n", engine.Describe().c_str());
    for (double const reach : {0.2, 1.4, 6.0, 300.0}) {
        VorlaneFuzz::CheckedList list(1.0, reach < 1 ? 7 : 1);
        EXPECT_NO_THROW({
            for (int round = 0; round != 5; ++round) {
                for (Point3d const& point : RandomPoints(engine, 60 + 30 * round, reach)) {
                    list.Add(point);
                }
                list.CheckNeighbors(Point3d(0.1, 0, 0), 2.0);
                list.CheckPairs();
            }
        }) << reach;
    }
}

// The first query sorts the points; here that is several at once.
TEST(NeighborList, AnswersSeveralThreads)
{
    Points const points = RandomPoints();
    NeighborList const list(points, 1.0, 7);
    Pairs const expected = NeighborList(points, 1.0, 7).FoundPairs();
    std::array<Pairs, 4> found;
    std::vector<std::thread> threads;
    for (Pairs& pairs : found) {
        threads.emplace_back([&list, &pairs] { pairs = list.FoundPairs(); });
    }
    for (std::size_t n = 0; n != found.size(); ++n) {
        threads[n].join();
        EXPECT_EQ(found[n], expected);
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

TEST(NeighborList, SurvivesWithoutMemory)
{
    Points const points = RandomPoints();
    Pairs const expected = NeighborList(points, 1.0, 7).FoundPairs();
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
