// 100,000 searches around random places in a cloud of points, the structure built before.

#include "benchmarks/NeighborPeers.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

using namespace Benchmarks;

namespace {

constexpr std::size_t queryCount = 100000;

/// Times `queryCount` calls of the searches that `makeSearch(points)` gives, each of which gives the number
/// found.
template <typename MakeSearch>
void Register(char const* peer, int cutoff, std::size_t size, MakeSearch makeSearch)
{
    benchmark::RegisterBenchmark(Name("GetNeighbors", cutoff, peer, size).c_str(), [=](benchmark::State&
                                                                                           state) {
        // Random places: the points of another cloud, scaled into this one.
        double const scale = std::cbrt(static_cast<double>(size) / queryCount);
        Points queries = MakeCloud(queryCount + 1);
        for (Point3d& query : queries) {
            query = scale * query;
        }
        static std::map<std::pair<int, std::size_t>, std::size_t> known;
        auto search = makeSearch(GetCloud(size));
        std::size_t found = 0;
        for (Point3d const& query : queries) {
            found += search(query);
        }
        if (known.emplace(std::pair(cutoff, size), found).first->second != found) {
            std::fprintf(stderr, "other neighbours at cutoff %d, %zu points\n", cutoff, size);
            std::exit(1);
        }
        for (auto _ : state) {
            for (Point3d const& query : queries) {
                benchmark::DoNotOptimize(search(query));
            }
        }
        state.counters["ns/query"] =
            benchmark::Counter(static_cast<double>(queries.size()) * 1e-9,
                               benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    })->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    ForEachCase([](int cutoff, std::size_t size) {
        Register("Vorlane", cutoff, size, [cutoff](Points const& points) {
            auto const list = std::make_shared<Vorlane::NeighborList>(cutoff, hashSize);
            Fill(*list, points);
            return [list, found = Vorlane::IntArray()](Point3d const& query) mutable {
                found.SetSize(0, -1);
                list->GetNeighbors(query, found);
                return static_cast<std::size_t>(found.GetSize());
            };
        });
        Register("flatcells", cutoff, size, [cutoff](Points const& points) {
            return [cells = FlatCells(points, cutoff),
                    found = std::vector<int>()](Point3d const& query) mutable {
                found.clear();
                cells.GetNeighbors(query, found);
                return found.size();
            };
        });
#ifdef VORLANE_HAVE_NANOFLANN
        Register("nanoflann", cutoff, size, [cutoff](Points const& points) {
            auto const tree = std::make_shared<KdTree>(points);
            return [tree, cutoff,
                    found = std::vector<std::pair<unsigned int, double>>()](Point3d const& query) mutable {
                tree->GetNeighbors(query, cutoff, found);
                return found.size();
            };
        });
#endif
    });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
