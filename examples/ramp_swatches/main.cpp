// Draws the registered colour ramps, and a spectrum made here, as one SVG page of swatches.

#include "examples/shared/PageProgram.h"
#include "examples/shared/Svg.h"

#include "vorlane/colour/ColorMapParameters.h"
#include "vorlane/colour/ColorSpectrumRegistry.h"

#include <string>
#include <vector>

namespace {

using namespace Examples;
using Vorlane::ColorMapParameters;
using Vorlane::ColorSpectrumRegistry;
using Vorlane::CustomColorSpectrum;

constexpr double pageWidth = 1040.0;
constexpr double margin = 24.0;
constexpr double headerHeight = 78.0;
constexpr int columns = 2;
constexpr double columnWidth = (pageWidth - 3 * margin) / columns;
constexpr double cellHeight = 84.0;
constexpr double stripHeight = 34.0;
constexpr int binCount = 32;

char const* const help = R"(usage: ramp_swatches [FILE]

Draws every registered colour spectrum as a swatch of 32 bins over the values 0
to 1, with its name and its stops, and below them a spectrum of the program's
own: its defined and computed positions, and the bins that it gives with and
without a transfer function.

The page goes to FILE, or to the standard output if none is named.
)";

std::string Paint(Orrin::Color const& color)
{
    return "fill=\"" + Hex({color.GetRed(), color.GetGreen(), color.GetBlue()}) + "\"";
}

/// A framed row of rectangles side by side.
void DrawStrip(Svg& svg, Place const& corner, double width, std::vector<Orrin::Color> const& colors)
{
    double const step = width / static_cast<double>(colors.size());
    for (std::size_t bin = 0; bin < colors.size(); ++bin) {
        svg.Rectangle({corner.first + static_cast<double>(bin) * step, corner.second}, step - 1, stripHeight,
                      Paint(colors[bin]));
    }
    svg.Rectangle({corner.first - 2, corner.second - 2}, width + 3, stripHeight + 4,
                  "fill=\"none\" class=\"rule\"");
}

/// The values at the begin, the middle and the end of a row of bins.
void DrawRange(Svg& svg, Place const& corner, double width, ColorMapParameters const& parameters)
{
    double const ends[] = {parameters.GetMinimum(), (parameters.GetMinimum() + parameters.GetMaximum()) / 2,
                           parameters.GetMaximum()};
    char const* const anchors[] = {"start", "middle", "end"};
    for (int tick = 0; tick < 3; ++tick) {
        svg.Text({corner.first + width * tick / 2, corner.second + stripHeight + 13}, 11, anchors[tick],
                 "class=\"faint\"", Decimal(ends[tick], 1));
    }
}

/// The colour in the middle of each bin.
std::vector<Orrin::Color> BinColors(ColorMapParameters& parameters, int bins)
{
    std::vector<double> middles;
    for (int bin = 0; bin < bins; ++bin) {
        double const width = (parameters.GetMaximum() - parameters.GetMinimum()) / bins;
        middles.push_back(parameters.GetMinimum() + (bin + 0.5) * width);
    }
    std::vector<Orrin::Color> colors(middles.size());
    parameters.CalculateColors(middles.data(), bins, colors.data());
    return colors;
}

/// One spectrum of the registry: its name, its stops as dots, and its bins.
void DrawRamp(Svg& svg, Place const& corner, CString const& name)
{
    svg.Text({corner.first, corner.second + 16}, 14, "start", "class=\"ink\" font-weight=\"bold\"",
             static_cast<char const*>(name));
    Orrin::ColorArray const stops = Vorlane::NamedColorArray(name);
    double x = corner.first + columnWidth - 8.0 - 20.0 * static_cast<double>(stops.GetSize() - 1);
    for (Orrin::Color const& stop : stops) {
        svg.Circle({x, corner.second + 11}, 7, "stroke=\"#8a94a3\" stroke-width=\"0.8\" " + Paint(stop));
        x += 20.0;
    }
    ColorMapParameters parameters(name, false, 0.0, 1.0, binCount);
    DrawStrip(svg, {corner.first, corner.second + 24}, columnWidth, BinColors(parameters, binCount));
    DrawRange(svg, {corner.first, corner.second + 24}, columnWidth, parameters);
}

CustomColorSpectrum MakeEditedSpectrum()
{
    CustomColorSpectrum spectrum("Depth", 16, true);
    spectrum.SetColor(2, 0xFF5A1E14u); // packed: alpha, blue, green, red
    spectrum.SetColor(7, 0xFFD8B04Au);
    spectrum.SetColor(9, 0xFFE6F2F5u);
    spectrum.SetColor(13, 0xFF2D6CC8u);
    return spectrum;
}

/// The positions of a spectrum, defined ones marked.
void DrawPositions(Svg& svg, Place const& corner, double width, CustomColorSpectrum const& spectrum)
{
    Orrin::ColorArray const row = spectrum.GetColorArray();
    DrawStrip(svg, corner, width, std::vector<Orrin::Color>(row.begin(), row.end()));
    double const step = width / static_cast<double>(row.GetSize());
    for (int index = 0; index < static_cast<int>(row.GetSize()); ++index) {
        Orrin::Color color;
        bool const isDefined = spectrum.GetColor(index, color);
        double const middle = corner.first + (index + 0.5) * step;
        std::string const style = isDefined ? "class=\"ink\" font-weight=\"bold\"" : "class=\"faint\"";
        svg.Text({middle, corner.second + stripHeight + 13}, 11, "middle", style, std::to_string(index));
        if (isDefined) {
            svg.Polygon({{middle - 5, corner.second - 9},
                         {middle + 5, corner.second - 9},
                         {middle, corner.second - 2}},
                        "class=\"ink\"");
        }
    }
}

/// The spectrum that the program makes, from its positions to its bins.
void DrawEditedSpectrum(Svg& svg, double top, CustomColorSpectrum const& spectrum)
{
    double const width = pageWidth - 2 * margin;
    auto const caption = [&](double y, std::string const& text) {
        svg.Text({margin, y}, 12, "start", "class=\"faint\"", text);
    };
    svg.Line({margin, top}, {pageWidth - margin, top}, "class=\"rule\"");
    svg.Text({margin, top + 28}, 14, "start", "class=\"ink\" font-weight=\"bold\"",
             "An edited spectrum: " + spectrum.GetColorArray().GetName());
    caption(top + 47, "16 positions; the marked ones are defined, the others computed from them");
    DrawPositions(svg, {margin, top + 66}, width, spectrum);

    CString const name = spectrum.GetColorArray().GetName().c_str();
    ColorMapParameters parameters(name, true, -20.0, 60.0, 64);
    caption(top + 142, "64 bins over -20 to 60");
    DrawStrip(svg, {margin, top + 150}, width, BinColors(parameters, 64));
    DrawRange(svg, {margin, top + 150}, width, parameters);

    Vorlane::BoolArray bins;
    parameters.GetTransferFunction(bins);
    for (int bin = 0; bin < bins.GetSize(); ++bin) {
        bins[bin] = bin % 8 < 5;
    }
    parameters.SetTransferFunction(bins);
    caption(top + 226, "the same bins, three in eight switched off by the transfer function");
    DrawStrip(svg, {margin, top + 234}, width, BinColors(parameters, 64));
    DrawRange(svg, {margin, top + 234}, width, parameters);
}

std::string Page()
{
    ColorSpectrumRegistry registry;
    std::vector<CString> names;
    registry.GetColorSpectrumNames(names);
    CustomColorSpectrum const edited = MakeEditedSpectrum();
    registry.RegisterColorSpectrum(edited);

    int const rows = (static_cast<int>(names.size()) + columns - 1) / columns;
    double const editedTop = headerHeight + rows * cellHeight;
    Svg svg(pageWidth, editedTop + 292, "swatches");
    svg.Text({margin, 34}, 22, "start", "class=\"ink\" font-weight=\"bold\"", "Colour spectra");
    svg.Text({margin, 56}, 12.5, "start", "class=\"faint\"",
             "the registered ramps in 32 bins over 0 to 1; the dots are their stops");
    int place = 0;
    for (CString const& name : names) {
        double const left = margin + (place % columns) * (columnWidth + margin);
        DrawRamp(svg, {left, headerHeight + (place / columns) * cellHeight}, name);
        ++place;
    }
    DrawEditedSpectrum(svg, editedTop, edited);
    return svg.Finish(true);
}

} // namespace

int main(int argc, char** argv)
{
    return Examples::RunPageProgram(argc, argv, "ramp_swatches", help, Page);
}
