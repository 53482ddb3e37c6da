#ifndef VORLANE_PLATFORM_LUMORA_VERTEX_H
#define VORLANE_PLATFORM_LUMORA_VERTEX_H

/// \file
/// Coloured points, with and without a normal.

#include "platform/Export.h"
#include "platform/lumora/Colored.h"
#include "platform/spatia/Point3d.h"

namespace Lumora {

/// A coloured point of space.
class VORLANE_PLATFORM_EXPORT Vertex : public Colored
{
public:
    /// Opaque black at the origin.
    Vertex() = default;

    /// At a point, in a colour.
    Vertex(Spatia::Point3d const& thePoint, Orrin::Color const& color) : Colored(color), point(thePoint) {}

    /// Where the vertex is.
    Spatia::Point3d point;
};

/// A vertex of a surface: a coloured point with a normal, which is not brought to any length.
class VORLANE_PLATFORM_EXPORT VertexNormal : public Vertex
{
public:
    /// Opaque black at the origin, with a zero normal.
    VertexNormal() = default;

    /// At a point, with a normal, in a colour.
    VertexNormal(Spatia::Point3d const& thePoint, Spatia::Point3d const& theNormal, Orrin::Color const& color)
        : Vertex(thePoint, color), normal(theNormal)
    {}

    /// The normal.
    Spatia::Point3d normal;
};

} // namespace Lumora

#endif
