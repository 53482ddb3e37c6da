#include "vorlane/colour/ColorSpectrumRegistry.h"
#include "tests/support/AllocationFailure.h"

#include "gtest/gtest.h"

#include <string>
#include <vector>

using Orrin::Color;
using Orrin::ColorArray;
using Vorlane::ColorSpectrumRegistry;
using Vorlane::CustomColorSpectrum;

namespace {

std::vector<std::string> const builtInNames = {
    "Black-White", "Blue-Green-Red",     "Blue-Red", "Blue-White-Red", "Rainbow 1",      "Rainbow 1 Reversed",
    "Rainbow 2",   "Rainbow 2 Reversed", "Red-Blue", "Red-Green-Blue", "Red-White-Blue", "White-Black",
};

std::vector<std::string> NamesOf(ColorSpectrumRegistry& registry)
{
    std::vector<CString> names;
    registry.GetColorSpectrumNames(names);
    return std::vector<std::string>(names.begin(), names.end());
}

void UnRegisterAll(ColorSpectrumRegistry& registry)
{
    for (std::string const& name : NamesOf(registry)) {
        registry.UnRegisterColorSpectrum(name.c_str());
    }
}

CustomColorSpectrum Plain(char const* name, Color color)
{
    CustomColorSpectrum spectrum(name, 2, true);
    spectrum.SetColor(0, color);
    return spectrum;
}

/// The registry is one for the process: each test begins and ends with the built-in spectra.
class ColorSpectrumRegistryTest : public testing::Test
{
protected:
    ColorSpectrumRegistryTest() { Refill(); }
    ~ColorSpectrumRegistryTest() override { Refill(); }

    static void Refill()
    {
        ColorSpectrumRegistry registry;
        UnRegisterAll(registry);
        ColorSpectrumRegistry();
    }
};

} // namespace

TEST_F(ColorSpectrumRegistryTest, AppendsTheNamesInTheOrderOfTheirBytes)
{
    ColorSpectrumRegistry registry;
    EXPECT_EQ(NamesOf(registry), builtInNames);

    for (char const* name : {"abc", "Zz", "\xE9", "A", "", "zero"}) {
        registry.RegisterColorSpectrum(Plain(name, Color::Red()));
    }
    std::vector<CString> names = {"first", "second"};
    registry.GetColorSpectrumNames(names);
    std::vector<std::string> expected = {"first", "second", "", "A"};
    expected.insert(expected.end(), builtInNames.begin(), builtInNames.end());
    for (char const* name : {"Zz", "abc", "zero", "\xE9"}) {
        expected.push_back(name);
    }
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.end()), expected);
}

TEST_F(ColorSpectrumRegistryTest, KeepsTheFirstSpectrumOfAName)
{
    ColorSpectrumRegistry registry;
    ColorArray array(0, 1);
    registry.RegisterColorSpectrum(Plain("Red-Blue", Color::Cyan()));
    ASSERT_TRUE(registry.GetColorArray("Red-Blue", array));
    EXPECT_EQ(array[0], Color::Red());
    registry.UnRegisterColorSpectrum("Red-Blue");
    registry.RegisterColorSpectrum(Plain("Red-Blue", Color::Cyan()));
    ASSERT_TRUE(registry.GetColorArray("Red-Blue", array));
    EXPECT_EQ(array[0], Color::Cyan());
    EXPECT_EQ(Vorlane::RedBlueColorArray()[0], Color::Red());
}

TEST_F(ColorSpectrumRegistryTest, UnknownNamesLeaveTheArgumentsAlone)
{
    ColorSpectrumRegistry registry;
    for (char const* name : {"red-blue", "RED-BLUE", "Red-Blue ", "Red", ""}) {
        CustomColorSpectrum spectrum = Plain("mine", Color::Cyan());
        ColorArray array("mine", 1, 1);
        EXPECT_FALSE(registry.GetColorSpectrum(name, spectrum));
        EXPECT_FALSE(registry.GetColorArray(name, array));
        EXPECT_EQ(spectrum.GetColorArray().GetName(), "mine");
        EXPECT_EQ(array.GetName(), "mine");
        EXPECT_EQ(array.GetSize(), 1);
        registry.UnRegisterColorSpectrum(name);
        // The look-up by name falls back instead.
        EXPECT_EQ(Vorlane::NamedColorArray(name).GetName(), "Red-Green-Blue");
        EXPECT_EQ(Vorlane::NamedColorArray(name).GetSize(), 3);
    }
    EXPECT_EQ(NamesOf(registry), builtInNames);
}

TEST_F(ColorSpectrumRegistryTest, HandsOutAndTakesCopies)
{
    ColorSpectrumRegistry registry;
    CustomColorSpectrum mine = Plain("mine", Color::Cyan());
    registry.RegisterColorSpectrum(mine);
    mine.SetColor(0, Color::Red());
    CustomColorSpectrum copy;
    ASSERT_TRUE(registry.GetColorSpectrum("mine", copy));
    EXPECT_TRUE(copy == mine);
    copy.SetColor(0, Color::Red());
    EXPECT_EQ(Vorlane::NamedColorArray("mine")[0], Color::Cyan());

    ColorSpectrumRegistry other;
    EXPECT_EQ(&(other = registry), &other);
    EXPECT_EQ(NamesOf(other), NamesOf(registry));
}

TEST_F(ColorSpectrumRegistryTest, FillsOnlyWhenNothingIsLeft)
{
    ColorSpectrumRegistry registry;
    registry.RegisterColorSpectrum(Plain("mine", Color::Cyan()));
    for (std::string const& name : builtInNames) {
        registry.UnRegisterColorSpectrum(name.c_str());
    }
    EXPECT_EQ(Vorlane::NamedColorArray("Red-Blue").GetName(), "Red-Green-Blue");
    EXPECT_EQ(NamesOf(registry), std::vector<std::string>{"mine"});

    registry.UnRegisterColorSpectrum("mine");
    EXPECT_EQ(NamesOf(registry), std::vector<std::string>());
    EXPECT_EQ(Vorlane::NamedColorArray("Red-Blue").GetName(), "Red-Blue");
    EXPECT_EQ(NamesOf(registry), builtInNames);
}

TEST_F(ColorSpectrumRegistryTest, FillsWithAllOrWithNoneWhenMemoryEnds)
{
    ColorSpectrumRegistry registry;
    int const failures = VorlaneTest::ForEachFailedAllocation(
        [&] { UnRegisterAll(registry); }, [] { ColorSpectrumRegistry(); },
        [&] { EXPECT_EQ(NamesOf(registry), std::vector<std::string>()); });
    EXPECT_GT(failures, 12);
    EXPECT_EQ(NamesOf(registry), builtInNames);
}
