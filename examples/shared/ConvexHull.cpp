#include "examples/shared/ConvexHull.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace Examples {
namespace {

constexpr double flat = 1e-6; // of the extent of the points

struct FlatPoint
{
    double u;
    double v;
    Point3d point;
};

double Turn(FlatPoint const& a, FlatPoint const& b, FlatPoint const& c)
{
    return (b.u - a.u) * (c.v - a.v) - (b.v - a.v) * (c.u - a.u);
}

/// The convex polygon around points of one plane with this normal (A. M. Andrew, Another efficient algorithm
/// for convex hulls in two dimensions, 1979).
std::vector<Point3d> PolygonAround(std::vector<Point3d> const& points, Point3d const& normal,
                                   double tolerance)
{
    Point3d const helper = std::abs(normal.x) < 0.8 ? Point3d(1, 0, 0) : Point3d(0, 1, 0);
    Point3d const uAxis = Unit(normal.Cross(helper));
    Point3d const vAxis = normal.Cross(uAxis);
    std::vector<FlatPoint> sorted;
    for (Point3d const& point : points) {
        sorted.push_back({Dot(point, uAxis), Dot(point, vAxis), point});
    }
    std::sort(sorted.begin(), sorted.end(), [](FlatPoint const& a, FlatPoint const& b) {
        return std::pair(a.u, a.v) < std::pair(b.u, b.v);
    });
    std::vector<Point3d> polygon;
    for (int side = 0; side < 2; ++side) {
        std::vector<FlatPoint> chain;
        for (FlatPoint const& next : sorted) {
            while (chain.size() >= 2 && Turn(chain[chain.size() - 2], chain.back(), next) <= tolerance) {
                chain.pop_back();
            }
            chain.push_back(next);
        }
        for (std::size_t k = 0; k + 1 < chain.size(); ++k) {
            polygon.push_back(chain[k].point);
        }
        std::reverse(sorted.begin(), sorted.end());
    }
    return polygon;
}

/// The points in the plane through three of them if no point lies above it, else none.
std::set<std::size_t> PlaneBelowWhichAllLie(std::vector<Point3d> const& points, Point3d const& base,
                                            Point3d const& normal, double tolerance)
{
    std::set<std::size_t> within;
    for (std::size_t m = 0; m < points.size(); ++m) {
        double const height = Dot(points[m] - base, normal);
        if (height > tolerance) {
            return {};
        }
        if (height > -tolerance) {
            within.insert(m);
        }
    }
    return within;
}

} // namespace

std::vector<std::vector<Point3d>> ConvexHullFaces(std::vector<Point3d> const& points)
{
    double extent = 0.0;
    for (Point3d const& point : points) {
        extent = std::max(extent, std::sqrt(point.Distance2(points.front())));
    }
    std::set<std::set<std::size_t>> known;
    std::vector<std::vector<Point3d>> faces;
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (std::size_t j = i + 1; j < points.size(); ++j) {
            for (std::size_t k = j + 1; k < points.size(); ++k) {
                Point3d const across = (points[j] - points[i]).Cross(points[k] - points[i]);
                if (across.Length() <= flat * extent * extent) {
                    continue;
                }
                for (double side : {1.0, -1.0}) {
                    Point3d const normal = side * Unit(across);
                    std::set<std::size_t> const within =
                        PlaneBelowWhichAllLie(points, points[i], normal, 1e-4 * extent);
                    if (!within.empty() && known.insert(within).second) {
                        std::vector<Point3d> corners;
                        for (std::size_t m : within) {
                            corners.push_back(points[m]);
                        }
                        faces.push_back(PolygonAround(corners, normal, flat * extent * extent));
                    }
                }
            }
        }
    }
    return faces;
}

} // namespace Examples
