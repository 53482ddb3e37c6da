#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_TEXTREPORT_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_TEXTREPORT_H

#include "examples/coordination_report/Centres.h"
#include "examples/coordination_report/Ranking.h"
#include "examples/coordination_report/Structure.h"
#include "examples/shared/SceneArchive.h"

#include <string>
#include <vector>

namespace CoordinationReport {

/// A centre with its ranking.
struct RankedCentre
{
    Centre centre;
    Ranking ranking;
    Examples::SceneObjects scene; ///< what its pictures are drawn from; empty if none are asked for
};

/// All that is reported of one file.
struct FileReport
{
    Structure structure;
    std::vector<std::string> remarks;
    std::vector<RankedCentre> centres;
};

/// The deviation as the reports print it: six decimals.
std::string DeviationText(double deviation);

/// The fit as the reports print it: four decimals, or "-" without one.
std::string FitText(Candidate const& candidate);

/// "N2 2.039, N3 2.039, ..."
std::string LigandText(Structure const& structure, Centre const& centre);

/// The names of the ligands on the sites 1, 2, ... of a candidate.
std::vector<std::string> LabellingOf(Structure const& structure, Centre const& centre,
                                     Candidate const& candidate);

/// What to say where no geometry has a deviation.
std::string NoRankingText(RankedCentre const& ranked);

/// The report of a file for people.
std::string TextReport(FileReport const& report);

/// The first line of the tab-separated table.
std::string TsvHeader();

/// The lines of a file in the tab-separated table.
std::string TsvReport(FileReport const& report);

} // namespace CoordinationReport

#endif
