// The best superposition of two sets of points, found and applied to one of them.

#include "benchmark/benchmark.h"
#include "vorlane/numerics/RMSBestFitTools.h"

#include <cmath>
#include <random>

#ifdef VORLANE_HAVE_EIGEN
#include <Eigen/Geometry>
#endif

namespace {

using PointArray = Orrin::LegacyArray<Spatia::Point3d>;

/// A random set, and the same set turned by 30 degrees about z and moved, with some noise.
struct Pair
{
    PointArray first;
    PointArray second;
};

Pair RandomPair(long count)
{
    std::mt19937_64 engine(11);
    std::uniform_real_distribution<double> coordinate(-20.0, 20.0);
    std::uniform_real_distribution<double> noise(-1e-7, 1e-7);
    double const cosine = std::sqrt(0.75);
    Pair pair;
    for (long i = 0; i < count; ++i) {
        Spatia::Point3d const p(coordinate(engine), coordinate(engine), coordinate(engine));
        pair.first.push_back(p);
        pair.second.push_back(Spatia::Point3d(p.x * cosine - p.y * 0.5 + 3.0 + noise(engine),
                                              p.x * 0.5 + p.y * cosine + noise(engine), p.z - 7.0));
    }
    return pair;
}

/// Whether point `index` of `moved(index, axis)` has reached its place.
template <typename Moved>
bool IsSuperposed(Pair const& pair, Moved const& moved)
{
    for (long i = 0; i < pair.second.GetSize(); ++i) {
        Spatia::Point3d const point(moved(i, 0), moved(i, 1), moved(i, 2));
        if (!(pair.second[i].Distance2(point) < 1e-12)) {
            return false;
        }
    }
    return true;
}

void TimeVorlane(benchmark::State& state)
{
    Pair const pair = RandomPair(state.range(0));
    PointArray moved(pair.first);
    Vorlane::RMSBestFitTools::FindAndApplyTransformation(pair.first, pair.second, moved);
    if (!IsSuperposed(pair, [&](long i, int axis) {
            return axis == 0 ? moved[i].x : axis == 1 ? moved[i].y : moved[i].z;
        })) {
        state.SkipWithError("not superposed");
        return;
    }
    // `moved` drifts by the same motion in each round; its values don't matter to the time.
    for (auto _ : state) {
        Vorlane::RMSBestFitTools::FindAndApplyTransformation(pair.first, pair.second, moved);
        benchmark::ClobberMemory();
    }
}

void TimeVorlaneFind(benchmark::State& state)
{
    Pair const pair = RandomPair(state.range(0));
    PointArray origin;
    origin.push_back(Spatia::Point3d::zero);
    PointArray moved(origin);
    for (auto _ : state) {
        moved[0] = Spatia::Point3d::zero;
        Vorlane::RMSBestFitTools::FindAndApplyTransformation(pair.first, pair.second, moved);
        benchmark::ClobberMemory();
    }
    if (!(moved[0].Distance2(Spatia::Point3d(3.0, 0.0, -7.0)) < 1e-12)) {
        state.SkipWithError("not superposed");
    }
}

#ifdef VORLANE_HAVE_EIGEN
Eigen::Map<Eigen::Matrix3Xd const> View(PointArray const& points)
{
    return {&points.GetData()->x, 3, points.GetSize()};
}

void TimeUmeyama(benchmark::State& state)
{
    Pair const pair = RandomPair(state.range(0));
    auto const first = View(pair.first);
    auto const second = View(pair.second);
    Eigen::Matrix3Xd moved = first;
    Eigen::Matrix4d motion = Eigen::umeyama(first, second, false);
    moved = (motion.topLeftCorner<3, 3>() * first).colwise() + motion.topRightCorner<3, 1>();
    if (!IsSuperposed(pair, [&](long i, int axis) { return moved(axis, i); })) {
        state.SkipWithError("not superposed");
        return;
    }
    for (auto _ : state) {
        motion = Eigen::umeyama(first, second, false);
        moved = (motion.topLeftCorner<3, 3>() * first).colwise() + motion.topRightCorner<3, 1>();
        benchmark::ClobberMemory();
    }
}

void TimeUmeyamaFind(benchmark::State& state)
{
    Pair const pair = RandomPair(state.range(0));
    auto const first = View(pair.first);
    auto const second = View(pair.second);
    Eigen::Matrix4d motion;
    for (auto _ : state) {
        motion = Eigen::umeyama(first, second, false);
        benchmark::DoNotOptimize(motion);
    }
    if (!((motion.topRightCorner<3, 1>() - Eigen::Vector3d(3.0, 0.0, -7.0)).norm() < 1e-6)) {
        state.SkipWithError("not superposed");
    }
}
#endif

} // namespace

BENCHMARK(TimeVorlane)->Name("Superposition/apply/Vorlane")->Arg(8)->Arg(100)->Arg(10000);
BENCHMARK(TimeVorlaneFind)->Name("Superposition/find/Vorlane")->Arg(8)->Arg(100)->Arg(10000);
#ifdef VORLANE_HAVE_EIGEN
BENCHMARK(TimeUmeyama)->Name("Superposition/apply/EigenUmeyama")->Arg(8)->Arg(100)->Arg(10000);
BENCHMARK(TimeUmeyamaFind)->Name("Superposition/find/EigenUmeyama")->Arg(8)->Arg(100)->Arg(10000);
#endif

BENCHMARK_MAIN();
