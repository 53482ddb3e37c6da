#include "vorlane/coordination/AnisotropicDisplacement.h"

#include "gtest/gtest.h"

#include <limits>
#include <vector>

using Vorlane::AnisotropicDisplacement;

namespace {

void ExpectMatrix(Spatia::Matrix3x3 const& matrix, std::vector<double> const& expected)
{
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(matrix(i / 3, i % 3), expected[static_cast<std::size_t>(i)]) << i;
    }
}

} // namespace

TEST(AnisotropicDisplacementTest, HandsOutItsComponents)
{
    ExpectMatrix(AnisotropicDisplacement().GetMatrix(), {1, 0, 0, 0, 1, 0, 0, 0, 1});
    ExpectMatrix(AnisotropicDisplacement().GetUncertaintyMatrix(), {0, 0, 0, 0, 0, 0, 0, 0, 0});

    AnisotropicDisplacement const counted(1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 9.0f, 10.0f, 11.0f,
                                          12.0f);
    ExpectMatrix(counted.GetMatrix(), {1, 4, 5, 4, 2, 6, 5, 6, 3});
    ExpectMatrix(counted.GetUncertaintyMatrix(), {7, 10, 11, 10, 8, 12, 11, 12, 9});

    AnisotropicDisplacement copied;
    copied.SetU11(counted.GetU11());
    copied.SetU12(counted.GetU12());
    copied.SetU13(counted.GetU13());
    copied.SetU22(counted.GetU22());
    copied.SetU23(counted.GetU23());
    copied.SetU33(counted.GetU33());
    copied.SetSigu11(counted.GetSigu11());
    copied.SetSigu12(counted.GetSigu12());
    copied.SetSigu13(counted.GetSigu13());
    copied.SetSigu22(counted.GetSigu22());
    copied.SetSigu23(counted.GetSigu23());
    copied.SetSigu33(counted.GetSigu33());
    copied = *&copied;
    ExpectMatrix(copied.GetMatrix(), {1, 4, 5, 4, 2, 6, 5, 6, 3});
    ExpectMatrix(copied.GetUncertaintyMatrix(), {7, 10, 11, 10, 8, 12, 11, 12, 9});
}

TEST(AnisotropicDisplacementTest, RoundsDoublesToFloats)
{
    double const largest = std::numeric_limits<float>::max();
    double const infinity = std::numeric_limits<double>::infinity();
    AnisotropicDisplacement const rounded(0.1, largest, 0x1.fffffefp127, 0x1.ffffffp127, -1e300, -infinity,
                                          1e-60, -0.5, std::numeric_limits<double>::quiet_NaN(), 0.0, 0.0,
                                          0.0);
    EXPECT_EQ(rounded.GetU11(), 0.1f);
    EXPECT_EQ(rounded.GetU22(), largest);
    EXPECT_EQ(rounded.GetU33(), largest);
    EXPECT_EQ(rounded.GetU12(), infinity);
    EXPECT_EQ(rounded.GetU13(), -infinity);
    EXPECT_EQ(rounded.GetU23(), -infinity);
    EXPECT_EQ(rounded.GetSigu11(), 0.0f);
    EXPECT_EQ(rounded.GetSigu22(), -0.5f);
    EXPECT_NE(rounded.GetSigu33(), rounded.GetSigu33());
}

TEST(AnisotropicDisplacementTest, ArraysFillWithUnitTensorsAndCopy)
{
    AnisotropicDisplacement::Array array(2, 0);
    EXPECT_EQ(AnisotropicDisplacement::Array(0, 5).GetSize(), 0);
    array.SetSize(20, -1);
    ExpectMatrix(array[1].GetMatrix(), {1, 0, 0, 0, 1, 0, 0, 0, 1});
    ExpectMatrix(array[19].GetMatrix(), {1, 0, 0, 0, 1, 0, 0, 0, 1});
    array[19].SetU12(0.5f);
    AnisotropicDisplacement::Array copy(array);
    array = AnisotropicDisplacement::Array();
    EXPECT_EQ(array.GetSize(), 0);
    array = copy;
    array = *&array;
    EXPECT_EQ(array.GetSize(), 20);
    ExpectMatrix(array[19].GetMatrix(), {1, 0.5, 0, 0.5, 1, 0, 0, 0, 1});
}

TEST(AnisotropicDisplacementTest, ArchivesHoldTheFloatsInConstructorOrder)
{
    // The count, then 48 bytes of element 0: 1 to 12 as floats, and of element 1, the unit tensor.
    std::vector<unsigned char> expected = {2, 0};
    for (unsigned int bits : {0x3F800000u, 0x40000000u, 0x40400000u, 0x40800000u, 0x40A00000u, 0x40C00000u,
                              0x40E00000u, 0x41000000u, 0x41100000u, 0x41200000u, 0x41300000u, 0x41400000u,
                              0x3F800000u, 0x3F800000u, 0x3F800000u, 0u,          0u,          0u,
                              0u,          0u,          0u,          0u,          0u,          0u}) {
        for (int shift = 0; shift < 32; shift += 8) {
            expected.push_back(static_cast<unsigned char>(bits >> shift));
        }
    }
    AnisotropicDisplacement::Array array(2, 1);
    array[0] = AnisotropicDisplacement(1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0, 11.0, 12.0);
    CMemFile stored;
    CArchive storing(&stored, CArchive::store);
    array.Serialize(storing);
    storing.Close();
    EXPECT_EQ(stored.Bytes(), expected);

    CMemFile file(expected);
    CArchive loading(&file, CArchive::load);
    AnisotropicDisplacement::Array loaded(7, 1);
    loaded.Serialize(loading);
    ASSERT_EQ(loaded.GetSize(), 2);
    ExpectMatrix(loaded[0].GetUncertaintyMatrix(), {7, 10, 11, 10, 8, 12, 11, 12, 9});
    ExpectMatrix(loaded[1].GetMatrix(), {1, 0, 0, 0, 1, 0, 0, 0, 1});
}
