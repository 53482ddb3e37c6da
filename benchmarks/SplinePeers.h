#ifndef VORLANE_BENCHMARKS_SPLINEPEERS_H
#define VORLANE_BENCHMARKS_SPLINEPEERS_H

/// \file
/// What the benchmarks of the curves share: chains, and the comparison and timing of two ways to one curve.

#include "vorlane/curves/Spline.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace Benchmarks {

using Spatia::Point3d;
using PointArray = Orrin::LegacyArray<Point3d>;

/// A random walk.
inline PointArray MakeChain(long count)
{
    std::mt19937_64 engine(4711);
    std::uniform_real_distribution<double> step(-2.0, 2.0);
    PointArray chain;
    Point3d point;
    for (long n = 0; n != count; ++n) {
        chain.push_back(point);
        point = point + Point3d(step(engine), step(engine), step(engine));
    }
    return chain;
}

/// Times `draw(chain, curve)`, which gives the number of curve points, after it gave the bits of `reference`.
template <typename Draw, typename Reference>
void Register(std::string const& operation, char const* peer, long size, Draw draw, Reference reference)
{
    std::string const name = operation + "/" + peer + "/" + std::to_string(size);
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        PointArray chain = MakeChain(size);
        PointArray curve;
        PointArray expected;
        std::size_t const count = draw(chain, curve);
        if (count != reference(chain, expected) ||
            std::memcmp(curve.GetData(), expected.GetData(), count * sizeof(Point3d)) != 0) {
            std::fprintf(stderr, "another curve: %s\n", name.c_str());
            std::exit(1);
        }
        for (auto _ : state) {
            benchmark::DoNotOptimize(draw(chain, curve));
        }
        state.counters["ns/point"] =
            benchmark::Counter(static_cast<double>(count) * 1e-9,
                               benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    })->Unit(benchmark::kMicrosecond);
}

} // namespace Benchmarks

#endif
