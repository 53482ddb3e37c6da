#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_CENTREPICTURE_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_CENTREPICTURE_H

#include "examples/coordination_report/Centres.h"
#include "examples/coordination_report/Ranking.h"
#include "examples/coordination_report/Structure.h"
#include "examples/coordination_report/TextReport.h"
#include "examples/shared/SceneArchive.h"

#include <string>

namespace CoordinationReport {

/// A centre with its ligands around the origin, in the colours of the elements, and the ideal polyhedron of
/// the best geometry in the colour of its deviation; a grey one of the ligands where no geometry has a
/// deviation.
Examples::SceneObjects SceneOf(Structure const& structure, Centre const& centre, Ranking const& ranking);

/// A drawing of a centre's scene, and a bar for the deviation of each candidate.
///
/// \param idPrefix  keeps the drawings of one page apart.
/// \param asFile    whether the drawing stands alone, with a title of its own.
std::string DrawCentre(Structure const& structure, RankedCentre const& ranked, std::string const& idPrefix,
                       bool asFile);

} // namespace CoordinationReport

#endif
