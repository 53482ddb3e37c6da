// The plane that best fits a set of points.

#include "benchmark/benchmark.h"
#include "vorlane/numerics/RMSBestFitTools.h"

#include <cmath>
#include <random>

#ifdef VORLANE_HAVE_EIGEN
#include <Eigen/Eigenvalues>
#endif

namespace {

using PointArray = Orrin::LegacyArray<Spatia::Point3d>;

/// Points of the plane z = x/2, with some noise, seven units below the origin.
PointArray RandomPlane(long count)
{
    std::mt19937_64 engine(12);
    std::uniform_real_distribution<double> coordinate(-20.0, 20.0);
    std::uniform_real_distribution<double> noise(-1e-7, 1e-7);
    PointArray points;
    for (long i = 0; i < count; ++i) {
        double const x = coordinate(engine);
        points.push_back(Spatia::Point3d(x, coordinate(engine), 0.5 * x - 7.0 + noise(engine)));
    }
    return points;
}

bool IsThePlane(Spatia::Point3d const& centroid, Spatia::Point3d const& normal)
{
    double const length = std::sqrt(1.25);
    return std::fabs(std::fabs(normal.z) - 1.0 / length) < 1e-6 && std::fabs(normal.y) < 1e-6 &&
           std::fabs(centroid.z - 0.5 * centroid.x + 7.0) < 1e-6;
}

void TimeVorlane(benchmark::State& state)
{
    PointArray const points = RandomPlane(state.range(0));
    Spatia::Point3d centroid, normal;
    for (auto _ : state) {
        Vorlane::RMSBestFitTools::FindPlane(points, centroid, normal);
        benchmark::DoNotOptimize(normal);
    }
    if (!IsThePlane(centroid, normal)) {
        state.SkipWithError("not the plane");
    }
}

#ifdef VORLANE_HAVE_EIGEN
template <bool direct>
void TimeEigen(benchmark::State& state)
{
    PointArray const array = RandomPlane(state.range(0));
    Eigen::Map<Eigen::Matrix3Xd const> const points(&array.GetData()->x, 3, array.GetSize());
    Eigen::Vector3d centroid, normal;
    Eigen::Matrix3Xd centred(3, array.GetSize());
    Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver;
    for (auto _ : state) {
        centroid = points.rowwise().mean();
        centred = points.colwise() - centroid;
        Eigen::Matrix3d const scatter = centred * centred.transpose();
        if constexpr (direct) {
            solver.computeDirect(scatter);
        } else {
            solver.compute(scatter);
        }
        normal = solver.eigenvectors().col(0);
        benchmark::DoNotOptimize(normal);
    }
    if (!IsThePlane({centroid.x(), centroid.y(), centroid.z()}, {normal.x(), normal.y(), normal.z()})) {
        state.SkipWithError("not the plane");
    }
}
#endif

} // namespace

BENCHMARK(TimeVorlane)->Name("BestPlane/random/Vorlane")->Arg(8)->Arg(100)->Arg(10000);
#ifdef VORLANE_HAVE_EIGEN
BENCHMARK(TimeEigen<false>)->Name("BestPlane/random/EigenCompute")->Arg(8)->Arg(100)->Arg(10000);
BENCHMARK(TimeEigen<true>)->Name("BestPlane/random/EigenComputeDirect")->Arg(8)->Arg(100)->Arg(10000);
#endif

BENCHMARK_MAIN();
