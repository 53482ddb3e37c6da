#include "platform/framework/CMap.h"

unsigned int AfxHashText(char const* text) noexcept
{
    if (text == nullptr) {
        return 0;
    }
    // Two bytes a turn, so that a product waits for every other one only.
    auto const byte = [&](int index) {
        return std::uint32_t{static_cast<unsigned char>(text[index])};
    };
    std::uint32_t hash = 0;
    for (; byte(0) != 0 && byte(1) != 0; text += 2) {
        hash = hash * (33u * 33u) + (byte(0) * 33u + byte(1));
    }
    return byte(0) != 0 ? hash * 33u + byte(0) : hash;
}
