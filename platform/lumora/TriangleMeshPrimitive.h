#ifndef VORLANE_PLATFORM_LUMORA_TRIANGLEMESHPRIMITIVE_H
#define VORLANE_PLATFORM_LUMORA_TRIANGLEMESHPRIMITIVE_H

/// \file
/// Surfaces of triangles.

#include "platform/Export.h"
#include "platform/framework/AfxExceptions.h"
#include "platform/lumora/GraphicsPrimitive.h"
#include "platform/lumora/Vertex.h"
#include "platform/orrin/Held.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Lumora {

/// The corners of a triangle as indexes into the vertices of its mesh.
class VORLANE_PLATFORM_EXPORT TriangleIndex
{
public:
    /// All three 0.
    TriangleIndex() = default;

    /// The corners in their order.
    TriangleIndex(int theFirst, int theSecond, int theThird)
        : first(theFirst), second(theSecond), third(theThird)
    {}

    TriangleIndex(TriangleIndex const&) = default;
    TriangleIndex& operator=(TriangleIndex const&) = default;
    virtual ~TriangleIndex() = default;

    /// Indexes of vertices, from 0.
    std::int32_t first = 0;
    std::int32_t second = 0;
    std::int32_t third = 0;
};

/// A lit surface of triangles over shared vertices. Indexes are not compared with the number of vertices.
/// Vertices lie one after the other in memory, and so do triangles.
class VORLANE_PLATFORM_EXPORT TriangleMeshPrimitive : public LitPrimitive
{
public:
    /// How many triangles and vertices there are.
    int GetNumTriangles() const { return static_cast<int>(m_triangles.size()); }
    int GetNumVertices() const { return static_cast<int>(m_vertices.size()); }

    /// One of the triangles.
    ///
    /// \throws CInvalidArgException if `index` is outside 0 to the number of triangles minus 1.
    TriangleIndex const& GetTriangleAt(int index) const { return Entry(m_triangles, index); }

    /// One of the vertices.
    ///
    /// \throws CInvalidArgException if `index` is outside 0 to the number of vertices minus 1.
    VertexNormal const& GetVertexAt(int index) const { return Entry(m_vertices, index); }

    /// Replaces the whole geometry.
    ///
    /// \throws CMemoryException if there is no room for the copies; the mesh is then as it was.
    void Set(std::vector<VertexNormal> const& vertices, std::vector<TriangleIndex> const& triangles);

    /// Replaces the whole geometry by these lists themselves, without a copy.
    void Set(std::vector<VertexNormal>&& vertices, std::vector<TriangleIndex>&& triangles) noexcept;

    /// The colour of the back sides, and flags whose meaning is the application's.
    Orrin::Color GetBackSideColor() const { return backSideColor; }
    bool meshFlag1 = false;
    bool meshFlag2 = false;
    Orrin::Color backSideColor;

private:
    template <typename T>
    static T const& Entry(std::vector<T> const& entries, int index)
    {
        // A negative index is a large unsigned one, so one comparison finds both.
        if (static_cast<std::size_t>(index) >= entries.size()) {
            AfxThrowIndexException(index, static_cast<long long>(entries.size()) - 1);
        }
        return entries[static_cast<std::size_t>(index)];
    }

    Orrin::Held<std::vector<VertexNormal>> m_vertices;
    Orrin::Held<std::vector<TriangleIndex>> m_triangles;
};

} // namespace Lumora

#endif
