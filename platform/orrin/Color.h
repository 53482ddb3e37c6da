#ifndef VORLANE_PLATFORM_ORRIN_COLOR_H
#define VORLANE_PLATFORM_ORRIN_COLOR_H

/// \file
/// Colours.

#include "platform/Export.h"

#include <cstdint>

/// Colours, arrays, fonts and the conversion of text between narrow and wide.
namespace Orrin {

/// A colour in one 32-bit packed value. From the low byte up: red, green, blue, alpha; an alpha of 255 is
/// opaque.
class VORLANE_PLATFORM_EXPORT Color
{
public:
    /// Opaque black, packed 0xFF000000.
    Color() = default;

    /// The colour with this packed value.
    Color(std::uint32_t packed) : m_packed(packed) {}

    Color(Color const&) = default;
    Color& operator=(Color const&) = default;
    virtual ~Color() = default;

    /// The packed value.
    std::uint32_t GetPacked() const { return m_packed; }
    void SetPacked(std::uint32_t packed) { m_packed = packed; }

    /// One byte of the packed value: 0 for none of it, 255 for all.
    std::uint8_t GetRed() const { return Byte(0); }
    std::uint8_t GetGreen() const { return Byte(8); }
    std::uint8_t GetBlue() const { return Byte(16); }
    std::uint8_t GetAlpha() const { return Byte(24); }

    /// Replaces the alpha byte and leaves the others.
    void SetAlpha(std::uint8_t alpha)
    {
        m_packed = (m_packed & 0x00FFFFFFu) | (static_cast<std::uint32_t>(alpha) << 24);
    }

    /// Takes the low 24 bits of `value` as blue, green and red, and makes the colour opaque.
    void SetRGB(unsigned long value)
    {
        m_packed = (static_cast<std::uint32_t>(value) & 0x00FFFFFFu) | 0xFF000000u;
    }

    /// An opaque colour.
    static Color Black() { return Color(0xFF000000u); }
    static Color White() { return Color(0xFFFFFFFFu); }
    static Color Red() { return Color(0xFF0000FFu); }
    static Color Green() { return Color(0xFF00FF00u); }
    static Color Blue() { return Color(0xFFFF0000u); }
    static Color Cyan() { return Color(0xFFFFFF00u); }
    static Color Yellow() { return Color(0xFF00FFFFu); }
    static Color Magenta() { return Color(0xFFFF00FFu); }

    /// Equality of the packed values, alpha included.
    friend bool operator==(Color const& left, Color const& right) { return left.m_packed == right.m_packed; }
    friend bool operator!=(Color const& left, Color const& right) { return !(left == right); }

private:
    std::uint8_t Byte(int shift) const { return static_cast<std::uint8_t>(m_packed >> shift); }

    std::uint32_t m_packed = 0xFF000000u;
};

} // namespace Orrin

#endif
