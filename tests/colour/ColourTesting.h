#ifndef VORLANE_TESTS_COLOUR_COLOURTESTING_H
#define VORLANE_TESTS_COLOUR_COLOURTESTING_H

#include "vorlane/colour/ColorMapParameters.h"
#include "vorlane/colour/CustomColorSpectrum.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace VorlaneTest {

using Orrin::Color;
using Vorlane::ColorMapParameters;
using Vorlane::CustomColorSpectrum;

using Packed = std::vector<std::uint32_t>;

constexpr std::uint32_t red = 0xFF0000FFu, blue = 0xFFFF0000u, black = 0xFF000000u;

inline Packed ColorsOf(Orrin::ColorArray const& array)
{
    Packed packed;
    for (Color const& color : array) {
        packed.push_back(color.GetPacked());
    }
    return packed;
}

inline std::string HexOf(Packed const& colors)
{
    std::string text;
    for (std::uint32_t const packed : colors) {
        char digits[10];
        std::snprintf(digits, sizeof digits, " %08X", packed);
        text += digits;
    }
    return text;
}

/// One character a position: 'x' for a defined one, '-' for a computed one.
inline std::string FlagsOf(CustomColorSpectrum const& spectrum)
{
    std::string flags;
    Color color;
    for (int index = 0; index < spectrum.GetColorArray().GetSize(); ++index) {
        flags += spectrum.GetColor(index, color) ? 'x' : '-';
    }
    return flags;
}

inline CustomColorSpectrum SpectrumOf(char const* name, std::string const& flags, bool editable,
                                      Color color = red)
{
    CustomColorSpectrum spectrum(name, static_cast<int>(flags.size()), editable);
    for (std::size_t at = flags.find('x'); at != std::string::npos; at = flags.find('x', at + 1)) {
        spectrum.SetColor(static_cast<int>(at), color);
    }
    return spectrum;
}

/// One character a bin: 'x' for one that is on.
inline std::string BinsOf(ColorMapParameters const& parameters)
{
    Vorlane::BoolArray bins(3, 1);
    parameters.GetTransferFunction(bins);
    std::string text;
    for (int bin = 0; bin < bins.GetSize(); ++bin) {
        text += bins[bin] ? 'x' : '-';
    }
    return text;
}

inline ColorMapParameters ParametersOf(char const* spectrum, bool clip, double minimum, double maximum,
                                       std::string const& bins)
{
    Vorlane::BoolArray entries;
    for (char const bin : bins) {
        entries.Add(bin == 'x');
    }
    return ColorMapParameters(spectrum, clip, minimum, maximum, entries);
}

} // namespace VorlaneTest

#endif
