// Finding every key of a map of 17 buckets, in another order than that of insertion.

#include "benchmarks/MapKeys.h"

#include "benchmark/benchmark.h"

namespace {

using namespace MapKeys;

template <typename Map, Case order>
void RunLookup(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    std::vector<int> keys = Make(order, count);
    Map map;
    Fill(map, keys);
    if (!IsFilled(map, keys) || Get(map, -1) != -1) {
        state.SkipWithError("wrong values");
    }
    if (order == Case::random) {
        std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
    }
    for (auto _ : state) {
        unsigned int sum = 0;
        for (int const key : keys) {
            sum += static_cast<unsigned int>(Get(map, key));
        }
        benchmark::DoNotOptimize(sum);
    }
}

BENCHMARK(RunLookup<FrameworkMap, Case::sequential>)->Name("MapLookup/sequential/Vorlane")->Arg(1000000);
BENCHMARK(RunLookup<StandardMap, Case::sequential>)->Name("MapLookup/sequential/unordered_map")->Arg(1000000);
BENCHMARK(RunLookup<FrameworkMap, Case::strided>)->Name("MapLookup/strided/Vorlane")->Arg(1000000);
BENCHMARK(RunLookup<StandardMap, Case::strided>)->Name("MapLookup/strided/unordered_map")->Arg(1000000);
BENCHMARK(RunLookup<FrameworkMap, Case::random>)->Name("MapLookup/random/Vorlane")->Arg(1000000);
BENCHMARK(RunLookup<StandardMap, Case::random>)->Name("MapLookup/random/unordered_map")->Arg(1000000);

} // namespace

BENCHMARK_MAIN();
