#ifndef VORLANE_PLATFORM_LUMORA_TEXTPRIMITIVES_H
#define VORLANE_PLATFORM_LUMORA_TEXTPRIMITIVES_H

/// \file
/// Primitives that show text: in space, on the plane, in a box and in a callout.

#include "platform/Export.h"
#include "platform/lumora/UnlitPoints.h"
#include "platform/lumora/UnlitShapes.h"
#include "platform/orrin/Font.h"
#include "platform/orrin/Held.h"
#include "platform/spatia/Point2d.h"
#include "platform/spatia/Point3d.h"

#include <string>

namespace Lumora {

/// Text at a point of space.
class VORLANE_PLATFORM_EXPORT Text3DPrimitive : public UnlitPointPrimitive
{
public:
    /// The text; in an archive it is narrow and ends at its first zero character.
    std::wstring GetText() const { return m_text.Copy(); }
    void SetText(std::wstring const& text) { m_text = text; }

    /// The font, and values whose meaning is the application's.
    Orrin::Font GetFont() const { return font; }
    Orrin::Font font;
    double textValue = 0.0;
    bool textFlag = false;

private:
    Orrin::Held<std::wstring> m_text;
};

/// Text on the plane, with a cursor.
class VORLANE_PLATFORM_EXPORT TextStringPrimitive : public UnlitShapePrimitive
{
public:
    /// The text, its font, the position of the cursor and whether it is shown.
    std::wstring const& GetTextString() const { return m_text; }
    void SetTextString(std::wstring const& text) { m_text = text; }
    Orrin::Font GetFont() const { return m_font; }
    void SetFont(Orrin::Font const& font) { m_font = font; }
    int GetCursorPosition() const { return m_cursorPosition; }
    void SetCursorPosition(int position) { m_cursorPosition = position; }
    bool GetShowCursor() const { return m_showCursor; }
    void SetShowCursor(bool showCursor) { m_showCursor = showCursor; }

private:
    Orrin::Held<std::wstring> m_text;
    Orrin::Font m_font;
    int m_cursorPosition = 0;
    bool m_showCursor = false;
};

/// Text in a box of a given width, with handles.
class VORLANE_PLATFORM_EXPORT TextBoxPrimitive : public TextStringPrimitive
{
public:
    /// The width of the box, and whether handles are shown.
    float GetBoxWidth() const { return m_boxWidth; }
    void SetBoxWidth(float width) { m_boxWidth = width; }
    bool GetShowHandles() const { return m_showHandles; }
    void SetShowHandles(bool showHandles) { m_showHandles = showHandles; }

private:
    float m_boxWidth = 0.0f;
    bool m_showHandles = false;
};

/// A text box that points at a place.
class VORLANE_PLATFORM_EXPORT TextCalloutPrimitive : public TextBoxPrimitive
{
public:
    /// The place that the callout points at, in space and on the plane; neither follows from the other.
    Spatia::Point3d const& GetLocation() const { return m_location; }
    void SetLocation(Spatia::Point3d const& location) { m_location = location; }
    Spatia::Point2d const& GetLocation2d() const { return m_location2d; }
    void SetLocation2d(Spatia::Point2d const& location) { m_location2d = location; }

private:
    Spatia::Point3d m_location;
    Spatia::Point2d m_location2d;
};

} // namespace Lumora

#endif
