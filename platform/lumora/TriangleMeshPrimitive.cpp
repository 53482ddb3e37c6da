#include "platform/lumora/TriangleMeshPrimitive.h"

#include <utility>

namespace Lumora {

void TriangleMeshPrimitive::Set(std::vector<VertexNormal> const& vertices,
                                std::vector<TriangleIndex> const& triangles)
{
    AfxWithMemoryException([&] {
        std::vector<VertexNormal> vertexCopies(vertices);
        Set(std::move(vertexCopies), std::vector<TriangleIndex>(triangles));
    });
}

void TriangleMeshPrimitive::Set(std::vector<VertexNormal>&& vertices,
                                std::vector<TriangleIndex>&& triangles) noexcept
{
    m_vertices = std::move(vertices);
    m_triangles = std::move(triangles);
}

} // namespace Lumora
