#ifndef VORLANE_PLATFORM_LUMORA_GRAPHICSPRIMITIVE_H
#define VORLANE_PLATFORM_LUMORA_GRAPHICSPRIMITIVE_H

/// \file
/// The roots of the graphics primitives.
///
/// Primitives are plain values: they hold what is to be drawn and draw nothing. In a new one every number is
/// 0, every flag false, every list and text empty, every colour opaque black and every font the default one.
/// Nothing is tested for its range: a setter stores what it gets. An object is used from one thread at a
/// time.

#include "platform/Export.h"

#include <cstdint>

/// The graphics primitives of a scene, what they share, and the map from numbers to colours.
namespace Lumora {

/// The root of all primitives.
class VORLANE_PLATFORM_EXPORT GraphicsPrimitive
{
public:
    GraphicsPrimitive() = default;
    GraphicsPrimitive(GraphicsPrimitive const&) = default;
    GraphicsPrimitive(GraphicsPrimitive&&) noexcept = default;
    GraphicsPrimitive& operator=(GraphicsPrimitive const&) = default;
    GraphicsPrimitive& operator=(GraphicsPrimitive&&) noexcept = default;
    virtual ~GraphicsPrimitive();

    /// A word whose meaning is the application's.
    std::int32_t headerWord = 0;
};

/// The root of the primitives that light falls on.
class VORLANE_PLATFORM_EXPORT LitPrimitive : public GraphicsPrimitive
{
public:
    /// Words whose meaning is the application's.
    std::int32_t litWord1 = 0;
    std::int32_t litWord2 = 0;
};

/// The root of the primitives that are drawn in their own colour.
class VORLANE_PLATFORM_EXPORT UnlitPrimitive : public GraphicsPrimitive
{};

} // namespace Lumora

#endif
