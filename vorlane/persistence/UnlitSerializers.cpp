// Unlit points, lines, arc and triangle.

#include "vorlane/colour/NamedColorArrays.h"
#include "vorlane/foundation/CountedEntries.h"
#include "vorlane/persistence/ArchiveForm.h"
#include "vorlane/persistence/FieldsInternal.h"
#include "vorlane/persistence/PrimitiveSerializers.h"
#include "vorlane/persistence/SchemaInternal.h"

#include <cstddef>
#include <cstdint>
#include <vector>

using namespace Lumora;

namespace Vorlane {

void Serialize(CArchive& ar, UnlitPointPrimitive& point)
{
    Serialize(ar, static_cast<GraphicsPrimitive&>(point));
    Fields::Whole<Vertex>(ar, Serialize, point.vertex);
}

void Serialize(CArchive& ar, DotPrimitive& dot)
{
    Serialize(ar, static_cast<UnlitPointPrimitive&>(dot));
    Fields::Int32(ar, dot.dotWord);
}

void Serialize(CArchive& ar, IconPrimitive& icon)
{
    Serialize(ar, static_cast<UnlitPointPrimitive&>(icon));
    Fields::Int32(ar, icon.iconWord);
    Fields::Flag(ar, icon.iconFlag2);
    Fields::Flag(ar, icon.iconFlag1);
    Fields::Flag(ar, icon.iconFlag3);
    Fields::Double(ar, icon.iconValue);
}

void Serialize(CArchive& ar, LinePrimitive& line)
{
    Serialize(ar, static_cast<GraphicsPrimitive&>(line));
    Vertex first = line.firstVertex;
    Vertex second = line.secondVertex;
    std::int32_t word1 = line.lineWord1;
    std::int32_t word2 = line.lineWord2;
    Serialize(ar, first);
    Serialize(ar, second);
    Fields::Int32(ar, word1);
    Fields::Int32(ar, word2);
    if (ar.IsLoading()) {
        line.firstVertex = first;
        line.secondVertex = second;
        line.lineWord1 = word1;
        line.lineWord2 = word2;
    }
}

void Serialize(CArchive& ar, DashedLinePrimitive& line)
{
    Serialize(ar, static_cast<LinePrimitive&>(line));
    Fields::Int32(ar, line.dashWord);
    Fields::Bool(ar, line.dashFlag);
}

void Serialize(CArchive& ar, UnlitLinePrimitive& line)
{
    Serialize(ar, static_cast<GraphicsPrimitive&>(line));
    Orrin::LegacyArray<Spatia::Point2d> points = line.GetPoints();
    Orrin::Color color = line.GetColor();
    int width = line.GetWidth();
    SerializePoint2dArray(ar, points);
    SerializeColor(ar, color);
    Fields::Int32(ar, width);
    if (ar.IsLoading()) {
        line.SetPoints(points);
        line.SetColor(color);
        line.SetWidth(width);
    }
}

namespace {

/// The lines of a LineArrayPrimitive: their number as an int32, then each with its base.
void SerializeLines(CArchive& ar, std::vector<LinePrimitive>& lines)
{
    auto count = static_cast<std::int32_t>(lines.size());
    Fields::Int32(ar, count);
    if (ar.IsStoring()) {
        for (LinePrimitive& line : lines) {
            Serialize(ar, line);
        }
        return;
    }
    lines.clear();
    std::size_t const lineCount = CheckedEntryCount(static_cast<std::uint32_t>(count), lines.max_size());
    // The base's word, two vertices of a colour and a point, two words.
    std::size_t const lineBytes = 4 + 2 * (4 + Point3dBytes(ar.m_nObjectSchema)) + 8;
    std::size_t const ahead = EntriesToTakeAhead(ar, lineCount, lineBytes, sizeof(LinePrimitive));
    AfxWithMemoryException([&] { lines.reserve(ahead); });
    for (std::size_t i = 0; i < lineCount; ++i) {
        LinePrimitive line;
        Serialize(ar, line);
        AfxWithMemoryException([&] { lines.push_back(line); });
    }
}

} // namespace

void Serialize(CArchive& ar, LineArrayPrimitive& lines)
{
    Serialize(ar, static_cast<GraphicsPrimitive&>(lines));
    SerializeLines(ar, lines.GetLineArray());
    Fields::Property(ar, Fields::Float, lines, &LineArrayPrimitive::GetLineWidth,
                     &LineArrayPrimitive::SetLineWidth);
    if (PresentFrom(ar, 13)) {
        Fields::Property(ar, Fields::FlagOfOne, lines, &LineArrayPrimitive::GetDashed,
                         &LineArrayPrimitive::SetDashed);
        Fields::Property(ar, Fields::Uint16, lines, &LineArrayPrimitive::GetDashPattern,
                         &LineArrayPrimitive::SetDashPattern);
    }
}

void Serialize(CArchive& ar, ArcPrimitive& arc)
{
    Serialize(ar, static_cast<GraphicsPrimitive&>(arc));
    SerializePoint3d(ar, arc.arcPoint1);
    SerializePoint3d(ar, arc.arcPoint2);
    SerializePoint3d(ar, arc.arcPoint3);
    Fields::Property(ar, SerializeColor, arc, &ArcPrimitive::GetColor, &ArcPrimitive::SetColor);
    SerializePoint3dArray(ar, arc.arcPoints);
    Fields::Float(ar, arc.arcValue);
    Fields::Int32(ar, arc.arcWord1);
    Fields::Int32(ar, arc.arcWord2);
}

void Serialize(CArchive& ar, UnlitTrianglePrimitive& triangle)
{
    Serialize(ar, static_cast<GraphicsPrimitive&>(triangle));
    SerializePoint3d(ar, triangle.unlitCorner1);
    SerializePoint3d(ar, triangle.unlitCorner2);
    SerializePoint3d(ar, triangle.unlitCorner3);
    Fields::Property(ar, SerializeColor, triangle, &UnlitTrianglePrimitive::GetColor,
                     &UnlitTrianglePrimitive::SetColor);
}

} // namespace Vorlane
