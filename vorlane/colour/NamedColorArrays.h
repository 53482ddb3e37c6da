#ifndef VORLANE_COLOUR_NAMEDCOLORARRAYS_H
#define VORLANE_COLOUR_NAMEDCOLORARRAYS_H

/// \file
/// Named rows of colours: the twelve ramps that the library ships, the look-up by name, and the archive form
/// of a colour and of a row. The array of a ramp holds its stops alone; ColorMapParameters spreads them over
/// a range.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/ValueTypes.h"

namespace Vorlane {

/// A built-in ramp: the array of the CustomColorSpectrum factory of the same name, built anew in each call
/// and whatever the registry holds under that name.
VORLANE_EXPORT Orrin::ColorArray BlackWhiteColorArray();
VORLANE_EXPORT Orrin::ColorArray WhiteBlackColorArray();
VORLANE_EXPORT Orrin::ColorArray RedBlueColorArray();
VORLANE_EXPORT Orrin::ColorArray BlueRedColorArray();
VORLANE_EXPORT Orrin::ColorArray RedWhiteBlueColorArray();
VORLANE_EXPORT Orrin::ColorArray BlueWhiteRedColorArray();
VORLANE_EXPORT Orrin::ColorArray RedGreenBlueColorArray();
VORLANE_EXPORT Orrin::ColorArray BlueGreenRedColorArray();
VORLANE_EXPORT Orrin::ColorArray Rainbow1ColorArray();
VORLANE_EXPORT Orrin::ColorArray Rainbow1ReversedColorArray();
VORLANE_EXPORT Orrin::ColorArray Rainbow2ColorArray();
VORLANE_EXPORT Orrin::ColorArray Rainbow2ReversedColorArray();

/// The array of the spectrum that is registered under `name`, by the letter; for any other name the ramp
/// "Red-Green-Blue", under that name and as RedGreenBlueColorArray builds it. Logarithmic in the number of
/// registered spectra.
VORLANE_EXPORT Orrin::ColorArray NamedColorArray(CString const& name);

/// Stores or loads the packed value of a colour, 4 bytes. A loaded alpha of 0 becomes 255 below schema number
/// 22. The archive's mode decides, with the operators too: `<<` on a loading archive changes its colour. The
/// only exceptions are those of the archive.
VORLANE_EXPORT void SerializeColor(CArchive& ar, Orrin::Color& color);
VORLANE_EXPORT CArchive& operator>>(CArchive& ar, Orrin::Color& color);
VORLANE_EXPORT CArchive& operator<<(CArchive& ar, Orrin::Color const& color);

/// Stores or loads the count, the colours and the name. At schema number 23 exactly no name is read, and the
/// old one stays. A name is loaded up to its first zero byte. If the archive ends early, the entries read so
/// far are in the array, and its name is the old one.
///
/// \throws std::length_error "vector<T> too long" for a stored count past 0x7FFFFFFF.
/// \throws CMemoryException if the memory cannot be had.
VORLANE_EXPORT void SerializeColorArray(CArchive& ar, Orrin::ColorArray& array);

} // namespace Vorlane

#endif
