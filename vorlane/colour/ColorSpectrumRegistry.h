#ifndef VORLANE_COLOUR_COLORSPECTRUMREGISTRY_H
#define VORLANE_COLOUR_COLORSPECTRUMREGISTRY_H

/// \file
/// The spectra that are known by name.

#include "vorlane/Export.h"
#include "vorlane/colour/CustomColorSpectrum.h"
#include "vorlane/colour/NamedColorArrays.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/ValueTypes.h"

#include <map>
#include <vector>

namespace Vorlane {

/// A handle on the one map of spectra by name. Handles have no state: make one, ask it and drop it.
///
/// Names are compared by the letter, as unsigned bytes, and a name ends at a zero byte. The map lives as long
/// as the library is loaded and has no lock: one thread uses it at a time. Operations cost logarithmic time
/// and raise CMemoryException if memory that they take cannot be had.
class VORLANE_EXPORT ColorSpectrumRegistry
{
public:
    /// Fills the map with the twelve built-in spectra if it is empty, be it still or again. As long as a
    /// single spectrum is left, nothing is filled in.
    ColorSpectrumRegistry();

    /// All objects stand for the one registry, so there is nothing to copy.
    ColorSpectrumRegistry(ColorSpectrumRegistry const&) = default;
    ColorSpectrumRegistry& operator=(ColorSpectrumRegistry const&) { return *this; }

    /// Gives a copy of the spectrum; false, and `spectrum` stays as it is, if there is none of that name.
    virtual bool GetColorSpectrum(CString const& name, CustomColorSpectrum& spectrum);

    /// Gives the spectrum's row of colours; false, and `array` stays as it is, if there is none of that name.
    virtual bool GetColorArray(CString const& name, Orrin::ColorArray& array);

    /// Puts a copy into the map under the spectrum's own name. A spectrum that is there already stays.
    virtual void RegisterColorSpectrum(CustomColorSpectrum const& spectrum);

    /// Takes a spectrum out of the map, a built-in one too; an unknown name changes nothing.
    virtual void UnRegisterColorSpectrum(CString const& name);

    /// Appends all names, in the order of their bytes, to what `names` holds.
    virtual void GetColorSpectrumNames(std::vector<CString>& names);

private:
    /// Empty until the first handle is made. A load-time object.
    static std::map<CString, CustomColorSpectrum> s_colorSpectrumMap;
};

} // namespace Vorlane

#endif
