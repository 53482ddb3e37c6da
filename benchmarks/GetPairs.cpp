// All close pairs of a cloud of points, the structure built inside the timed region.

#include "benchmarks/NeighborPeers.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

using namespace Benchmarks;

namespace {

/// The number of pairs and the sum over them of (smaller index + 1) times (larger index + 1), modulo 2^64.
struct Summary
{
    std::size_t count = 0;
    std::size_t sum = 0;

    Summary(int const* first, int const* second, std::size_t pairCount) : count(pairCount)
    {
        for (std::size_t n = 0; n != pairCount; ++n) {
            sum += (static_cast<std::size_t>(first[n]) + 1) * (static_cast<std::size_t>(second[n]) + 1);
        }
    }
};

/// Ends the program if the pairs are not those of the flat cell list.
void Check(Summary const& summary, int cutoff, std::size_t size)
{
    static std::map<std::pair<int, std::size_t>, Summary> known;
    auto entry = known.find({cutoff, size});
    if (entry == known.end()) {
        PairList pairs;
        FlatCells(GetCloud(size), cutoff).GetPairs(pairs);
        entry = known
                    .emplace(std::pair(cutoff, size),
                             Summary(pairs.first.data(), pairs.second.data(), pairs.first.size()))
                    .first;
    }
    if (summary.count != entry->second.count || summary.sum != entry->second.sum) {
        std::fprintf(stderr, "other pairs at cutoff %d, %zu points\n", cutoff, size);
        std::exit(1);
    }
}

/// Times `run(points, consume)`, which hands its pairs over to `consume`.
template <typename Run>
void Register(char const* peer, int cutoff, std::size_t size, Run run)
{
    benchmark::RegisterBenchmark(Name("GetPairs", cutoff, peer, size).c_str(), [=](benchmark::State& state) {
        Points const& points = GetCloud(size);
        std::size_t pairCount = 0;
        run(points, [&](int const* first, int const* second, std::size_t count) {
            Check(Summary(first, second, count), cutoff, size);
            pairCount = count;
        });
        for (auto _ : state) {
            run(points, [](int const* first, int const* second, std::size_t) {
                benchmark::DoNotOptimize(first);
                benchmark::DoNotOptimize(second);
            });
        }
        state.counters["ns/pair"] =
            benchmark::Counter(static_cast<double>(pairCount) * 1e-9,
                               benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    })->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    ForEachCase([](int cutoff, std::size_t size) {
        Register("Vorlane", cutoff, size, [cutoff](Points const& points, auto consume) {
            Vorlane::NeighborList list(cutoff, hashSize);
            Fill(list, points);
            Vorlane::IntArray first, second;
            std::size_t const count = static_cast<std::size_t>(list.GetPairs(first, second));
            consume(first.GetData(), second.GetData(), count);
        });
        Register("flatcells", cutoff, size, [cutoff](Points const& points, auto consume) {
            PairList pairs;
            FlatCells(points, cutoff).GetPairs(pairs);
            consume(pairs.first.data(), pairs.second.data(), pairs.first.size());
        });
#ifdef VORLANE_HAVE_NANOFLANN
        Register("nanoflann", cutoff, size, [cutoff](Points const& points, auto consume) {
            PairList pairs;
            KdTree(points).GetPairs(cutoff, pairs);
            consume(pairs.first.data(), pairs.second.data(), pairs.first.size());
        });
#endif
    });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
