#ifndef VORLANE_TESTS_PERSISTENCE_FILLEDPRIMITIVES_H
#define VORLANE_TESTS_PERSISTENCE_FILLEDPRIMITIVES_H

/// \file
/// One object of each kind with every persistent member set, each to a value of its own. The bytes of each
/// stand in PrimitiveFormTest.cpp. Members are set directly and by setters alone, never by loading.

#include "vorlane/persistence/ArchiveForm.h"
#include "vorlane/persistence/PrimitiveSerializers.h"

#include <vector>

namespace VorlaneTest {

using namespace Lumora;
using Spatia::Matrix3x3;
using Spatia::Matrix4x4;
using Spatia::Point2d;
using Spatia::Point3d;

inline Point3d const p123(1, 2, 3);
inline Point3d const p456(4, 5, 6);
inline Point3d const p789(7, 8, 9);
inline Point2d const p12(1, 2);
inline Point2d const p34(3, 4);
inline Orrin::Color const color1(0x80332211u);
inline Orrin::Color const color2(0xFF665544u);
inline Vertex const vertex1(p123, color1);
inline Vertex const vertex2(p456, color2);

inline void Fill(Point2d& point)
{
    point = p12;
}
inline void Fill(Point3d& point)
{
    point = p123;
}

inline void Fill(Matrix3x3& matrix)
{
    matrix(0, 1) = 1;
    matrix(2, 0) = 2;
}

inline void Fill(Matrix4x4& matrix)
{
    matrix(0, 1) = 1;
    matrix(3, 0) = 2;
}

inline void Fill(Vertex& vertex)
{
    vertex = vertex1;
}
inline void Fill(VertexNormal& vertex)
{
    vertex = VertexNormal(p123, p456, color1);
}
inline void Fill(GraphicsPrimitive& primitive)
{
    primitive.headerWord = 0x04030201;
}

inline void Fill(LitPrimitive& primitive)
{
    Fill(static_cast<GraphicsPrimitive&>(primitive));
    primitive.litWord1 = 5;
    primitive.litWord2 = -2;
}

inline void Fill(SpherePrimitive& sphere)
{
    Fill(static_cast<LitPrimitive&>(sphere));
    sphere.SetVertex(vertex1);
    sphere.size = 1.5f;
}

inline void Fill(EllipsoidPrimitive& ellipsoid)
{
    Fill(static_cast<LitPrimitive&>(ellipsoid));
    ellipsoid.SetVertex(vertex1);
    ellipsoid.axes = p456;
    Fill(ellipsoid.frame);
}

inline void Fill(CylinderPrimitive& cylinder)
{
    Fill(static_cast<LitPrimitive&>(cylinder));
    cylinder.SetVertices(vertex1, vertex2);
    cylinder.size = 1.5f;
}

inline void Fill(ConePrimitive& cone)
{
    Fill(static_cast<LitPrimitive&>(cone));
    cone.firstEnd = p123;
    cone.secondEnd = p456;
    cone.SetColor(color1);
    cone.size = 1.5f;
}

inline void Fill(TrianglePrimitive& triangle)
{
    Fill(static_cast<LitPrimitive&>(triangle));
    triangle.corner1 = p123;
    triangle.corner2 = p456;
    triangle.corner3 = p789;
    triangle.faceVector = Point3d::kVector;
}

inline void Fill(TetrahedronPrimitive& tetrahedron)
{
    Fill(static_cast<LitPrimitive&>(tetrahedron));
    tetrahedron = TetrahedronPrimitive(Point3d::origin, 3 * Point3d::iVector, 3 * Point3d::jVector,
                                       3 * Point3d::kVector);
    tetrahedron.SetColor(color1);
}

inline void Fill(PlanePrimitive& plane)
{
    Plane points;
    points.Set(p123, p456);
    plane.SetPlane(points);
    plane.SetColor(color1);
}

inline void Fill(UnlitPointPrimitive& point)
{
    Fill(static_cast<GraphicsPrimitive&>(point));
    point.vertex = vertex1;
}

inline void Fill(DotPrimitive& dot)
{
    Fill(static_cast<UnlitPointPrimitive&>(dot));
    dot.dotWord = 7;
}

inline void Fill(IconPrimitive& icon)
{
    Fill(static_cast<UnlitPointPrimitive&>(icon));
    icon.iconWord = 7;
    icon.iconFlag1 = true;
    icon.iconValue = 0.5;
}

inline void Fill(LinePrimitive& line)
{
    Fill(static_cast<GraphicsPrimitive&>(line));
    line.firstVertex = vertex1;
    line.secondVertex = vertex2;
    line.lineWord1 = 7;
    line.lineWord2 = 8;
}

inline void Fill(DashedLinePrimitive& line)
{
    Fill(static_cast<LinePrimitive&>(line));
    line.dashWord = 9;
    line.dashFlag = true;
}

inline void Fill(UnlitLinePrimitive& line)
{
    Fill(static_cast<GraphicsPrimitive&>(line));
    Orrin::LegacyArray<Point2d> points;
    points.push_back(p12);
    points.push_back(p34);
    line.SetPoints(points);
    line.SetColor(color1);
    line.SetWidth(3);
}

inline void Fill(LineArrayPrimitive& lines)
{
    Fill(static_cast<GraphicsPrimitive&>(lines));
    lines.GetLineArray().resize(2);
    Fill(lines.GetLineArray()[0]);
    lines.SetLineWidth(1.5f);
    lines.SetDashed(true);
    lines.SetDashPattern(0xF00F);
}

inline void Fill(ArcPrimitive& arc)
{
    Fill(static_cast<GraphicsPrimitive&>(arc));
    arc.arcPoint1 = p123;
    arc.arcPoint2 = p456;
    arc.arcPoint3 = p789;
    arc.SetColor(color1);
    arc.arcPoints.push_back(p456);
    arc.arcPoints.push_back(p123);
    arc.arcValue = 1.5f;
    arc.arcWord1 = 7;
    arc.arcWord2 = 8;
}

inline void Fill(UnlitTrianglePrimitive& triangle)
{
    Fill(static_cast<GraphicsPrimitive&>(triangle));
    triangle.unlitCorner1 = p123;
    triangle.unlitCorner2 = p456;
    triangle.unlitCorner3 = p789;
    triangle.SetColor(color1);
}

inline void Fill(UnlitShapePrimitive& shape)
{
    Fill(static_cast<GraphicsPrimitive&>(shape));
    shape.SetOrigin(p12);
    shape.SetForegroundColor(color1);
    shape.SetBackgroundColor(color2);
    shape.SetIsOutlined(true);
    shape.SetOutlineWidth(6);
    shape.SetIsFilled(false);
    shape.SetIsStippled(true);
    shape.SetStipplePattern(UnlitShapePrimitive::StipplePattern(-2));
}

inline void Fill(RectanglePrimitive& rectangle)
{
    Fill(static_cast<UnlitShapePrimitive&>(rectangle));
    rectangle.SetSize(p34);
}

inline void Fill(TriangleShapePrimitive& triangle)
{
    Fill(static_cast<UnlitShapePrimitive&>(triangle));
    triangle.SetPoint1(p12);
    triangle.SetPoint2(p34);
    triangle.SetPoint3(Point2d(2, 1));
}

inline void Fill(Text3DPrimitive& text)
{
    Fill(static_cast<UnlitPointPrimitive&>(text));
    text.SetText(L"H\u00E9\u0100");
    text.font = Orrin::Font(L"Sans", 10);
    text.textValue = 0.5;
    text.textFlag = true;
}

inline void Fill(TextStringPrimitive& text)
{
    Fill(static_cast<UnlitShapePrimitive&>(text));
    text.SetTextString(L"Hi");
    text.SetFont(Orrin::Font(L"Sans", 10));
    text.SetCursorPosition(-1);
    text.SetShowCursor(true);
}

inline void Fill(TextBoxPrimitive& box)
{
    Fill(static_cast<TextStringPrimitive&>(box));
    box.SetBoxWidth(1.5f);
    box.SetShowHandles(true);
}

inline void Fill(TextCalloutPrimitive& callout)
{
    Fill(static_cast<TextBoxPrimitive&>(callout));
    callout.SetLocation(p123);
    callout.SetLocation2d(p34);
}

inline void Fill(TriangleIndex& triangle)
{
    triangle = TriangleIndex(1, -2, 3);
}

inline void Fill(TriangleMeshPrimitive& mesh)
{
    Fill(static_cast<LitPrimitive&>(mesh));
    mesh.Set(std::vector<VertexNormal>{VertexNormal(p123, p456, color1)},
             std::vector<TriangleIndex>{TriangleIndex(1, -2, 3), TriangleIndex(4, 5, 6)});
    mesh.meshFlag1 = true;
    mesh.meshFlag2 = true;
    mesh.backSideColor = color2;
}

inline void Fill(VolumePrimitive& volume)
{
    Fill(static_cast<GraphicsPrimitive&>(volume));
    volume.SetDataMin(1);
    volume.SetDataMax(2);
    volume.SetDisplayMin(3);
    volume.SetDisplayMax(4);
    volume.SetClipOutsideRange(true);
    volume.GetColors().push_back(Orrin::Color(0x00332211u));
    volume.GetColors().push_back(color2);
    volume.SetTransparency(1.5f);
    volume.SetTransferFunction({true, false, true});
}

inline void Fill(LightSource& light)
{
    light.SetColor(color1);
    light.point = p123;
    light.lightFlag = true;
}

inline void Fill(MaterialProperty& material)
{
    material.SetEnabled(true);
    material.SetAmbient(1);
    material.SetDiffuse(2);
    material.SetEmission(3);
    material.SetShininess(64);
    material.SetSpecular(4);
}

inline void Fill(GraphicsAttributes& attributes)
{
    attributes.SetBkColor(color2);
    LightSource light;
    Fill(light);
    attributes.SetLight(1, light);
    attributes.attrFloat1 = 1;
    attributes.attrWord1 = 7;
    attributes.attrWord2 = 8;
    attributes.attrSwitch1 = 5;
    attributes.attrFloat2 = 2;
    attributes.attrFloat3 = 3;
    attributes.attrFloat4 = 4;
    attributes.attrFloat5 = 5;
    attributes.attrFloat6 = 6;
    attributes.attrFloat7 = 7;
    Fill(attributes.attrMatrix);
    attributes.attrFloat8 = 8;
    attributes.attrFloat9 = 9;
    attributes.attrFlag = true;
    Fill(attributes.material);
}

} // namespace VorlaneTest

#endif
