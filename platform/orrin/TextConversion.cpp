#include "platform/orrin/TextConversion.h"

#include "platform/framework/AfxExceptions.h"

#include <algorithm>

namespace Orrin {

std::wstring ToWString(std::string const& text)
{
    return AfxWithMemoryException([&] {
        std::wstring wide(text.size(), L'\0');
        std::transform(text.begin(), text.end(), wide.begin(), [](char character) {
            return static_cast<wchar_t>(static_cast<unsigned char>(character));
        });
        return wide;
    });
}

std::string ToSString(std::wstring const& text)
{
    return AfxWithMemoryException([&] {
        std::string narrow(text.size(), '\0');
        std::transform(text.begin(), text.end(), narrow.begin(), NarrowCharacter);
        return narrow;
    });
}

} // namespace Orrin
