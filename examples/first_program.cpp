// Which shape do the four bonds of cisplatin have?

#include "vorlane/VorlaneCore.h"

#include <cstdio>

int main()
{
    using namespace Vorlane::CoordinationGeometry;
    using Spatia::Point3d;

    // Bonds from platinum to Cl, Cl, N and N in angstrom; the measure wants their directions.
    Orrin::LegacyArray<Point3d> ligands;
    for (Point3d bond : {Point3d(2.333, 0, 0), Point3d(-0.077, 2.327, 0), Point3d(0.051, -1.949, 0),
                         Point3d(-2.005, -0.137, 0)}) {
        ligands.push_back(bond.Normalize());
    }

    for (char const* name : {"square", "seeSaw", "tetrahedral"}) {
        Vorlane::IntArray sites;
        double const deviation =
            DeviationFromIdealCoordinationGeometry(ligands, StringToCoordinationGeometry(name), sites);
        std::printf("%-12s %.4f   ligands on sites 1 to 4: %d %d %d %d\n", name, deviation, sites[0],
                    sites[1], sites[2], sites[3]);
    }
}
