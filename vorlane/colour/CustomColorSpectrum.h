#ifndef VORLANE_COLOUR_CUSTOMCOLORSPECTRUM_H
#define VORLANE_COLOUR_CUSTOMCOLORSPECTRUM_H

/// \file
/// Rows of colours that a user defines in part and the library completes.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/ValueTypes.h"

#include <vector>

namespace Vorlane {

/// A named row of colours, of which callers define some positions and the others are computed.
///
/// Between two defined positions the colours run from the one to the other, by the interpolated ramp of
/// Lumora::ColorMap. Before the first and after the last defined position they are flat. Without any, all are
/// black. Every change of a position computes the row anew, in time linear in the size, so that it can be
/// read at any moment. A fresh row is not computed yet: its colours are opaque black.
///
/// A value type without locks. Operations that take memory raise CMemoryException if there is none.
class VORLANE_EXPORT CustomColorSpectrum : private Orrin::ColorArray
{
public:
    /// "Default Spectrum", of size 2, editable, nothing defined.
    CustomColorSpectrum();

    /// Nothing is defined. A size below 2 gives 2 and one above 128 gives 128. The name ends at a zero byte.
    CustomColorSpectrum(CString const& name, int size, bool editable);

    /// Copies hold the name, the colours, which of them are defined, and whether the spectrum is editable. A
    /// failed assignment leaves the target as it was.
    CustomColorSpectrum(CustomColorSpectrum const& other);
    void operator=(CustomColorSpectrum const& other);
    ~CustomColorSpectrum() override;

    /// Stores or loads colours, computed ones too, name and flags. Loading takes the row as it was stored,
    /// also one of a size outside 2 to 128, and computes nothing; whether the spectrum is editable is not
    /// stored and stays. Flags that the archive does not hold keep their values, and are false where there
    /// were none. If the archive ends early, what was read so far is in the spectrum.
    virtual void Serialize(CArchive& ar);

    /// Defines the colour of a position, also in a spectrum that is not editable. An index outside the row
    /// changes nothing.
    virtual void SetColor(int index, Orrin::Color const& color);

    /// Gives the colour of a position, defined or computed, and tells whether it is defined. For an index
    /// outside the row the result is false and `color` stays as it is.
    virtual bool GetColor(int index, Orrin::Color& color) const;

    /// Turns a position into a computed one. An index outside the row changes nothing.
    virtual void UndefineColor(int index);

    /// A copy of the row with its name.
    virtual Orrin::ColorArray GetColorArray() const;

    /// A mark for user interfaces; nothing here enforces it.
    bool IsEditable() const { return m_editable; }

    /// The bounds of the size that the constructor enforces.
    static int GetDefaultMaximumSize() { return 128; }
    static int GetDefaultMinimumSize() { return 2; }

    /// Order by name whatever its case, then size, then editable after not editable, then the flags: at the
    /// first position where they differ, the undefined one comes first. Colours play no part.
    bool operator<(CustomColorSpectrum const& other) const;

    /// Equality in the keys of the order, so that spectra that differ only in colours are equal.
    bool operator==(CustomColorSpectrum const& other) const;
    bool operator!=(CustomColorSpectrum const& other) const { return !(*this == other); }

    /// A built-in ramp. It is not editable, and every position is a defined stop.
    static CustomColorSpectrum BlackWhite();
    static CustomColorSpectrum WhiteBlack();
    static CustomColorSpectrum RedBlue();
    static CustomColorSpectrum BlueRed();
    static CustomColorSpectrum RedWhiteBlue();
    static CustomColorSpectrum BlueWhiteRed();
    static CustomColorSpectrum RedGreenBlue();
    static CustomColorSpectrum BlueGreenRed();
    static CustomColorSpectrum Rainbow1();
    static CustomColorSpectrum Rainbow1Reversed();
    static CustomColorSpectrum Rainbow2();
    static CustomColorSpectrum Rainbow2Reversed();

private:
    bool IsValidIndex(int index) const;
    bool IsDefined(int index) const;
    void SetDefined(int index, bool defined);
    int CompareNameNoCase(CustomColorSpectrum const& other) const;
    void Recalculate();

    /// The name of a default-constructed spectrum. A load-time object.
    static CString const s_defaultName;

    bool m_editable;
    std::vector<bool> m_colorDefined; ///< positions past its end are undefined, as after a load they may be
};

} // namespace Vorlane

#endif
