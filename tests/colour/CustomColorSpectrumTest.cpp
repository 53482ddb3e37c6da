#include "vorlane/colour/CustomColorSpectrum.h"
#include "tests/colour/ColourTesting.h"

#include "gtest/gtest.h"

#include <utility>

using namespace VorlaneTest;

TEST(CustomColorSpectrumTest, FreshSpectraAreUndefinedAndOfAClampedSize)
{
    CustomColorSpectrum const plain;
    EXPECT_EQ(plain.GetColorArray().GetName() + FlagsOf(plain), "Default Spectrum--");
    EXPECT_TRUE(plain.IsEditable());
    for (auto const& [asked, given] :
         {std::pair(-5, 2u), {1, 2u}, {2, 2u}, {10, 10u}, {128, 128u}, {129, 128u}}) {
        CustomColorSpectrum const spectrum(CString("a\0b", 3), asked, false);
        EXPECT_EQ(ColorsOf(spectrum.GetColorArray()), Packed(given, black));
        EXPECT_EQ(spectrum.GetColorArray().GetName() + FlagsOf(spectrum), "a" + std::string(given, '-'));
        EXPECT_FALSE(spectrum.IsEditable() || CustomColorSpectrum::Rainbow1().IsEditable());
    }
}
