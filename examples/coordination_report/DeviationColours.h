#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_DEVIATIONCOLOURS_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_DEVIATIONCOLOURS_H

#include "examples/shared/Svg.h"

namespace CoordinationReport {

/// The deviation at the end of the colours. Larger ones are not clipped: they have the last colour.
constexpr double largestColouredDeviation = 1.0;

/// The colour of a deviation: the spectrum "Rainbow 1 Reversed" in 32 bins over 0 to
/// largestColouredDeviation, from cyan over green and yellow to red.
Examples::Colour DeviationColour(double deviation);

/// Draws the colours as a strip with its numbers below.
void DrawDeviationLegend(Examples::Svg& svg, Examples::Place const& corner, double width);

} // namespace CoordinationReport

#endif
