// Shapes of the plane and the primitives that show text.

#include "vorlane/colour/NamedColorArrays.h"
#include "vorlane/persistence/ArchiveForm.h"
#include "vorlane/persistence/FieldsInternal.h"
#include "vorlane/persistence/PrimitiveSerializers.h"
#include "vorlane/persistence/SchemaInternal.h"

#include <cstdint>
#include <string>

using namespace Lumora;
using Spatia::Point2d;
using Spatia::Point3d;

namespace Vorlane {

void Serialize(CArchive& ar, UnlitShapePrimitive& shape)
{
    using Shape = UnlitShapePrimitive;
    Serialize(ar, static_cast<GraphicsPrimitive&>(shape));
    Fields::Property(ar, SerializePoint2d, shape, &Shape::GetOrigin, &Shape::SetOrigin);
    Fields::Property(ar, SerializeColor, shape, &Shape::GetForegroundColor, &Shape::SetForegroundColor);
    Fields::Property(ar, SerializeColor, shape, &Shape::GetBackgroundColor, &Shape::SetBackgroundColor);
    Fields::Property(ar, Fields::Flag, shape, &Shape::GetIsOutlined, &Shape::SetIsOutlined);
    Fields::Property(ar, Fields::Int32, shape, &Shape::GetOutlineWidth, &Shape::SetOutlineWidth);
    Fields::Property(ar, Fields::Flag, shape, &Shape::GetIsFilled, &Shape::SetIsFilled);
    Fields::Property(ar, Fields::Flag, shape, &Shape::GetIsStippled, &Shape::SetIsStippled);
    Fields::Property(ar, Fields::Enumerator<Shape::StipplePattern>, shape, &Shape::GetStipplePattern,
                     &Shape::SetStipplePattern);
}

void Serialize(CArchive& ar, RectanglePrimitive& rectangle)
{
    Serialize(ar, static_cast<UnlitShapePrimitive&>(rectangle));
    Fields::Property(ar, SerializePoint2d, rectangle, &RectanglePrimitive::GetSize,
                     &RectanglePrimitive::SetSize);
}

void Serialize(CArchive& ar, TriangleShapePrimitive& triangle)
{
    Serialize(ar, static_cast<UnlitShapePrimitive&>(triangle));
    Point2d point1 = triangle.GetPoint1();
    Point2d point2 = triangle.GetPoint2();
    Point2d point3 = triangle.GetPoint3();
    SerializePoint2d(ar, point1);
    SerializePoint2d(ar, point2);
    SerializePoint2d(ar, point3);
    if (ar.IsLoading()) {
        triangle.SetPoint1(point1);
        triangle.SetPoint2(point2);
        triangle.SetPoint3(point3);
    }
}

namespace {

/// The faces that archives below schema number 10 give as numbers from 1 up.
constexpr wchar_t const* numberedFaces[] = {
    L"Arial",           // 1
    L"Times New Roman", // 2
    L"Courier New",     // 3
};

std::wstring FaceOfNumber(std::int32_t number, std::wstring const& otherwise)
{
    std::int32_t const last = sizeof(numberedFaces) / sizeof(numberedFaces[0]);
    return number >= 1 && number <= last ? std::wstring(numberedFaces[number - 1]) : otherwise;
}

/// A font: its face as text and its size as an int32. Loading below schema number 10 the face is an int32,
/// too. A loaded font starts as the default one and is assigned once it is read whole.
void SerializeFont(CArchive& ar, Orrin::Font& font)
{
    AfxWithMemoryException([&] {
        Orrin::Font whole = ar.IsStoring() ? font : Orrin::Font::DefaultFont();
        if (StoredOrLoadedFrom(ar, 10)) {
            Fields::Property(ar, Fields::Text, whole, &Orrin::Font::GetFace, &Orrin::Font::SetFace);
        } else {
            std::int32_t number = 0;
            Fields::Int32(ar, number);
            whole.SetFace(FaceOfNumber(number, whole.GetFace()));
        }
        Fields::Property(ar, Fields::Int32, whole, &Orrin::Font::GetSize, &Orrin::Font::SetSize);
        if (ar.IsLoading()) {
            font = whole;
        }
    });
}

/// The colour of a text below schema number 11: the packed value, which becomes opaque on loading.
void SerializeRGB(CArchive& ar, Orrin::Color& color)
{
    std::uint32_t packed = color.GetPacked();
    Fields::Number(ar, packed);
    if (ar.IsLoading()) {
        color.SetRGB(packed);
    }
}

} // namespace

void Serialize(CArchive& ar, Text3DPrimitive& text)
{
    bool const isNewer = PresentFrom(ar, 11);
    if (isNewer) {
        Serialize(ar, static_cast<UnlitPointPrimitive&>(text));
    } else {
        Serialize(ar, static_cast<GraphicsPrimitive&>(text));
        Fields::Property(ar, SerializeRGB, text.vertex, &Vertex::GetColor, &Vertex::SetColor);
    }
    Fields::Property(ar, Fields::Text, text, &Text3DPrimitive::GetText, &Text3DPrimitive::SetText);
    SerializeFont(ar, text.font);
    if (!isNewer) {
        SerializePoint3d(ar, text.vertex.point);
    }
    Fields::Double(ar, text.textValue);
    Fields::Flag(ar, text.textFlag);
}

void Serialize(CArchive& ar, TextStringPrimitive& text)
{
    using Text = TextStringPrimitive;
    Serialize(ar, static_cast<UnlitShapePrimitive&>(text));
    Fields::Property(ar, Fields::Text, text, &Text::GetTextString, &Text::SetTextString);
    Fields::Property(ar, SerializeFont, text, &Text::GetFont, &Text::SetFont);
    Fields::Property(ar, Fields::Int32, text, &Text::GetCursorPosition, &Text::SetCursorPosition);
    Fields::Property(ar, Fields::FlagOfOne, text, &Text::GetShowCursor, &Text::SetShowCursor);
}

void Serialize(CArchive& ar, TextBoxPrimitive& box)
{
    Serialize(ar, static_cast<TextStringPrimitive&>(box));
    Fields::Property(ar, Fields::Float, box, &TextBoxPrimitive::GetBoxWidth, &TextBoxPrimitive::SetBoxWidth);
    Fields::Property(ar, Fields::FlagOfOne, box, &TextBoxPrimitive::GetShowHandles,
                     &TextBoxPrimitive::SetShowHandles);
}

void Serialize(CArchive& ar, TextCalloutPrimitive& callout)
{
    Serialize(ar, static_cast<TextBoxPrimitive&>(callout));
    Point3d location = callout.GetLocation();
    Point2d location2d = callout.GetLocation2d();
    SerializePoint3d(ar, location);
    SerializePoint2d(ar, location2d);
    if (ar.IsLoading()) {
        callout.SetLocation(location);
        callout.SetLocation2d(location2d);
    }
}

} // namespace Vorlane
