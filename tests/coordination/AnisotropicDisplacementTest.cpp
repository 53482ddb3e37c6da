#include "vorlane/coordination/AnisotropicDisplacement.h"

#include "tests/support/ArchivedBytes.h"

#include <limits>

using Vorlane::AnisotropicDisplacement;
using namespace VorlaneTest;

namespace {

using Numbers = std::vector<double>;

Numbers ElementsOf(Spatia::Matrix3x3 const& matrix)
{
    Numbers elements;
    for (int i = 0; i < 9; ++i) {
        elements.push_back(matrix(i / 3, i % 3));
    }
    return elements;
}

/// By the accessors, in the order of the constructors.
Numbers ComponentsOf(AnisotropicDisplacement const& u)
{
    return {u.GetU11(),    u.GetU22(),    u.GetU33(),    u.GetU12(),    u.GetU13(),    u.GetU23(),
            u.GetSigu11(), u.GetSigu22(), u.GetSigu33(), u.GetSigu12(), u.GetSigu13(), u.GetSigu23()};
}

Numbers const unit = {1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0}, counted = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
AnisotropicDisplacement const count(1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0, 11.0, 12.0);

} // namespace

TEST(AnisotropicDisplacementTest, HandsOutItsComponents)
{
    using U = AnisotropicDisplacement;
    EXPECT_EQ(ComponentsOf(U()), unit);
    EXPECT_EQ(ComponentsOf(count), counted);
    EXPECT_EQ(ElementsOf(count.GetMatrix()), (Numbers{1, 4, 5, 4, 2, 6, 5, 6, 3}));
    EXPECT_EQ(ElementsOf(count.GetUncertaintyMatrix()), (Numbers{7, 10, 11, 10, 8, 12, 11, 12, 9}));
    void (U::*const setters[])(float) = {&U::SetU11,    &U::SetU22,    &U::SetU33,    &U::SetU12,
                                         &U::SetU13,    &U::SetU23,    &U::SetSigu11, &U::SetSigu22,
                                         &U::SetSigu33, &U::SetSigu12, &U::SetSigu13, &U::SetSigu23};
    for (std::size_t n = 0; n < counted.size(); ++n) {
        U changed;
        Numbers expected = unit;
        expected[n] = 0.5;
        (changed.*setters[n])(0.5f);
        EXPECT_EQ(ComponentsOf(changed), expected);
    }
}

TEST(AnisotropicDisplacementTest, RoundsDoublesToFloats)
{
    double const largest = std::numeric_limits<float>::max();
    double const infinity = std::numeric_limits<double>::infinity();
    AnisotropicDisplacement const rounded(0.1, largest, 0x1.fffffefp127, 0x1.ffffffp127, -1e300, -infinity,
                                          1e-60, -0.5, -0x1.fffffefp127, 0.0, 1.0,
                                          std::numeric_limits<double>::quiet_NaN());
    Numbers components = ComponentsOf(rounded);
    EXPECT_NE(components.back(), components.back());
    components.pop_back();
    EXPECT_EQ(components,
              (Numbers{0.1f, largest, largest, infinity, -infinity, -infinity, 0, -0.5, -largest, 0, 1}));
}

TEST(AnisotropicDisplacementTest, ArraysFillWithUnitTensorsCopyAndArchive)
{
    AnisotropicDisplacement::Array array(2, 0), copy(7, 1);
    EXPECT_EQ(AnisotropicDisplacement::Array(0, 5).GetSize(), 0);
    array.SetSize(20, -1);
    for (int n : {1, 19}) {
        EXPECT_EQ(ComponentsOf(array[n]), unit);
    }
    array[0] = count;
    copy = AnisotropicDisplacement::Array(array);
    array = AnisotropicDisplacement::Array();
    EXPECT_EQ(array.GetSize(), 0);
    copy.SetSize(2, -1);
    copy = *&copy;
    EXPECT_EQ(ComponentsOf(copy[0]), counted);

    // The count, then 48 bytes of element 0: 1 to 12 as floats, and of element 1, the unit tensor.
    Bytes expected = {2, 0};
    for (unsigned int bits : {0x3F800000u, 0x40000000u, 0x40400000u, 0x40800000u, 0x40A00000u, 0x40C00000u,
                              0x40E00000u, 0x41000000u, 0x41100000u, 0x41200000u, 0x41300000u, 0x41400000u,
                              0x3F800000u, 0x3F800000u, 0x3F800000u, 0u,          0u,          0u,
                              0u,          0u,          0u,          0u,          0u,          0u}) {
        for (int shift = 0; shift < 32; shift += 8) {
            expected.push_back(static_cast<unsigned char>(bits >> shift));
        }
    }
    EXPECT_EQ(StoredBytes(unsetSchema, [&](CArchive& ar) { copy.Serialize(ar); }), expected);
    AnisotropicDisplacement::Array loaded(7, 1);
    EXPECT_EQ(LoadBytes(unsetSchema, expected, [&](CArchive& ar) { loaded.Serialize(ar); }), 0);
    ASSERT_EQ(loaded.GetSize(), 2);
    EXPECT_EQ(ComponentsOf(loaded[0]), counted);
    EXPECT_EQ(ComponentsOf(loaded[1]), unit);
}
