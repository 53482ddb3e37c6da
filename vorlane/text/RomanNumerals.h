#ifndef VORLANE_TEXT_ROMANNUMERALS_H
#define VORLANE_TEXT_ROMANNUMERALS_H

/// \file
/// Roman numerals. The CString form of IntegerToRomanNumeral keeps its results in a cache that is shared and
/// has no lock: one thread at a time may call it. The other functions keep no state.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include <string>

/// Numerals as text. The functions are reached as `Vorlane::RomanNumerals`, too.
namespace RomanNumerals {

/// Reads a numeral in capitals, with a `-` in front for a negative number. The symbols M, CM, D, CD, C, XC,
/// L, XL, X, IX, V, IV, I may each stand any number of times, but only in this order: "IIII" is 4, "VIV" 9,
/// and "IIX" is no numeral. An empty text, "0" and "-" are 0. What is no numeral gives false and sets `value`
/// to 0. The sum wraps at 32 bits. Linear in the length of the text.
VORLANE_EXPORT bool RomanNumeralToInteger(std::string const& text, int& value);

/// The same for the bytes up to the first zero byte.
VORLANE_EXPORT bool RomanNumeralToInteger(CString const& text, int& value);

/// Writes the numeral: "0" for zero, a `-` in front of a negative one, an M for each whole thousand, so that
/// a large number gives a long text. The lowest `int`, which has no positive counterpart, gives "-" alone.
VORLANE_EXPORT void IntegerToRomanNumeral(int value, std::string& text);

/// The same by way of the cache: a number that was asked for before costs a look-up, and its text is shared.
VORLANE_EXPORT void IntegerToRomanNumeral(int value, CString& text);

} // namespace RomanNumerals

namespace Vorlane {

/// \cond
namespace RomanNumerals = ::RomanNumerals;
/// \endcond

} // namespace Vorlane

#endif
