// The load-time objects of the colour classes, in the order of their construction.

#include "vorlane/colour/ColorMapParameters.h"
#include "vorlane/colour/ColorSpectrumRegistry.h"
#include "vorlane/colour/CustomColorSpectrum.h"

namespace Vorlane {

Orrin::Color const ColorMapParameters::s_offColor = Orrin::Color::Black();

std::map<CString, CustomColorSpectrum> ColorSpectrumRegistry::s_colorSpectrumMap;

CString const CustomColorSpectrum::s_defaultName("Default Spectrum");

} // namespace Vorlane
