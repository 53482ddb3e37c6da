#include "examples/scene_inspect/Layouts.h"

#include "vorlane/VorlaneCore.h"

#include <sstream>
#include <stdexcept>
#include <utility>

namespace SceneInspect {

namespace {

// One layout a line: its name, perhaps with the test that chooses it, then its fields in archive order. A
// field is NAME:FORM, or NAME:COUNT*FORM for a list behind its count, and may end in ?TEST, the test of the
// schema number under which a load expects it. A field without a name is a base. The count forms are count,
// int32 (of which a negative number stands for none) and length, an int32 that must not be negative.
constexpr char const* layoutText = R"(
Point2d           x:double y:double
Point3d?u<=6      x:double y:double z:double
Point3d?u==19     x:double y:double z:double
Point3d?s==-1     x:double y:double z:double
Point3d           x:float y:float z:float
Matrix3x3         row0:Row3 row1:Row3 row2:Row3
Row3              c0:double c1:double c2:double
Matrix4x4         row0:Row4 row1:Row4 row2:Row4 row3:Row4
Row4              c0:double c1:double c2:double c3:double
Point2dArray      points:count*Point2d
Point3dArray      points:count*Point3d
IntArray          values:count*int32
BoolArray         values:count*bool
DoubleArray       values:count*double
Displacement      u11:float u22:float u33:float f4:float f5:float f6:float s1:float s2:float s3:float s4:float s5:float s6:float
DisplacementArray values:count*Displacement
ColorArray        colors:count*color name:text?u!=23
Spectrum          :ColorArray defined:int32*bool
ColorMap          spectrum:text clip:bool minimum:double maximum:double bins:int32*bool
Text              text:text
Font              face:text size:int32
Rational          numerator:int16 denominator:int16

Vertex            color:color point:Point3d
VertexNormal      color:color point:Point3d normal:Point3d
GraphicsPrimitive headerWord:int32
LitPrimitive      :GraphicsPrimitive litWord1:int32 litWord2:int32?s>6
Sphere            :LitPrimitive vertex:Vertex size:float
Ellipsoid         :LitPrimitive vertex:Vertex axes:Point3d frame:Matrix4x4
Cylinder          :LitPrimitive first:Vertex second:Vertex size:float
Cone              :LitPrimitive firstEnd:Point3d secondEnd:Point3d color:color size:float
Triangle          :LitPrimitive corner1:Vertex corner2:Vertex corner3:Vertex faceVector:Point3d
Tetrahedron       :LitPrimitive corner0:Face corner1:Face corner2:Face corner3:Face
Face              vertex:Vertex centroid:Point3d normal:Point3d
Plane             first:Point3d second:Point3d color:color

UnlitPoint        :GraphicsPrimitive vertex:Vertex
Dot               :UnlitPoint dotWord:int32
Icon              :UnlitPoint iconWord:int32 iconFlag2:flag iconFlag1:flag iconFlag3:flag iconValue:double
Line              :GraphicsPrimitive first:Vertex second:Vertex lineWord1:int32 lineWord2:int32
DashedLine        :Line dashWord:int32 dashFlag:bool
UnlitLine         :GraphicsPrimitive points:count*Point2d color:color width:int32
LineArray         :GraphicsPrimitive lines:length*Line width:float dashed:flag?u>12 dashPattern:uint16?u>12
Arc               :GraphicsPrimitive arcPoint1:Point3d arcPoint2:Point3d arcPoint3:Point3d color:color arcPoints:count*Point3d arcValue:float arcWord1:int32 arcWord2:int32
UnlitTriangle     :GraphicsPrimitive unlitCorner1:Point3d unlitCorner2:Point3d unlitCorner3:Point3d color:color

Shape             :GraphicsPrimitive origin:Point2d foreground:color background:color outlined:flag outlineWidth:int32 filled:flag stippled:flag stipplePattern:int32
Rectangle         :Shape size:Point2d
TriangleShape     :Shape point1:Point2d point2:Point2d point3:Point2d
Text3D?u<11       :GraphicsPrimitive color:color text:text face:text?u>=10 fontNumber:int32?u<10 fontSize:int32 point:Point3d textValue:double textFlag:flag
Text3D            :UnlitPoint text:text face:text fontSize:int32 textValue:double textFlag:flag
TextString        :Shape text:text face:text?u>=10 fontNumber:int32?u<10 fontSize:int32 cursorPosition:int32 showCursor:flag
TextBox           :TextString boxWidth:float showHandles:flag
TextCallout       :TextBox location:Point3d location2d:Point2d

TriangleIndex     first:int32 second:int32 third:int32
Mesh              :LitPrimitive triangles:length*TriangleIndex vertices:length*VertexNormal meshFlag1:flag?s>6 meshFlag2:flag?s>20 backSideColor:color?s>20
Volume            :GraphicsPrimitive dataMin:float dataMax:float displayMin:float displayMax:float clipOutsideRange:flag colors:length*color transparency:float transferFunction:length*flag
Light             color:color?s>6 point:Point3d?s>6 lightFlag:bool?s>6
Material          enabled:bool ambient:float diffuse:float emission:float shininess:int32 specular:float
Attributes        background:color :AttributesFrom7?u>6 attrFlag:bool?u>15 material:Material?u>=18 mode:int32?u>=23
AttributesFrom7   lights:int32*Light attrFloat1:float attrWord1:int32 attrWord2:int32 attrSwitch1:flag attrSwitch2:flag attrFloat2:float attrFloat3:float attrFloat4:float attrFloat5:float modeIsZero:bool attrFloat6:float attrFloat7:float attrMatrix:Matrix4x4 attrFloat8:float attrFloat9:float
)";

Presence ParsePresence(std::string const& test)
{
    Presence presence;
    presence.isSigned = test.at(0) == 's';
    std::size_t const number = test.find_first_of("-0123456789");
    presence.comparison = test.substr(1, number - 1);
    presence.number = std::stoll(test.substr(number));
    return presence;
}

/// Cuts `text` at the first `mark` and gives what stood behind it, or an empty text.
std::string CutAt(std::string& text, char mark)
{
    std::size_t const place = text.find(mark);
    if (place == std::string::npos) {
        return std::string();
    }
    std::string const rest = text.substr(place + 1);
    text.erase(place);
    return rest;
}

FieldRow ParseField(std::string field)
{
    FieldRow row;
    std::string const test = CutAt(field, '?');
    if (!test.empty()) {
        row.presence = ParsePresence(test);
    }
    row.form = CutAt(field, ':');
    row.name = field;
    std::string listed = CutAt(row.form, '*');
    if (!listed.empty()) {
        row.countForm = std::exchange(row.form, listed);
    }
    return row;
}

struct NamedLayout
{
    std::string name;
    Presence presence;
    Layout fields;
};

std::vector<NamedLayout> ParseLayouts()
{
    std::vector<NamedLayout> layouts;
    std::istringstream text(layoutText);
    for (std::string line; std::getline(text, line);) {
        std::istringstream words(line);
        NamedLayout layout;
        if (!(words >> layout.name)) {
            continue;
        }
        std::string const test = CutAt(layout.name, '?');
        if (!test.empty()) {
            layout.presence = ParsePresence(test);
        }
        for (std::string field; words >> field;) {
            layout.fields.push_back(ParseField(field));
        }
        layouts.push_back(layout);
    }
    return layouts;
}

template <typename Object>
Kind PrimitiveKind(char const* layout)
{
    return {layout, [](CArchive& archive) {
                Object object;
                Vorlane::Serialize(archive, object);
            }};
}

template <typename Object, void (*serialize)(CArchive&, Object&)>
Kind ValueKind(char const* layout)
{
    return {layout, [](CArchive& archive) {
                Object object;
                serialize(archive, object);
            }};
}

template <typename Object>
Kind MemberKind(char const* layout)
{
    return {layout, [](CArchive& archive) {
                Object object{};
                object.Serialize(archive);
            }};
}

template <typename Object>
Kind OperatorKind(char const* layout)
{
    return {layout, [](CArchive& archive) {
                Object object;
                archive >> object;
            }};
}

} // namespace

bool Presence::Holds(std::uint32_t schema) const
{
    std::int64_t const value =
        isSigned ? std::int64_t{static_cast<std::int32_t>(schema)} : std::int64_t{schema};
    if (comparison.empty()) {
        return true;
    }
    if (comparison == "==") {
        return value == number;
    }
    if (comparison == "!=") {
        return value != number;
    }
    if (comparison == "<") {
        return value < number;
    }
    if (comparison == "<=") {
        return value <= number;
    }
    if (comparison == ">") {
        return value > number;
    }
    if (comparison == ">=") {
        return value >= number;
    }
    throw std::logic_error("a layout compares with " + comparison);
}

std::size_t BytesOfLibrary(Kind const& kind, std::vector<unsigned char> const& bytes, std::size_t offset,
                           std::uint32_t schema)
{
    CMemFile file(
        std::vector<unsigned char>(bytes.begin() + static_cast<std::ptrdiff_t>(offset), bytes.end()));
    CArchive archive(&file, CArchive::load);
    archive.m_nObjectSchema = schema;
    std::uint64_t const before = archive.GetRemaining();
    kind.readWithLibrary(archive);
    return static_cast<std::size_t>(before - archive.GetRemaining());
}

Layout const* FindLayout(std::string const& name, std::uint32_t schema)
{
    static std::vector<NamedLayout> const layouts = ParseLayouts();
    for (NamedLayout const& layout : layouts) {
        if (layout.name == name && layout.presence.Holds(schema)) {
            return &layout.fields;
        }
    }
    return nullptr;
}

std::map<std::string, Kind> const& Kinds()
{
    using namespace Lumora;
    using namespace Vorlane;
    static std::map<std::string, Kind> const kinds = {
        {"point2d", ValueKind<Spatia::Point2d, SerializePoint2d>("Point2d")},
        {"point3d", ValueKind<Spatia::Point3d, SerializePoint3d>("Point3d")},
        {"matrix3x3", ValueKind<Spatia::Matrix3x3, SerializeMatrix3x3>("Matrix3x3")},
        {"matrix4x4", ValueKind<Spatia::Matrix4x4, SerializeMatrix4x4>("Matrix4x4")},
        {"point2ds", ValueKind<Orrin::LegacyArray<Spatia::Point2d>, SerializePoint2dArray>("Point2dArray")},
        {"point3ds", ValueKind<Orrin::LegacyArray<Spatia::Point3d>, SerializePoint3dArray>("Point3dArray")},
        {"ints", MemberKind<IntArray>("IntArray")},
        {"bools", MemberKind<BoolArray>("BoolArray")},
        {"doubles", MemberKind<DoubleArray>("DoubleArray")},
        {"displacements", MemberKind<AnisotropicDisplacement::Array>("DisplacementArray")},
        {"color",
         {"color",
          [](CArchive& archive) {
              Orrin::Color color;
              SerializeColor(archive, color);
          }}},
        {"colors",
         {"ColorArray",
          [](CArchive& archive) {
              Orrin::ColorArray colors(0, 1);
              SerializeColorArray(archive, colors);
          }}},
        {"spectrum", MemberKind<CustomColorSpectrum>("Spectrum")},
        {"colormap", MemberKind<ColorMapParameters>("ColorMap")},
        {"text", OperatorKind<CString>("Text")},
        {"font", MemberKind<Font>("Font")},
        {"rational", OperatorKind<Rational>("Rational")},
        {"vertex", PrimitiveKind<Vertex>("Vertex")},
        {"vertexnormal", PrimitiveKind<VertexNormal>("VertexNormal")},
        {"primitive", PrimitiveKind<GraphicsPrimitive>("GraphicsPrimitive")},
        {"lit", PrimitiveKind<LitPrimitive>("LitPrimitive")},
        {"sphere", PrimitiveKind<SpherePrimitive>("Sphere")},
        {"ellipsoid", PrimitiveKind<EllipsoidPrimitive>("Ellipsoid")},
        {"cylinder", PrimitiveKind<CylinderPrimitive>("Cylinder")},
        {"cone", PrimitiveKind<ConePrimitive>("Cone")},
        {"triangle", PrimitiveKind<TrianglePrimitive>("Triangle")},
        {"tetrahedron", PrimitiveKind<TetrahedronPrimitive>("Tetrahedron")},
        {"plane", PrimitiveKind<PlanePrimitive>("Plane")},
        {"point", PrimitiveKind<UnlitPointPrimitive>("UnlitPoint")},
        {"dot", PrimitiveKind<DotPrimitive>("Dot")},
        {"icon", PrimitiveKind<IconPrimitive>("Icon")},
        {"line", PrimitiveKind<LinePrimitive>("Line")},
        {"dashedline", PrimitiveKind<DashedLinePrimitive>("DashedLine")},
        {"unlitline", PrimitiveKind<UnlitLinePrimitive>("UnlitLine")},
        {"linearray", PrimitiveKind<LineArrayPrimitive>("LineArray")},
        {"arc", PrimitiveKind<ArcPrimitive>("Arc")},
        {"unlittriangle", PrimitiveKind<UnlitTrianglePrimitive>("UnlitTriangle")},
        {"shape", PrimitiveKind<UnlitShapePrimitive>("Shape")},
        {"rectangle", PrimitiveKind<RectanglePrimitive>("Rectangle")},
        {"triangleshape", PrimitiveKind<TriangleShapePrimitive>("TriangleShape")},
        {"text3d", PrimitiveKind<Text3DPrimitive>("Text3D")},
        {"textstring", PrimitiveKind<TextStringPrimitive>("TextString")},
        {"textbox", PrimitiveKind<TextBoxPrimitive>("TextBox")},
        {"textcallout", PrimitiveKind<TextCalloutPrimitive>("TextCallout")},
        {"triangleindex", PrimitiveKind<TriangleIndex>("TriangleIndex")},
        {"mesh", PrimitiveKind<TriangleMeshPrimitive>("Mesh")},
        {"volume", PrimitiveKind<VolumePrimitive>("Volume")},
        {"light", PrimitiveKind<LightSource>("Light")},
        {"material", PrimitiveKind<MaterialProperty>("Material")},
        {"attributes", PrimitiveKind<GraphicsAttributes>("Attributes")},
    };
    return kinds;
}

} // namespace SceneInspect
