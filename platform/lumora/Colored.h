#ifndef VORLANE_PLATFORM_LUMORA_COLORED_H
#define VORLANE_PLATFORM_LUMORA_COLORED_H

/// \file
/// What has one colour.

#include "platform/Export.h"
#include "platform/orrin/Color.h"

#include <cstdint>

namespace Lumora {

/// Something with one colour. Everything that has a colour of its own derives from it.
///
/// The packed value alone is kept, so that a vertex is plain memory and a list of vertices is copied as a
/// block.
class VORLANE_PLATFORM_EXPORT Colored
{
public:
    /// Opaque black.
    Colored() = default;

    /// In this colour.
    Colored(Orrin::Color const& color) : m_packed(color.GetPacked()) {}

    /// The colour, alpha included.
    Orrin::Color GetColor() const { return Orrin::Color(m_packed); }
    void SetColor(Orrin::Color const& color) { m_packed = color.GetPacked(); }

private:
    std::uint32_t m_packed = 0xFF000000u;
};

} // namespace Lumora

#endif
