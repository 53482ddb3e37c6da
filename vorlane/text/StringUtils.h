#ifndef VORLANE_TEXT_STRINGUTILS_H
#define VORLANE_TEXT_STRINGUTILS_H

/// \file
/// Reading simple text records: scanners that take or look at the next item of a text or a stream, strict
/// conversions of whole texts, and small edits. Nothing here keeps state, so distinct objects may be used on
/// distinct threads.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/ValueTypes.h"

#include <iosfwd>

namespace Vorlane {

/// Text records, item by item. No function depends on the locale: white space is blank, tab, line feed,
/// vertical tab, form feed and carriage return; a number has a point as its decimal mark; a character is a
/// byte.
///
/// **Scanners.** The `Parse` functions take an item off the front of a text and leave the rest in it, in time
/// linear in what they take, so that a text of any length is consumed in linear time. The `Peek` functions
/// look at the front of a text. They differ in what they skip and swallow:
///
/// | Scanner | Skips in front | The item ends | Takes besides the item |
/// |---|---|---|---|
/// | `Parse(text)` | white space | at white space | that one white space |
/// | `Parse(text, delimiters)` | white space | at a delimiter | that one delimiter |
/// | `ParseQuotedString(text)` | white space | at the repeated quote | both quotes |
/// | `Peek(text)` | white space | at white space | nothing |
/// | `Peek(text, delimiters)` | delimiters, all of them | at a delimiter | nothing |
/// | `PeekQuotedString(text)` | nothing | at the repeated quote | nothing |
/// | `ExtractString(stream)` | white space | at white space | that one white space |
/// | `ExtractString(stream, delimiters)` | white space | at a delimiter | nothing |
/// | `ExtractString(stream, delimiter)` | white space | at the delimiter | that one delimiter |
///
/// Every item also ends with the text or the stream. A null or empty set of delimiters contains none, except
/// in `ExtractString`. A zero byte inside a CString or a stream is an ordinary character, and no delimiter
/// unless it is given as the single one or ends the set of `ExtractString`; else only the conversions end at
/// it. Arguments may refer into the text
/// that is taken from.
///
/// **Failure.** A scanner answers an empty text, 0.0 or the zero point; a conversion answers false and leaves
/// its output alone. The only exceptions are those of memory and those that a stream was told to throw.
struct VORLANE_EXPORT StringUtils
{
    /// \name Taking the next item off a text
    /// @{

    /// The next word. "  a   b" gives "a" and leaves "  b".
    static CString Parse(CString& text);

    /// The next field. "  a , b" gives "a " and leaves " b" where the comma is a delimiter. A delimiter at
    /// the front gives an empty field; the blanks behind a field belong to it.
    static CString Parse(CString& text, char const* delimiters);
    static CString Parse(CString& text, char delimiter);

    /// The next text in backquotes, double or single quotes, without them. It ends at the first repeat of the
    /// quote that opened it; the others are ordinary inside, and there is no escape. Without the closing
    /// quote it is the whole rest. Where no quote stands, the result is empty and only white space is taken.
    static CString ParseQuotedString(CString& text);

    /// The next field as a number: the longest front of it that is one, read as by StringToReal, or 0.0. Too
    /// large a number is infinite, too small a one is the nearest double. The field is taken whatever it
    /// holds.
    static double ParseRealNumber(CString& text, char const* delimiters);
    static double ParseRealNumber(CString& text, char delimiter);

    /// The next three fields as a point. All three are taken in any case; unless each of them is a number
    /// from end to end (StringToReal), the point is zero. A blank behind a field therefore spoils it.
    static Spatia::Point3d ParsePoint(CString& text, char const* delimiters);
    static Spatia::Point3d ParsePoint(CString& text, char delimiter);

    /// @}
    /// \name Looking at the next item of a text
    /// @{

    /// The word that Parse would give.
    static CString Peek(CString const& text);

    /// The first field that is not empty: ",,a,b" gives "a". White space is skipped only if it is a
    /// delimiter.
    static CString Peek(CString const& text, char const* delimiters);
    static CString Peek(CString const& text, char delimiter);

    /// The quoted text at the very front, without its quotes; empty if the first character is no quote.
    static CString PeekQuotedString(CString const& text);

    /// The field that Peek gives, as a number by the rule of ParseRealNumber.
    static double PeekRealNumber(CString const& text, char const* delimiters);
    static double PeekRealNumber(CString const& text, char delimiter);

    /// The point that ParsePoint would give; unlike PeekRealNumber it skips no delimiters.
    static Spatia::Point3d PeekPoint(CString const& text, char const* delimiters);
    static Spatia::Point3d PeekPoint(CString const& text, char delimiter);

    /// Whether `character` is the first that is no white space.
    static bool CheckNextCharacter(char character, CString const& text);

    /// Whether the text has at least two characters, and the first and the last are `quote`.
    static bool CheckQuotedString(CString const& text, char quote);

    /// @}
    /// \name Reading the next item of a stream
    /// The last item is delivered whole although nothing stands behind it. Items may be of any length.
    /// @{

    /// The next word. An end of the stream inside or in front of the word sets its end and fail bits.
    static CString ExtractString(std::istream& stream);

    /// What stands in front of the next delimiter, leading white space skipped. At the end of the stream the
    /// end bit alone is set; on a stream that is not good the result is empty.
    static CString ExtractString(std::istream& stream, char delimiter);

    /// The next field; the delimiter stays in the stream. A null or empty set stands for a blank. An end of
    /// the stream inside or in front of the field sets its end and fail bits.
    static CString ExtractString(std::istream& stream, char const* delimiters);

    /// ExtractString(stream, '\n'): the next line that is not blank, without the white space in front of it.
    /// A carriage return at its end stays.
    static CString ExtractLine(std::istream& stream);

    /// @}
    /// \name Converting a whole text
    /// Nothing may stand behind the value. A null or empty text fails. The integer and real forms set `errno`
    /// to 0, or to ERANGE if the number is out of range, which is a failure; a null or empty text leaves
    /// `errno`.
    /// @{

    /// "on", "t", "true", "y", "yes" are true, "f", "false", "n", "no", "off" false, in either case. Anything
    /// else fails, with blanks around it or as a digit too.
    static bool StringToBoolean(char const* text, bool& value);

    /// White space, a sign if there is one, decimal digits; within the bounds of 32 bits.
    static bool StringToInteger(char const* text, long& value);
    static bool StringToInteger(char const* text, int& value);

    /// The low 16 bits of the 32-bit number, without a check: "70000" gives 4464.
    static bool StringToInteger(char const* text, short& value);

    /// White space, a sign if there is one, and a decimal number with or without an exponent, a hexadecimal
    /// one ("0x1.8p3"), "inf", "infinity", "nan" or "nan(...)", in either case; rounded to the nearest
    /// double, ties to even. A number that is too large, or below the normal range and not exact there,
    /// fails.
    static bool StringToReal(char const* text, double& value);

    /// The same, then rounded to a float, which is infinite where the number is beyond the range of floats.
    static bool StringToReal(char const* text, float& value);

    /// The first three words, each by StringToReal; further ones are ignored.
    static bool StringToPoint(char const* text, Spatia::Point3d& point);

    /// The first two words, each by StringToReal; further ones are ignored.
    static bool StringToPoint(char const* text, Spatia::Point2d& point);

    /// @}
    /// \name Editing a whole text
    /// Linear in the length of the text.
    /// @{

    /// The text between two `quote` characters; those inside stay as they are.
    static CString QuoteString(CString const& text, char quote);

    /// Removes white space at both ends and makes each run of it inside the text one blank.
    static void CleanString(CString& text);

    /// Removes white space outside quotes. Double and single quotes are counted apart, also inside each
    /// other; behind an odd number of either, white space stays. The backquote means nothing here.
    static void RemoveSpaces(CString& text);

    /// Keeps the first of equal strings, in the order of the array. Case counts; a zero byte ends the
    /// comparison.
    static void RemoveDuplicateStrings(CStringArray& strings);

    /// @}
};

} // namespace Vorlane

#endif
