#ifndef VORLANE_PLATFORM_SPATIA_MATRIX3X3_H
#define VORLANE_PLATFORM_SPATIA_MATRIX3X3_H

/// \file
/// Rotations and other linear maps of space.

#include "platform/spatia/Point3d.h"

namespace Spatia {

/// A 3 by 3 matrix of doubles, stored by rows. It acts on row vectors: a point p moves to p times M.
class Matrix3x3
{
public:
    /// Tags for the two constant matrices. They are two types, since both have the value 0.
    enum NullMatrixTag
    {
        NullMatrix = 0 ///< asks for the matrix of zeros
    };

    /// The other of the two tags.
    enum IdentityMatrixTag
    {
        IdentityMatrix = 0 ///< asks for the identity
    };

    /// All elements 0.
    constexpr Matrix3x3() = default;

    /// Nine elements, row by row.
    constexpr Matrix3x3(double m00, double m01, double m02, double m10, double m11, double m12, double m20,
                        double m21, double m22)
        : m_elements{m00, m01, m02, m10, m11, m12, m20, m21, m22}
    {}

    /// All elements 0.
    constexpr Matrix3x3(NullMatrixTag) {}

    /// The identity.
    constexpr Matrix3x3(IdentityMatrixTag) : m_elements{1, 0, 0, 0, 1, 0, 0, 0, 1} {}

    /// The element at `row` and `column`, each from 0 to 2; they are not tested.
    constexpr double& operator()(int row, int column) { return m_elements[3 * row + column]; }
    constexpr double const& operator()(int row, int column) const { return m_elements[3 * row + column]; }

private:
    double m_elements[9] = {};
};

/// The row vector `point` times `matrix`.
constexpr Point3d operator*(Point3d const& point, Matrix3x3 const& matrix)
{
    return Point3d(point.x * matrix(0, 0) + point.y * matrix(1, 0) + point.z * matrix(2, 0),
                   point.x * matrix(0, 1) + point.y * matrix(1, 1) + point.z * matrix(2, 1),
                   point.x * matrix(0, 2) + point.y * matrix(1, 2) + point.z * matrix(2, 2));
}

} // namespace Spatia

#endif
