#include "fuzz/DeviationChecks.h"
#include "tests/support/CaseTable.h"
#include "tests/support/PointArrays.h"

#include <limits>
#include <map>

using namespace Vorlane;
using namespace Vorlane::CoordinationGeometry;
using namespace VorlaneTest;
using Spatia::Point3d;

namespace {

double const pi = std::acos(-1.0);
double const degree = pi / 180.0;
double const notANumber = std::numeric_limits<double>::quiet_NaN();

/// Expects these sites behind the metal in the origin, or nothing; the array holds points before, which must
/// be gone afterwards.
void ExpectSites(CoordinationGeometryType type, GeometryConstraint const* constraint, Points sites,
                 double tolerance)
{
    if (!sites.empty()) {
        sites.insert(sites.begin(), Point3d::origin);
    }
    PointArray points;
    points.resize(3, Point3d(7, 7, 7));
    EXPECT_EQ(GetCoordinates(type, points, constraint), static_cast<int>(sites.size()));
    ExpectNear(points, ToArray(sites), tolerance);
}

} // namespace

TEST(IdealCoordinatesTest, SitesAndAnglesAreThoseOfThePolyhedra)
{
    std::map<int, Points> polyhedra;
    for (Case const& row : ReadCases("coordination/polyhedra.txt", "sites")) {
        double const polar = NumberIn(row, "polar") * degree, azimuth = NumberIn(row, "azimuth") * degree;
        polyhedra[std::stoi(row.at("geometry"))].push_back(
            {std::sin(polar) * std::cos(azimuth), std::sin(polar) * std::sin(azimuth), std::cos(polar)});
    }
    polyhedra[trigonalAntiprismaticStretched] = polyhedra.at(trigonalAntiprismatic);
    for (Point3d& site : polyhedra.at(trigonalAntiprismaticStretched)) {
        site.x *= 1.4;
    }
    for (int number = -1; number <= 31; ++number) {
        SCOPED_TRACE(number);
        auto const type = static_cast<CoordinationGeometryType>(number);
        Points const sites = polyhedra[number];
        ExpectSites(type, nullptr, sites, 1e-15);
        int const ligands = static_cast<int>(sites.size());
        for (int first = -1; first <= ligands + 1; ++first) {
            for (int second = -1; second <= ligands + 1; ++second) {
                double cosine = 1.0;
                if (first != second && std::min(first, second) > 0 && std::max(first, second) <= ligands) {
                    cosine = VorlaneFuzz::Dot(sites[static_cast<std::size_t>(first - 1)],
                                              sites[static_cast<std::size_t>(second - 1)]);
                }
                double const angle = GetCoordinationAngle(type, first, second);
                EXPECT_NEAR(std::cos(angle), std::max(cosine, -1.0), 1e-14) << first << ' ' << second;
            }
        }
    }
    EXPECT_EQ(GetCoordinationAngle(octahedral, 0, 2), 0.0);
    EXPECT_EQ(GetCoordinationAngle(trigonalAntiprismaticStretched, 1, 4), pi);
}

TEST(IdealCoordinatesTest, ConstraintsSetTheOpenAngles)
{
    double const h = std::sqrt(3.0) / 2.0;
    double const third = 2.0 * pi / 3.0;
    A2GeometryConstraint const bent(third);
    GeometryConstraint const nothing;
    TPY3GeometryConstraint const tilted(pi / 2.0, pi / 2.0, third), level(third, third, third),
        angles(1, 2, 3);
    SS4GeometryConstraint const equatorial(third);
    ExpectSites(angular, &bent, {{1, 0, 0}, {-0.5, h, 0}}, 1e-15);
    ExpectSites(angular, &nothing, {{1, 0, 0}, {1, 0, 0}}, 0.0);
    ExpectSites(seeSaw, &equatorial, {{1, 0, 0}, {-1, 0, 0}, {0, h, 0.5}, {0, -h, 0.5}}, 1e-15);
    ExpectSites(trigonalPyramidal, &tilted,
                {{0.447214, 0, 0.894427}, {0.447214, -0.866025, -0.223607}, {0.447214, 0.866025, -0.223607}},
                1e-6);
    ExpectSites(trigonalPyramidal, &level, {{0, 0, 1}, {0, -h, -0.5}, {0, h, -0.5}}, 1e-7);
    for (auto type : {octahedral, a2tp3, linear, ss4tbpy5, heptagonalBipyramidal, unknownGeometry}) {
        ExpectSites(type, &angles, {}, 0.0);
    }
    for (int first = 0; first < 5; ++first) {
        for (int second = 0; second < 5; ++second) {
            bool const known = first > 0 && second < 4 && first < second;
            EXPECT_EQ(angles.GetAngleConstraint(first, second), known ? first + second - 2 : 0)
                << first << second;
        }
    }
}

TEST(IdealCoordinatesTest, ATrigonalPyramidHasItsAnglesOrThereIsNone)
{
    double const flat = 180 - 6e-6;
    double const degrees[][4] = {
        // three angles, and the points there are
        {90, 90, 180, 0},        {170, 170, 170, 0}, {121, 120, 120, 0},     {0, 90, 90, 0},
        {60, 60, 121, 0},        {60, 60, 119, 4},   {1e-5, 1e-5, 1e-5, 0},  {notANumber, 90, 90, 0},
        {90, 90, notANumber, 0}, {60, 60, 120, 4},   {12e-6, flat, flat, 4},
    };
    for (auto const& row : degrees) {
        TPY3GeometryConstraint const constraint(row[0] * degree, row[1] * degree, row[2] * degree);
        PointArray points = ToArray({{7, 7, 7}});
        EXPECT_EQ(GetCoordinates(trigonalPyramidal, points, &constraint), row[3])
            << testing::PrintToString(row);
        EXPECT_EQ(points.GetSize(), row[3]) << testing::PrintToString(row);
    }
}
