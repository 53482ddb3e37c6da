#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_CENTREPICTURE_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_CENTREPICTURE_H

#include "examples/coordination_report/Centres.h"
#include "examples/coordination_report/Ranking.h"
#include "examples/coordination_report/Structure.h"

#include <string>

namespace CoordinationReport {

/// A drawing of a centre with its ligands, the ideal polyhedron of the best geometry around them, and a bar
/// for the deviation of each candidate.
///
/// \param idPrefix  keeps the drawings of one page apart.
/// \param asFile    whether the drawing stands alone, with a title of its own.
std::string DrawCentre(Structure const& structure, Centre const& centre, Ranking const& ranking,
                       std::string const& idPrefix, bool asFile);

} // namespace CoordinationReport

#endif
