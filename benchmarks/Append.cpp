// Appending one by one, where growth in small steps must not cost more than doubling.

#include "vorlane/foundation/FrameworkSurface.h"

#include "benchmark/benchmark.h"

#include <cstdint>
#include <vector>

namespace {

void Append(CArray<int, int>& array, int value)
{
    array.Add(value);
}

void Append(std::vector<int>& array, int value)
{
    array.push_back(value);
}

/// Whether the elements are 0, 1, 2, ...
template <typename Array>
bool IsCountingUp(Array const& array, int count)
{
    for (int i = 0; i < count; ++i) {
        if (array[i] != i) {
            return false;
        }
    }
    return true;
}

template <typename Array>
void RunAppend(benchmark::State& state)
{
    int const count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        Array array;
        for (int i = 0; i < count; ++i) {
            Append(array, i);
        }
        benchmark::DoNotOptimize(array);
        state.PauseTiming();
        if (!IsCountingUp(array, count)) {
            state.SkipWithError("wrong elements");
        }
        state.ResumeTiming();
    }
}

struct StandardVector : std::vector<int>
{
    int operator[](int index) const { return std::vector<int>::operator[](static_cast<std::size_t>(index)); }
};

BENCHMARK(RunAppend<CArray<int, int>>)->Name("Append/int/Vorlane")->Arg(1000)->Arg(1000000)->Arg(50000000);
BENCHMARK(RunAppend<StandardVector>)->Name("Append/int/std_vector")->Arg(1000)->Arg(1000000)->Arg(50000000);

} // namespace

BENCHMARK_MAIN();
