#ifndef VORLANE_FUZZ_DEVIATIONCHECKS_H
#define VORLANE_FUZZ_DEVIATIONCHECKS_H

#include "fuzz/Require.h"
#include "vorlane/coordination/CoordinationGeometry.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace VorlaneFuzz {

using PointArray = Orrin::LegacyArray<Spatia::Point3d>;
using Labelling = std::vector<int>; ///< the ligand, counted from 0, on each site

/// The geometries that a deviation is defined for.
constexpr Vorlane::CoordinationGeometryType measuredGeometries[] = {Vorlane::trigonalPyramidal,
                                                                    Vorlane::tShaped,
                                                                    Vorlane::tetrahedral,
                                                                    Vorlane::squarePlanar,
                                                                    Vorlane::trigonalPlanarPyramidal,
                                                                    Vorlane::seeSaw,
                                                                    Vorlane::ss4tbpy5,
                                                                    Vorlane::octahedral,
                                                                    Vorlane::trigonalBipyramidal,
                                                                    Vorlane::squarePlanarPyramidal,
                                                                    Vorlane::trigonalPrismatic,
                                                                    Vorlane::trigonalAntiprismatic};

/// The ideal sites without the metal.
inline PointArray IdealLigands(Vorlane::CoordinationGeometryType type)
{
    using namespace Vorlane;
    using namespace Vorlane::CoordinationGeometry;
    PointArray sites, ligands;
    SS4GeometryConstraint const equatorial(2.0 * std::acos(-1.0) / 3.0);
    GetCoordinates(type == ss4tbpy5 ? seeSaw : type, sites, type == ss4tbpy5 ? &equatorial : nullptr);
    for (long site = 1; site < sites.GetSize(); ++site) {
        ligands.push_back(sites[site]);
    }
    return ligands;
}

inline double Dot(Spatia::Point3d const& a, Spatia::Point3d const& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The measure of one labelling, straight from its definition.
inline double Cost(PointArray const& ideal, PointArray const& ligands, Labelling const& ligandOnSite)
{
    double cost = 0.0;
    for (std::size_t s = 0; s < ligandOnSite.size(); ++s) {
        for (std::size_t t = 0; t < s; ++t) {
            double const difference = Dot(ligands[ligandOnSite[s]], ligands[ligandOnSite[t]]) -
                                      Dot(ideal[static_cast<long>(s)], ideal[static_cast<long>(t)]);
            cost += difference * difference;
        }
    }
    return cost;
}

/// Whether the deviation is the least of all labellings, and its assignment a labelling that has it. With
/// vectors that are not finite or huge it is still a labelling, and the deviation not below 0. Gives the
/// deviation.
inline double CheckDeviation(PointArray const& ligands, Vorlane::CoordinationGeometryType type)
{
    using namespace Vorlane;
    using namespace Vorlane::CoordinationGeometry;
    Vorlane::IntArray assignment(2, 0);
    double const deviation = DeviationFromIdealCoordinationGeometry(ligands, type, assignment);
    bool const areSitesOfLigands = type == trigonalPrismatic || type == trigonalAntiprismatic;
    Labelling labelling(static_cast<std::size_t>(ligands.GetSize()), -1);
    Require(assignment.GetSize() == ligands.GetSize());
    for (int k = 0; k < assignment.GetSize(); ++k) {
        int const other = assignment[k] - 1;
        labelling.at(static_cast<std::size_t>(areSitesOfLigands ? other : k)) = areSitesOfLigands ? k : other;
    }
    Labelling permutation(labelling.size());
    std::iota(permutation.begin(), permutation.end(), 0);
    Require(std::is_permutation(labelling.begin(), labelling.end(), permutation.begin()));
    Require(!(deviation < 0.0));

    PointArray const ideal = IdealLigands(type);
    double least = Cost(ideal, ligands, labelling);
    if (least < 1e3) {
        Require(DeviationFromIdealCoordinationGeometry(ligands, type) == deviation);
        Require(std::fabs(least - deviation) <= 1e-12);
        do {
            least = std::min(least, Cost(ideal, ligands, permutation));
        } while (std::next_permutation(permutation.begin(), permutation.end()));
        Require(std::fabs(least - deviation) <= 1e-12);
    }
    return deviation;
}

} // namespace VorlaneFuzz

#endif
