#ifndef VORLANE_COORDINATION_ANISOTROPICDISPLACEMENT_H
#define VORLANE_COORDINATION_ANISOTROPICDISPLACEMENT_H

/// \file
/// The anisotropic displacement tensor of an atom and its uncertainties.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/ValueTypes.h"

#include <type_traits>

namespace Vorlane {

/// Six components U of a symmetric 3 by 3 tensor and their six uncertainties, in the caller's unit, in single
/// precision. Any numbers are accepted. The object is twelve floats and nothing else, since arrays of it go
/// through archives as memory.
class VORLANE_EXPORT AnisotropicDisplacement
{
public:
    class Array;

    /// The unit tensor without uncertainties.
    AnisotropicDisplacement() = default;

    /// The components and their uncertainties, the diagonals first.
    AnisotropicDisplacement(float u11, float u22, float u33, float u12, float u13, float u23, float sigu11,
                            float sigu22, float sigu33, float sigu12, float sigu13, float sigu23);

    /// The same, each rounded to the nearest float; what lies beyond the floats becomes infinite.
    AnisotropicDisplacement(double u11, double u22, double u33, double u12, double u13, double u23,
                            double sigu11, double sigu22, double sigu33, double sigu12, double sigu13,
                            double sigu23);

    /// A component of the tensor; any value is kept.
    float GetU11() const { return m_u11; }
    float GetU12() const { return m_u12; }
    float GetU13() const { return m_u13; }
    float GetU22() const { return m_u22; }
    float GetU23() const { return m_u23; }
    float GetU33() const { return m_u33; }
    void SetU11(float value) { m_u11 = value; }
    void SetU12(float value) { m_u12 = value; }
    void SetU13(float value) { m_u13 = value; }
    void SetU22(float value) { m_u22 = value; }
    void SetU23(float value) { m_u23 = value; }
    void SetU33(float value) { m_u33 = value; }

    /// The standard uncertainty of a component, in the same unit.
    float GetSigu11() const { return m_sigu11; }
    float GetSigu12() const { return m_sigu12; }
    float GetSigu13() const { return m_sigu13; }
    float GetSigu22() const { return m_sigu22; }
    float GetSigu23() const { return m_sigu23; }
    float GetSigu33() const { return m_sigu33; }
    void SetSigu11(float value) { m_sigu11 = value; }
    void SetSigu12(float value) { m_sigu12 = value; }
    void SetSigu13(float value) { m_sigu13 = value; }
    void SetSigu22(float value) { m_sigu22 = value; }
    void SetSigu23(float value) { m_sigu23 = value; }
    void SetSigu33(float value) { m_sigu33 = value; }

    /// The symmetric matrix of the components.
    Spatia::Matrix3x3 GetMatrix() const;

    /// The symmetric matrix of the uncertainties.
    Spatia::Matrix3x3 GetUncertaintyMatrix() const;

private:
    float m_u11 = 1.0f;
    float m_u22 = 1.0f;
    float m_u33 = 1.0f;
    float m_u12 = 0.0f;
    float m_u13 = 0.0f;
    float m_u23 = 0.0f;
    float m_sigu11 = 0.0f;
    float m_sigu22 = 0.0f;
    float m_sigu33 = 0.0f;
    float m_sigu12 = 0.0f;
    float m_sigu13 = 0.0f;
    float m_sigu23 = 0.0f;
};

static_assert(sizeof(AnisotropicDisplacement) == 48 && std::is_standard_layout_v<AnisotropicDisplacement> &&
                  std::is_trivially_copyable_v<AnisotropicDisplacement>,
              "an archive holds the object as 48 bytes of memory");

/// An array of displacements; new elements are unit tensors. In an archive: the count, then 48 bytes for
/// each, the floats in the order of the constructors.
class VORLANE_EXPORT AnisotropicDisplacement::Array
    : public CArray<AnisotropicDisplacement, AnisotropicDisplacement const&>
{
public:
    /// Empty.
    Array() = default;

    /// `size` elements and the growth argument `growBy`, at least 1. A `size` below 1 gives an empty array
    /// and leaves the growth argument at 0.
    Array(int size, int growBy);

    /// A copy of the elements; the growth argument is 0.
    Array(Array const& other);
    ~Array() override;

    /// CArray::Copy.
    Array& operator=(Array const& other);
};

} // namespace Vorlane

#endif
