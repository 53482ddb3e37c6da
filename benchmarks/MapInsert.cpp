// Filling a map of 17 buckets, whose order of iteration is that of its buckets, beside a map that rehashes.

#include "benchmarks/MapKeys.h"

#include "benchmark/benchmark.h"

#include <memory>

namespace {

using namespace MapKeys;

template <typename Map, Case order>
void RunInsert(benchmark::State& state)
{
    std::vector<int> const keys = Make(order, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto map = std::make_unique<Map>();
        Fill(*map, keys);
        state.PauseTiming();
        if (!IsFilled(*map, keys)) {
            state.SkipWithError("wrong values");
        }
        map.reset();
        state.ResumeTiming();
    }
}

BENCHMARK(RunInsert<FrameworkMap, Case::sequential>)->Name("MapInsert/sequential/Vorlane")->Arg(1000000);
BENCHMARK(RunInsert<StandardMap, Case::sequential>)->Name("MapInsert/sequential/unordered_map")->Arg(1000000);
BENCHMARK(RunInsert<FrameworkMap, Case::strided>)->Name("MapInsert/strided/Vorlane")->Arg(1000000);
BENCHMARK(RunInsert<StandardMap, Case::strided>)->Name("MapInsert/strided/unordered_map")->Arg(1000000);
BENCHMARK(RunInsert<FrameworkMap, Case::random>)->Name("MapInsert/random/Vorlane")->Arg(1000000);
BENCHMARK(RunInsert<StandardMap, Case::random>)->Name("MapInsert/random/unordered_map")->Arg(1000000);

} // namespace

BENCHMARK_MAIN();
