#include "vorlane/colour/ColorMapParameters.h"
#include "tests/colour/ColourTesting.h"
#include "tests/support/CaseTable.h"
#include "tests/support/Seed.h"
#include "vorlane/colour/ColorSpectrumRegistry.h"

#include "gtest/gtest.h"

#include <limits>
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

TEST(ColorMapParametersTest, BatchGivesTheColoursOfSingleCalls)
{
    SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    double const infinite = std::numeric_limits<double>::infinity();
    double const odd[] = {-1.0, 1.0, infinite, -infinite, std::numeric_limits<double>::quiet_NaN()};
    for (int const count : {-5, 0, 1, 255, 257, 1024, 1025, 5000}) {
        ColorMapParameters parameters("Rainbow 1", count % 2 != 0, -1.0, 1.0, engine.Integer(1, 200));
        std::vector<double> values(5000);
        for (double& value : values) {
            value = engine.Integer(0, 9) == 0 ? odd[engine.Integer(0, 4)] : engine.Real(-1.5, 1.5);
        }
        std::vector<Color> colors(values.size(), Color(7));
        parameters.CalculateColors(values.data(), count, colors.data());
        for (std::size_t i = 0; i < values.size(); ++i) {
            ASSERT_EQ(colors[i], int(i) < count ? parameters.CalculateColor(values[i]) : Color(7))
                << values[i];
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
