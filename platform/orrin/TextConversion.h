#ifndef VORLANE_PLATFORM_ORRIN_TEXTCONVERSION_H
#define VORLANE_PLATFORM_ORRIN_TEXTCONVERSION_H

/// \file
/// Between narrow and wide text, character by character and whatever the locale.

#include "platform/Export.h"

#include <string>

namespace Orrin {

/// The wide characters with the values of the bytes of `text`, all 256 of them: byte 0xE9 becomes U+00E9.
VORLANE_PLATFORM_EXPORT std::wstring ToWString(std::string const& text);

/// The bytes with the values of the wide characters of `text`; a character above 255 becomes a question mark.
VORLANE_PLATFORM_EXPORT std::string ToSString(std::wstring const& text);

/// One character of ToSString.
inline char NarrowCharacter(wchar_t character)
{
    bool const fits = character >= 0 && character <= 0xFF;
    return fits ? static_cast<char>(static_cast<unsigned char>(character)) : '?';
}

} // namespace Orrin

#endif
