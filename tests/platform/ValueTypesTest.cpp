#include "vorlane/foundation/ValueTypes.h"

#include "tests/support/AllocationFailure.h"

#include "gtest/gtest.h"

#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

using Orrin::Color;
using Spatia::Matrix3x3;
using Spatia::Matrix4x4;
using Spatia::Point2d;
using Spatia::Point3d;

namespace {

using Doubles = std::vector<double>;
using Words = std::vector<std::uint32_t>;

Doubles Coordinates(std::initializer_list<Point3d> points)
{
    Doubles all;
    for (Point3d const& point : points) {
        all.insert(all.end(), {point.x, point.y, point.z});
    }
    return all;
}

} // namespace

TEST(Point3dTest, IsThreeDoublesWithTheOperationsOfAVector)
{
    static_assert(sizeof(Point3d) == 24 && std::is_trivially_copyable_v<Point3d>);
    static_assert(sizeof(Point2d) == 16 && std::is_trivially_copyable_v<Point2d>);
    EXPECT_EQ(Coordinates({Point3d(), Point3d::origin, Point3d::zero}), Doubles(9));
    EXPECT_EQ(Coordinates({Point3d::iVector, Point3d::jVector, Point3d::kVector}),
              (Doubles{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    Point3d point(0, 3, -4);
    Point3d zero;
    EXPECT_EQ(point.Length(), 5);
    EXPECT_EQ(&point.ChangeLength(10), &point);
    EXPECT_EQ(Coordinates({point, zero.ChangeLength(2)}), (Doubles{0, 6, -8, 0, 0, 0}));
    EXPECT_EQ(&point.Normalize(), &point);
    EXPECT_EQ(Coordinates({point, zero.Normalize()}), (Doubles{0, 0.6, -0.8, 0, 0, 0}));
    Point3d const a(1, 2, 3);
    Point3d const b(-4, 5, 7);
    EXPECT_EQ(a.Distance2(b), 25 + 9 + 16);
    EXPECT_EQ(Coordinates({Point3d::iVector.Cross(Point3d::jVector), a.Cross(b), a - b, 2 * a + b}),
              (Doubles{0, 0, 1, -1, -19, 13, 5, -3, -4, -2, 9, 13}));
    // A row vector times a matrix: the second row of the matrix is the image of the second axis.
    Matrix3x3 const matrix(1, 2, 3, 4, 5, 6, 7, 8, 9);
    EXPECT_EQ(Coordinates({Point3d::jVector * matrix, a * matrix}), (Doubles{4, 5, 6, 30, 36, 42}));
}

TEST(MatrixTest, TagsGiveTheConstantMatrices)
{
    static_assert(!std::is_same_v<Matrix3x3::NullMatrixTag, Matrix3x3::IdentityMatrixTag>);
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(Matrix3x3(Matrix3x3::NullMatrix)(i / 3, i % 3), 0);
        EXPECT_EQ(Matrix3x3(Matrix3x3::IdentityMatrix)(i / 3, i % 3), i % 4 == 0 ? 1 : 0);
    }
    EXPECT_EQ(Matrix4x4(Matrix4x4::NullMatrix)(3, 3), 0);
}

TEST(ColorTest, PacksRedLowestAndAlphaHighest)
{
    Color color(0x04030201u);
    EXPECT_EQ((Words{color.GetRed(), color.GetGreen(), color.GetBlue(), color.GetAlpha()}),
              (Words{1, 2, 3, 4}));
    color.SetAlpha(0xFE);
    Color rgb(color);
    rgb.SetRGB(0x99AABBCCul);
    EXPECT_EQ((Words{Color().GetPacked(), color.GetPacked(), rgb.GetPacked(), Color::Cyan().GetPacked(),
                     Color::Yellow().GetBlue()}),
              (Words{0xFF000000u, 0xFE030201u, 0xFFAABBCCu, 0xFFFFFF00u, 0}));
}

TEST(LegacyArrayTest, HasNoDataWhenEmpty)
{
    Orrin::LegacyArray<Point3d> points;
    EXPECT_EQ(points.GetData(), nullptr);
    points.push_back(Point3d(1, 2, 3));
    EXPECT_EQ(Coordinates({*points.GetData()}), (Doubles{1, 2, 3}));
    points.clear();
    EXPECT_EQ(points.GetData(), nullptr); // with storage
}

TEST(LegacyArrayTest, SizesOutsideThirtyTwoBitsAreRefusedEvenWithoutMemory)
{
    Orrin::LegacyArray<Point3d> points;
    points.SetSize(1, -1);
    try {
        points.SetSize(0x80000000L, -1);
        ADD_FAILURE() << "accepted";
    } catch (std::length_error const& error) {
        EXPECT_STREQ(error.what(), "vector<T> too long");
    }
    EXPECT_THROW(points.SetSize(-1, -1), std::length_error);
    EXPECT_THROW(points.reserve(0x80000000u), std::length_error);
    {
        VorlaneTest::AllocationFailure const noMemoryToTellWhy(0);
        EXPECT_THROW(points.SetSize(-1, -1), CMemoryException);
    }
    EXPECT_EQ(points.GetSize(), 1);
    EXPECT_THROW(Orrin::ColorArray(-1, 1), std::length_error);
}

TEST(ColorArrayTest, CopiesColoursAndName)
{
    Orrin::ColorArray spectrum("ramp", 2, 1);
    spectrum.SetAt(1, Color::Red());
    Orrin::ColorArray const copy(spectrum);
    spectrum.SetName(nullptr);
    EXPECT_EQ(spectrum.GetName(), "");
    EXPECT_EQ(copy.GetName(), "ramp");
    EXPECT_TRUE(copy[0] == Color() && copy[1] == Color::Red());
}

TEST(TextConversionTest, BytesSurviveAndWiderCharactersBecomeQuestionMarks)
{
    EXPECT_EQ(Orrin::ToWString("a\xE9"), (std::wstring{L'a', wchar_t{0xE9}}));
    EXPECT_EQ(Orrin::ToSString({L'a', wchar_t{0xE9}, wchar_t{0x100}, wchar_t{-1}, wchar_t{0xFF}}),
              "a\xE9??\xFF");
    EXPECT_EQ(Orrin::Font::DefaultFont().GetFace(), L"Arial");
    EXPECT_EQ(Orrin::Font::DefaultFont().GetSize(), 12);
}
