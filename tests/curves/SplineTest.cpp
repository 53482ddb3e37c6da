// The expected coordinates were computed with 60 decimal digits, by a program of its own from the published
// formulas, and rounded to 16.

#include "vorlane/curves/Spline.h"

#include "vorlane/foundation/FrameworkSurface.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

using Spatia::Point3d;
using Vorlane::Spline;

namespace {

using Points = std::vector<Point3d>;
using PointArray = Orrin::LegacyArray<Point3d>;

Points const fivePoints = {{0, 0, 0}, {1.5, 0.25, -1}, {2, 1.75, 0.5}, {4, -1, 1.25}, {3.5, -2, -0.75}};

PointArray ToArray(Points const& points)
{
    PointArray array;
    for (Point3d const& point : points) {
        array.push_back(point);
    }
    return array;
}

bool IsEqual(Point3d const& left, Point3d const& right)
{
    return left.x == right.x && left.y == right.y && left.z == right.z;
}

void ExpectNear(Point3d const& computed, Point3d const& expected, double tolerance = 1e-15)
{
    EXPECT_LE(std::abs(computed.x - expected.x), tolerance * (1 + std::abs(expected.x)));
    EXPECT_LE(std::abs(computed.y - expected.y), tolerance * (1 + std::abs(expected.y)));
    EXPECT_LE(std::abs(computed.z - expected.z), tolerance * (1 + std::abs(expected.z)));
}

void ExpectNear(PointArray const& computed, Points const& expected, int stride = 1)
{
    ASSERT_LE(stride * static_cast<long>(expected.size()), computed.GetSize());
    for (std::size_t n = 0; n != expected.size(); ++n) {
        SCOPED_TRACE(n);
        ExpectNear(computed[stride * static_cast<long>(n)], expected[n], 4e-15);
    }
}

PointArray CubicCurve(Spline const& spline, Points const& points = fivePoints)
{
    PointArray curve;
    EXPECT_EQ(spline.GetCubicSpline(ToArray(points), curve), 1);
    return curve;
}

TEST(Spline, DrawsCubicCurvesOfThreeBases)
{
    auto const check = [](Spline::SplineType type, double tension, double bias, Points const& expected) {
        SCOPED_TRACE(type);
        Spline spline(type);
        EXPECT_EQ(CubicCurve(spline).GetSize(), 2 * 6);
        spline.SetTension(tension);
        spline.SetBias(bias);
        spline.SetGranularity(3);
        ExpectNear(CubicCurve(spline), expected);
        EXPECT_EQ(CubicCurve(spline).GetSize(), 2 * 3);
        EXPECT_EQ(CubicCurve(spline, {{}, {}, {}}).GetSize(), 0);
        EXPECT_EQ(CubicCurve(spline, {{}, {}}).GetSize(), 0);
        PointArray inPlace = ToArray(fivePoints);
        EXPECT_EQ(spline.GetCubicSpline(inPlace, inPlace), 1);
        ExpectNear(inPlace, expected);
        spline.SetGranularity(0);
        EXPECT_EQ(CubicCurve(spline).GetSize(), 0);
    };
    check(Spline::Beta, 2.5, 0.75,
          {{1.474926253687316, 0.5132743362831859, -0.6371681415929203},
           {1.687479514913143, 0.8515514039112859, -0.3444772205834153},
           {1.964929531301213, 1.167868458428931, 0.1173385775155687},
           {2.337758112094395, 1.111356932153392, 0.5221238938053098},
           {2.820277504643286, 0.5586966022069267, 0.7639571725117448},
           {3.400469791325249, -0.2764940456680869, 0.9199169671146072}});
    check(Spline::Cardinal, 0.3, 9.0,
          {{1.5, 0.25, -1},
           {1.662962962962963, 0.7444444444444445, -0.6388888888888888},
           {1.803703703703704, 1.455555555555555, 0.02222222222222222},
           {2, 1.75, 0.5},
           {2.596296296296296, 1.064814814814815, 0.8222222222222222},
           {3.47037037037037, -0.1481481481481481, 1.161111111111111}});
    check(Spline::Bspline, 0.8, 9.0,
          {{1.366666666666667, 0.4166666666666667, -0.6666666666666666},
           {1.62716049382716, 0.7561728395061729, -0.4271604938271605},
           {1.895061728395062, 1.110493827160494, 0.004938271604938272},
           {2.2, 1.183333333333333, 0.4},
           {2.68395061728395, 0.7148148148148148, 0.695679012345679},
           {3.271604938271605, -0.07592592592592592, 0.8987654320987655}});
    // Untouched parameters: tension 1, but 0.5 for cardinal curves, so that lines stay lines.
    for (Spline::SplineType type : {Spline::Cardinal, Spline::Bspline}) {
        Spline spline(type);
        spline.SetGranularity(2);
        ExpectNear(CubicCurve(spline, {{}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}}), {{1, 0, 0}, {1.5, 0, 0}});
    }
}

TEST(Spline, SharesOneCacheWithoutAKey)
{
    Spline cardinal(Spline::Cardinal), bspline(Spline::Bspline), hermite(Spline::Hermite);
    Point3d const onCardinal(1.5, 0.25, -1), onBspline(16.0 / 12, 5.5 / 12, -7.0 / 12);

    // Whoever comes first decides the matrix; the type of the other is not looked at.
    cardinal.SetGranularity(2);
    ExpectNear(CubicCurve(cardinal)[0], onCardinal);
    PointArray curve;
    EXPECT_THROW(bspline.GetCubicSpline(ToArray(fivePoints), curve), CInvalidArgException);
    EXPECT_EQ(curve.GetSize(), 7 * 6);
    ExpectNear(curve[0], onCardinal);
    EXPECT_TRUE(IsEqual(curve[2], Point3d::zero));
    // Three points need no parameter, so the short table does no harm.
    EXPECT_EQ(CubicCurve(bspline, {{}, {}, {}}).GetSize(), 0);
    // A Hermite object follows the cached matrix as well, with its own granularity.
    Spline coarse(cardinal);
    coarse = hermite;
    EXPECT_EQ(coarse.GetGranularity(), 6);
    EXPECT_THROW(CubicCurve(coarse), CInvalidArgException);

    // A setter of any object has the next one rebuild; then the first goes on with the other's matrix.
    cardinal.SetBias(1.0);
    ExpectNear(CubicCurve(bspline)[0], onBspline);
    EXPECT_EQ(CubicCurve(cardinal).GetSize(), 2 * 2);
    ExpectNear(CubicCurve(cardinal)[0], onBspline);
    ExpectNear(CubicCurve(cardinal)[1], CubicCurve(bspline)[1]);
    // Assignment and copies owe no rebuild, nor does a constructor of the type constructed last, which is
    // Hermite.
    Spline const assigned = cardinal;
    ExpectNear(CubicCurve(assigned)[0], onBspline);
    Spline const another(Spline::Hermite);
    ExpectNear(CubicCurve(another)[0], onBspline);
    Spline const strange(static_cast<Spline::SplineType>(7));
    // A type beyond the known ones clears the debt and takes the matrix as it is.
    ExpectNear(CubicCurve(strange)[0], onBspline);
    ExpectNear(CubicCurve(cardinal)[0], onBspline);

    // A constructor of another type owes a rebuild, which a Hermite object leaves owing.
    Spline const changed(Spline::Hermite);
    curve = ToArray({{8, 8, 8}});
    EXPECT_EQ(changed.GetCubicSpline(ToArray(fivePoints), curve), 1);
    EXPECT_EQ(curve.GetSize(), 7 * 6);
    EXPECT_TRUE(IsEqual(curve[0], {8, 8, 8}) && IsEqual(curve[1], Point3d::zero));
    ExpectNear(CubicCurve(cardinal)[0], onCardinal);
}

Point3d before(-1, 0.5, 2), after(5, 5, 5);

TEST(Spline, ThreadsHermiteCurves)
{
    Spline const spline(Spline::Hermite);
    auto const check = [&](int pointCount, Point3d* ahead, Point3d* behind, int smoothingCycles,
                           double tangentLength, Points const& midpoints) {
        SCOPED_TRACE(midpoints[0].x);
        for (bool const inPlace : {false, true}) {
            PointArray points = ToArray(fivePoints);
            // The pointers may lead into the curve, which moves.
            PointArray curve = ToArray({before, after});
            Point3d* const from = ahead != nullptr && !inPlace ? &curve[0] : ahead;
            Point3d* const to = behind != nullptr && !inPlace ? &curve[1] : behind;
            PointArray& target = inPlace ? points : curve;
            EXPECT_EQ(spline.GetHermiteSpline(points, pointCount, target, from, to, smoothingCycles, 3,
                                              tangentLength),
                      2 * pointCount - 1);
            EXPECT_EQ(target.GetSize(), 4 * 5);
            for (std::size_t n = 0; n != midpoints.size(); ++n) {
                ExpectNear(target[2 * static_cast<long>(n) + 1], midpoints[n], 4e-15);
            }
            for (int n = 0; n != pointCount && !inPlace; ++n) {
                EXPECT_TRUE(IsEqual(curve[2 * n], points[n]));
                EXPECT_EQ(IsEqual(points[n], fivePoints[static_cast<std::size_t>(n)]),
                          smoothingCycles <= 0 || n == 0 || n == 4);
            }
        }
    };
    check(5, nullptr, nullptr, 0, 1.0,
          {{0.7335658361664336, 0.02288737049486701, -0.6176450230358488},
           {1.761039154272955, 1.147310852500266, -0.331340385401142},
           {3.043545233740873, 0.4433761104253706, 0.9923765376734913},
           {3.855322593980875, -1.616961332717075, 0.3194167055647631}});
    check(5, &before, &after, 0, 2.5,
          {{0.6570042954036626, -0.1404516705539945, -0.8244714463835924},
           {1.777597885682387, 1.368277131250666, -0.4533509635028549},
           {3.108863084352183, 0.5459402760634264, 1.168441344183728},
           {3.808720418311744, -2.005927214331364, -0.03278328005334021}});
    check(5, nullptr, nullptr, 2, 1.5,
          {{0.5996657306287718, 0.2645646639719266, -0.08642329668723558},
           {1.803000361194497, 0.5149815303564562, 0.03922034013777322},
           {2.835153180334652, -0.06427389171901154, 0.2754163058814394},
           {3.368222375659246, -1.309596587049916, -0.2518354632101841}});
    check(5, &before, &after, 1, -1.0,
          {{0.7855024385719095, 0.3057705285439239, -0.2893567020809992},
           {1.796303547073817, 0.5360266304820788, -0.001515356983939713},
           {2.817419559415228, 0.008664008100221306, 0.3492645693083208},
           {3.39074558552797, -1.259074595135921, -0.1414827344898413}});
    check(5, nullptr, &after, -1, 1.0,
          {{0.7605703902573119, 0.06127629187740688, -0.5917927901503958},
           {1.755358405917753, 1.124439592009405, -0.3052699559317558},
           {3.042743197087271, 0.4423252608547269, 0.9903394888571246},
           {3.792939964077882, -1.697022102749507, 0.122483511290707}});
    check(2, nullptr, nullptr, 0, 1.0, {{0.75, 0.125, -0.5}});
    check(2, &before, nullptr, 0, 1.0, {{0.6925643443248377, 0.06122922288835214, -0.5701058985481334}});

    // Long segments: near their end the weight of the first tangent leaps.
    PointArray points = ToArray({fivePoints[0], fivePoints[1]});
    PointArray curve;
    EXPECT_EQ(spline.GetHermiteSpline(points, 2, curve, &before, nullptr, 0, 2001, 1.0), 2001);
    ExpectNear(curve[1997], {1.498663004191031, 0.2495552184876797, -0.9995525672156713});
    ExpectNear(curve[1999], {1.499769683634407, 0.249744823874931, -1.000280035884545});
    double half = 0.5;
    Point3d const middle = Spline::HermiteSingle({1, 2, 3}, {2, 4, 8}, {0, 8, 0}, {0, 0, -8}, half);
    EXPECT_TRUE(IsEqual(middle, {1.5, 4, 6.5}));
}

TEST(Spline, RefusesWhatIsNoChain)
{
    Spline const spline(Spline::Hermite);
    PointArray points = ToArray(fivePoints);
    PointArray curve = ToArray({{1, 2, 3}});
    for (auto const& [pointCount, pointsPerSegment] :
         {std::pair(1, 3), std::pair(-1, 3), std::pair(6, 3), std::pair(5, 1), std::pair(5, -7)}) {
        EXPECT_EQ(
            spline.GetHermiteSpline(points, pointCount, curve, nullptr, nullptr, 1, pointsPerSegment, 1), 0);
    }
    EXPECT_THROW(spline.GetHermiteSpline(points, 5, curve, nullptr, nullptr, 1, 500000000, 1),
                 std::length_error);
    EXPECT_EQ(curve.GetSize(), 1);
    EXPECT_TRUE(IsEqual(points[1], fivePoints[1]));
    // A straight chain, and one with points that coincide, stay finite, without tilt.
    for (Points const& chain : {Points{{}, {1, 0, 0}, {3, 0, 0}}, Points{{}, {}, {}}}) {
        points = ToArray(chain);
        EXPECT_EQ(spline.GetHermiteSpline(points, 3, curve, nullptr, nullptr, 0, 3, 1), 5);
        EXPECT_TRUE(curve[1].Length() < 2 && curve[1].y == 0 && curve[1].z == 0);
    }
}

struct OpenSpline : Spline
{
    using Spline::Hermite1to4;
    using Spline::Spline;
};

// Chains of protein structures: what a ribbon is drawn through.
TEST(Spline, FollowsProteinChains)
{
    OpenSpline const spline(Spline::Hermite);
    for (char const* name : {"1orc_ca", "1yeb_ca", "1c1n_ca", "1guy_ca_with_break"}) {
        SCOPED_TRACE(name);
        std::ifstream file(std::string(VORLANE_EXAMPLE_DATA "/chains/") + name + ".xyz");
        int count = 0;
        std::string text;
        file >> count >> std::ws;
        std::getline(file, text);
        PointArray points;
        for (Point3d point; file >> text >> point.x >> point.y >> point.z;) {
            points.push_back(point);
        }
        ASSERT_TRUE(count > 60 && points.GetSize() == count);
        for (int const cycles : {0, 3}) {
            constexpr int perSegment = 1001;
            PointArray curve;
            int const size =
                spline.GetHermiteSpline(points, count, curve, nullptr, nullptr, cycles, perSegment, 3.8);
            ASSERT_EQ(size, (count - 1) * (perSegment - 1) + 1);
            for (int n = 1; n != size - 1; ++n) {
                // No gap and, so finely cut, no corner; NaN fails as well.
                Point3d const step = curve[n + 1] - curve[n];
                ASSERT_LT(step.Length(), 0.02);
                ASSERT_LT((step - (curve[n] - curve[n - 1])).Length(), 2e-4) << n;
            }
            for (int n = 0; n != count; ++n) {
                ASSERT_TRUE(IsEqual(curve[n * (perSegment - 1)], points[n]));
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
    Spline const spline(Spline::Hermite);
    EXPECT_EQ(spline.GetHermiteSpline(points, count, curve, nullptr, nullptr, 0, 2, 1.0), count);
    EXPECT_TRUE(IsEqual(curve[count - 1], points[count - 1]));
    EXPECT_THROW(spline.GetHermiteSpline(points, count, curve, nullptr, nullptr, 0, 2147, 1.0),
                 std::length_error);
    Spline cubic(Spline::Bspline);
    cubic.SetGranularity(2);
    EXPECT_EQ(cubic.GetCubicSpline(points, curve), 1);
    EXPECT_EQ(curve.GetSize(), (count - 3) * 2);
    cubic.SetGranularity(2148);
    EXPECT_THROW(cubic.GetCubicSpline(points, curve), std::length_error);
}

} // namespace
