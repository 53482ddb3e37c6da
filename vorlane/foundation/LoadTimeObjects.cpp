// The objects that are built when the library is loaded and destroyed, in reverse, when it is unloaded.
//
// Within one translation unit objects are built in the order in which they are defined; between two the order
// is open. So the order is fixed here, and this is the one file of the foundation that includes from above.
// None of the objects needs another at its construction, and none depends on the application.

#include "vorlane/colour/ColorMapParameters.h"
#include "vorlane/colour/ColorSpectrumRegistry.h"
#include "vorlane/colour/CustomColorSpectrum.h"
#include "vorlane/curves/Spline.h"
#include "vorlane/numerics/RandomInternal.h"
#include "vorlane/text/UniqueString.h"

namespace Vorlane {

Orrin::Color const ColorMapParameters::s_offColor = Orrin::Color::Black();

/// Empty: the first registry object fills it.
std::map<CString, CustomColorSpectrum> ColorSpectrumRegistry::s_colorSpectrumMap;

CString const CustomColorSpectrum::s_defaultName("Default Spectrum");

RandomInteger defaultGenerator;

DoubleArray Spline::m_alpha;

/// Without a map: the first text makes one.
UniqueStringTable UniqueString::m_table;

CString const UniqueStringTable::null;

} // namespace Vorlane
