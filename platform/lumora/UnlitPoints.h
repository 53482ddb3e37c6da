#ifndef VORLANE_PLATFORM_LUMORA_UNLITPOINTS_H
#define VORLANE_PLATFORM_LUMORA_UNLITPOINTS_H

/// \file
/// Unlit primitives at one vertex: point, dot and icon.

#include "platform/Export.h"
#include "platform/lumora/GraphicsPrimitive.h"
#include "platform/lumora/Vertex.h"

#include <cstdint>

namespace Lumora {

/// A coloured point.
class VORLANE_PLATFORM_EXPORT UnlitPointPrimitive : public GraphicsPrimitive
{
public:
    /// The point and its colour.
    Orrin::Color GetColor() const { return vertex.GetColor(); }
    Vertex vertex;
};

/// A dot at a point.
class VORLANE_PLATFORM_EXPORT DotPrimitive : public UnlitPointPrimitive
{
public:
    /// A word whose meaning is the application's.
    std::int32_t dotWord = 0;
};

/// An icon at a point.
class VORLANE_PLATFORM_EXPORT IconPrimitive : public UnlitPointPrimitive
{
public:
    /// Values whose meaning is the application's.
    std::int32_t iconWord = 0;
    bool iconFlag1 = false;
    bool iconFlag2 = false;
    bool iconFlag3 = false;
    double iconValue = 0.0;
};

} // namespace Lumora

#endif
