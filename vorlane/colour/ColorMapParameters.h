#ifndef VORLANE_COLOUR_COLORMAPPARAMETERS_H
#define VORLANE_COLOUR_COLORMAPPARAMETERS_H

/// \file
/// Colours for numbers, by a named spectrum over a range.

#include "platform/lumora/ColorMap.h"
#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/TypedArrays.h"
#include "vorlane/foundation/ValueTypes.h"

namespace Vorlane {

/// Turns numbers into colours: the ramp of a named spectrum over a range, in bins that can be switched off.
///
/// The transfer function has one entry for each bin of the map, and the ramp is laid over all of them; a bin
/// whose entry is false is then black, and its neighbours keep their colours. Which bin a value falls into,
/// also in a reversed, an empty or an infinite range, is told at Lumora::ColorMap. A parameter that was set,
/// to the same value too, makes the next colour build the map anew; until then the map stays as it was built,
/// whatever happens to the spectrum in the registry.
///
/// A value type without locks: one thread uses an object at a time, also to read colours.
class VORLANE_EXPORT ColorMapParameters
{
public:
    /// "Red-White-Blue" in 32 bins over 0 to 1, no clipping.
    ColorMapParameters();

    /// With a copy of the transfer function.
    ColorMapParameters(CString const& spectrumName, bool clip, double minimum, double maximum,
                       BoolArray const& transferFunction);

    /// With `binCount` bins, all switched on; none for a count below 1.
    ColorMapParameters(CString const& spectrumName, bool clip, double minimum, double maximum, int binCount);

    /// Copies hold the built map as well.
    ColorMapParameters(ColorMapParameters const& other);
    void operator=(ColorMapParameters const& other);
    virtual ~ColorMapParameters();

    /// The colour of a value. With clipping, a value below the minimum or above the maximum is black; a NaN
    /// is neither. Anything else gets the colour of its bin, black if there are no bins.
    ///
    /// Once the map is built this takes constant time and no memory. A spectrum name that is not registered
    /// gives the ramp "Red-Green-Blue".
    virtual Orrin::Color CalculateColor(double value);

    /// Stores or loads name, clipping, range and transfer function. If the archive ends early, what was read
    /// so far is in the object.
    virtual void Serialize(CArchive& ar);

    /// The name is looked up by the letter when the map is built; the comparisons below ignore its case.
    virtual void SetSpectrumName(CString const& name);
    virtual CString GetSpectrumName() const;

    /// Whether values outside the range are black. Otherwise they get the colour of the nearer end bin.
    virtual void SetClip(bool clip);
    virtual bool GetClip() const;

    /// The value at the begin of the map; it may be above the maximum.
    virtual void SetMinimum(double minimum);
    virtual double GetMinimum() const;

    /// The value at the end of the map.
    virtual void SetMaximum(double maximum);
    virtual double GetMaximum() const;

    /// One entry for each bin: whether it is switched on. GetTransferFunction makes its argument a copy.
    virtual void SetTransferFunction(BoolArray const& transferFunction);
    virtual void GetTransferFunction(BoolArray& transferFunction) const;

    /// Sets the first `count` of `colors` to what CalculateColor of this class gives for each of `values`; a
    /// count below 1 does nothing. An addition for whole surfaces, several times faster than one call for
    /// each.
    void CalculateColors(double const* values, int count, Orrin::Color* colors);

    /// Order by spectrum name whatever its case, no clipping before clipping, minimum, maximum, number of
    /// bins, and the entries of the transfer function, false before true. A NaN is neither less nor greater
    /// than any number, so that such a pair goes on to the next key; among objects without NaN the order is a
    /// strict weak one.
    bool operator<(ColorMapParameters const& other) const;
    bool operator>(ColorMapParameters const& other) const { return other < *this; }

    /// Equality in all those keys. An object equals itself; a NaN makes it differ from any other.
    bool operator==(ColorMapParameters const& other) const;
    bool operator!=(ColorMapParameters const& other) const { return !(*this == other); }

    /// The most bins that a user interface should offer: 128. Nothing here enforces it.
    static int GetDefaultMaximumBinCount() { return 128; }

private:
    enum class MapState : unsigned char
    {
        dirty,     ///< the map is not, or no longer, that of the other fields
        irregular, ///< built, and not regular
        clipped,   ///< built and regular, for the values inside the range
        open       ///< built and regular, for all values
    };

    bool IsOutside(double value) const { return value < m_minimum || value > m_maximum; }
    [[gnu::cold]] Orrin::Color CalculateColorInSteps(double value);
    void BuildColorMap();

    /// What clipped values and bins that are switched off get: black. A load-time object.
    static Orrin::Color const s_offColor;

    CString m_spectrumName;
    bool m_clip;
    double m_minimum;
    double m_maximum;
    BoolArray m_transferFunction;
    MapState m_mapState = MapState::dirty;
    Lumora::ColorMap m_colorMap;
};

} // namespace Vorlane

#endif
