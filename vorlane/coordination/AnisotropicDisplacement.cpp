#include "vorlane/coordination/AnisotropicDisplacement.h"

#include "vorlane/foundation/FloatRounding.h"

#include <algorithm>

namespace Vorlane {

AnisotropicDisplacement::AnisotropicDisplacement(float u11, float u22, float u33, float u12, float u13,
                                                 float u23, float sigu11, float sigu22, float sigu33,
                                                 float sigu12, float sigu13, float sigu23)
    : m_u11(u11), m_u22(u22), m_u33(u33), m_u12(u12), m_u13(u13), m_u23(u23), m_sigu11(sigu11),
      m_sigu22(sigu22), m_sigu33(sigu33), m_sigu12(sigu12), m_sigu13(sigu13), m_sigu23(sigu23)
{}

AnisotropicDisplacement::AnisotropicDisplacement(double u11, double u22, double u33, double u12, double u13,
                                                 double u23, double sigu11, double sigu22, double sigu33,
                                                 double sigu12, double sigu13, double sigu23)
    : AnisotropicDisplacement(RoundedToFloat(u11), RoundedToFloat(u22), RoundedToFloat(u33),
                              RoundedToFloat(u12), RoundedToFloat(u13), RoundedToFloat(u23),
                              RoundedToFloat(sigu11), RoundedToFloat(sigu22), RoundedToFloat(sigu33),
                              RoundedToFloat(sigu12), RoundedToFloat(sigu13), RoundedToFloat(sigu23))
{}

Spatia::Matrix3x3 AnisotropicDisplacement::GetMatrix() const
{
    return Spatia::Matrix3x3(m_u11, m_u12, m_u13, m_u12, m_u22, m_u23, m_u13, m_u23, m_u33);
}

Spatia::Matrix3x3 AnisotropicDisplacement::GetUncertaintyMatrix() const
{
    return Spatia::Matrix3x3(m_sigu11, m_sigu12, m_sigu13, m_sigu12, m_sigu22, m_sigu23, m_sigu13, m_sigu23,
                             m_sigu33);
}

AnisotropicDisplacement::Array::Array(int size, int growBy)
{
    if (size >= 1) {
        SetSize(size, std::max(growBy, 1));
    }
}

AnisotropicDisplacement::Array::Array(Array const& other) : CArray()
{
    Copy(other);
}

AnisotropicDisplacement::Array::~Array() = default;

AnisotropicDisplacement::Array& AnisotropicDisplacement::Array::operator=(Array const& other)
{
    Copy(other);
    return *this;
}

} // namespace Vorlane
