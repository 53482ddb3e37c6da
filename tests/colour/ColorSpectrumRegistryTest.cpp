#include "vorlane/colour/ColorSpectrumRegistry.h"
#include "tests/colour/ColourTesting.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/CaseTable.h"

#include "gtest/gtest.h"

#include <vector>

using Vorlane::ColorSpectrumRegistry;
using namespace VorlaneTest;

namespace {

/// The registry is one for the process: each test begins and ends with the built-in spectra.
class ColorSpectrumRegistryTest : public testing::Test
{
protected:
    ColorSpectrumRegistryTest() { Refill(); }
    ~ColorSpectrumRegistryTest() override { Refill(); }

    std::vector<CString> Names(std::vector<CString> names = {})
    {
        registry.GetColorSpectrumNames(names);
        return names;
    }
    void UnRegisterAll()
    {
        for (CString const& name : Names()) {
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
        CustomColorSpectrum spectrum = SpectrumOf(name, "x-", true, Color::Cyan());
        registry.RegisterColorSpectrum(spectrum);
        spectrum.SetColor(0, Color::Yellow()); // which the registry does not see
    }

    ColorSpectrumRegistry registry;
    std::vector<CString> const builtIn = {"Black-White",    "Blue-Green-Red",     "Blue-Red",
                                          "Blue-White-Red", "Rainbow 1",          "Rainbow 1 Reversed",
                                          "Rainbow 2",      "Rainbow 2 Reversed", "Red-Blue",
                                          "Red-Green-Blue", "Red-White-Blue",     "White-Black"};
};

/// Says that it has another name than the copy in the registry will have.
struct Disguised : CustomColorSpectrum
{
    using CustomColorSpectrum::CustomColorSpectrum;
    Orrin::ColorArray GetColorArray() const override { return Orrin::ColorArray("Other", 2, 0); }
};

} // namespace

TEST_F(ColorSpectrumRegistryTest, ADerivedSpectrumIsKeptUnderTheNameOfItsCopy)
{
    registry.RegisterColorSpectrum(Disguised("Own", 4, true));
    CustomColorSpectrum found;
    EXPECT_FALSE(registry.GetColorSpectrum("Other", found));
    EXPECT_TRUE(registry.GetColorSpectrum("Own", found));
}

TEST_F(ColorSpectrumRegistryTest, BuiltInRampsAreThoseOfTheTable)
{
    Orrin::ColorArray (*const makers[])() = {
        Vorlane::BlackWhiteColorArray,   Vorlane::WhiteBlackColorArray,
        Vorlane::RedBlueColorArray,      Vorlane::BlueRedColorArray,
        Vorlane::RedWhiteBlueColorArray, Vorlane::BlueWhiteRedColorArray,
        Vorlane::RedGreenBlueColorArray, Vorlane::BlueGreenRedColorArray,
        Vorlane::Rainbow1ColorArray,     Vorlane::Rainbow1ReversedColorArray,
        Vorlane::Rainbow2ColorArray,     Vorlane::Rainbow2ReversedColorArray};
    std::vector<Case> const rows = ReadCases("colour/colours.txt", "ramps");
    ASSERT_EQ(rows.size(), std::size(makers));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::string const& name = rows[i].at("name");
        for (Orrin::ColorArray const& array : {makers[i](), Vorlane::NamedColorArray(name.c_str())}) {
            EXPECT_EQ(array.GetName() + HexOf(ColorsOf(array)), name + ' ' + rows[i].at("stops"));
        }
    }
}

TEST_F(ColorSpectrumRegistryTest, AppendsTheNamesInTheOrderOfTheirBytes)
{
    for (char const* name : {"abc", "Zz", "\xE9", "A", "", "zero"}) {
        Register(name);
    }
    std::vector<CString> expected = {"first", "", "A"};
    expected.insert(expected.end(), builtIn.begin(), builtIn.end());
    expected.insert(expected.end(), {"Zz", "abc", "zero", "\xE9"});
    EXPECT_EQ(Names({"first"}), expected);
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
    for (char const* unknown : {"red-blue", "RED-BLUE", "Red-Blue ", "Red", ""}) {
        Orrin::ColorArray array("mine", 1, 1);
        EXPECT_FALSE(registry.GetColorSpectrum(unknown, copy) || registry.GetColorArray(unknown, array));
        EXPECT_EQ(copy.GetColorArray().GetName() + array.GetName(), "Red-Bluemine");
        registry.UnRegisterColorSpectrum(unknown);
        EXPECT_EQ(Vorlane::NamedColorArray(unknown).GetName(), "Red-Green-Blue");
    }
    EXPECT_EQ(Names(), builtIn);
}

TEST_F(ColorSpectrumRegistryTest, FillsOnlyWhenNothingIsLeftAndThenWithAllOrNone)
{
    UnRegisterAll();
    Register("mine");
    EXPECT_EQ(Vorlane::NamedColorArray("Red-Blue").GetName(), "Red-Green-Blue");
    EXPECT_EQ(Names(), std::vector<CString>{"mine"});
    registry.UnRegisterColorSpectrum("mine");
    EXPECT_EQ(Vorlane::NamedColorArray("Red-Blue").GetName(), "Red-Blue");
    EXPECT_EQ(Names(), builtIn);
    EXPECT_GT(ForEachFailedAllocation([&] { UnRegisterAll(); }, [] { ColorSpectrumRegistry(); },
                                      [&] { EXPECT_TRUE(Names().empty()); }),
              12);
    EXPECT_EQ(Names(), builtIn);
}
