#include "vorlane/coordination/CoordinationGeometry.h"
#include "vorlane/coordination/GeometryCatalogueInternal.h"
#include "vorlane/coordination/IdealCoordinatesInternal.h"

#include <cmath>
#include <cstddef>

namespace Vorlane {
namespace CoordinationGeometry {
namespace {

using Spatia::Point3d;

constexpr double q = 0.5773502691896257;       // root of 1/3
constexpr double b = 0.816496580927726;        // root of 2/3
constexpr double s = 0.7071067811865476;       // root of 1/2
constexpr double h = 0.8660254037844386;       // half the root of 3
constexpr double t = 1.4142135623730951 / 3.0; // a third of the root of 2
constexpr double c = 0.8090169943749475;       // cosine of 36 degrees
constexpr double d = c - 0.5;                  // cosine of 72 degrees
constexpr double e = 0.587785252292473;        // sine of 36 degrees
constexpr double f = 0.9510565162951535;       // sine of 72 degrees
constexpr double w = q * 1.4;

constexpr double third = 1.0 / 3.0;
constexpr double twoThirds = 2.0 / 3.0;

struct SiteRow
{
    CoordinationGeometryType type;
    Point3d sites[8]; ///< as many as the geometry has ligands; none if the first is the origin
};

constexpr SiteRow siteRows[] = {
    {unknownGeometry, {}},
    {linear, {{1, 0, 0}, {-1, 0, 0}}},
    {angular, {{1, 0, 0}, {-third, 2 * t, 0}}},
    {a2tp3, {}},
    {a2sp4, {}},
    {trigonalPlanar, {{1, 0, 0}, {-0.5, h, 0}, {-0.5, -h, 0}}},
    {trigonalPyramidal, {{1, 0, 0}, {-third, b, t}, {-third, -b, t}}},
    {tpy3tbpy5, {}},
    {tpy3oc6, {}},
    {tShaped, {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}}},
    {tetrahedral, {{q, q, q}, {-q, -q, q}, {-q, q, -q}, {q, -q, -q}}},
    {squarePlanar, {{s, s, 0}, {-s, s, 0}, {-s, -s, 0}, {s, -s, 0}}},
    {squarePyramidal,
     {{twoThirds, twoThirds, -third},
      {-twoThirds, twoThirds, -third},
      {-twoThirds, -twoThirds, -third},
      {twoThirds, -twoThirds, -third}}},
    {trigonalPlanarPyramidal, {{0, 0, 1}, {1, 0, 0}, {-0.5, h, 0}, {-0.5, -h, 0}}},
    {seeSaw, {{1, 0, 0}, {-1, 0, 0}, {0, s, s}, {0, -s, s}}},
    {ss4tbpy5, {}},
    {trigonalBipyramidal, {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -0.5, h}, {0, -0.5, -h}}},
    {squarePlanarPyramidal, {{0, 0, 1}, {s, s, 0}, {-s, s, 0}, {-s, -s, 0}, {s, -s, 0}}},
    {octahedral, {{0, 0, 1}, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}}},
    // Two triangles, at x = q and at x = -q; the antiprism turns the lower one through half a turn.
    {trigonalPrismatic,
     {{q, b, 0}, {q, -b / 2, s}, {q, -b / 2, -s}, {-q, b, 0}, {-q, -b / 2, s}, {-q, -b / 2, -s}}},
    {trigonalAntiprismatic,
     {{q, b, 0}, {q, -b / 2, s}, {q, -b / 2, -s}, {-q, -b, 0}, {-q, b / 2, -s}, {-q, b / 2, s}}},
    {trigonalAntiprismaticStretched,
     {{w, b, 0}, {w, -b / 2, s}, {w, -b / 2, -s}, {-w, -b, 0}, {-w, b / 2, -s}, {-w, b / 2, s}}},
    {pentagonalPlanarPyramidal, {{0, 0, 1}, {1, 0, 0}, {d, f, 0}, {-c, e, 0}, {-c, -e, 0}, {d, -f, 0}}},
    {pentagonalBipyramidal,
     {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, d, f}, {0, -c, e}, {0, -c, -e}, {0, d, -f}}},
    {octahedralFaceMonocapped,
     {{0, 0, 1}, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}, {q, q, q}}},
    {trigonalPrismaticSquareFaceMonocapped,
     {{q, b, 0}, {q, -b / 2, s}, {q, -b / 2, -s}, {-q, b, 0}, {-q, -b / 2, s}, {-q, -b / 2, -s}, {0, -1, 0}}},
    {cubic,
     {{q, q, q}, {-q, q, q}, {-q, -q, q}, {q, -q, q}, {q, -q, -q}, {q, q, -q}, {-q, q, -q}, {-q, -q, -q}}},
    {squareAntiprismatic,
     {{b, 0, q}, {0, b, q}, {-b, 0, q}, {0, -b, q}, {q, -q, -q}, {q, q, -q}, {-q, q, -q}, {-q, -q, -q}}},
    {dodecahedral,
     {{0.5, 0, h}, {-0.5, 0, h}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}, {0, 0.5, -h}, {0, -0.5, -h}}},
    {hexagonalBipyramidal,
     {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, 0.5, h}, {0, -0.5, h}, {0, -1, 0}, {0, -0.5, -h}, {0, 0.5, -h}}},
    {heptagonalBipyramidal, {}},
};

static_assert(RowsStandAtTheirNumbers(siteRows));

bool IsBetweenMinusOneAndOne(double cosine)
{
    return cosine > -1.0 && cosine < 1.0; // NaN is not
}

/// Puts the sites of a shape with open angles at index 1 and up. Gives false if the shape takes no angles or
/// if there are no such sites.
bool PlaceConstrained(CoordinationGeometryType type, GeometryConstraint const& constraint, Point3d* points)
{
    switch (type) {
    case angular: {
        double const angle = constraint.GetAngleConstraint(1, 2);
        points[1] = Point3d::iVector;
        points[2] = Point3d(std::cos(angle), std::sin(angle), 0.0);
        return true;
    }
    case trigonalPyramidal: {
        double const angle12 = constraint.GetAngleConstraint(1, 2);
        double const angle13 = constraint.GetAngleConstraint(1, 3);
        double const angle23 = constraint.GetAngleConstraint(2, 3);
        return PlaceTrigonalPyramid(angle12, angle13, angle23, points[1], points[2], points[3]);
    }
    case seeSaw: {
        double const halfAngle = constraint.GetAngleConstraint(3, 4) * 0.5;
        points[1] = Point3d::iVector;
        points[2] = Point3d(-1.0, 0.0, 0.0);
        points[3] = Point3d(0.0, std::sin(halfAngle), std::cos(halfAngle));
        points[4] = Point3d(0.0, -std::sin(halfAngle), std::cos(halfAngle));
        return true;
    }
    default:
        return false;
    }
}

} // namespace

GeometryConstraint::~GeometryConstraint() = default;

double GeometryConstraint::GetAngleConstraint(int /*site1*/, int /*site2*/) const
{
    return 0.0;
}

A2GeometryConstraint::A2GeometryConstraint(double angle) : m_angle(angle) {}

double A2GeometryConstraint::GetAngleConstraint(int site1, int site2) const
{
    return site1 == 1 && site2 == 2 ? m_angle : 0.0;
}

TPY3GeometryConstraint::TPY3GeometryConstraint(double angle12, double angle13, double angle23)
    : m_angle12(angle12), m_angle13(angle13), m_angle23(angle23)
{}

double TPY3GeometryConstraint::GetAngleConstraint(int site1, int site2) const
{
    if (site1 == 1 && site2 == 2) {
        return m_angle12;
    }
    if (site1 == 1 && site2 == 3) {
        return m_angle13;
    }
    return site1 == 2 && site2 == 3 ? m_angle23 : 0.0;
}

SS4GeometryConstraint::SS4GeometryConstraint(double angle) : m_angle(angle) {}

double SS4GeometryConstraint::GetAngleConstraint(int site1, int site2) const
{
    return site1 == 3 && site2 == 4 ? m_angle : 0.0;
}

IdealSites GetIdealSites(CoordinationGeometryType type)
{
    std::size_t const number = static_cast<unsigned int>(type);
    if (number >= geometryCount || siteRows[number].sites[0].Distance2(Point3d::origin) == 0.0) {
        return {};
    }
    return {siteRows[number].sites, GetCoordinationNumber(type)};
}

// The tips of the three vectors form a triangle with known sides. It is laid flat, and its circumscribed
// circle is lifted to the height at which its points are at distance 1 from the origin.
bool PlaceTrigonalPyramid(double angle12, double angle13, double angle23, Point3d& site1, Point3d& site2,
                          Point3d& site3)
{
    constexpr double root2 = 1.4142135623730951;
    constexpr double flat = 0.000001;
    // Angles that add up to a full turn give a radius of 1, give or take a rounding. It grows as the first
    // angle gets small, to 6e-9 where the triangle is about to count as flat.
    constexpr double radiusRounding = 1e-8;

    double const cosine12 = std::cos(angle12);
    double const cosine13 = std::cos(angle13);
    double const cosine23 = std::cos(angle23);
    if (!IsBetweenMinusOneAndOne(cosine12) || !IsBetweenMinusOneAndOne(cosine13) ||
        !IsBetweenMinusOneAndOne(cosine23)) {
        return false;
    }
    double const chord12 = std::sqrt(1.0 - cosine12) * root2;
    double const chord13 = std::sqrt(1.0 - cosine13) * root2;
    double const chord23 = std::sqrt(1.0 - cosine23) * root2;
    double const excess23 = chord12 + chord13 - chord23;
    double const excess13 = chord23 + chord12 - chord13;
    double const excess12 = chord23 + chord13 - chord12;
    if (!(excess23 > 0.0 && excess13 > 0.0 && excess12 > 0.0)) {
        return false;
    }

    // The triangle (0, 0), (chord12, 0), (x3, y3), its circumcentre and its circumradius.
    double const x3 = (chord12 * chord12 + chord13 * chord13 - chord23 * chord23) / (2.0 * chord12);
    double const y3 =
        std::sqrt((chord12 + chord13 + chord23) * excess23 * excess13 * excess12) / (2.0 * chord12);
    if (std::abs(y3) < flat) {
        return false;
    }
    double const m = chord13 * chord13 - x3 * chord12;
    double const xCentre = chord12 * 0.5;
    double const yCentre = m * 0.5 / y3;
    double const radius = std::sqrt(m * m + (y3 * chord12) * (y3 * chord12)) * 0.5 / y3;
    if (radius > 1.0 + radiusRounding) {
        return false;
    }
    double const height = radius > 1.0 ? 0.0 : std::sqrt((1.0 - radius) * (1.0 + radius));

    // Turns the circle in its plane so that site 1 comes to lie on the side of positive z.
    double cosine = 0.0;
    double sine = xCentre >= 0.0 ? -1.0 : 1.0;
    if (std::abs(yCentre) >= flat) {
        double const turn = std::atan(xCentre / yCentre);
        cosine = std::cos(turn);
        sine = std::sin(turn);
        if (sine * xCentre + cosine * yCentre >= 0.0) {
            cosine = -cosine;
            sine = -sine;
        }
    }
    auto const lifted = [&](double x, double y) {
        double const u = x - xCentre;
        double const v = y - yCentre;
        return Point3d(height, cosine * u - sine * v, sine * u + cosine * v);
    };
    site1 = lifted(0.0, 0.0);
    site2 = lifted(chord12, 0.0);
    site3 = lifted(x3, y3);
    return true;
}

int GetCoordinates(CoordinationGeometryType type, Orrin::LegacyArray<Point3d>& coordinates,
                   GeometryConstraint const* constraint)
{
    coordinates.clear();
    int const ligands = GetCoordinationNumber(type);
    if (ligands < 1) {
        return 0;
    }
    if (constraint == nullptr) {
        IdealSites const ideal = GetIdealSites(type);
        if (ideal.count == 0) {
            return 0;
        }
        coordinates.resize(static_cast<unsigned int>(ideal.count) + 1, Point3d::origin);
        for (int site = 1; site <= ideal.count; ++site) {
            coordinates[site] = ideal.first[site - 1];
        }
        return ideal.count + 1;
    }
    coordinates.resize(static_cast<unsigned int>(ligands) + 1, Point3d::origin);
    if (!PlaceConstrained(type, *constraint, coordinates.GetData())) {
        coordinates.clear();
        return 0;
    }
    return ligands + 1;
}

double GetCoordinationAngle(CoordinationGeometryType type, int site1, int site2)
{
    IdealSites const ideal = GetIdealSites(type);
    if (site1 == site2 || site1 < 1 || site1 > ideal.count || site2 < 1 || site2 > ideal.count) {
        return 0.0;
    }
    Point3d const& first = ideal.first[site1 - 1];
    Point3d const& second = ideal.first[site2 - 1];
    double cosine = first.x * second.x + first.y * second.y + first.z * second.z;
    if (cosine < -1.0) {
        cosine = -1.0;
    } else if (cosine > 1.0) {
        cosine = 1.0;
    }
    return std::acos(cosine);
}

} // namespace CoordinationGeometry
} // namespace Vorlane
