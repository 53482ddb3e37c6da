#include "platform/framework/CMap.h"

unsigned int AfxHashText(char const* text) noexcept
{
    std::uint32_t hash = 0;
    if (text != nullptr) {
        for (; *text != '\0'; ++text) {
            hash = hash * 33u + static_cast<unsigned char>(*text);
        }
    }
    return hash;
}
