#include "vorlane/foundation/ValueTypes.h"

#include "gtest/gtest.h"

#include <cmath>
#include <limits>
#include <type_traits>

using Orrin::Color;
using Spatia::Matrix3x3;
using Spatia::Matrix4x4;
using Spatia::Point2d;
using Spatia::Point3d;

namespace {

void ExpectPoint(Point3d const& point, double x, double y, double z)
{
    EXPECT_EQ(point.x, x);
    EXPECT_EQ(point.y, y);
    EXPECT_EQ(point.z, z);
}

} // namespace

TEST(Point3dTest, IsThreeDoublesAndStartsAtZero)
{
    static_assert(sizeof(Point3d) == 24 && std::is_trivially_copyable_v<Point3d>);
    static_assert(sizeof(Point2d) == 16 && std::is_trivially_copyable_v<Point2d>);
    ExpectPoint(Point3d(), 0, 0, 0);
    ExpectPoint(Point3d::origin, 0, 0, 0);
    ExpectPoint(Point3d::zero, 0, 0, 0);
    ExpectPoint(Point3d::iVector, 1, 0, 0);
    ExpectPoint(Point3d::jVector, 0, 1, 0);
    ExpectPoint(Point3d::kVector, 0, 0, 1);
}

TEST(Point3dTest, ScalesToALengthAndReturnsItself)
{
    Point3d point(0, 3, -4);
    EXPECT_EQ(point.Length(), 5);
    EXPECT_EQ(&point.ChangeLength(10), &point);
    ExpectPoint(point, 0, 6, -8);
    EXPECT_EQ(&point.Normalize(), &point);
    ExpectPoint(point, 0, 0.6, -0.8);
}

TEST(Point3dTest, ZeroLengthStaysZero)
{
    Point3d point;
    point.Normalize();
    ExpectPoint(point, 0, 0, 0);
    point.ChangeLength(2);
    ExpectPoint(point, 0, 0, 0);
}

TEST(Point3dTest, ProductsKeepTheirOrder)
{
    Point3d const a(1, 2, 3);
    Point3d const b(-4, 5, 7);
    ExpectPoint(Point3d::iVector.Cross(Point3d::jVector), 0, 0, 1);
    ExpectPoint(a.Cross(b), -1, -19, 13);
    EXPECT_EQ(a.Distance2(b), 25 + 9 + 16);
    ExpectPoint(a - b, 5, -3, -4);
    ExpectPoint(2 * a + b, -2, 9, 13);
    // A row vector times a matrix: the second row of the matrix is the image of the second axis.
    Matrix3x3 const matrix(1, 2, 3, 4, 5, 6, 7, 8, 9);
    ExpectPoint(Point3d::jVector * matrix, 4, 5, 6);
    ExpectPoint(a * matrix, 30, 36, 42);
}

TEST(MatrixTest, TagsGiveTheConstantMatrices)
{
    static_assert(!std::is_same_v<Matrix3x3::NullMatrixTag, Matrix3x3::IdentityMatrixTag>);
    Matrix3x3 const null(Matrix3x3::NullMatrix);
    Matrix3x3 const identity(Matrix3x3::IdentityMatrix);
    Matrix4x4 const null4(Matrix4x4::NullMatrix);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            EXPECT_EQ(null(row, column), 0);
            EXPECT_EQ(identity(row, column), row == column ? 1 : 0);
        }
    }
    EXPECT_EQ(null4(3, 3), 0);
}

TEST(ColorTest, PacksRedLowestAndAlphaHighest)
{
    EXPECT_EQ(Color().GetPacked(), 0xFF000000u);
    Color color(0x04030201u);
    EXPECT_EQ(color.GetRed(), 1);
    EXPECT_EQ(color.GetGreen(), 2);
    EXPECT_EQ(color.GetBlue(), 3);
    EXPECT_EQ(color.GetAlpha(), 4);
    color.SetAlpha(0xFE);
    EXPECT_EQ(color.GetPacked(), 0xFE030201u);
    color.SetRGB(0x99AABBCCul);
    EXPECT_EQ(color.GetPacked(), 0xFFAABBCCu);
    EXPECT_EQ(Color::Cyan().GetPacked(), 0xFFFFFF00u);
    EXPECT_EQ(Color::Yellow().GetBlue(), 0);
}

TEST(LegacyArrayTest, EmptyArrayHasNoDataEvenWithStorage)
{
    Orrin::LegacyArray<Point3d> points;
    EXPECT_EQ(points.GetData(), nullptr);
    points.push_back(Point3d(1, 2, 3));
    EXPECT_NE(points.GetData(), nullptr);
    points.clear();
    EXPECT_EQ(points.GetSize(), 0);
    EXPECT_EQ(points.GetData(), nullptr);
}

TEST(LegacyArrayTest, SizesOutsideThirtyTwoBitsAreRefusedAsTooLong)
{
    Orrin::LegacyArray<Point3d> points;
    points.push_back(Point3d(1, 2, 3));
    long const refused[] = {-1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() + 1L};
    for (long size : refused) {
        SCOPED_TRACE(size);
        try {
            points.SetSize(size, -1);
            ADD_FAILURE() << "accepted";
        } catch (std::length_error const& error) {
            EXPECT_STREQ(error.what(), "vector<T> too long");
        }
        EXPECT_EQ(points.GetSize(), 1);
    }
    EXPECT_THROW(points.reserve(0x80000000u), std::length_error);
    EXPECT_THROW(Orrin::ColorArray(-1, 1), std::length_error);
}

TEST(LegacyArrayTest, AppendsAnEntryOfItself)
{
    Orrin::LegacyArray<Point3d> points;
    points.push_back(Point3d(1, 2, 3));
    for (int i = 0; i < 100; ++i) {
        points.push_back(points[0]);
    }
    ExpectPoint(points[100], 1, 2, 3);
}

TEST(ColorArrayTest, CopiesColoursAndName)
{
    Orrin::ColorArray spectrum("ramp", 2, 1);
    spectrum.SetAt(1, Color::Red());
    Orrin::ColorArray copy(spectrum);
    spectrum.SetName(nullptr);
    EXPECT_EQ(spectrum.GetName(), "");
    EXPECT_EQ(copy.GetName(), "ramp");
    EXPECT_EQ(copy[0], Color());
    EXPECT_EQ(copy[1], Color::Red());
}

TEST(TextConversionTest, AllBytesSurviveAndWiderCharactersBecomeQuestionMarks)
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes.push_back(static_cast<char>(byte));
    }
    std::wstring const wide = Orrin::ToWString(bytes);
    EXPECT_EQ(wide[0xE9], wchar_t{0xE9});
    EXPECT_EQ(Orrin::ToSString(wide), bytes);
    EXPECT_EQ(Orrin::ToSString(std::wstring{L'a', wchar_t{0x100}, wchar_t{-1}, wchar_t{0xFF}}), "a??\xFF");
}

TEST(FontTest, DefaultIsArialTwelve)
{
    Orrin::Font const font = Orrin::Font::DefaultFont();
    EXPECT_EQ(font.GetFace(), L"Arial");
    EXPECT_EQ(font.GetSize(), 12);
}
