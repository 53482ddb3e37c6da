// Building the search structure over a cloud of points.

#include "benchmarks/NeighborPeers.h"

#include <benchmark/benchmark.h>

using namespace Benchmarks;

namespace {

template <typename Build>
void Register(char const* peer, int cutoff, std::size_t size, Build build)
{
    benchmark::RegisterBenchmark(Name("NeighborAdd", cutoff, peer, size).c_str(), [=](benchmark::State&
                                                                                          state) {
        Points const& points = GetCloud(size);
        for (auto _ : state) {
            build(points);
        }
        state.counters["ns/point"] =
            benchmark::Counter(static_cast<double>(size) * 1e-9,
                               benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    })->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    ForEachCase([](int cutoff, std::size_t size) {
        Register("Vorlane", cutoff, size, [cutoff](Points const& points) {
            Vorlane::NeighborList list(cutoff, hashSize);
            Fill(list, points);
            benchmark::DoNotOptimize(&list);
        });
        Register("flatcells", cutoff, size, [cutoff](Points const& points) {
            FlatCells cells(points, cutoff);
            benchmark::DoNotOptimize(&cells);
        });
#ifdef VORLANE_HAVE_NANOFLANN
        Register("nanoflann", cutoff, size, [](Points const& points) {
            KdTree tree(points);
            benchmark::DoNotOptimize(&tree);
        });
#endif
    });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
