#include "vorlane/colour/ColorMapParameters.h"
#include "tests/colour/ColourTesting.h"
#include "tests/support/CaseTable.h"
#include "vorlane/colour/ColorSpectrumRegistry.h"

#include "gtest/gtest.h"

#include <sstream>

using namespace VorlaneTest;

TEST(ColorMapParametersTest, StartsWithItsDefaults)
{
    EXPECT_TRUE(ColorMapParameters() == ParametersOf("Red-White-Blue", false, 0, 1, std::string(32, 'x')));
    EXPECT_EQ(BinsOf(ColorMapParameters("Red-Blue", true, 0.0, 1.0, 5)), "xxxxx");
    EXPECT_EQ(BinsOf(ColorMapParameters("Red-Blue", true, 0.0, 1.0, 0)), "");
    EXPECT_EQ(ColorMapParameters("Red-Blue", false, 0.0, 1.0, -1).CalculateColor(0.5), Color::Black());
}

TEST(ColorMapParametersTest, ColoursValues)
{
    std::map<std::string, std::uint32_t> const colors = {
        {"red", red},     {"purple", 0xFF5500AAu}, {"violet", 0xFFAA0055u}, {"blue", blue},
        {"black", black}, {"green", 0xFF00FF00u},  {"white", 0xFFFFFFFFu},
    };
    for (Case const& row : ReadCases("colour/colours.txt", "values")) {
        ColorMapParameters parameters =
            ParametersOf(row.at("spectrum").c_str(), row.at("clip") == "1", NumberIn(row, "minimum"),
                         NumberIn(row, "maximum"), row.at("bins"));
        std::istringstream pairs(row.at("colours"));
        for (std::string value, color; pairs >> value >> color;) {
            SCOPED_TRACE(row.at("where") + ": " + value);
            double const number = std::stod(value);
            EXPECT_EQ(parameters.CalculateColor(number).GetPacked(), colors.at(color));
            Color inBatch(7);
            parameters.CalculateColors(&number, 1, &inBatch);
            EXPECT_EQ(inBatch.GetPacked(), colors.at(color));
        }
    }
}

TEST(ColorMapParametersTest, BuildsTheMapAnewAfterEachSetterAndNotBefore)
{
    Vorlane::ColorSpectrumRegistry registry;
    auto const registerColor = [&](Color color) {
        registry.UnRegisterColorSpectrum("mine");
        registry.RegisterColorSpectrum(SpectrumOf("mine", "x-", true, color));
    };
    ColorMapParameters const unset = ParametersOf("mine", false, 0, 1, "xxxx");
    Vorlane::BoolArray bins;
    unset.GetTransferFunction(bins);
    void (*const setters[])(ColorMapParameters&, Vorlane::BoolArray const&) = {
        [](ColorMapParameters& parameters, auto&) { parameters.SetSpectrumName("mine"); },
        [](ColorMapParameters& parameters, auto&) { parameters.SetClip(false); },
        [](ColorMapParameters& parameters, auto&) { parameters.SetMinimum(0); },
        [](ColorMapParameters& parameters, auto&) { parameters.SetMaximum(1); },
        [](ColorMapParameters& parameters, auto& same) { parameters.SetTransferFunction(same); },
    };
    for (auto const set : setters) {
        registerColor(Color::Red());
        ColorMapParameters parameters = unset, assigned;
        EXPECT_EQ(parameters.CalculateColor(0.5), Color::Red());
        registerColor(Color::Cyan());
        ColorMapParameters copy(parameters);
        assigned = parameters;
        for (ColorMapParameters* each : {&parameters, &copy, &assigned}) {
            EXPECT_EQ(each->CalculateColor(0.5), Color::Red());
            set(*each, bins);
            EXPECT_EQ(each->CalculateColor(0.5), Color::Cyan());
        }
    }
    registry.UnRegisterColorSpectrum("mine");
}
