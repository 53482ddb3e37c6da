#ifndef VORLANE_PLATFORM_LUMORA_UNLITSHAPES_H
#define VORLANE_PLATFORM_LUMORA_UNLITSHAPES_H

/// \file
/// Shapes of the plane: their common base, rectangle and triangle.

#include "platform/Export.h"
#include "platform/lumora/GraphicsPrimitive.h"
#include "platform/orrin/Color.h"
#include "platform/spatia/Point2d.h"

#include <cstdint>

namespace Lumora {

/// The base of the shapes of the plane.
class VORLANE_PLATFORM_EXPORT UnlitShapePrimitive : public GraphicsPrimitive
{
public:
    /// The number of a fill pattern. Every 32-bit number is allowed and kept.
    enum StipplePattern : std::int32_t
    {
    };

    /// Where the shape stands, and how its outline and its inside are drawn.
    Spatia::Point2d const& GetOrigin() const { return m_origin; }
    void SetOrigin(Spatia::Point2d const& origin) { m_origin = origin; }
    Orrin::Color GetForegroundColor() const { return m_foregroundColor; }
    void SetForegroundColor(Orrin::Color const& color) { m_foregroundColor = color; }
    Orrin::Color GetBackgroundColor() const { return m_backgroundColor; }
    void SetBackgroundColor(Orrin::Color const& color) { m_backgroundColor = color; }
    bool GetIsOutlined() const { return m_isOutlined; }
    void SetIsOutlined(bool isOutlined) { m_isOutlined = isOutlined; }
    int GetOutlineWidth() const { return m_outlineWidth; }
    void SetOutlineWidth(int width) { m_outlineWidth = width; }
    bool GetIsFilled() const { return m_isFilled; }
    void SetIsFilled(bool isFilled) { m_isFilled = isFilled; }
    bool GetIsStippled() const { return m_isStippled; }
    void SetIsStippled(bool isStippled) { m_isStippled = isStippled; }
    StipplePattern GetStipplePattern() const { return m_stipplePattern; }
    void SetStipplePattern(StipplePattern pattern) { m_stipplePattern = pattern; }

private:
    Spatia::Point2d m_origin;
    Orrin::Color m_foregroundColor;
    Orrin::Color m_backgroundColor;
    bool m_isOutlined = false;
    int m_outlineWidth = 0;
    bool m_isFilled = false;
    bool m_isStippled = false;
    StipplePattern m_stipplePattern = StipplePattern();
};

/// A rectangle at its origin.
class VORLANE_PLATFORM_EXPORT RectanglePrimitive : public UnlitShapePrimitive
{
public:
    /// Width and height.
    Spatia::Point2d const& GetSize() const { return m_size; }
    void SetSize(Spatia::Point2d const& size) { m_size = size; }

private:
    Spatia::Point2d m_size;
};

/// A triangle of the plane.
class VORLANE_PLATFORM_EXPORT TriangleShapePrimitive : public UnlitShapePrimitive
{
public:
    /// The corners.
    Spatia::Point2d GetPoint1() const { return m_point1; }
    Spatia::Point2d GetPoint2() const { return m_point2; }
    Spatia::Point2d GetPoint3() const { return m_point3; }
    void SetPoint1(Spatia::Point2d const& point) { m_point1 = point; }
    void SetPoint2(Spatia::Point2d const& point) { m_point2 = point; }
    void SetPoint3(Spatia::Point2d const& point) { m_point3 = point; }

private:
    Spatia::Point2d m_point1;
    Spatia::Point2d m_point2;
    Spatia::Point2d m_point3;
};

} // namespace Lumora

#endif
