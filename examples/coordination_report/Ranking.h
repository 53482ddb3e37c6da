#ifndef VORLANE_EXAMPLES_COORDINATION_REPORT_RANKING_H
#define VORLANE_EXAMPLES_COORDINATION_REPORT_RANKING_H

#include "examples/coordination_report/Centres.h"
#include "examples/coordination_report/Structure.h"

#include "vorlane/coordination/CoordinationGeometry.h"

#include <optional>
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

    /// The ideal sites at distance 1 from the origin, turned and mirrored to lie on the directions of the
    /// ligands that the labelling puts on them. Empty for a geometry without ideal sites.
    std::vector<Point3d> sites;

    /// The root of the mean squared distance between these sites and those directions, so in parts of the
    /// bond length; none without sites.
    std::optional<double> fit;
};

struct Ranking
{
    std::vector<Candidate> candidates;   ///< the smallest deviation first
    std::vector<std::string> unmeasured; ///< geometries of this number that have no deviation
};

/// Compares the surroundings of a centre with all geometries of its coordination number.
Ranking RankGeometries(Structure const& structure, Centre const& centre);

} // namespace CoordinationReport

#endif
