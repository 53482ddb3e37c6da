#include "vorlane/colour/ColorSpectrumRegistry.h"
#include "tests/support/AllocationFailure.h"

#include "gtest/gtest.h"

#include <string>
#include <vector>

using Orrin::Color;
using Vorlane::ColorSpectrumRegistry;
using Vorlane::CustomColorSpectrum;

namespace {

/// The registry is one for the process: each test begins and ends with the built-in spectra.
class ColorSpectrumRegistryTest : public testing::Test
{
protected:
    ColorSpectrumRegistryTest() { Refill(); }
    ~ColorSpectrumRegistryTest() override { Refill(); }

    std::string Names()
    {
        std::vector<CString> names = {"first"};
        registry.GetColorSpectrumNames(names);
        std::string joined;
        for (CString const& name : names) {
            joined += std::string(name) + "|";
        }
        return joined;
    }
    void UnRegisterAll()
    {
        std::vector<CString> names;
        registry.GetColorSpectrumNames(names);
        for (CString const& name : names) {
            registry.UnRegisterColorSpectrum(name);
        }
    }
    void Refill()
    {
        UnRegisterAll();
        ColorSpectrumRegistry();
    }
    void Register(char const* name)
    {
        CustomColorSpectrum spectrum(name, 2, true);
        spectrum.SetColor(0, Color::Cyan());
        registry.RegisterColorSpectrum(spectrum);
        spectrum.SetColor(0, Color::Yellow()); // which the registry does not see
    }

    ColorSpectrumRegistry registry;
    std::string const builtIn =
        "Black-White|Blue-Green-Red|Blue-Red|Blue-White-Red|Rainbow 1|Rainbow 1 Reversed|"
        "Rainbow 2|Rainbow 2 Reversed|Red-Blue|Red-Green-Blue|Red-White-Blue|White-Black|";
};

} // namespace

TEST_F(ColorSpectrumRegistryTest, AppendsTheNamesInTheOrderOfTheirBytes)
{
    for (char const* name : {"abc", "Zz", "\xE9", "A", "", "zero"}) {
        Register(name);
    }
    EXPECT_EQ(Names(), "first||A|" + builtIn + "Zz|abc|zero|\xE9|");
}

TEST_F(ColorSpectrumRegistryTest, KeepsTheFirstSpectrumOfANameAndHandsOutCopies)
{
    CustomColorSpectrum copy;
    Register("Red-Blue");
    EXPECT_EQ(Vorlane::NamedColorArray("Red-Blue")[0], Color::Red());
    registry.UnRegisterColorSpectrum("Red-Blue");
    Register("Red-Blue");
    ASSERT_TRUE(registry.GetColorSpectrum("Red-Blue", copy));
    copy.SetColor(0, Color::Magenta());
    EXPECT_EQ(Vorlane::NamedColorArray("Red-Blue")[0], Color::Cyan());
    EXPECT_EQ(Vorlane::RedBlueColorArray()[0], Color::Red());
}

TEST_F(ColorSpectrumRegistryTest, UnknownNamesLeaveTheArgumentsAlone)
{
    for (char const* name : {"red-blue", "RED-BLUE", "Red-Blue ", "Red", ""}) {
        CustomColorSpectrum spectrum("mine", 2, true);
        Orrin::ColorArray array("mine", 1, 1);
        EXPECT_FALSE(registry.GetColorSpectrum(name, spectrum) || registry.GetColorArray(name, array));
        EXPECT_EQ(spectrum.GetColorArray().GetName() + array.GetName(), "minemine");
        registry.UnRegisterColorSpectrum(name);
        EXPECT_EQ(Vorlane::NamedColorArray(name).GetName(), "Red-Green-Blue");
    }
    EXPECT_EQ(Names(), "first|" + builtIn);
}

TEST_F(ColorSpectrumRegistryTest, FillsOnlyWhenNothingIsLeft)
{
    UnRegisterAll();
    Register("mine");
    EXPECT_EQ(Vorlane::NamedColorArray("Red-Blue").GetName(), "Red-Green-Blue");
    EXPECT_EQ(Names(), "first|mine|");
    registry.UnRegisterColorSpectrum("mine");
    EXPECT_EQ(Vorlane::NamedColorArray("Red-Blue").GetName(), "Red-Blue");
    EXPECT_EQ(Names(), "first|" + builtIn);
}

TEST_F(ColorSpectrumRegistryTest, FillsWithAllOrWithNoneWhenMemoryEnds)
{
    EXPECT_GT(VorlaneTest::ForEachFailedAllocation([&] { UnRegisterAll(); }, [] { ColorSpectrumRegistry(); },
                                                   [&] { EXPECT_EQ(Names(), "first|"); }),
              12);
    EXPECT_EQ(Names(), "first|" + builtIn);
}
