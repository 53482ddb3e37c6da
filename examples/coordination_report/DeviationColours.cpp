#include "examples/coordination_report/DeviationColours.h"

#include "vorlane/colour/ColorMapParameters.h"

#include <string>

namespace CoordinationReport {
namespace {

constexpr int bins = 32;

} // namespace

Examples::Colour DeviationColour(double deviation)
{
    static Vorlane::ColorMapParameters map("Rainbow 1 Reversed", false, 0.0, largestColouredDeviation, bins);
    Orrin::Color const color = map.CalculateColor(deviation);
    // The pure colours of a spectrum glare beside the others of a picture.
    return Examples::Mix({color.GetRed(), color.GetGreen(), color.GetBlue()}, {40, 60, 80}, 0.22);
}

void DrawDeviationLegend(Examples::Svg& svg, Examples::Place const& corner, double width)
{
    constexpr double height = 7.0;
    double const step = width / bins;
    for (int bin = 0; bin < bins; ++bin) {
        double const deviation = (bin + 0.5) / bins * largestColouredDeviation;
        // A little wider than its step, so that no paper shines through.
        svg.Rectangle({corner.first + bin * step, corner.second}, step + (bin + 1 < bins ? 0.4 : 0.0), height,
                      "fill=\"" + Examples::Hex(DeviationColour(deviation)) + "\"");
    }
    double const base = corner.second + height + 12;
    svg.Text({corner.first, base}, 10.5, "start", "class=\"faint\"", "0");
    svg.Text({corner.first + width / 2, base}, 10.5, "middle", "class=\"faint\"",
             Examples::Decimal(largestColouredDeviation / 2, 1));
    svg.Text({corner.first + width, base}, 10.5, "end", "class=\"faint\"",
             Examples::Decimal(largestColouredDeviation, 0) + " and more");
}

} // namespace CoordinationReport
