#ifndef VORLANE_PLATFORM_SPATIA_POINT3D_H
#define VORLANE_PLATFORM_SPATIA_POINT3D_H

/// \file
/// Points and vectors of space.

#include <cmath>

/// Points, vectors and matrices.
namespace Spatia {

/// A point or vector of space: three doubles and nothing else, in the caller's unit of length.
/// Everything is inline; no operation allocates or throws.
struct Point3d
{
    /// The coordinates.
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    /// (0, 0, 0).
    constexpr Point3d() = default;

    /// (x, y, z).
    constexpr Point3d(double xValue, double yValue, double zValue) : x(xValue), y(yValue), z(zValue) {}

    /// The Euclidean length, the root of x² + y² + z² summed in this order.
    double Length() const { return std::sqrt(x * x + y * y + z * z); }

    /// The squared Euclidean distance, in the squared unit of length.
    constexpr double Distance2(Point3d const& other) const
    {
        double const dx = x - other.x;
        double const dy = y - other.y;
        double const dz = z - other.z;
        return dx * dx + dy * dy + dz * dz;
    }

    /// Divides by the length, so that the length becomes 1. A point of length 0 stays as it is.
    Point3d& Normalize()
    {
        double const length = Length();
        if (length != 0.0) {
            *this /= length;
        }
        return *this;
    }

    /// Scales by `length` over the present length. A point of length 0 stays as it is.
    Point3d& ChangeLength(double length)
    {
        double const present = Length();
        if (present != 0.0) {
            double const factor = length / present;
            x *= factor;
            y *= factor;
            z *= factor;
        }
        return *this;
    }

    /// The cross product, this point first.
    constexpr Point3d Cross(Point3d const& other) const
    {
        return Point3d(y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x);
    }

    /// Subtracts coordinate by coordinate.
    constexpr Point3d& operator-=(Point3d const& other)
    {
        x -= other.x;
        y -= other.y;
        z -= other.z;
        return *this;
    }

    /// Divides each coordinate.
    constexpr Point3d& operator/=(double divisor)
    {
        x /= divisor;
        y /= divisor;
        z /= divisor;
        return *this;
    }

    static Point3d const origin;  ///< (0, 0, 0)
    static Point3d const zero;    ///< (0, 0, 0)
    static Point3d const iVector; ///< (1, 0, 0)
    static Point3d const jVector; ///< (0, 1, 0)
    static Point3d const kVector; ///< (0, 0, 1)
};

inline constexpr Point3d Point3d::origin(0.0, 0.0, 0.0);
inline constexpr Point3d Point3d::zero(0.0, 0.0, 0.0);
inline constexpr Point3d Point3d::iVector(1.0, 0.0, 0.0);
inline constexpr Point3d Point3d::jVector(0.0, 1.0, 0.0);
inline constexpr Point3d Point3d::kVector(0.0, 0.0, 1.0);

/// Sums and differences by coordinates, and the multiple of a vector.
constexpr Point3d operator+(Point3d const& left, Point3d const& right)
{
    return Point3d(left.x + right.x, left.y + right.y, left.z + right.z);
}
constexpr Point3d operator-(Point3d const& left, Point3d const& right)
{
    return Point3d(left.x - right.x, left.y - right.y, left.z - right.z);
}
constexpr Point3d operator*(double factor, Point3d const& point)
{
    return Point3d(factor * point.x, factor * point.y, factor * point.z);
}

} // namespace Spatia

#endif
