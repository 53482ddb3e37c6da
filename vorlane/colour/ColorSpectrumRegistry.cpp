#include "vorlane/colour/ColorSpectrumRegistry.h"

namespace Vorlane {

namespace {

/// The factories of the built-in spectra, in the order of registration.
constexpr CustomColorSpectrum (*builtInSpectra[])() = {
    CustomColorSpectrum::BlackWhite,   CustomColorSpectrum::WhiteBlack,
    CustomColorSpectrum::RedBlue,      CustomColorSpectrum::BlueRed,
    CustomColorSpectrum::RedWhiteBlue, CustomColorSpectrum::BlueWhiteRed,
    CustomColorSpectrum::RedGreenBlue, CustomColorSpectrum::BlueGreenRed,
    CustomColorSpectrum::Rainbow1,     CustomColorSpectrum::Rainbow1Reversed,
    CustomColorSpectrum::Rainbow2,     CustomColorSpectrum::Rainbow2Reversed,
};

/// The name of the copy that goes into the map, whatever a derived class says of itself.
CString NameOf(CustomColorSpectrum const& spectrum)
{
    return spectrum.CustomColorSpectrum::GetColorArray().GetName().c_str();
}

} // namespace

ColorSpectrumRegistry::ColorSpectrumRegistry()
{
    if (!s_colorSpectrumMap.empty()) {
        return;
    }
    AfxWithMemoryException([] {
        std::map<CString, CustomColorSpectrum> filled; // all of them or, if the memory ends, none
        for (auto const& makeSpectrum : builtInSpectra) {
            CustomColorSpectrum const spectrum = makeSpectrum();
            filled.emplace(NameOf(spectrum), spectrum);
        }
        s_colorSpectrumMap.merge(filled);
    });
}

bool ColorSpectrumRegistry::GetColorSpectrum(CString const& name, CustomColorSpectrum& spectrum)
{
    auto const entry = s_colorSpectrumMap.find(name);
    if (entry == s_colorSpectrumMap.end()) {
        return false;
    }
    spectrum = entry->second;
    return true;
}

bool ColorSpectrumRegistry::GetColorArray(CString const& name, Orrin::ColorArray& array)
{
    auto const entry = s_colorSpectrumMap.find(name);
    if (entry == s_colorSpectrumMap.end()) {
        return false;
    }
    array = entry->second.GetColorArray();
    return true;
}

void ColorSpectrumRegistry::RegisterColorSpectrum(CustomColorSpectrum const& spectrum)
{
    AfxWithMemoryException([&] { s_colorSpectrumMap.emplace(NameOf(spectrum), spectrum); });
}

void ColorSpectrumRegistry::UnRegisterColorSpectrum(CString const& name)
{
    s_colorSpectrumMap.erase(name);
}

void ColorSpectrumRegistry::GetColorSpectrumNames(std::vector<CString>& names)
{
    AfxWithMemoryException([&] {
        names.reserve(names.size() + s_colorSpectrumMap.size());
        for (auto const& entry : s_colorSpectrumMap) {
            names.push_back(entry.first);
        }
    });
}

} // namespace Vorlane
