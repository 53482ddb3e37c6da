#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_RANKING_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_RANKING_H

#include "examples/coordination_report/Centres.h"
#include "examples/coordination_report/Structure.h"

#include "vorlane/coordination/CoordinationGeometry.h"

#include <string>
#include <vector>

namespace CoordinationReport {

/// A geometry with as many sites as the centre has ligands.
struct Candidate
{
    Vorlane::CoordinationGeometryType type;
    std::string title; ///< its long name, or its code if it has none
    std::string code;  ///< empty if it has none
    double deviation;
    std::vector<std::size_t> ligandOnSite; ///< for each site the place among the centre's ligands
};

struct Ranking
{
    std::vector<Candidate> candidates;   ///< the smallest deviation first
    std::vector<std::string> unmeasured; ///< geometries of this number that have no deviation
};

/// Compares the surroundings of a centre with all geometries of its coordination number.
Ranking RankGeometries(Structure const& structure, Centre const& centre);

/// The ideal sites of a geometry, turned and mirrored to lie on the ligands that the labelling puts on them,
/// at distance 1 from the origin, in the order of the sites. Empty for a geometry without ideal sites.
std::vector<Point3d> AlignedIdealSites(Structure const& structure, Centre const& centre,
                                       Candidate const& candidate);

} // namespace CoordinationReport

#endif
