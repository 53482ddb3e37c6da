// Cubic curves of 6 points per segment, beside a loop by hand with the same arithmetic.

#include "benchmarks/SplinePeers.h"

using namespace Benchmarks;
using Vorlane::Spline;

namespace {

constexpr int granularity = 6;

/// The basis of `type` at its default parameters.
void FillBasis(Spline::SplineType type, double (&basis)[4][4])
{
    double const beta[4][4] = {{0, 2, -4, 2}, {0, -3, 3, 0}, {0, 0, 0, 0}, {0, 1, 2, 0}};
    double const cardinal[4][4] = {
        {-0.5, 1.5, -1.5, 0.5}, {1, -2.5, 2, -0.5}, {-0.5, 0, 0.5, 0}, {0, 1, 0, 0}};
    double const bspline[4][4] = {{-1, 3, -3, 1}, {3, -6, 3, 0}, {-3, 0, 3, 0}, {1, 4, 1, 0}};
    double const factor = type == Spline::Beta      ? 1.0 / 3.0
                          : type == Spline::Bspline ? 0.16666666666666666
                                                    : 1.0;
    for (int row = 0; row != 4; ++row) {
        for (int column = 0; column != 4; ++column) {
            double const element = type == Spline::Beta      ? beta[row][column]
                                   : type == Spline::Bspline ? bspline[row][column]
                                                             : cardinal[row][column];
            basis[row][column] = element * factor;
        }
    }
}

std::size_t ByHand(Spline::SplineType type, PointArray const& chain, PointArray& curve)
{
    double m[4][4];
    FillBasis(type, m);
    double alpha[granularity];
    for (int j = 0; j != granularity; ++j) {
        alpha[j] = static_cast<double>(j) / granularity;
    }
    long const segments = chain.GetSize() - 3;
    curve.SetSize(segments * granularity, -1);
    Point3d* output = curve.GetData();
    for (Point3d const* p = chain.GetData(); p != chain.GetData() + segments; ++p) {
        double x[4], y[4], z[4];
        for (int k = 0; k != 4; ++k) {
            x[k] = m[k][0] * p[0].x + m[k][1] * p[1].x + m[k][2] * p[2].x + m[k][3] * p[3].x;
            y[k] = m[k][0] * p[0].y + m[k][1] * p[1].y + m[k][2] * p[2].y + m[k][3] * p[3].y;
            z[k] = m[k][0] * p[0].z + m[k][1] * p[1].z + m[k][2] * p[2].z + m[k][3] * p[3].z;
        }
        for (double const u : alpha) {
            output->x = ((x[0] * u + x[1]) * u + x[2]) * u + x[3];
            output->y = ((y[0] * u + y[1]) * u + y[2]) * u + y[3];
            output->z = ((z[0] * u + z[1]) * u + z[2]) * u + z[3];
            ++output;
        }
    }
    return static_cast<std::size_t>(curve.GetSize());
}

} // namespace

int main(int argc, char** argv)
{
    for (auto const& [type, name] : {std::pair(Spline::Beta, "beta"), std::pair(Spline::Cardinal, "cardinal"),
                                     std::pair(Spline::Bspline, "bspline")}) {
        for (long const size : {100, 1000, 10000, 100000}) {
            auto const byHand = [type = type](PointArray& chain, PointArray& curve) {
                return ByHand(type, chain, curve);
            };
            auto const vorlane = [type = type](PointArray& chain, PointArray& curve) {
                Spline spline(type);
                spline.SetGranularity(granularity);
                spline.GetCubicSpline(chain, curve);
                return static_cast<std::size_t>(curve.GetSize());
            };
            std::string const operation = std::string("CubicSpline/") + name;
            Register(operation, "Vorlane", size, vorlane, byHand);
            Register(operation, "byhand", size, byHand, vorlane);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
