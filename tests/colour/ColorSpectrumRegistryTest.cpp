#include "vorlane/colour/ColorSpectrumRegistry.h"
#include "tests/colour/ColourTesting.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/CaseTable.h"

#include "gtest/gtest.h"

#include <vector>

using Vorlane::ColorSpectrumRegistry;
using namespace VorlaneTest;

namespace {

std::vector<CString> Names()
{
    std::vector<CString> names;
    ColorSpectrumRegistry().GetColorSpectrumNames(names);
    return names;
}

/// Says that it has another name than the copy in the registry will have.
struct Disguised : CustomColorSpectrum
{
    using CustomColorSpectrum::CustomColorSpectrum;
    Orrin::ColorArray GetColorArray() const override { return Orrin::ColorArray("Other", 2, 0); }
};

} // namespace

TEST(ColorSpectrumRegistryTest, ADerivedSpectrumIsKeptUnderTheNameOfItsCopy)
{
    ColorSpectrumRegistry registry;
    registry.RegisterColorSpectrum(Disguised("Own", 4, true));
    CustomColorSpectrum found;
    EXPECT_FALSE(registry.GetColorSpectrum("Other", found));
    EXPECT_TRUE(registry.GetColorSpectrum("Own", found));
    registry.UnRegisterColorSpectrum("Own");
}

TEST(ColorSpectrumRegistryTest, BuiltInRampsAreThoseOfTheTable)
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

TEST(ColorSpectrumRegistryTest, FillsOnlyWhenNothingIsLeftAndMemorySufficesForAll)
{
    ColorSpectrumRegistry registry;
    std::vector<CString> const builtIn = Names();
    std::vector<CString> left;
    auto const unRegisterAll = [&] {
        for (CString const& name : builtIn) {
            registry.UnRegisterColorSpectrum(name);
        }
    };
    auto const check = [&] {
        registry.GetColorSpectrumNames(left);
        EXPECT_TRUE(left.empty());
    };
    EXPECT_GT(ForEachFailedAllocation(
                  unRegisterAll, [] { ColorSpectrumRegistry(); }, check),
              12);
    EXPECT_EQ(Names(), builtIn);
}
