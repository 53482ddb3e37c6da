#ifndef VORLANE_PERSISTENCE_VERTEXFIELDSINTERNAL_H
#define VORLANE_PERSISTENCE_VERTEXFIELDSINTERNAL_H

/// \file
/// The fields of the two vertex types, for an archive and for the blocks of EntryRunsInternal.h.

#include "platform/lumora/Vertex.h"
#include "vorlane/persistence/FieldsInternal.h"

#include <cstddef>
#include <cstdint>

namespace Vorlane {
namespace Fields {

/// The packed colour of a vertex; loading, an alpha of 0 becomes 255 at every schema number.
template <typename Archive>
void OpaqueColor(Archive& ar, Lumora::Colored& colored)
{
    std::uint32_t packed = colored.GetColor().GetPacked();
    Number(ar, packed);
    if (!ar.IsStoring()) {
        bool const isTransparent = (packed & 0xFF000000u) == 0;
        colored.SetColor(Orrin::Color(isTransparent ? packed | 0xFF000000u : packed));
    }
}

template <typename Archive>
void VertexFields(Archive& ar, Lumora::Vertex& vertex)
{
    OpaqueColor(ar, vertex);
    Point3dFields(ar, vertex.point);
}

template <typename Archive>
void VertexNormalFields(Archive& ar, Lumora::VertexNormal& vertex)
{
    OpaqueColor(ar, vertex);
    Point3dFields(ar, vertex.point);
    Point3dFields(ar, vertex.normal);
}

/// The bytes of a VertexNormal at this schema number.
constexpr std::size_t VertexNormalBytes(std::uint32_t schema)
{
    return 4 + 2 * Point3dBytes(schema);
}

} // namespace Fields
} // namespace Vorlane

#endif
