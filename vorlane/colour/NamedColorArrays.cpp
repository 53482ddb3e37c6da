#include "vorlane/colour/NamedColorArrays.h"

#include "vorlane/colour/ColorSpectrumRegistry.h"
#include "vorlane/colour/CustomColorSpectrum.h"
#include "vorlane/foundation/CountedEntries.h"

#include <cstddef>
#include <cstdint>
#include <limits>

namespace Vorlane {

Orrin::ColorArray BlackWhiteColorArray()
{
    return CustomColorSpectrum::BlackWhite().GetColorArray();
}

Orrin::ColorArray WhiteBlackColorArray()
{
    return CustomColorSpectrum::WhiteBlack().GetColorArray();
}

Orrin::ColorArray RedBlueColorArray()
{
    return CustomColorSpectrum::RedBlue().GetColorArray();
}

Orrin::ColorArray BlueRedColorArray()
{
    return CustomColorSpectrum::BlueRed().GetColorArray();
}

Orrin::ColorArray RedWhiteBlueColorArray()
{
    return CustomColorSpectrum::RedWhiteBlue().GetColorArray();
}

Orrin::ColorArray BlueWhiteRedColorArray()
{
    return CustomColorSpectrum::BlueWhiteRed().GetColorArray();
}

Orrin::ColorArray RedGreenBlueColorArray()
{
    return CustomColorSpectrum::RedGreenBlue().GetColorArray();
}

Orrin::ColorArray BlueGreenRedColorArray()
{
    return CustomColorSpectrum::BlueGreenRed().GetColorArray();
}

Orrin::ColorArray Rainbow1ColorArray()
{
    return CustomColorSpectrum::Rainbow1().GetColorArray();
}

Orrin::ColorArray Rainbow1ReversedColorArray()
{
    return CustomColorSpectrum::Rainbow1Reversed().GetColorArray();
}

Orrin::ColorArray Rainbow2ColorArray()
{
    return CustomColorSpectrum::Rainbow2().GetColorArray();
}

Orrin::ColorArray Rainbow2ReversedColorArray()
{
    return CustomColorSpectrum::Rainbow2Reversed().GetColorArray();
}

Orrin::ColorArray NamedColorArray(CString const& name)
{
    ColorSpectrumRegistry registry;
    Orrin::ColorArray array(0, 1);
    return registry.GetColorArray(name, array) ? array : RedGreenBlueColorArray();
}

void SerializeColor(CArchive& ar, Orrin::Color& color)
{
    if (ar.IsStoring()) {
        ar << color.GetPacked();
        return;
    }
    std::uint32_t packed = 0;
    ar >> packed;
    color.SetPacked(packed);
    if (ar.m_nObjectSchema < 22 && color.GetAlpha() == 0) {
        color.SetAlpha(255); // the older writers left alpha empty
    }
}

CArchive& operator>>(CArchive& ar, Orrin::Color& color)
{
    SerializeColor(ar, color);
    return ar;
}

CArchive& operator<<(CArchive& ar, Orrin::Color const& color)
{
    SerializeColor(ar, const_cast<Orrin::Color&>(color));
    return ar;
}

void SerializeColorArray(CArchive& ar, Orrin::ColorArray& array)
{
    if (ar.IsStoring()) {
        ar.WriteCount(static_cast<unsigned long>(array.GetSize()));
        for (Orrin::Color& color : array) {
            SerializeColor(ar, color);
        }
        ar << CString(array.GetName().c_str());
        return;
    }
    std::size_t const count = CheckedEntryCount(static_cast<std::uint32_t>(ar.ReadCount()),
                                                std::numeric_limits<std::int32_t>::max());
    LoadCountedEntries(
        ar, array.size(), count, sizeof(std::uint32_t), sizeof(Orrin::Color),
        [&](std::size_t size) { array.SetSize(static_cast<long>(size), -1); },
        [&](std::size_t begin, std::size_t end) {
            for (std::size_t index = begin; index < end; ++index) {
                SerializeColor(ar, array[static_cast<long>(index)]);
            }
        });
    if (ar.m_nObjectSchema != 23) {
        CString name;
        ar >> name;
        array.SetName(name);
    }
}

} // namespace Vorlane
