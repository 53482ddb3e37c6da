#ifndef VORLANE_PLATFORM_SPATIA_POINT2D_H
#define VORLANE_PLATFORM_SPATIA_POINT2D_H

/// \file
/// Points of the plane.

namespace Spatia {

/// A point of the plane: two doubles and nothing else.
struct Point2d
{
    /// The coordinates.
    double x = 0.0;
    double y = 0.0;

    /// (0, 0).
    constexpr Point2d() = default;

    /// (x, y).
    constexpr Point2d(double xValue, double yValue) : x(xValue), y(yValue) {}
};

} // namespace Spatia

#endif
