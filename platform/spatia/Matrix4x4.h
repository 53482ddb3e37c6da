#ifndef VORLANE_PLATFORM_SPATIA_MATRIX4X4_H
#define VORLANE_PLATFORM_SPATIA_MATRIX4X4_H

/// \file
/// Projective maps of space.

namespace Spatia {

/// A 4 by 4 matrix of doubles, stored by rows. It acts on row vectors.
class Matrix4x4
{
public:
    /// Tag for the matrix of zeros.
    enum NullMatrixTag
    {
        NullMatrix = 0 ///< asks for the matrix of zeros
    };

    /// All elements 0.
    constexpr Matrix4x4() = default;

    /// All elements 0.
    constexpr Matrix4x4(NullMatrixTag) {}

    /// The element at `row` and `column`, each from 0 to 3; they are not tested.
    constexpr double& operator()(int row, int column) { return m_elements[4 * row + column]; }
    constexpr double const& operator()(int row, int column) const { return m_elements[4 * row + column]; }

private:
    double m_elements[16] = {};
};

} // namespace Spatia

#endif
