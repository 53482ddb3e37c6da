#include "tests/persistence/ArchiveBytes.h"

#include "gtest/gtest.h"

#include <cfloat>
#include <cmath>
#include <limits>
#include <string>

using namespace VorlaneTest;
using Vorlane::operator<<;
using Vorlane::operator>>;

namespace {

using Points = Orrin::LegacyArray<Point3d>;

Bytes Stored(std::uint32_t schema, Points points)
{
    CMemFile file;
    CArchive ar(&file, CArchive::store);
    ar.m_nObjectSchema = schema;
    Vorlane::SerializePoint3dArray(ar, points);
    ar.Close();
    return file.Bytes();
}

} // namespace

TEST(ArchiveFormTest, OperatorsFollowTheModeOfTheArchive)
{
    CMemFile file;
    CArchive storing(&file, CArchive::store);
    Point2d point2d = p12;
    Point3d point3d = p123;
    Matrix3x3 matrix3x3;
    Matrix4x4 matrix4x4;
    Fill(matrix3x3);
    Fill(matrix4x4);
    storing << point2d << point3d << matrix3x3 << matrix4x4; // an inserter stores ...
    storing >> point2d >> point3d >> matrix3x3 >> matrix4x4; // ... and so does an extractor
    storing.Close();
    EXPECT_EQ(file.Bytes().size(), 2u * (16 + 24 + 72 + 128));

    file.SeekToBegin();
    CArchive loading(&file, CArchive::load);
    Point2d loaded2d;
    Point3d loaded3d;
    Matrix3x3 loaded3x3;
    Matrix4x4 loaded4x4;
    loading << loaded2d << loaded3d << loaded3x3 << loaded4x4;
    EXPECT_EQ(loaded2d.y, 2);
    EXPECT_EQ(loaded3d.z, 3);
    EXPECT_EQ(loaded3x3(2, 0), 2);
    EXPECT_EQ(loaded4x4(3, 0), 2);
    loaded2d = Point2d();
    loading >> loaded2d;
    EXPECT_EQ(loaded2d.x, 1);
}

TEST(ArchiveFormTest, CoordinatesRoundToTheNearestFloat)
{
    struct Row
    {
        double stored;
        float expected;
    };
    double const inf = std::numeric_limits<double>::infinity();
    float const floatInf = std::numeric_limits<float>::infinity();
    Row const rows[] = {
        {0.1, 0.1f},
        {1.0 + 0x1p-24, 1.0f}, // half a step: to the even neighbour
        {1.0 + 0x1.8p-23, 1.0f + 0x1p-22f},
        {FLT_MAX, FLT_MAX},
        {0x1.fffffefffffffp127, FLT_MAX},
        {0x1.ffffffp127, floatInf},
        {1e300, floatInf},
        {-1e300, -floatInf},
        {-inf, -floatInf},
        {1e-300, 0.0f},
        {0x1p-149, 0x1p-149f},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.stored);
        SubjectOf<Point3d> subject;
        subject.object.y = row.stored;
        subject.Load(subject.Store(24), 24);
        EXPECT_EQ(subject.object.y, static_cast<double>(row.expected));
    }
    SubjectOf<Point3d> subject;
    subject.object = Point3d(-0.0, std::nan(""), 0);
    subject.Load(subject.Store(24), 24);
    EXPECT_TRUE(std::signbit(subject.object.x));
    EXPECT_TRUE(std::isnan(subject.object.y));
}

TEST(ArchiveFormTest, CountsOfArraysHaveTwoOrSixBytes)
{
    Points points;
    EXPECT_EQ(ToHex(Stored(24, points)), "0000");
    points.SetSize(65534, -1);
    points[65533] = p123;
    Bytes bytes = Stored(24, points);
    EXPECT_EQ(bytes.size(), 2 + 65534u * 12);
    EXPECT_EQ(ToHex(Bytes(bytes.end() - 12, bytes.end())), ToHex(FromHex("0000803F 00000040 00004040")));
    points.SetSize(65535, -1);
    bytes = Stored(6, points);
    EXPECT_EQ(bytes.size(), 6 + 65535u * 24);
    EXPECT_EQ(ToHex(Bytes(bytes.begin(), bytes.begin() + 6)), "FFFFFFFF0000");

    CMemFile file(bytes);
    CArchive ar(&file, CArchive::load);
    ar.m_nObjectSchema = 6;
    Points loaded;
    Vorlane::SerializePoint3dArray(ar, loaded);
    EXPECT_EQ(loaded.GetSize(), 65535);
    EXPECT_EQ(loaded[65533].z, 3);
}

TEST(ArchiveFormTest, ArrayOfAnArchiveThatEndsEarlyHasItsSizeAndTheRestIsOldOrZero)
{
    Points points;
    for (int i = 0; i < 3; ++i) {
        points.push_back(p789);
    }
    CMemFile file(FromHex("0400 0000803F 00000040 00004040 00008040 0000A040 0000"));
    CArchive ar(&file, CArchive::load);
    ar.m_nObjectSchema = 24;
    EXPECT_THROW(Vorlane::SerializePoint3dArray(ar, points), CArchiveException);
    ASSERT_EQ(points.GetSize(), 4);
    EXPECT_EQ(points[0].x, 1); // read
    EXPECT_EQ(points[1].x, 7); // half read: untouched
    EXPECT_EQ(points[2].x, 7); // old
    EXPECT_EQ(points[3].x, 0); // new
}

TEST(ArchiveFormTest, ArrayOfPlanePointsLoadsInPlaceOfAnOlderOne)
{
    Orrin::LegacyArray<Point2d> points;
    points.SetSize(3, -1);
    CMemFile file(FromHex("0100 000000000000F03F 0000000000000040"));
    CArchive ar(&file, CArchive::load);
    Vorlane::SerializePoint2dArray(ar, points);
    ASSERT_EQ(points.GetSize(), 1);
    EXPECT_EQ(points[0].y, 2);
}
