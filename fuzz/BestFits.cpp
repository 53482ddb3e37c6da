// Four motions of one set of points onto another beside what makes them the best: each is a proper rotation
// about the centroids at which the sum of products neither grows nor falls, and any two differ by half a
// turn.
//
// One letter tells how the second set comes from the first: `m` moved, `r` reflected and moved, `p` points of
// its own. Seven bytes give the motion, a quaternion and a translation; three bytes each point.

#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "vorlane/numerics/RMSBestFitToolsInternal.h"

#include <algorithm>
#include <cmath>

using Spatia::Matrix3x3;
using Spatia::Point3d;
using Vorlane::RMSBestFitTools::FindAndApplyTransformation;
using VorlaneFuzz::Input;
using VorlaneFuzz::Require;

namespace {

using PointArray = Orrin::LegacyArray<Point3d>;

struct Motion
{
    Matrix3x3 rotation = Matrix3x3::IdentityMatrix;
    Point3d translation = Point3d::zero;

    Point3d Apply(Point3d const& point) const { return point * rotation + translation; }

    PointArray Apply(PointArray points) const
    {
        for (Point3d& point : points) {
            point = Apply(point);
        }
        return points;
    }
};

double Coordinate(Input& input)
{
    return (input.Byte() - 'P') / 8.0;
}

Point3d ReadPoint(Input& input)
{
    double const x = Coordinate(input), y = Coordinate(input);
    return {x, y, Coordinate(input)};
}

Motion ReadMotion(Input& input)
{
    double const a = Coordinate(input);
    Point3d const v = ReadPoint(input);
    double const square = a * a + v.Length() * v.Length();
    Motion motion;
    if (square > 0) {
        // Each axis turned about v: x + 2(a(v×x) + v×(v×x)) / |q|².
        Point3d const axes[] = {Point3d::iVector, Point3d::jVector, Point3d::kVector};
        for (int i = 0; i < 3; ++i) {
            Point3d const cross = v.Cross(axes[i]);
            Point3d const turned = axes[i] + (2 / square) * (a * cross + v.Cross(cross));
            motion.rotation(i, 0) = turned.x;
            motion.rotation(i, 1) = turned.y;
            motion.rotation(i, 2) = turned.z;
        }
    }
    motion.translation = ReadPoint(input);
    return motion;
}

void RequireNear(PointArray const& points, PointArray const& expected, double tolerance)
{
    Require(points.GetSize() == expected.GetSize());
    for (long i = 0; i < points.GetSize(); ++i) {
        Require((points[i] - expected[i]).Length() <= tolerance);
    }
}

/// Element (i, j) is the sum of the products of coordinate i of `first` and j of `second`.
Matrix3x3 SumOfProducts(PointArray const& first, PointArray const& second)
{
    Matrix3x3 sum(0, 0, 0, 0, 0, 0, 0, 0, 0);
    for (long n = 0; n < first.GetSize(); ++n) {
        double const a[] = {first[n].x, first[n].y, first[n].z};
        double const b[] = {second[n].x, second[n].y, second[n].z};
        for (int i = 0; i < 9; ++i) {
            sum(i / 3, i % 3) += a[i / 3] * b[i % 3];
        }
    }
    return sum;
}

double Trace(Matrix3x3 const& matrix)
{
    return matrix(0, 0) + matrix(1, 1) + matrix(2, 2);
}

/// About the mean of its points.
PointArray Centred(PointArray points)
{
    Point3d sum = Point3d::zero;
    for (Point3d const& point : points) {
        sum = sum + point;
    }
    for (Point3d& point : points) {
        point = point - (1.0 / static_cast<double>(points.GetSize())) * sum;
    }
    return points;
}

void RequireProper(Matrix3x3 const& rotation)
{
    Point3d const axes[] = {Point3d::iVector * rotation, Point3d::jVector * rotation,
                            Point3d::kVector * rotation};
    for (int i = 0; i < 3; ++i) {
        Require(std::fabs(axes[i].Length() - 1) <= 1e-14);
        Require((axes[i].Cross(axes[(i + 1) % 3]) - axes[(i + 2) % 3]).Length() <= 1e-14);
    }
}

/// The best motion, and whether it is much better than the next.
struct Best
{
    Motion motion;
    bool isSure;
};

Best CheckMotions(PointArray const& first, PointArray const& second)
{
    Matrix3x3 rotations[4];
    Point3d translations[4];
    double values[4];
    Require(Vorlane::RMSBestFitTools::FindAllTransformations(first, second, rotations, translations, values));
    PointArray const from = Centred(first), to = Centred(second);
    double const tolerance =
        1e-13 * (1 + Trace(SumOfProducts(first, first)) + Trace(SumOfProducts(second, second)));
    Require(std::is_sorted(std::rbegin(values), std::rend(values)));
    for (int k = 0; k < 4; ++k) {
        RequireProper(rotations[k]);
        RequireNear(Motion{rotations[k], translations[k]}.Apply(first),
                    Motion{rotations[k], second[0] - to[0]}.Apply(from), 1e-12);
        Matrix3x3 const sum = SumOfProducts(Motion{rotations[k], Point3d::zero}.Apply(from), to);
        Require(std::fabs(Trace(sum) - values[k]) <= tolerance);
        for (int i = 0; i < 3; ++i) {
            Require(std::fabs(sum(i, (i + 1) % 3) - sum((i + 1) % 3, i)) <= tolerance);
        }
        for (int other = 0; other < k; ++other) {
            double overlap = 0;
            for (int i = 0; i < 9; ++i) {
                overlap += rotations[k](i / 3, i % 3) * rotations[other](i / 3, i % 3);
            }
            Require(std::fabs(overlap + 1) <= 1e-13);
        }
    }
    return {{rotations[0], translations[0]}, values[0] - values[1] > 0.5 * values[0]};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, size);
    int const relation = input.Byte();
    Motion const motion = ReadMotion(input);
    PointArray first, second;
    while (!input.HasEnded() && first.GetSize() < 60) {
        Point3d const point = ReadPoint(input);
        first.push_back(point);
        second.push_back(relation == 'm'   ? motion.Apply(point)
                         : relation == 'r' ? motion.Apply(Point3d(point.x, point.y, -point.z))
                                           : ReadPoint(input));
    }
    if (first.GetSize() == 0) {
        return 0;
    }
    auto const [best, isSure] = CheckMotions(first, second);
    PointArray moved(first), target(second), others(first);
    others.push_back(Point3d(20, 0, 0));
    others.push_back(Point3d(0, -20, 20));
    PointArray turned(others);
    Require(FindAndApplyTransformation(moved, second, moved));
    Require(FindAndApplyTransformation(first, target, target));
    Require(FindAndApplyTransformation(first, second, turned));
    RequireNear(moved, best.Apply(first), 1e-12);
    RequireNear(target, best.Apply(second), 1e-12);
    RequireNear(turned, best.Apply(others), 1e-12);
    if (relation == 'm') {
        // The turn about a line through all points is open, and uncertain where they lie close to it.
        RequireNear(moved, second, 1e-9);
        if (isSure) {
            RequireNear(turned, motion.Apply(others), 1e-12);
        }
    }
    return 0;
}
