#ifndef VORLANE_PLATFORM_LUMORA_UNLITLINES_H
#define VORLANE_PLATFORM_LUMORA_UNLITLINES_H

/// \file
/// Unlit primitives made of lines: line, dashed line, line through points of the plane, array of lines and
/// arc; and the unlit triangle.

#include "platform/Export.h"
#include "platform/lumora/GraphicsPrimitive.h"
#include "platform/lumora/Vertex.h"
#include "platform/orrin/Held.h"
#include "platform/orrin/LegacyArray.h"
#include "platform/spatia/Matrix4x4.h"
#include "platform/spatia/Point2d.h"
#include "platform/spatia/Point3d.h"

#include <cstdint>
#include <vector>

namespace Lumora {

/// A line between two vertices.
class VORLANE_PLATFORM_EXPORT LinePrimitive : public UnlitPrimitive
{
public:
    /// The colours at the two ends.
    Orrin::Color GetColor1() const { return firstVertex.GetColor(); }
    Orrin::Color GetColor2() const { return secondVertex.GetColor(); }

    /// Moves both ends: the row vector (x, y, z, 1) times `matrix`, divided by its fourth component unless
    /// that is 0.
    virtual void Transform(Spatia::Matrix4x4 const& matrix);

    /// The ends, and words whose meaning is the application's.
    Vertex firstVertex;
    Vertex secondVertex;
    std::int32_t lineWord1 = 0;
    std::int32_t lineWord2 = 0;
};

/// A line with gaps.
class VORLANE_PLATFORM_EXPORT DashedLinePrimitive : public LinePrimitive
{
public:
    /// Values whose meaning is the application's.
    std::int32_t dashWord = 0;
    bool dashFlag = false;
};

/// A line through points of the plane, in one colour.
class VORLANE_PLATFORM_EXPORT UnlitLinePrimitive : public GraphicsPrimitive, public Colored
{
public:
    /// The points, in their order, and the width of the line.
    Orrin::LegacyArray<Spatia::Point2d> const& GetPoints() const { return m_points; }
    virtual void SetPoints(Orrin::LegacyArray<Spatia::Point2d> const& points);
    int GetWidth() const { return m_width; }
    void SetWidth(int width) { m_width = width; }

private:
    Orrin::LegacyArray<Spatia::Point2d> m_points;
    int m_width = 0;
};

/// Many lines with one width and one dash pattern.
class VORLANE_PLATFORM_EXPORT LineArrayPrimitive : public GraphicsPrimitive
{
public:
    /// The lines, their common width, and whether they are dashed.
    std::vector<LinePrimitive>& GetLineArray() { return m_lines; }
    std::vector<LinePrimitive> const& GetLineArray() const { return m_lines; }
    float GetLineWidth() const { return m_lineWidth; }
    void SetLineWidth(float width) { m_lineWidth = width; }
    bool GetDashed() const { return m_dashed; }
    void SetDashed(bool dashed) { m_dashed = dashed; }

    /// The pattern of the dashes, 16 bits.
    unsigned short GetDashPattern() const { return m_dashPattern; }
    void SetDashPattern(unsigned short pattern) { m_dashPattern = pattern; }

private:
    Orrin::Held<std::vector<LinePrimitive>> m_lines;
    float m_lineWidth = 0.0f;
    bool m_dashed = false;
    unsigned short m_dashPattern = 0;
};

/// An arc in one colour: three points that give it and the points along it. Neither is computed from the
/// other.
class VORLANE_PLATFORM_EXPORT ArcPrimitive : public GraphicsPrimitive, public Colored
{
public:
    /// The three points that give the arc, values whose meaning is the application's, and the points along
    /// it.
    Spatia::Point3d arcPoint1;
    Spatia::Point3d arcPoint2;
    Spatia::Point3d arcPoint3;
    float arcValue = 0.0f;
    std::int32_t arcWord1 = 0;
    std::int32_t arcWord2 = 0;
    Orrin::LegacyArray<Spatia::Point3d> arcPoints;
};

/// A triangle in one colour that no light falls on.
class VORLANE_PLATFORM_EXPORT UnlitTrianglePrimitive : public GraphicsPrimitive, public Colored
{
public:
    /// The corners.
    Spatia::Point3d unlitCorner1;
    Spatia::Point3d unlitCorner2;
    Spatia::Point3d unlitCorner3;
};

} // namespace Lumora

#endif
