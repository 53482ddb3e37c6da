#include "vorlane/colour/CustomColorSpectrum.h"
#include "tests/colour/ColourTesting.h"
#include "tests/support/Seed.h"

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

TEST(CustomColorSpectrumTest, CopiesKeepTheStateOfTheirTime)
{
    CustomColorSpectrum spectrum("edited", 10, false);
    spectrum.SetColor(4, red);
    CustomColorSpectrum const copy(spectrum);
    spectrum.SetColor(8, blue);
    for (int const index : {-1, 10, 0x7FFFFFFF}) {
        Color color(7);
        spectrum.SetColor(index, color);
        spectrum.UndefineColor(index);
        EXPECT_FALSE(spectrum.GetColor(index, color));
        EXPECT_EQ(color, Color(7));
    }
    CustomColorSpectrum assigned;
    assigned = spectrum;
    spectrum.UndefineColor(4);
    EXPECT_EQ(ColorsOf(spectrum.GetColorArray()), Packed(10, blue));
    EXPECT_EQ(ColorsOf(copy.GetColorArray()), Packed(10, red));
    EXPECT_EQ(FlagsOf(copy) + FlagsOf(assigned), "----x---------x---x-");
    // A quarter, a half and three quarters of the way: 191.25, 127.5 and 63.75, and the same upwards in blue.
    Packed const mixed = {red, red, red, red, red, 0xFF4000BFu, 0xFF800080u, 0xFFBF0040u, blue, blue};
    EXPECT_EQ(ColorsOf(assigned.GetColorArray()), mixed);
    EXPECT_FALSE(assigned.IsEditable());
}

TEST(CustomColorSpectrumTest, AgreesWithARampComputedForEachPosition)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    for (int round = 0; round < 100; ++round) {
        int const size = engine.Integer(2, 128);
        CustomColorSpectrum spectrum("edited", size, true);
        for (int change = engine.Integer(1, 20); change > 0; --change) {
            spectrum.SetColor(engine.Integer(0, size - 1), static_cast<std::uint32_t>(engine()));
            spectrum.UndefineColor(engine.Integer(0, size - 1));
        }
        Packed const colors = ColorsOf(spectrum.GetColorArray());
        std::string const flags = FlagsOf(spectrum);
        for (std::size_t at = 0; at < flags.size(); ++at) {
            std::size_t const left = flags.rfind('x', at), right = flags.find('x', at),
                              no = std::string::npos;
            std::size_t const before = left == no ? right : left, after = right == no ? left : right;
            double const share = before < after ? double(at - before) / double(after - before) : 0.0;
            for (int shift = 0; shift < 32; shift += 8) {
                auto const byte = [&](std::size_t stop) {
                    return (stop == no ? black : colors[stop]) >> shift & 0xFF;
                };
                double const mixed = byte(before) * (1 - share) + byte(after) * share;
                ASSERT_NEAR(colors[at] >> shift & 0xFF, mixed, 0.5 + 1e-9) << flags << " at " << at;
            }
        }
    }
}
