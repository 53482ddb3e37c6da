#ifndef VORLANE_FUZZ_ARCHIVEDOBJECTS_H
#define VORLANE_FUZZ_ARCHIVEDOBJECTS_H

/// \file
/// Every kind of object that the archive of a scene can hold, with one name for all serializers; and what an
/// object holds, as the bytes of today's layouts, but told without the library's serializers.

#include "vorlane/persistence/ArchiveForm.h"
#include "vorlane/persistence/PrimitiveSerializers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace VorlaneFuzz {

using namespace Lumora;
using namespace Spatia;

using Point2dArray = Orrin::LegacyArray<Point2d>;
using Point3dArray = Orrin::LegacyArray<Point3d>;

using Vorlane::Serialize;

/// Points and matrices, whose operators follow the mode of the archive.
template <typename Value>
auto Serialize(CArchive& ar, Value& value) -> decltype(Vorlane::operator>>(ar, value))
{
    return Vorlane::operator>>(ar, value);
}

inline void Serialize(CArchive& ar, Point2dArray& points)
{
    Vorlane::SerializePoint2dArray(ar, points);
}

inline void Serialize(CArchive& ar, Point3dArray& points)
{
    Vorlane::SerializePoint3dArray(ar, points);
}

template <typename Object>
struct Kind
{
    using Type = Object;
};

/// Calls `visit(name, Kind<Object>())` for every kind. Seeds of the fuzz target tell kinds by their place.
template <typename Visit>
void ForEachKind(Visit visit)
{
    visit("Vertex", Kind<Vertex>());
    visit("VertexNormal", Kind<VertexNormal>());
    visit("GraphicsPrimitive", Kind<GraphicsPrimitive>());
    visit("LitPrimitive", Kind<LitPrimitive>());
    visit("SpherePrimitive", Kind<SpherePrimitive>());
    visit("EllipsoidPrimitive", Kind<EllipsoidPrimitive>());
    visit("CylinderPrimitive", Kind<CylinderPrimitive>());
    visit("ConePrimitive", Kind<ConePrimitive>());
    visit("TrianglePrimitive", Kind<TrianglePrimitive>());
    visit("TetrahedronPrimitive", Kind<TetrahedronPrimitive>());
    visit("PlanePrimitive", Kind<PlanePrimitive>());
    visit("UnlitPointPrimitive", Kind<UnlitPointPrimitive>());
    visit("DotPrimitive", Kind<DotPrimitive>());
    visit("IconPrimitive", Kind<IconPrimitive>());
    visit("LinePrimitive", Kind<LinePrimitive>());
    visit("DashedLinePrimitive", Kind<DashedLinePrimitive>());
    visit("UnlitLinePrimitive", Kind<UnlitLinePrimitive>());
    visit("LineArrayPrimitive", Kind<LineArrayPrimitive>());
    visit("ArcPrimitive", Kind<ArcPrimitive>());
    visit("UnlitTrianglePrimitive", Kind<UnlitTrianglePrimitive>());
    visit("UnlitShapePrimitive", Kind<UnlitShapePrimitive>());
    visit("RectanglePrimitive", Kind<RectanglePrimitive>());
    visit("TriangleShapePrimitive", Kind<TriangleShapePrimitive>());
    visit("Text3DPrimitive", Kind<Text3DPrimitive>());
    visit("TextStringPrimitive", Kind<TextStringPrimitive>());
    visit("TextBoxPrimitive", Kind<TextBoxPrimitive>());
    visit("TextCalloutPrimitive", Kind<TextCalloutPrimitive>());
    visit("TriangleIndex", Kind<TriangleIndex>());
    visit("TriangleMeshPrimitive", Kind<TriangleMeshPrimitive>());
    visit("VolumePrimitive", Kind<VolumePrimitive>());
    visit("LightSource", Kind<LightSource>());
    visit("MaterialProperty", Kind<MaterialProperty>());
    visit("GraphicsAttributes", Kind<GraphicsAttributes>());
    visit("Point2d", Kind<Point2d>());
    visit("Point3d", Kind<Point3d>());
    visit("Point2dArray", Kind<Point2dArray>());
    visit("Point3dArray", Kind<Point3dArray>());
    visit("Matrix3x3", Kind<Matrix3x3>());
    visit("Matrix4x4", Kind<Matrix4x4>());
}

/// The nearest float; beyond the largest one, and half a step more, infinity.
inline float NearestFloat(double value)
{
    bool const isBeyond = std::abs(value) >= 0x1.ffffffp127;
    return isBeyond ? static_cast<float>(std::copysign(std::numeric_limits<double>::infinity(), value))
                    : static_cast<float>(value);
}

/// Takes the members of an object, directly and by getters, in the order of its layout.
class HeldBytes
{
public:
    template <typename Object>
    explicit HeldBytes(Object const& object)
    {
        Add(object);
    }

    std::string bytes;

private:
    template <typename... Values>
    void Put(Values const&... values)
    {
        (Add(values), ...);
    }

    static GraphicsPrimitive const& Root(GraphicsPrimitive const& p) { return p; }
    static LitPrimitive const& Lit(LitPrimitive const& p) { return p; }
    static UnlitPointPrimitive const& Point(UnlitPointPrimitive const& p) { return p; }
    static UnlitShapePrimitive const& Shape(UnlitShapePrimitive const& p) { return p; }

    template <typename Get>
    static auto Collected(int count, Get get)
    {
        std::vector<std::decay_t<decltype(get(0))>> entries;
        for (int index = 0; index < count; ++index) {
            entries.push_back(get(index));
        }
        return entries;
    }

    /// Numbers, points of the plane and matrices, as they lie in the memory of a little-endian machine.
    template <typename Value>
    auto Add(Value const& value) -> std::enable_if_t<std::is_trivially_copyable_v<Value>>
    {
        bytes.append(reinterpret_cast<char const*>(&value), sizeof value);
    }

    /// Points behind a count of 2 bytes.
    template <typename Entry>
    void Add(Orrin::LegacyArray<Entry> const& points)
    {
        Put(static_cast<short>(points.GetSize()));
        for (Entry const& point : points) {
            Put(point);
        }
    }

    /// A list behind a count of 4 bytes.
    template <typename Entry>
    void Add(std::vector<Entry> const& list)
    {
        Put(static_cast<int>(list.size()));
        for (Entry const& entry : list) {
            Put(entry);
        }
    }

    /// A text up to its zero character. Characters have one byte, or none and become '?'.
    void Add(std::wstring const& whole)
    {
        std::wstring const text(whole.c_str());
        if (text.size() < 255) {
            Put(static_cast<unsigned char>(text.size()));
        } else {
            Put('\xFF', static_cast<short>(text.size()));
        }
        for (wchar_t const character : text) {
            Put(static_cast<char>(character < 0x100 ? character : '?'));
        }
    }

    void Add(Orrin::Font const& font) { Put(font.GetFace(), font.GetSize()); }
    void Add(Orrin::Color const& color) { Put(color.GetPacked()); }
    void Add(Point3d const& point)
    {
        Put(NearestFloat(point.x), NearestFloat(point.y), NearestFloat(point.z));
    }

    // A flag of 4 bytes is given as an int.
#define MEMBERS(Class, ...)                                                                                  \
    void Add(Class const& p)                                                                                 \
    {                                                                                                        \
        Put(__VA_ARGS__);                                                                                    \
    }

    MEMBERS(Vertex, p.GetColor(), p.point)
    MEMBERS(VertexNormal, p.GetColor(), p.point, p.normal)
    MEMBERS(GraphicsPrimitive, p.headerWord)
    MEMBERS(LitPrimitive, Root(p), p.litWord1, p.litWord2)
    MEMBERS(SpherePrimitive, Lit(p), p.GetVertex(), p.size)
    MEMBERS(EllipsoidPrimitive, Lit(p), p.GetVertex(), p.axes, p.frame)
    MEMBERS(ConePrimitive, Lit(p), p.firstEnd, p.secondEnd, p.GetColor(), p.size)
    MEMBERS(TrianglePrimitive, Lit(p), p.GetColor(), p.corner1, p.GetColor(), p.corner2, p.GetColor(),
            p.corner3, p.faceVector)
    MEMBERS(PlanePrimitive, p.GetPlane().first, p.GetPlane().second, p.GetColor())
    MEMBERS(UnlitPointPrimitive, Root(p), p.vertex)
    MEMBERS(DotPrimitive, Point(p), p.dotWord)
    MEMBERS(IconPrimitive, Point(p), p.iconWord, int(p.iconFlag2), int(p.iconFlag1), int(p.iconFlag3),
            p.iconValue)
    MEMBERS(LinePrimitive, Root(p), p.firstVertex, p.secondVertex, p.lineWord1, p.lineWord2)
    MEMBERS(DashedLinePrimitive, static_cast<LinePrimitive const&>(p), p.dashWord, p.dashFlag)
    MEMBERS(UnlitLinePrimitive, Root(p), p.GetPoints(), p.GetColor(), p.GetWidth())
    MEMBERS(LineArrayPrimitive, Root(p), p.GetLineArray(), p.GetLineWidth(), int(p.GetDashed()),
            p.GetDashPattern())
    MEMBERS(ArcPrimitive, Root(p), p.arcPoint1, p.arcPoint2, p.arcPoint3, p.GetColor(), p.arcPoints,
            p.arcValue, p.arcWord1, p.arcWord2)
    MEMBERS(UnlitTrianglePrimitive, Root(p), p.unlitCorner1, p.unlitCorner2, p.unlitCorner3, p.GetColor())
    MEMBERS(UnlitShapePrimitive, Root(p), p.GetOrigin(), p.GetForegroundColor(), p.GetBackgroundColor(),
            int(p.GetIsOutlined()), p.GetOutlineWidth(), int(p.GetIsFilled()), int(p.GetIsStippled()),
            p.GetStipplePattern())
    MEMBERS(RectanglePrimitive, Shape(p), p.GetSize())
    MEMBERS(TriangleShapePrimitive, Shape(p), p.GetPoint1(), p.GetPoint2(), p.GetPoint3())
    MEMBERS(Text3DPrimitive, Point(p), p.GetText(), p.GetFont(), p.textValue, int(p.textFlag))
    MEMBERS(TextStringPrimitive, Shape(p), p.GetTextString(), p.GetFont(), p.GetCursorPosition(),
            int(p.GetShowCursor()))
    MEMBERS(TextBoxPrimitive, static_cast<TextStringPrimitive const&>(p), p.GetBoxWidth(),
            int(p.GetShowHandles()))
    MEMBERS(TextCalloutPrimitive, static_cast<TextBoxPrimitive const&>(p), p.GetLocation(), p.GetLocation2d())
    MEMBERS(TriangleIndex, p.first, p.second, p.third)
    MEMBERS(TriangleMeshPrimitive, Lit(p),
            Collected(p.GetNumTriangles(), [&](int i) { return p.GetTriangleAt(i); }),
            Collected(p.GetNumVertices(), [&](int i) { return p.GetVertexAt(i); }), int(p.meshFlag1),
            int(p.meshFlag2), p.GetBackSideColor())
    MEMBERS(VolumePrimitive, Root(p), p.GetDataMin(), p.GetDataMax(), p.GetDisplayMin(), p.GetDisplayMax(),
            int(p.GetClipOutsideRange()),
            std::vector<Orrin::Color>(p.GetColors().begin(), p.GetColors().end()), p.GetTransparency(),
            std::vector<int>(p.GetTransferFunction().begin(), p.GetTransferFunction().end()))
    MEMBERS(LightSource, p.GetColor(), p.point, p.lightFlag)
    MEMBERS(MaterialProperty, p.GetEnabled(), p.GetAmbient(), p.GetDiffuse(), p.GetEmission(),
            p.GetShininess(), p.GetSpecular())
    MEMBERS(GraphicsAttributes, p.GetBkColor(), Collected(4, [&](int i) { return p.GetLight(i); }),
            p.attrFloat1, p.attrWord1, p.attrWord2, p.attrSwitch1, p.attrSwitch2, p.attrFloat2, p.attrFloat3,
            p.attrFloat4, p.attrFloat5, p.attrMode == 0, p.attrFloat6, p.attrFloat7, p.attrMatrix,
            p.attrFloat8, p.attrFloat9, p.attrFlag, p.GetMaterialProperty(), p.attrMode)
#undef MEMBERS

    void Add(CylinderPrimitive const& p)
    {
        Vertex ends[2];
        p.GetVertices(ends[0], ends[1]);
        Put(Lit(p), ends[0], ends[1], p.size);
    }

    void Add(TetrahedronPrimitive const& p)
    {
        Point3d corners[4];
        p.GetTetrahedronVertices(corners[0], corners[1], corners[2], corners[3]);
        Put(Lit(p));
        for (int i = 0; i < 4; ++i) {
            Put(p.GetColor(), corners[i], p.GetFaceCentroid(i), p.GetFaceNormal(i));
        }
    }
};

} // namespace VorlaneFuzz

#endif
