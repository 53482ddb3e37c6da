// Triangle meshes and volumes.

#include "vorlane/colour/NamedColorArrays.h"
#include "vorlane/foundation/CountedEntries.h"
#include "vorlane/persistence/EntryRunsInternal.h"
#include "vorlane/persistence/FieldsInternal.h"
#include "vorlane/persistence/PrimitiveSerializers.h"
#include "vorlane/persistence/SchemaInternal.h"
#include "vorlane/persistence/VertexFieldsInternal.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

using namespace Lumora;

namespace Vorlane {

namespace {

template <typename Archive>
void TriangleIndexFields(Archive& ar, TriangleIndex& triangle)
{
    Fields::Number(ar, triangle.first);
    Fields::Number(ar, triangle.second);
    Fields::Number(ar, triangle.third);
}

constexpr std::size_t triangleIndexBytes = 12;

/// A list of a mesh: the number of entries as an int32, then the entries, each of `entryBytes` bytes.
///
/// \param stored the number of entries to store
/// \param first the first of the entries to store, which lie one after the other
/// \param loaded takes the entries of a load, at its end
/// \param entryFields moves the fields of one entry through a block
template <typename Entry, typename EntryFields>
void SerializeList(CArchive& ar, std::int32_t stored, Entry const* first, std::vector<Entry>& loaded,
                   std::size_t entryBytes, EntryFields entryFields)
{
    std::int32_t count = stored;
    Fields::Int32(ar, count);
    std::size_t const entries = CheckedEntryCount(static_cast<std::uint32_t>(count), loaded.max_size());
    if (ar.IsStoring()) {
        Fields::StoreRun(ar, entries, entryBytes, [first, entryFields](auto& block, std::size_t index) {
            // The fields are written for both directions; storing, they change nothing.
            entryFields(block, const_cast<Entry&>(first[index]));
        });
        return;
    }
    AfxWithMemoryException([&] {
        loaded.reserve(EntriesToTakeAhead(ar, entries, entryBytes, sizeof(Entry)));
        Fields::LoadRun(ar, 0, entries, entryBytes,
                        [&](auto& block, std::size_t) { entryFields(block, loaded.emplace_back()); });
    });
}

} // namespace

void Serialize(CArchive& ar, TriangleIndex& triangle)
{
    TriangleIndexFields(ar, triangle);
}

void Serialize(CArchive& ar, TriangleMeshPrimitive& mesh)
{
    Serialize(ar, static_cast<LitPrimitive&>(mesh));
    std::vector<TriangleIndex> triangles;
    std::vector<VertexNormal> vertices;
    std::int32_t const triangleCount = mesh.GetNumTriangles();
    std::int32_t const vertexCount = mesh.GetNumVertices();
    SerializeList(ar, triangleCount, triangleCount != 0 ? &mesh.GetTriangleAt(0) : nullptr, triangles,
                  triangleIndexBytes,
                  [](auto& block, TriangleIndex& triangle) { TriangleIndexFields(block, triangle); });
    SerializeList(ar, vertexCount, vertexCount != 0 ? &mesh.GetVertexAt(0) : nullptr, vertices,
                  Fields::VertexNormalBytes(ar.m_nObjectSchema),
                  [](auto& block, VertexNormal& vertex) { Fields::VertexNormalFields(block, vertex); });
    if (ar.IsLoading()) {
        mesh.Set(std::move(vertices), std::move(triangles));
    }
    if (StoredOrLoadedFromSigned(ar, 7)) {
        Fields::Flag(ar, mesh.meshFlag1);
    }
    if (StoredOrLoadedFromSigned(ar, 21)) {
        Fields::Flag(ar, mesh.meshFlag2);
        SerializeColor(ar, mesh.backSideColor);
    }
}

namespace {

/// The colours of a volume: their number as an int32, then each. A load first clears the old ones.
void SerializeColors(CArchive& ar, Orrin::ColorArray& colors)
{
    auto count = static_cast<std::int32_t>(colors.size());
    Fields::Int32(ar, count);
    if (ar.IsStoring()) {
        for (Orrin::Color& color : colors) {
            SerializeColor(ar, color);
        }
        return;
    }
    colors.clear();
    std::size_t const entries = CheckedEntryCount(static_cast<std::uint32_t>(count), UINT32_MAX);
    colors.reserve(static_cast<unsigned int>(EntriesToTakeAhead(ar, entries, 4, sizeof(Orrin::Color))));
    for (std::size_t i = 0; i < entries; ++i) {
        Orrin::Color color;
        SerializeColor(ar, color);
        colors.push_back(color);
    }
}

/// The transfer function of a volume: the number of entries as an int32, then each as an int32 flag. A load
/// sets it once all entries are read.
void SerializeTransferFunction(CArchive& ar, VolumePrimitive& volume)
{
    std::vector<bool> const& stored = volume.GetTransferFunction();
    auto count = static_cast<std::int32_t>(stored.size());
    Fields::Int32(ar, count);
    if (ar.IsStoring()) {
        for (bool entry : stored) {
            Fields::Flag(ar, entry);
        }
        return;
    }
    std::vector<bool> loaded;
    std::size_t const entries = CheckedEntryCount(static_cast<std::uint32_t>(count), loaded.max_size());
    AfxWithMemoryException([&] {
        loaded.reserve(EntriesToTakeAhead(ar, entries, 4, 1));
        for (std::size_t i = 0; i < entries; ++i) {
            bool entry = false;
            Fields::Flag(ar, entry);
            loaded.push_back(entry);
        }
    });
    volume.SetTransferFunction(loaded);
}

} // namespace

void Serialize(CArchive& ar, VolumePrimitive& volume)
{
    using Volume = VolumePrimitive;
    Serialize(ar, static_cast<GraphicsPrimitive&>(volume));
    if (ar.IsLoading()) {
        volume.SetVolume(nullptr);
    }
    Fields::Property(ar, Fields::Float, volume, &Volume::GetDataMin, &Volume::SetDataMin);
    Fields::Property(ar, Fields::Float, volume, &Volume::GetDataMax, &Volume::SetDataMax);
    Fields::Property(ar, Fields::Float, volume, &Volume::GetDisplayMin, &Volume::SetDisplayMin);
    Fields::Property(ar, Fields::Float, volume, &Volume::GetDisplayMax, &Volume::SetDisplayMax);
    Fields::Property(ar, Fields::Flag, volume, &Volume::GetClipOutsideRange, &Volume::SetClipOutsideRange);
    SerializeColors(ar, volume.GetColors());
    Fields::Property(ar, Fields::Float, volume, &Volume::GetTransparency, &Volume::SetTransparency);
    SerializeTransferFunction(ar, volume);
}

} // namespace Vorlane
