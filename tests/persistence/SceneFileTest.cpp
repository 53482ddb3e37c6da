#include "tests/persistence/ArchiveBytes.h"
#include "tests/support/AllocationFailure.h"

#include "gtest/gtest.h"

#include <cmath>
#include <stdexcept>
#include <string>

using namespace VorlaneTest;

TEST(SceneFileTest, FullDeviceIsReported)
{
    SubjectOf<TriangleMeshPrimitive> mesh;
    mesh.object.Set(std::vector<VertexNormal>(10000), {});
    for (int bufferSize : {16, 1 << 20}) {
        SCOPED_TRACE(bufferSize);
        CFile full("/dev/full", CFile::modeWrite);
        CArchive ar(&full, CArchive::store, bufferSize);
        EXPECT_THROW(
            {
                mesh.Transfer(ar);
                ar.Close();
            },
            CFileException);
    }
}

TEST(SceneFileTest, CountsBeyondTheArchiveEndSoonAndTakeLittle)
{
    struct Row
    {
        char const* name;
        MakeSubject make;
        std::string before;
        bool hasCountForm;
    };
    Row const rows[] = {
        {"points of a line", Make<UnlitLinePrimitive>, "00*4", true},
        {"points of an arc", Make<ArcPrimitive>, "00*44", true},
        {"lines", Make<LineArrayPrimitive>, "00*4", false},
        {"triangles", Make<TriangleMeshPrimitive>, "00*12", false},
        {"vertices", Make<TriangleMeshPrimitive>, "00*16", false},
        {"colours", Make<VolumePrimitive>, "00*24", false},
        {"transfer entries", Make<VolumePrimitive>, "00*32", false},
    };
    AllocationLimit const limit(32 << 20);
    for (Row const& row : rows) {
        for (char const* count : {"FFFFFFFF", "00000080", "FFFFFF7F", "00000001"}) {
            SCOPED_TRACE(std::string(row.name) + " with " + count);
            Bytes const bytes = FromHex(row.before + (row.hasCountForm ? " FFFF " : " ") + count + " 01*100");
            bool const isNegative = FromHex(count)[3] >= 0x80;
            std::string raised;
            try {
                row.make()->Load(bytes, 24);
            } catch (CArchiveException const& exception) {
                raised = "cause " + std::to_string(exception.m_cause);
            } catch (std::length_error const& exception) {
                raised = exception.what();
            }
            EXPECT_EQ(raised, isNegative ? "vector<T> too long" : "cause 3");
        }
    }
}

TEST(SceneFileTest, FailedListsLeaveWhatTheyShould)
{
    // The lines before the failure stay; a mesh keeps its geometry, and a volume loses its colours.
    SubjectOf<LineArrayPrimitive> lines;
    lines.Fill();
    EXPECT_THROW(lines.Load(FromHex("00*4 03000000 00*44 00*43"), 24), CArchiveException);
    EXPECT_EQ(lines.object.GetLineArray().size(), 1u);
    EXPECT_THROW(lines.Load(FromHex("00*4 FFFFFFFF"), 24), std::length_error);
    EXPECT_TRUE(lines.object.GetLineArray().empty());

    SubjectOf<TriangleMeshPrimitive> mesh;
    mesh.Fill();
    EXPECT_THROW(mesh.Load(FromHex("00*12 00*4 FFFFFFFF"), 24), std::length_error);
    EXPECT_EQ(mesh.object.GetNumTriangles(), 2);
    EXPECT_EQ(mesh.object.litWord1, 0);
    EXPECT_EQ(mesh.Load(FromHex("00*12 00*8 00*12"), 24), 0u);
    EXPECT_EQ(mesh.object.GetNumTriangles(), 0);

    SubjectOf<VolumePrimitive> volume;
    volume.Fill();
    int attached = 0;
    volume.object.SetVolume(reinterpret_cast<Spatia::NComponentVolume<float>*>(&attached));
    EXPECT_THROW(volume.Load(FromHex("00*4 00*20 02000000 11223344"), 24), CArchiveException);
    EXPECT_EQ(volume.object.GetVolume(), nullptr);
    EXPECT_EQ(volume.object.GetColors().GetSize(), 1);
    EXPECT_EQ(volume.object.GetTransferFunction().size(), 3u);
}

TEST(SceneFileTest, TetrahedronComputesItsFacesAndKeepsItsBase)
{
    SubjectOf<TetrahedronPrimitive> subject;
    subject.Fill();
    TetrahedronPrimitive& tetrahedron = subject.object;
    // Swapping two corners turns the orientation; the normals still point outward.
    Point3d a, b, c, d;
    tetrahedron.GetTetrahedronVertices(a, b, c, d);
    tetrahedron = TetrahedronPrimitive(b, a, c, d);
    EXPECT_EQ(tetrahedron.headerWord, 0x04030201);
    EXPECT_EQ(tetrahedron.GetColor(), Orrin::Color());
    Point3d const normal = tetrahedron.GetFaceNormal(1);
    EXPECT_NEAR(normal.x, std::sqrt(1.0 / 3), 1e-15);
    EXPECT_NEAR(normal.Length(), 1, 1e-15);
    EXPECT_EQ(tetrahedron.GetFaceCentroid(1).y, 1);
    EXPECT_THROW(tetrahedron.GetFaceNormal(4), CInvalidArgException);
    EXPECT_EQ(TetrahedronPrimitive(a, a, a, a).GetFaceNormal(0).Length(), 0); // no area, no direction
}
