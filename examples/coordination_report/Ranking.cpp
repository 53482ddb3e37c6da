#include "examples/coordination_report/Ranking.h"

#include "examples/shared/GeometryNames.h"

#include "vorlane/foundation/TypedArrays.h"
#include "vorlane/numerics/RMSBestFitTools.h"

#include <algorithm>
#include <cmath>

namespace CoordinationReport {
namespace {

using namespace Vorlane;
using PointArray = Orrin::LegacyArray<Point3d>;

/// The unit vectors from the centre to its ligands. A ligand on the very place of the centre has none and
/// gives 0.
PointArray Directions(Structure const& structure, Centre const& centre)
{
    PointArray directions;
    for (Ligand const& ligand : centre.ligands) {
        Point3d direction = structure.atoms[ligand.atom].position - structure.atoms[centre.atom].position;
        directions.push_back(direction.Normalize());
    }
    return directions;
}

/// Which ligand sits on each site. The library says it that way round for all but two geometries.
std::vector<std::size_t> LigandOnSite(CoordinationGeometryType type, IntArray const& assignment)
{
    std::vector<std::size_t> ligandOnSite(static_cast<std::size_t>(assignment.GetSize()));
    for (int k = 0; k < assignment.GetSize(); ++k) {
        std::size_t const entry = static_cast<std::size_t>(assignment[k]) - 1;
        if (type == trigonalPrismatic || type == trigonalAntiprismatic) {
            ligandOnSite[entry] = static_cast<std::size_t>(k);
        } else {
            ligandOnSite[static_cast<std::size_t>(k)] = entry;
        }
    }
    return ligandOnSite;
}

/// The ideal sites without the metal.
PointArray IdealSitesOf(CoordinationGeometryType type)
{
    PointArray sites;
    if (type == ss4tbpy5) {
        // Asked for as a see-saw with the equatorial angle of the trigonal bipyramid.
        CoordinationGeometry::SS4GeometryConstraint const equatorial(2.0 * std::acos(-1.0) / 3.0);
        CoordinationGeometry::GetCoordinates(seeSaw, sites, &equatorial);
    } else {
        CoordinationGeometry::GetCoordinates(type, sites);
    }
    PointArray ligands;
    for (long site = 1; site < sites.GetSize(); ++site) {
        ligands.push_back(sites[site]);
    }
    return ligands;
}

/// Lays the ideal sites of a candidate on the directions of its ligands and measures how well they fit.
void Superpose(PointArray const& directions, Candidate& candidate)
{
    PointArray const ideal = IdealSitesOf(candidate.type);
    double bestDistance = 0.0;
    // A labelling knows no left and right; the ideal polyhedra are their own mirror images.
    for (double const hand : {1.0, -1.0}) {
        // Every point has its opposite, so that the best motion is a rotation about the metal.
        PointArray from;
        PointArray onto;
        PointArray sites;
        for (long site = 0; site < ideal.GetSize(); ++site) {
            Point3d const point = hand * ideal[site];
            Point3d const& ligand =
                directions[static_cast<long>(candidate.ligandOnSite[static_cast<std::size_t>(site)])];
            from.push_back(point);
            from.push_back(-1.0 * point);
            onto.push_back(ligand);
            onto.push_back(-1.0 * ligand);
            sites.push_back(point);
        }
        if (!RMSBestFitTools::FindAndApplyTransformation(from, onto, sites)) {
            return;
        }
        double distance = 0.0;
        for (long site = 0; site < sites.GetSize(); ++site) {
            distance += sites[site].Distance2(onto[2 * site]);
        }
        if (candidate.sites.empty() || distance < bestDistance) {
            candidate.sites.assign(sites.begin(), sites.end());
            bestDistance = distance;
        }
    }
    candidate.fit = std::sqrt(bestDistance / static_cast<double>(ideal.GetSize()));
}

} // namespace

Ranking RankGeometries(Structure const& structure, Centre const& centre)
{
    PointArray const directions = Directions(structure, centre);
    Ranking ranking;
    for (Examples::GeometryName const& geometry : Examples::GeometryNames()) {
        if (CoordinationGeometry::GetCoordinationNumber(geometry.type) != directions.GetSize()) {
            continue;
        }
        IntArray assignment;
        double const deviation = CoordinationGeometry::DeviationFromIdealCoordinationGeometry(
            directions, geometry.type, assignment);
        if (deviation < 0.0) {
            ranking.unmeasured.push_back(geometry.Title());
        } else {
            ranking.candidates.push_back({geometry.type,
                                          geometry.Title(),
                                          geometry.code,
                                          deviation,
                                          LigandOnSite(geometry.type, assignment),
                                          {},
                                          {}});
            Superpose(directions, ranking.candidates.back());
        }
    }
    // Octahedron and antiprism may differ by a rounding; equals stay in the order of the catalogue.
    std::stable_sort(ranking.candidates.begin(), ranking.candidates.end(),
                     [](Candidate const& a, Candidate const& b) {
                         return std::llround(a.deviation * 1e9) < std::llround(b.deviation * 1e9);
                     });
    return ranking;
}

} // namespace CoordinationReport
