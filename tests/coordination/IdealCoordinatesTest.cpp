#include "vorlane/coordination/CoordinationGeometry.h"
#include "vorlane/coordination/IdealCoordinatesInternal.h"

#include "gtest/gtest.h"

#include "tests/support/Seed.h"

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;
using Spatia::Point3d;
using PointArray = Orrin::LegacyArray<Point3d>;

namespace {

double const pi = std::acos(-1.0);
double const notANumber = std::numeric_limits<double>::quiet_NaN();

double Dot(Point3d const& a, Point3d const& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

void ExpectPoint(Point3d const& actual, Point3d const& wanted, double tolerance)
{
    EXPECT_LE((actual - wanted).Length(), tolerance) << actual.x << ' ' << actual.y << ' ' << actual.z;
}

double const m = std::atan(std::sqrt(2.0)) * 180.0 / pi; // half the angle of the tetrahedron
double const o = 90.0 - m;
double const k = 2.0 * m;
double const u = std::atan(std::sqrt(6.0)) * 180.0 / pi;
double const v = std::acos(std::sqrt(2.0) / 3.0) * 180.0 / pi;

/// The angles to the z axis and around it, in degrees, that textbooks give for the sites of a polyhedron.
struct Polyhedron
{
    CoordinationGeometryType type;
    std::vector<std::pair<double, double>> sites;
};

std::vector<Polyhedron> const polyhedra = {
    {linear, {{90, 0}, {90, 180}}},
    {angular, {{90, 0}, {90, k}}},
    {trigonalPlanar, {{90, 0}, {90, 120}, {90, 240}}},
    {trigonalPyramidal, {{90, 0}, {v, 180 - u}, {v, u - 180}}},
    {tShaped, {{90, 0}, {90, 180}, {90, 90}}},
    {tetrahedral, {{m, 45}, {m, 225}, {180 - m, 135}, {180 - m, 315}}},
    {squarePlanar, {{90, 45}, {90, 135}, {90, 225}, {90, 315}}},
    {squarePyramidal, {{k, 45}, {k, 135}, {k, 225}, {k, 315}}},
    {trigonalPlanarPyramidal, {{0, 0}, {90, 0}, {90, 120}, {90, 240}}},
    {seeSaw, {{90, 0}, {90, 180}, {45, 90}, {45, 270}}},
    {trigonalBipyramidal, {{90, 0}, {90, 180}, {90, 90}, {30, 270}, {150, 270}}},
    {squarePlanarPyramidal, {{0, 0}, {90, 45}, {90, 135}, {90, 225}, {90, 315}}},
    {octahedral, {{0, 0}, {180, 0}, {90, 0}, {90, 90}, {90, 180}, {90, 270}}},
    {trigonalPrismatic, {{90, m}, {45, -o}, {135, -o}, {90, 180 - m}, {45, 180 + o}, {135, 180 + o}}},
    {trigonalAntiprismatic, {{90, m}, {45, -o}, {135, -o}, {90, 180 + m}, {135, 180 - o}, {45, 180 - o}}},
    {pentagonalPlanarPyramidal, {{0, 0}, {90, 0}, {90, 72}, {90, 144}, {90, 216}, {90, 288}}},
    {pentagonalBipyramidal, {{90, 0}, {90, 180}, {90, 90}, {18, 90}, {54, 270}, {126, 270}, {162, 90}}},
    {octahedralFaceMonocapped, {{0, 0}, {180, 0}, {90, 0}, {90, 90}, {90, 180}, {90, 270}, {m, 45}}},
    {trigonalPrismaticSquareFaceMonocapped,
     {{90, m}, {45, -o}, {135, -o}, {90, 180 - m}, {45, 180 + o}, {135, 180 + o}, {90, 270}}},
    {cubic,
     {{m, 45}, {m, 135}, {m, 225}, {m, 315}, {180 - m, 315}, {180 - m, 45}, {180 - m, 135}, {180 - m, 225}}},
    {squareAntiprismatic,
     {{m, 0}, {m, 90}, {m, 180}, {m, 270}, {180 - m, 315}, {180 - m, 45}, {180 - m, 135}, {180 - m, 225}}},
    {dodecahedral, {{30, 0}, {30, 180}, {90, 0}, {90, 90}, {90, 180}, {90, 270}, {150, 90}, {150, 270}}},
    {hexagonalBipyramidal,
     {{90, 0}, {90, 180}, {90, 90}, {30, 90}, {30, 270}, {90, 270}, {150, 270}, {150, 90}}},
};

/// Asks for the sites with this constraint; the array holds points before, which must be gone afterwards.
PointArray Constrained(CoordinationGeometryType type, GeometryConstraint const& constraint, int wanted)
{
    PointArray points;
    points.resize(3, Point3d(7, 7, 7));
    EXPECT_EQ(GetCoordinates(type, points, &constraint), wanted);
    EXPECT_EQ(points.GetSize(), wanted);
    return points;
}

} // namespace

TEST(IdealCoordinatesTest, SitesAndAnglesAreThoseOfThePolyhedra)
{
    bool hasSites[32] = {};
    hasSites[trigonalAntiprismaticStretched] = true;
    for (Polyhedron const& polyhedron : polyhedra) {
        CoordinationGeometryType const type = polyhedron.type;
        SCOPED_TRACE(type);
        hasSites[type] = true;
        int const ligands = static_cast<int>(polyhedron.sites.size());
        PointArray points;
        points.resize(2, Point3d(7, 7, 7));
        ASSERT_EQ(GetCoordinates(type, points, nullptr), ligands + 1);
        ASSERT_EQ(points.GetSize(), ligands + 1);
        ExpectPoint(points[0], Point3d::origin, 0.0);
        int site = 0;
        for (auto const& [polar, azimuth] : polyhedron.sites) {
            double const p = polar * pi / 180.0;
            double const a = azimuth * pi / 180.0;
            ExpectPoint(points[++site],
                        Point3d(std::sin(p) * std::cos(a), std::sin(p) * std::sin(a), std::cos(p)), 1e-15);
            for (int other = 1; other < site; ++other) {
                double const angle = GetCoordinationAngle(type, site, other);
                EXPECT_NEAR(std::cos(angle), Dot(points[site], points[other]), 1e-14);
                EXPECT_EQ(angle, GetCoordinationAngle(type, other, site));
            }
            EXPECT_EQ(GetCoordinationAngle(type, site, site), 0.0);
        }
        for (int outside : {0, ligands + 1, -1}) {
            EXPECT_EQ(GetCoordinationAngle(type, outside, 1), 0.0);
            EXPECT_EQ(GetCoordinationAngle(type, 1, outside), 0.0);
        }
    }
    for (int number = -1; number < 32; ++number) {
        if (number < 0 || !hasSites[number]) {
            PointArray points;
            points.resize(2, Point3d(7, 7, 7));
            EXPECT_EQ(GetCoordinates(static_cast<CoordinationGeometryType>(number), points), 0) << number;
            EXPECT_EQ(points.GetSize(), 0) << number;
            EXPECT_EQ(GetCoordinationAngle(static_cast<CoordinationGeometryType>(number), 1, 2), 0.0)
                << number;
        }
    }
    PointArray plain;
    PointArray stretched;
    GetCoordinates(trigonalAntiprismatic, plain);
    GetCoordinates(trigonalAntiprismaticStretched, stretched);
    for (int site = 0; site <= 6; ++site) {
        ExpectPoint(stretched[site], Point3d(1.4 * plain[site].x, plain[site].y, plain[site].z), 0.0);
    }
    EXPECT_NEAR(GetCoordinationAngle(trigonalAntiprismaticStretched, 1, 2), std::acos(0.32), 1e-15);
    EXPECT_EQ(GetCoordinationAngle(trigonalAntiprismaticStretched, 1, 4), std::acos(-1.0));
}

TEST(IdealCoordinatesTest, ConstraintsSetTheOpenAngles)
{
    double const h = std::sqrt(3.0) / 2.0;
    double const third = 2.0 * pi / 3.0;
    A2GeometryConstraint const bent(third);
    TPY3GeometryConstraint const tilted(pi / 2.0, pi / 2.0, third);
    TPY3GeometryConstraint const level(third, third, third);
    SS4GeometryConstraint const equatorial(third);
    struct Case
    {
        CoordinationGeometryType type;
        GeometryConstraint const& constraint;
        std::vector<Point3d> sites;
        double tolerance;
    };
    Case const cases[] = {
        {angular, bent, {{1, 0, 0}, {-0.5, h, 0}}, 1e-15},
        {angular, GeometryConstraint(), {{1, 0, 0}, {1, 0, 0}}, 0.0},
        {seeSaw, equatorial, {{1, 0, 0}, {-1, 0, 0}, {0, h, 0.5}, {0, -h, 0.5}}, 1e-15},
        {trigonalPyramidal,
         tilted,
         {{0.447214, 0, 0.894427}, {0.447214, -0.866025, -0.223607}, {0.447214, 0.866025, -0.223607}},
         1e-6},
        {trigonalPyramidal, level, {{0, 0, 1}, {0, -h, -0.5}, {0, h, -0.5}}, 1e-7},
    };
    for (Case const& c : cases) {
        int const ligands = static_cast<int>(c.sites.size());
        PointArray const points = Constrained(c.type, c.constraint, ligands + 1);
        for (int site = 1; site <= ligands; ++site) {
            ExpectPoint(points[site], c.sites[static_cast<std::size_t>(site - 1)], c.tolerance);
        }
    }
    TPY3GeometryConstraint const angles(1, 2, 3);
    for (int first = 0; first < 5; ++first) {
        for (int second = 0; second < 5; ++second) {
            bool const known = first > 0 && second < 4 && first < second;
            EXPECT_EQ(angles.GetAngleConstraint(first, second), known ? first + second - 2 : 0)
                << first << second;
        }
    }
    for (auto type : {octahedral, a2tp3, linear, ss4tbpy5, heptagonalBipyramidal, unknownGeometry}) {
        Constrained(type, angles, 0);
    }
}

TEST(IdealCoordinatesTest, ATrigonalPyramidHasItsAnglesOrThereIsNone)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int round = 0; round < 2000; ++round) {
        double const a = engine.Real(0.1, 3.1);
        double const b = engine.Real(0.1, 3.1);
        double const c = round % 4 == 0 ? std::abs(2.0 * pi - a - b) : engine.Real(0.1, 3.1);
        if (c > 3.1) {
            continue;
        }
        bool const possible = a < b + c && b < a + c && c < a + b && a + b + c <= 2.0 * pi + 1e-12;
        Point3d sites[3];
        ASSERT_EQ(PlaceTrigonalPyramid(a, b, c, sites[0], sites[1], sites[2]), possible)
            << a << ' ' << b << ' ' << c;
        if (possible) {
            EXPECT_NEAR(Dot(sites[0], sites[1]), std::cos(a), 1e-7);
            EXPECT_NEAR(Dot(sites[0], sites[2]), std::cos(b), 1e-7);
            EXPECT_NEAR(Dot(sites[1], sites[2]), std::cos(c), 1e-7);
            EXPECT_TRUE(sites[1].x == sites[0].x && sites[2].x == sites[0].x);
            EXPECT_NEAR(sites[0].Length(), 1.0, 1e-7);
            EXPECT_NEAR(sites[0].y, 0.0, 1e-7);
            EXPECT_GT(sites[0].z, 0.0);
        }
    }
    double const flat = 180 - 6e-6;
    double const degrees[][4] = {
        // three angles, and the points there are
        {90, 90, 180, 0},        {170, 170, 170, 0}, {121, 120, 120, 0},     {0, 90, 90, 0},
        {60, 60, 121, 0},        {60, 60, 119, 4},   {1e-5, 1e-5, 1e-5, 0},  {notANumber, 90, 90, 0},
        {90, 90, notANumber, 0}, {60, 60, 120, 4},   {12e-6, flat, flat, 4},
    };
    for (auto const& row : degrees) {
        SCOPED_TRACE(testing::PrintToString(row));
        double const unit = pi / 180.0;
        TPY3GeometryConstraint const constraint(row[0] * unit, row[1] * unit, row[2] * unit);
        Constrained(trigonalPyramidal, constraint, static_cast<int>(row[3]));
    }
}
