// Hermite curves through a chain, beside a loop by hand with the same arithmetic.

#include "benchmarks/SplinePeers.h"

#include <cmath>

using namespace Benchmarks;

namespace {

constexpr int pointsPerSegment = 12;
constexpr double tangentLength = 3.8;

Point3d Normalized(Point3d point)
{
    return point.Normalize();
}

/// With tilted tangents in an array, and the weights in a table.
std::size_t ByHand(PointArray const& chain, PointArray& curve)
{
    long const n = chain.GetSize();
    Point3d const* const p = chain.GetData();
    std::vector<Point3d> tangents(static_cast<std::size_t>(n));
    Point3d* const t = tangents.data();
    auto const tilted = [](Point3d const& direction, Point3d const& binormal) {
        return tangentLength * (0.9816 * Normalized(direction) - 0.1908 * Normalized(binormal));
    };
    auto const binormal = [p](long i) {
        return (p[i] - p[i - 1]).Cross(p[i + 1] - p[i]);
    };
    for (long i = 1; i != n - 1; ++i) {
        t[i] = tilted(p[i + 1] - p[i - 1], binormal(i));
    }
    t[0] = tilted((p[1] - p[0]) - 0.3 * (p[2] - p[0]), binormal(1));
    t[n - 1] = tilted((p[n - 1] - p[n - 2]) - 0.3 * (p[n - 1] - p[n - 3]), binormal(n - 2));

    double weights[pointsPerSegment][4];
    for (int i = 0; i != pointsPerSegment; ++i) {
        double const u = static_cast<double>(i) / (pointsPerSegment - 1);
        double const u2 = u * u;
        double const u3 = u2 * u;
        weights[i][0] = 1.0 + (2.0 * u3 - 3.0 * u2);
        weights[i][1] = 3.0 * u2 - 2.0 * u3;
        weights[i][2] = u + (u3 - 2.0 * u2);
        weights[i][3] = u3 - u2;
    }

    curve.SetSize((pointsPerSegment + 1) * n, -1);
    Point3d* output = curve.GetData();
    for (long i = 0; i != n - 1; ++i) {
        int const count = i == n - 2 ? pointsPerSegment : pointsPerSegment - 1;
        for (int j = 0; j != count; ++j) {
            double const* const w = weights[j];
            output->x = w[0] * p[i].x + w[1] * p[i + 1].x + w[2] * t[i].x + w[3] * t[i + 1].x;
            output->y = w[0] * p[i].y + w[1] * p[i + 1].y + w[2] * t[i].y + w[3] * t[i + 1].y;
            output->z = w[0] * p[i].z + w[1] * p[i + 1].z + w[2] * t[i].z + w[3] * t[i + 1].z;
            ++output;
        }
    }
    return static_cast<std::size_t>(output - curve.GetData());
}

std::size_t ByLibrary(PointArray& chain, PointArray& curve)
{
    Vorlane::Spline const spline(Vorlane::Spline::Hermite);
    return static_cast<std::size_t>(spline.GetHermiteSpline(chain, static_cast<int>(chain.GetSize()), curve,
                                                            nullptr, nullptr, 0, pointsPerSegment,
                                                            tangentLength));
}

} // namespace

int main(int argc, char** argv)
{
    for (long const size : {100, 1000, 10000, 100000}) {
        Register("HermiteSpline/tilted", "Vorlane", size, ByLibrary, ByHand);
        Register("HermiteSpline/tilted", "byhand", size, ByHand, ByLibrary);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
