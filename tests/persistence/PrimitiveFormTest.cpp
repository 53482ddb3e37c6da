#include "tests/persistence/ArchiveBytes.h"
#include "tests/support/Files.h"

#include "gtest/gtest.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace VorlaneTest;

namespace {

/// The schema number that a writer sets today.
constexpr std::uint32_t today = 24;
constexpr std::uint32_t unset = 0xFFFFFFFFu;
constexpr std::uint32_t negative = 0x80000000u;

std::string const P123 = " 0000803F 00000040 00004040 ";
std::string const P456 = " 00008040 0000A040 0000C040 ";
std::string const P789 = " 0000E040 00000041 00001041 ";
std::string const P12 = " 000000000000F03F 0000000000000040 ";
std::string const P34 = " 0000000000000840 0000000000001040 ";
std::string const C1 = " 11223380 ";
std::string const C2 = " 445566FF ";
std::string const header = "01020304|";
std::string const lit = header + "05000000|FEFFFFFF|";
std::string const matrix4x4 = " 00*8 000000000000F03F 00*80 0000000000000040 00*24";
std::string const shape =
    header + P12 + "|" + C1 + "|" + C2 + "|01000000|06000000|00000000|01000000|FEFFFFFF|";
std::string const font = "04 53616E73 0A000000 / 05 417269616C 0C000000|";
std::string const textString = shape + "02 4869 / 00|" + font + "FFFFFFFF|01000000|";
std::string const textBox = textString + "0000C03F|01000000|";
std::string const tetrahedron = C1 + "00*12 0000803F*3 3ACD133F*3" + C1 +
                                "00004040 00*8  00*4 0000803F*2 000080BF 00*8" + C1 +
                                "00*4 00004040 00*4  0000803F 00*4 0000803F 00*4 000080BF 00*4" + C1 +
                                "00*8 00004040  0000803F*2 00*4 00*8 000080BF";
std::string const line = " 01020304" + C1 + P123 + C2 + P456 + "07000000 08000000";
std::string const newLine = " 00*4 000000FF 00*12 000000FF 00*12 00*8 ";
std::string const light = C1 + P123 + "01|";
std::string const newLight = " 000000FF 00*13|";
std::string const material = "01 0000803F 00000040 00004040 40000000 00008040";

/// An object with every member set, and its bytes today. A bar stands where a load has assigned all that went
/// before. Where the same fields have another length in a new object, they follow after a slash. A tilde
/// marks fields that change a new object before they are complete.
struct Layout
{
    char const* name;
    MakeSubject make;
    std::string fields;
};

std::vector<Layout> const& Layouts()
{
    static std::vector<Layout> const layouts = {
        {"Point2d", Make<Point2d>, P12},
        {"Point3d", Make<Point3d>, P123},
        {"Matrix3x3", Make<Matrix3x3>, "00*8|000000000000F03F|00*32|0000000000000040|00*8|00*8"},
        {"Matrix4x4", Make<Matrix4x4>, "00*8|000000000000F03F|00*80|0000000000000040|00*24"},
        {"Vertex", Make<Vertex>, C1 + "|" + P123},
        {"VertexNormal", Make<VertexNormal>, C1 + "|" + P123 + "|" + P456},
        {"GraphicsPrimitive", Make<GraphicsPrimitive>, header},
        {"LitPrimitive", Make<LitPrimitive>, lit},
        {"SpherePrimitive", Make<SpherePrimitive>, lit + C1 + P123 + "|0000C03F"},
        {"EllipsoidPrimitive", Make<EllipsoidPrimitive>, lit + C1 + P123 + "|" + P456 + "|" + matrix4x4},
        {"CylinderPrimitive", Make<CylinderPrimitive>, lit + C1 + P123 + C2 + P456 + "|0000C03F"},
        {"ConePrimitive", Make<ConePrimitive>, lit + P123 + P456 + C1 + "0000C03F"},
        {"TrianglePrimitive", Make<TrianglePrimitive>,
         lit + "000000FF" + P123 + "|000000FF" + P456 + "|000000FF" + P789 + "|00*8 0000803F"},
        {"TetrahedronPrimitive", Make<TetrahedronPrimitive>, lit + tetrahedron},
        {"PlanePrimitive", Make<PlanePrimitive>, P123 + P456 + C1},
        {"UnlitPointPrimitive", Make<UnlitPointPrimitive>, header + C1 + P123},
        {"DotPrimitive", Make<DotPrimitive>, header + C1 + P123 + "|07000000"},
        {"IconPrimitive", Make<IconPrimitive>,
         header + C1 + P123 + "|07000000|00000000|01000000|00000000|000000000000E03F"},
        {"LinePrimitive", Make<LinePrimitive>, header + line.substr(9)},
        {"DashedLinePrimitive", Make<DashedLinePrimitive>, header + line.substr(9) + "|09000000|01"},
        {"UnlitLinePrimitive", Make<UnlitLinePrimitive>,
         header + "0200" + P12 + P34 + C1 + "03000000 / 0000 000000FF 00000000"},
        {"LineArrayPrimitive", Make<LineArrayPrimitive>,
         header + "~02000000" + line + newLine + " / 00000000|0000C03F|01000000|0FF0"},
        {"ArcPrimitive", Make<ArcPrimitive>,
         header + P123 + "|" + P456 + "|" + P789 + "|" + C1 + "|~0200" + P456 + P123 +
             " / 0000|0000C03F|07000000|08000000"},
        {"UnlitTrianglePrimitive", Make<UnlitTrianglePrimitive>,
         header + P123 + "|" + P456 + "|" + P789 + "|" + C1},
        {"UnlitShapePrimitive", Make<UnlitShapePrimitive>, shape},
        {"RectanglePrimitive", Make<RectanglePrimitive>, shape + P34},
        {"TriangleShapePrimitive", Make<TriangleShapePrimitive>,
         shape + P12 + P34 + "0000000000000040 000000000000F03F"},
        {"Text3DPrimitive", Make<Text3DPrimitive>,
         header + C1 + P123 + "|03 48E93F / 00|" + font + "000000000000E03F|01000000"},
        {"TextStringPrimitive", Make<TextStringPrimitive>, textString},
        {"TextBoxPrimitive", Make<TextBoxPrimitive>, textBox},
        {"TextCalloutPrimitive", Make<TextCalloutPrimitive>, textBox + P123 + P34},
        {"TriangleIndex", Make<TriangleIndex>, "01000000|FEFFFFFF|03000000"},
        {"TriangleMeshPrimitive", Make<TriangleMeshPrimitive>,
         lit + "02000000 01000000 FEFFFFFF 03000000 04000000 05000000 06000000 01000000" + C1 + P123 + P456 +
             "/ 00*8|01000000|01000000|" + C2},
        {"VolumePrimitive", Make<VolumePrimitive>,
         header + "0000803F|00000040|00004040|00008040|01000000|~02000000 11223300" + C2 +
             " / 00*4|0000C03F|03000000 01000000 00000000 01000000 / 00*4"},
        {"LightSource", Make<LightSource>, C1 + "|" + P123 + "|01"},
        {"MaterialProperty", Make<MaterialProperty>, "01|0000803F|00000040|00004040|40000000|00008040"},
        {"GraphicsAttributes", Make<GraphicsAttributes>,
         C2 + "|04000000|" + newLight + light + newLight + newLight +
             "0000803F|07000000|08000000|01000000|00000000|00000040|00004040|00008040|0000A040|01|0000C040|"
             "0000E040|" +
             matrix4x4 + "|00000041|00001041|01|" + material + "|00000000"},
    };
    return layouts;
}

/// Fields that a load assigns together: their bytes in the filled object and in a new one.
struct Unit
{
    Bytes filled;
    Bytes fresh;
    bool assignsEarly;
};

using BytesOfUnit = Bytes Unit::*;

std::vector<Unit> Units(Layout const& layout)
{
    std::vector<Unit> units;
    Bytes const fresh = layout.make()->Store(today);
    auto next = fresh.begin();
    std::istringstream pieces(layout.fields);
    for (std::string piece; std::getline(pieces, piece, '|');) {
        bool const assignsEarly = !piece.empty() && piece[0] == '~';
        std::size_t const slash = piece.find('/');
        Bytes const filled = FromHex(piece.substr(assignsEarly ? 1 : 0, slash - (assignsEarly ? 1 : 0)));
        auto const end = next + static_cast<std::ptrdiff_t>(slash == std::string::npos
                                                                ? filled.size()
                                                                : FromHex(piece.substr(slash + 1)).size());
        units.push_back({filled, Bytes(next, end), assignsEarly});
        next = end;
    }
    return units;
}

/// The first `count` units of one object, then those of the other, if there is one.
Bytes Joined(std::vector<Unit> const& units, std::size_t count, BytesOfUnit first, BytesOfUnit rest = nullptr)
{
    Bytes bytes;
    for (std::size_t i = 0; i < (rest != nullptr ? units.size() : count); ++i) {
        Bytes const& unit = units[i].*(i < count ? first : rest);
        bytes.insert(bytes.end(), unit.begin(), unit.end());
    }
    return bytes;
}

Bytes AllBytes(Layout const& layout)
{
    return Joined(Units(layout), 0, nullptr, &Unit::filled);
}

/// A new object, or the filled one.
std::unique_ptr<Subject> MakeBefore(Layout const& layout, BytesOfUnit before)
{
    auto subject = layout.make();
    if (before == &Unit::filled) {
        subject->Fill();
    }
    return subject;
}

/// What a load brings, and what the object held before.
constexpr std::pair<BytesOfUnit, BytesOfUnit> loadsAndBefore[] = {{&Unit::filled, &Unit::fresh},
                                                                  {&Unit::fresh, &Unit::filled}};

Layout const& LayoutOf(std::string const& name)
{
    for (Layout const& layout : Layouts()) {
        if (name == layout.name) {
            return layout;
        }
    }
    throw std::logic_error("no layout of " + name);
}

} // namespace

TEST(PrimitiveFormTest, EveryObjectHasItsBytesInBothDirectionsAtAnyBufferSize)
{
    for (Layout const& layout : Layouts()) {
        SCOPED_TRACE(layout.name);
        Bytes const bytes = AllBytes(layout);
        for (int bufferSize : {1, 13, 65536, 1 << 20}) {
            auto const stored = layout.make();
            stored->Fill();
            EXPECT_EQ(ToHex(stored->Store(today, bufferSize)), ToHex(bytes));
            auto const loaded = layout.make();
            EXPECT_EQ(loaded->Load(bytes, today, bufferSize), 0u);
            EXPECT_EQ(ToHex(loaded->Store(today)), ToHex(bytes));
        }
    }
}

TEST(PrimitiveFormTest, SceneOfEveryObjectGoesToAFileAndBack)
{
    TemporaryFile const file("scene.bin");
    for (int bufferSize : {1, 100, 65536}) {
        SCOPED_TRACE(bufferSize);
        CFile output(file.path.c_str(), CFile::modeWrite | CFile::modeCreate);
        CArchive storing(&output, CArchive::store, bufferSize);
        storing.m_nObjectSchema = today;
        for (Layout const& layout : Layouts()) {
            auto const subject = layout.make();
            subject->Fill();
            subject->Transfer(storing);
        }
        storing.Close();
        output.Close();

        CFile input(file.path.c_str(), CFile::modeRead);
        CArchive loading(&input, CArchive::load, bufferSize);
        loading.m_nObjectSchema = today;
        for (Layout const& layout : Layouts()) {
            auto const subject = layout.make();
            subject->Transfer(loading);
            EXPECT_EQ(ToHex(subject->Store(today)), ToHex(AllBytes(layout))) << layout.name;
        }
        EXPECT_EQ(loading.GetRemaining(), 0u);
    }
}

TEST(PrimitiveFormTest, ArchiveCutAnywhereLoadsTheFieldsBeforeTheCut)
{
    for (Layout const& layout : Layouts()) {
        std::vector<Unit> const units = Units(layout);
        for (auto const& [loads, before] : loadsAndBefore) {
            Bytes const bytes = Joined(units, units.size(), loads);
            for (std::size_t cut = 0, loaded = 0, end = (units[0].*loads).size(); cut < bytes.size(); ++cut) {
                SCOPED_TRACE(std::string(layout.name) + " cut to " + std::to_string(cut));
                for (; cut >= end; end += (units[loaded].*loads).size()) {
                    ++loaded;
                }
                auto const subject = MakeBefore(layout, before);
                try {
                    subject->Load(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(cut)),
                                  today);
                    ADD_FAILURE() << "loaded";
                } catch (CArchiveException const& exception) {
                    CString const& file = exception.m_strFileName;
                    bool const hasText = std::string(layout.name).find("Text") == 0;
                    EXPECT_EQ(exception.m_cause, 3);
                    EXPECT_TRUE(file == "named" || (hasText && file == ""));
                }
                if (!units[loaded].assignsEarly) {
                    EXPECT_EQ(ToHex(subject->Store(today)), ToHex(Joined(units, loaded, loads, before)));
                }
            }
        }
    }
}

TEST(PrimitiveFormTest, AnyByteMayBeWrong)
{
    for (Layout const& layout : Layouts()) {
        Bytes const bytes = AllBytes(layout);
        for (std::uint32_t schema : {6u, 9u, 10u, 12u, 19u, 20u, today, negative, unset}) {
            for (std::size_t i = 0; i < bytes.size(); ++i) {
                for (int mask : {0x01, 0x80, 0xFF}) {
                    Bytes damaged = bytes;
                    damaged[i] = static_cast<unsigned char>(damaged[i] ^ mask);
                    try {
                        layout.make()->Load(damaged, schema, 256);
                    } catch (CArchiveException const& exception) {
                        EXPECT_EQ(exception.m_cause, 3) << layout.name << " at " << schema << ", byte " << i;
                    } catch (std::length_error const& exception) {
                        EXPECT_STREQ(exception.what(), "vector<T> too long");
                    } catch (CMemoryException const&) {
                        // A text longer than any text can be.
                    }
                }
            }
        }
    }
}

TEST(PrimitiveFormTest, OlderArchivesHoldTheFirstFieldsOfALayout)
{
    struct Row
    {
        char const* name;
        std::vector<std::pair<std::uint32_t, std::size_t>> unitsAtSchema;
    };
    Row const rows[] = {
        {"LitPrimitive", {{0, 2}, {6, 2}, {7, 3}, {0x7FFFFFFF, 3}, {negative, 2}, {unset, 2}}},
        {"TriangleMeshPrimitive", {{7, 5}, {18, 5}, {20, 5}, {21, 7}, {0x7FFFFFFF, 7}}},
        {"LineArrayPrimitive", {{7, 3}, {12, 3}, {13, 5}, {negative, 5}}},
        {"Text3DPrimitive", {{11, 6}, {negative, 6}}},
        {"TextStringPrimitive", {{10, 13}, {unset, 13}}},
        {"LightSource", {{0, 0}, {6, 0}, {7, 3}, {negative, 0}, {unset, 0}}},
        {"MaterialProperty", {{0, 6}, {unset, 6}}},
        {"GraphicsAttributes",
         {{0, 1}, {6, 1}, {7, 21}, {15, 21}, {16, 22}, {17, 22}, {18, 23}, {22, 23}, {23, 24}}},
    };
    for (Row const& row : rows) {
        Layout const& layout = LayoutOf(row.name);
        std::vector<Unit> const units = Units(layout);
        for (auto const& [schema, count] : row.unitsAtSchema) {
            SCOPED_TRACE(std::string(row.name) + " at " + std::to_string(schema));
            for (auto const& [loads, before] : loadsAndBefore) {
                auto const subject = MakeBefore(layout, before);
                EXPECT_EQ(subject->Load(Joined(units, count, loads), schema), 0u);
                EXPECT_EQ(ToHex(subject->Store(today)), ToHex(Joined(units, count, loads, before)));
            }
        }
    }
}

namespace {

std::string const D123 = P12 + "0000000000000840 ";
std::string const D456 = " 0000000000001040 0000000000001440 0000000000001840 ";
std::string const text3d = " 000000000000E03F 01000000";
std::string const attributesTail = " 0000803F 07000000 08000000 05000000 00*4 00*16 00 00*8 00*128 00*8 01 "
                                   "00*21 02000000";

/// Bytes of the filled object at numbers where they may be others than today's.
struct StoreRow
{
    char const* name;
    std::vector<std::uint32_t> schemas;
    std::string bytes;
};

StoreRow const storeRows[] = {
    {"Point3d", {0, 6, 19, unset}, D123},
    {"Point3d", {7, 18, 20, negative, unset - 1}, P123},
    {"Point2d", {6}, P12},
    {"Vertex", {19}, C1 + D123},
    {"VertexNormal", {6}, C1 + D123 + D456},
    {"LitPrimitive", {6}, "01020304 05000000 FEFFFFFF"},
    {"LightSource", {6, unset}, C1 + D123 + "01"},
    {"LineArrayPrimitive", {12}, "01020304 02000000" + line + newLine + "0000C03F"},
    {"LineArrayPrimitive", {13}, "01020304 02000000" + line + newLine + "0000C03F 01000000 0FF0"},
    {"Text3DPrimitive", {9, 10}, "01020304" + C1 + "03 48E93F 04 53616E73 0A000000" + P123 + text3d},
    {"Text3DPrimitive", {11}, "01020304" + C1 + P123 + "03 48E93F 04 53616E73 0A000000" + text3d},
    {"Text3DPrimitive", {unset}, "01020304" + C1 + D123 + "03 48E93F 04 53616E73 0A000000" + text3d},
    {"TriangleMeshPrimitive",
     {6},
     "01020304 05000000 FEFFFFFF 02000000 01000000 FEFFFFFF 03000000 04000000 05000000 06000000 01000000" +
         C1 + D123 + D456 + "01000000 01000000" + C2},
};

/// Bytes that a store does not make, and the object that they load into a new one, as it stores itself today.
struct LoadRow
{
    char const* name;
    std::uint32_t schema;
    std::string bytes;
    std::string state;
};

LoadRow const loadRows[] = {
    // A vertex is opaque at every number; other colours keep an alpha of 0 from 22 on.
    {"Vertex", today, "112233 00" + P123, "112233FF" + P123},
    {"VertexNormal", 22, "112233 00" + P123 + P456, "112233FF" + P123 + P456},
    {"PlanePrimitive", 21, P123 + P456 + "11223300", P123 + P456 + "112233FF"},
    {"PlanePrimitive", 22, P123 + P456 + "11223300", P123 + P456 + "11223300"},
    {"PlanePrimitive", negative, P123 + P456 + "11223300", P123 + P456 + "11223300"},
    // The first corner gives the colour.
    {"TrianglePrimitive", today, "00*12" + C1 + P123 + C2 + P456 + C2 + P789 + "00*12",
     "00*12" + C1 + P123 + C1 + P456 + C1 + P789 + "00*12"},
    // Face data in the archive are not believed, and colours after the first neither.
    {"TetrahedronPrimitive", today,
     "01020304 05000000 FEFFFFFF" + C1 + "00*12 FF*24" + C2 + "00004040 00*8 FF*24" + C2 +
         "00*4 00004040 00*4 FF*24" + C2 + "00*8 00004040 FF*24",
     "01020304 05000000 FEFFFFFF" + tetrahedron},
    // Any flag but 0 is true for these, in the order second, first, third.
    {"IconPrimitive", today, "00*20 07000000 02000000 00000000 00010000 00*8",
     "00*4 000000FF 00*12 07000000 01000000 00000000 01000000 00*8"},
    {"UnlitShapePrimitive", today, "00*20" + C1 + C2 + "02000000 00*4 00010000 FFFFFFFF 00*4",
     "00*20" + C1 + C2 + "01000000 00*4 01000000 01000000 00*4"},
    {"MaterialProperty", today, "80 00*20", "01 00*20"},
    // Only the whole word 1 is true for these.
    {"LineArrayPrimitive", today, "00*12 02000000 0000", "00*12 00000000 0000"},
    {"LineArrayPrimitive", today, "00*12 01010000 0000", "00*12 00000000 0000"},
    {"TextBoxPrimitive", today, "00*20" + C1 + C2 + "00*20 00 00 00*4 00*4 02000000 00*4 00010000",
     "00*20" + C1 + C2 + "00*20 00 00 00*4 00*4 00*4 00*4 00*4"},
    {"TextBoxPrimitive", today, "00*20" + C1 + C2 + "00*20 00 00 00*4 00*4 01000000 00*4 01000000",
     "00*20" + C1 + C2 + "00*20 00 00 00*4 00*4 01000000 00*4 01000000"},
    // The older text: an opaque colour before the text and the point after it; faces as text, then as
    // numbers.
    {"Text3DPrimitive", 10, "01020304" + C1 + "02 4869 04 53616E73 0A000000" + P123 + text3d,
     "01020304 112233FF" + P123 + "02 4869 04 53616E73 0A000000" + text3d},
    {"Text3DPrimitive", 9, "01020304" + C1 + "02 4869 03000000 0A000000" + P123 + text3d,
     "01020304 112233FF" + P123 + "02 4869 0B 436F7572696572204E6577 0A000000" + text3d},
    {"Text3DPrimitive", 0, "01020304" + C1 + "02 4869 02000000 0A000000" + D123 + text3d,
     "01020304 112233FF" + P123 + "02 4869 0F 54696D6573204E657720526F6D616E 0A000000" + text3d},
    {"Text3DPrimitive", 9, "01020304" + C1 + "00 04000000 0A000000" + P123 + text3d,
     "01020304 112233FF" + P123 + "00 05 417269616C 0A000000" + text3d},
    {"TextStringPrimitive", 9, "00*20" + C1 + C2 + "00*20 02 4869 01000000 0A000000 07000000 01000000",
     "00*20" + C1 + C2 + "00*20 02 4869 05 417269616C 0A000000 07000000 01000000"},
    {"TextStringPrimitive", 9, "00*20" + C1 + C2 + "00*20 02 4869 00000000 0A000000 07000000 01000000",
     "00*20" + C1 + C2 + "00*20 02 4869 05 417269616C 0A000000 07000000 01000000"},
    // Wide text, a length in a longer form than needed, and a zero character, where a text ends.
    {"Text3DPrimitive", today, "00*4" + C1 + "00*12 FF FEFF 02 4800 E900 FF 0100 41 00*4 00*12",
     "00*4" + C1 + "00*12 02 48E9 01 41 00*4 00*12"},
    {"Text3DPrimitive", today, "00*4" + C1 + "00*12 03 480069 00 00*4 00*12",
     "00*4" + C1 + "00*12 01 48 00 00*4 00*12"},
    // Signed tests: at these numbers a mesh ends after its vertices.
    {"TriangleMeshPrimitive", 6, "00*8 00*4 01000000" + C1 + D123 + D456,
     "00*12 00*4 01000000" + C1 + P123 + P456 + "00*8 000000FF"},
    {"TriangleMeshPrimitive", negative, "00*8 00*4 01000000" + C1 + P123 + P456,
     "00*12 00*4 01000000" + C1 + P123 + P456 + "00*8 000000FF"},
    {"TriangleMeshPrimitive", unset, "00*8 00*4 01000000" + C1 + D123 + D456,
     "00*12 00*4 01000000" + C1 + P123 + P456 + "00*8 000000FF"},
    // Light counts: more than the capacity, none, negative, and lights that take no bytes.
    {"GraphicsAttributes", today, C2 + "06000000" + C1 + P123 + "01" + C2 + "00*81" + attributesTail,
     C2 + "04000000" + C1 + P123 + "01" + C2 + "00*47 " +
         "0000803F 07000000 08000000 01000000 00*4 00*16 00 00*8 "
         "00*128 00*8 01 00*21 02000000"},
    {"GraphicsAttributes", today, C2 + "FFFFFFFF" + attributesTail, ""},
    {"GraphicsAttributes", unset, C2 + "FFFFFF7F" + attributesTail, ""},
    {"GraphicsAttributes", negative, C2 + "01000000" + attributesTail, ""},
};

} // namespace

TEST(PrimitiveFormTest, StoresFollowTheNumberOnlyWhereItCounts)
{
    for (StoreRow const& row : storeRows) {
        auto const subject = LayoutOf(row.name).make();
        subject->Fill();
        for (std::uint32_t schema : row.schemas) {
            EXPECT_EQ(ToHex(subject->Store(schema)), ToHex(FromHex(row.bytes)))
                << row.name << " at " << schema;
        }
    }
}

TEST(PrimitiveFormTest, LoadsTakeOlderAndOddBytes)
{
    std::string const darkLights = "04000000 000000FF 00*13 000000FF 00*13 000000FF 00*13 000000FF 00*13 ";
    std::string const noLights = C2 + darkLights +
                                 "0000803F 07000000 08000000 01000000 00*4 00*16 00 00*8 00*128 "
                                 "00*8 01 00*21 02000000";
    for (LoadRow const& row : loadRows) {
        SCOPED_TRACE(std::string(row.name) + " at " + std::to_string(row.schema) + ": " + row.bytes);
        auto const subject = LayoutOf(row.name).make();
        EXPECT_EQ(subject->Load(FromHex(row.bytes), row.schema), 0u);
        EXPECT_EQ(ToHex(subject->Store(today)), ToHex(FromHex(row.state.empty() ? noLights : row.state)));
    }
}
