#include "vorlane/coordination/CoordinationGeometry.h"
#include "vorlane/coordination/IdealCoordinatesInternal.h"

#include "gtest/gtest.h"

#include "tests/support/Seed.h"

#include <cmath>
#include <limits>
#include <vector>

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;
using Spatia::Point3d;
using PointArray = Orrin::LegacyArray<Point3d>;

namespace {

double const pi = std::acos(-1.0);
double const notANumber = std::numeric_limits<double>::quiet_NaN();

double Radians(double degrees)
{
    return degrees * pi / 180.0;
}

double Dot(Point3d const& a, Point3d const& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

void ExpectPoint(Point3d const& actual, Point3d const& wanted, double tolerance)
{
    EXPECT_NEAR(actual.x, wanted.x, tolerance);
    EXPECT_NEAR(actual.y, wanted.y, tolerance);
    EXPECT_NEAR(actual.z, wanted.z, tolerance);
}

/// A direction by its angle to the z axis and the angle of its projection to the x axis, in degrees.
struct Direction
{
    double polar;
    double azimuth;
};

double const m = std::atan(std::sqrt(2.0)) * 180.0 / pi; // half the angle of the tetrahedron
double const o = 90.0 - m;
double const k = 2.0 * m;
double const u = std::atan(std::sqrt(6.0)) * 180.0 / pi;
double const v = std::acos(std::sqrt(2.0) / 3.0) * 180.0 / pi;

/// The ideal directions from the angles that textbooks give for the polyhedra.
struct Polyhedron
{
    CoordinationGeometryType type;
    std::vector<Direction> sites;
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
    for (Polyhedron const& polyhedron : polyhedra) {
        SCOPED_TRACE(polyhedron.type);
        hasSites[polyhedron.type] = true;
        int const ligands = static_cast<int>(polyhedron.sites.size());
        PointArray points;
        points.resize(2, Point3d(7, 7, 7));
        ASSERT_EQ(GetCoordinates(polyhedron.type, points, nullptr), ligands + 1);
        ASSERT_EQ(points.GetSize(), ligands + 1);
        ExpectPoint(points[0], Point3d::origin, 0.0);
        int site = 0;
        for (Direction const& direction : polyhedron.sites) {
            ++site;
            double const polar = Radians(direction.polar);
            double const azimuth = Radians(direction.azimuth);
            Point3d const wanted(std::sin(polar) * std::cos(azimuth), std::sin(polar) * std::sin(azimuth),
                                 std::cos(polar));
            SCOPED_TRACE(site);
            ExpectPoint(points[site], wanted, 1e-15);
            for (int other = 1; other < site; ++other) {
                double const angle = GetCoordinationAngle(polyhedron.type, site, other);
                EXPECT_NEAR(std::cos(angle), Dot(points[site], points[other]), 1e-14);
                EXPECT_EQ(angle, GetCoordinationAngle(polyhedron.type, other, site));
            }
        }
        for (int outside : {0, ligands + 1, -1}) {
            EXPECT_EQ(GetCoordinationAngle(polyhedron.type, outside, 1), 0.0);
            EXPECT_EQ(GetCoordinationAngle(polyhedron.type, 1, outside), 0.0);
        }
        EXPECT_EQ(GetCoordinationAngle(polyhedron.type, 2, 2), 0.0);
    }
    hasSites[trigonalAntiprismaticStretched] = true;
    for (int number = -1; number < 32; ++number) {
        if (number < 0 || !hasSites[number]) {
            auto const type = static_cast<CoordinationGeometryType>(number);
            PointArray points;
            points.resize(2, Point3d(7, 7, 7));
            EXPECT_EQ(GetCoordinates(type, points), 0) << number;
            EXPECT_EQ(points.GetSize(), 0) << number;
            EXPECT_EQ(GetCoordinationAngle(type, 1, 2), 0.0) << number;
        }
    }
}

TEST(IdealCoordinatesTest, TheStretchedAntiprismIsLongerAlongItsAxis)
{
    PointArray plain;
    PointArray stretched;
    ASSERT_EQ(GetCoordinates(trigonalAntiprismatic, plain), 7);
    ASSERT_EQ(GetCoordinates(trigonalAntiprismaticStretched, stretched), 7);
    for (int site = 1; site <= 6; ++site) {
        ExpectPoint(stretched[site], Point3d(1.4 * plain[site].x, plain[site].y, plain[site].z), 0.0);
        EXPECT_NEAR(stretched[site].Length(), std::sqrt(1.32), 1e-15);
    }
    EXPECT_NEAR(GetCoordinationAngle(trigonalAntiprismaticStretched, 1, 2), std::acos(0.32), 1e-15);
    EXPECT_EQ(GetCoordinationAngle(trigonalAntiprismaticStretched, 1, 4), std::acos(-1.0));
}

TEST(IdealCoordinatesTest, ConstraintsSetTheOpenAngles)
{
    double const h = std::sqrt(3.0) / 2.0;
    PointArray const bent = Constrained(angular, A2GeometryConstraint(2.0 * pi / 3.0), 3);
    ExpectPoint(bent[1], Point3d(1, 0, 0), 0.0);
    ExpectPoint(bent[2], Point3d(-0.5, h, 0), 1e-15);
    ExpectPoint(Constrained(angular, GeometryConstraint(), 3)[2], Point3d(1, 0, 0), 0.0);

    PointArray const seesaw = Constrained(seeSaw, SS4GeometryConstraint(2.0 * pi / 3.0), 5);
    ExpectPoint(seesaw[2], Point3d(-1, 0, 0), 0.0);
    ExpectPoint(seesaw[3], Point3d(0, h, 0.5), 1e-15);
    ExpectPoint(seesaw[4], Point3d(0, -h, 0.5), 1e-15);

    PointArray const pyramid =
        Constrained(trigonalPyramidal, TPY3GeometryConstraint(pi / 2, pi / 2, 2 * pi / 3), 4);
    ExpectPoint(pyramid[1], Point3d(0.447214, 0, 0.894427), 1e-6);
    ExpectPoint(pyramid[2], Point3d(0.447214, -0.866025, -0.223607), 1e-6);
    ExpectPoint(pyramid[3], Point3d(0.447214, 0.866025, -0.223607), 1e-6);

    TPY3GeometryConstraint const angles(1, 2, 3);
    for (int first = 0; first < 5; ++first) {
        for (int second = 0; second < 5; ++second) {
            bool const known = first > 0 && second < 4 && first < second;
            EXPECT_EQ(angles.GetAngleConstraint(first, second), known ? first + second - 2 : 0)
                << first << second;
        }
    }
    for (CoordinationGeometryType type :
         {octahedral, a2tp3, linear, ss4tbpy5, heptagonalBipyramidal, unknownGeometry}) {
        Constrained(type, angles, 0);
    }
}

TEST(IdealCoordinatesTest, ATrigonalPyramidHasItsAnglesOrThereIsNone)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    int placed = 0;
    for (int round = 0; round < 2000; ++round) {
        double const a = engine.Real(0.1, 3.1);
        double const b = engine.Real(0.1, 3.1);
        double const c = round % 4 == 0 ? 2.0 * pi - a - b : engine.Real(0.1, 3.1);
        bool const inRange = c > 0.1 && c < 3.1;
        bool const triangle = a < b + c && b < a + c && c < a + b;
        bool const fits = inRange && triangle && a + b + c <= 2.0 * pi + 1e-12;
        Point3d sites[3];
        bool const found = PlaceTrigonalPyramid(a, b, c, sites[0], sites[1], sites[2]);
        if (inRange) {
            EXPECT_EQ(found, fits) << a << ' ' << b << ' ' << c;
        }
        if (found) {
            ++placed;
            double const wanted[] = {std::cos(a), std::cos(b), std::cos(c)};
            for (int i = 0; i < 3; ++i) {
                EXPECT_NEAR(sites[i].Length(), 1.0, 1e-7);
                EXPECT_EQ(sites[i].x, sites[0].x);
                EXPECT_NEAR(Dot(sites[i == 2 ? 1 : 0], sites[i == 0 ? 1 : 2]), wanted[i], 1e-7);
            }
            EXPECT_NEAR(sites[0].y, 0.0, 1e-7);
            EXPECT_GT(sites[0].z, 0.0);
        }
    }
    EXPECT_GT(placed, 500);

    double const degrees[][4] = {
        // three angles, and the points there are
        {120, 120, 120, 4},      {90, 90, 180, 0},        {170, 170, 170, 0},
        {121, 120, 120, 0},      {0, 90, 90, 0},          {60, 60, 120, 4},
        {60, 60, 121, 0},        {60, 60, 119, 4},        {0.00001, 0.00001, 0.00001, 0},
        {notANumber, 90, 90, 0}, {90, 90, notANumber, 0},
    };
    for (auto const& row : degrees) {
        SCOPED_TRACE(testing::PrintToString(row));
        TPY3GeometryConstraint const constraint(Radians(row[0]), Radians(row[1]), Radians(row[2]));
        Constrained(trigonalPyramidal, constraint, static_cast<int>(row[3]));
    }
    double const h = std::sqrt(3.0) / 2.0;
    double const third = 2.0 * pi / 3.0;
    PointArray const plane = Constrained(trigonalPyramidal, TPY3GeometryConstraint(third, third, third), 4);
    ExpectPoint(plane[1], Point3d(0, 0, 1), 1e-7);
    ExpectPoint(plane[2], Point3d(0, -h, -0.5), 1e-7);
    ExpectPoint(plane[3], Point3d(0, h, -0.5), 1e-7);
}
