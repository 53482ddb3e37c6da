#include "vorlane/curves/Spline.h"

#include "tests/support/CaseTable.h"
#include "tests/support/PointArrays.h"
#include "vorlane/foundation/FrameworkSurface.h"

using Spatia::Point3d;
using Vorlane::Spline;
using namespace VorlaneTest;

namespace {

struct OpenSpline : Spline
{
    using Spline::Hermite1to4;
    using Spline::Matrix;
    using Spline::Spline;
};

PointArray const fivePoints =
    ToArray({{0, 0, 0}, {1.5, 0.25, -1}, {2, 1.75, 0.5}, {4, -1, 1.25}, {3.5, -2, -0.75}});
PointArray const threePoints = ToArray({{}, {1, 0, 0}, {3, 0, 0}});

Point3d PointIn(Case const& row)
{
    return {NumberIn(row, "x"), NumberIn(row, "y"), NumberIn(row, "z")};
}

} // namespace

TEST(Spline, DrawsCubicCurvesOfThreeBases)
{
    for (Case const& row : ReadCases("curves/curves.txt", "cubic")) {
        SCOPED_TRACE(row.at("where"));
        OpenSpline spline(static_cast<Spline::SplineType>(std::stoi(row.at("type"))));
        spline.SetTension(NumberIn(row, "tension"));
        spline.SetBias(NumberIn(row, "bias"));
        spline.SetGranularity(3);
        PointArray curve;
        EXPECT_EQ(spline.GetCubicSpline(fivePoints, curve), 1);
        ASSERT_EQ(curve.GetSize(), 2 * 3);
        int const index = std::stoi(row.at("index"));
        ExpectNear(curve[index], PointIn(row), 4e-15);
        Point3d const* const control = fivePoints.GetData() + index / 3;
        EXPECT_EQ(spline.Matrix(control[0].x, control[1].x, control[2].x, control[3].x, index % 3 / 3.0),
                  curve[index].x);
    }
}

TEST(Spline, ThreadsHermiteCurves)
{
    OpenSpline const spline(Spline::Hermite);
    for (Case const& row : ReadCases("curves/curves.txt", "hermite")) {
        SCOPED_TRACE(row.at("where"));
        int const pointCount = std::stoi(row.at("points")), cycles = std::stoi(row.at("cycles"));
        int const perSegment = std::stoi(row.at("perSegment")), index = std::stoi(row.at("index"));
        for (bool const inPlace : {false, true}) {
            PointArray points = fivePoints;
            // The pointers may lead into the curve, which moves.
            Point3d ends[] = {{-1, 0.5, 2}, {5, 5, 5}};
            PointArray curve = ToArray({ends[0], ends[1]});
            Point3d* const leading = inPlace ? ends : curve.GetData();
            PointArray& target = inPlace ? points : curve;
            EXPECT_EQ(spline.GetHermiteSpline(points, pointCount, target,
                                              row.at("before") == "1" ? leading : nullptr,
                                              row.at("after") == "1" ? leading + 1 : nullptr, cycles,
                                              perSegment, NumberIn(row, "length")),
                      (pointCount - 1) * (perSegment - 1) + 1);
            ASSERT_EQ(target.GetSize(), (perSegment + 1) * 5);
            ExpectNear(target[index], PointIn(row), 4e-15);
            for (int n = 0; n != pointCount && !inPlace; ++n) {
                ExpectNear(curve[(perSegment - 1) * n], points[n], 0);
                EXPECT_EQ((points[n] - fivePoints[n]).Length() == 0, cycles <= 0 || n == 0 || n == 4);
            }
        }
    }
    double half = 0.5;
    Point3d const p0(1, 2, 3), p1(2, 4, 8), t0(0, 8, 0), t1(0, 0, -8), middle(1.5, 4, 6.5);
    ExpectNear(Spline::HermiteSingle(p0, p1, t0, t1, half), middle, 0);
    PointArray curve = fivePoints;
    spline.Hermite1to4(p0, p1, t0, t1, curve, 1, 3);
    ExpectNear(curve, ToArray({fivePoints[0], p0, middle, p1, fivePoints[4]}), 0);
}

TEST(Spline, RefusesWhatIsNoChain)
{
    Spline spline(Spline::Hermite);
    PointArray points = fivePoints;
    PointArray curve = ToArray({{1, 2, 3}});
    for (auto const& [pointCount, pointsPerSegment] : {std::pair(1, 3), {-1, 3}, {6, 3}, {5, 1}, {5, -7}}) {
        EXPECT_EQ(
            spline.GetHermiteSpline(points, pointCount, curve, nullptr, nullptr, 1, pointsPerSegment, 1), 0);
    }
    // Sizes of 5 and of 7 times as much are 5 and 3 above 2^32.
    EXPECT_THROW(spline.GetHermiteSpline(points, 5, curve, nullptr, nullptr, 1, 858993459, 1),
                 std::length_error);
    spline.SetGranularity(613566757);
    EXPECT_THROW(spline.GetCubicSpline(points, curve), std::length_error);
    ExpectNear(curve, ToArray({{1, 2, 3}}), 0);
    ExpectNear(points, fivePoints, 0);
    // A straight chain, and one with points that coincide, stay finite, without tilt.
    for (PointArray chain : {threePoints, ToArray({{}, {}, {}})}) {
        EXPECT_EQ(spline.GetHermiteSpline(chain, 3, curve, nullptr, nullptr, 0, 3, 1), 5);
        EXPECT_TRUE(curve[1].Length() < 2 && curve[1].y == 0 && curve[1].z == 0);
    }
}

// Chains of protein structures: what a ribbon is drawn through.
TEST(Spline, FollowsProteinChains)
{
    Spline const spline(Spline::Hermite);
    for (char const* name : {"1orc_ca", "1yeb_ca", "1c1n_ca", "1guy_ca_with_break"}) {
        SCOPED_TRACE(name);
        PointArray points = ReadChain(name), curve;
        int const count = static_cast<int>(points.GetSize());
        for (int const cycles : {0, 3}) {
            int const size =
                spline.GetHermiteSpline(points, count, curve, nullptr, nullptr, cycles, 1001, 3.8);
            ASSERT_EQ(size, (count - 1) * 1000 + 1);
            for (int n = 1; n != size - 1; ++n) {
                // No gap and, so finely cut, no corner; NaN fails as well.
                Point3d const step = curve[n + 1] - curve[n];
                ASSERT_LT(step.Length(), 0.02);
                ASSERT_LT((step - (curve[n] - curve[n - 1])).Length(), 2e-4) << n;
            }
            for (int n = 0; n != count; ++n) {
                ExpectNear(curve[n * 1000], points[n], 0);
            }
        }
    }
}

TEST(Spline, TakesAMillionPoints)
{
    constexpr int count = 1000000;
    PointArray points, curve;
    for (int n = 0; n != count; ++n) {
        points.push_back(Point3d(n, n % 7, n % 3));
    }
    EXPECT_EQ(Spline(Spline::Hermite).GetHermiteSpline(points, count, curve, nullptr, nullptr, 0, 2, 1.0),
              count);
    ExpectNear(curve[count - 1], points[count - 1], 0);
    Spline cubic(Spline::Bspline);
    cubic.SetGranularity(2);
    EXPECT_EQ(cubic.GetCubicSpline(points, curve), 1);
    EXPECT_EQ(curve.GetSize(), (count - 3) * 2);
}
