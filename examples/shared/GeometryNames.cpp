#include "examples/shared/GeometryNames.h"

#include "vorlane/foundation/FrameworkSurface.h"

#include <stdexcept>

namespace Examples {
namespace {

Spatia::Point3d const x(1, 0, 0);
Spatia::Point3d const z(0, 0, 1);

struct Row
{
    char const* name;
    char const* code;
    Spatia::Point3d upright;
};

// The library gives the number of each from its name.
Row const rows[] = {
    {"linear", "l2", z},
    {"angular", "a2", Spatia::Point3d(-1, -1.4142135623730951, 0)},
    {"", "a2tp3", z},
    {"", "a2sp4", z},
    {"trigonalPlanar", "tp3", z},
    {"trigonalPyramidal", "tpy3", Spatia::Point3d(-1, 0, -2.8284271247461903)},
    {"", "tpy3tbpy5", z},
    {"", "tpy3oc6", z},
    {"tShaped", "ts3", Spatia::Point3d(0, -1, 0)},
    {"tetrahedral", "t4", Spatia::Point3d(1, 1, 1)},
    {"squarePlanar", "sp4", z},
    {"squarePyramidal", "spy4", z},
    {"trigonalPlanarPyramidal", "tpy4", z},
    {"seeSaw", "ss4", x},
    {"", "ss4tbpy5", x},
    {"trigonalBipyramidal", "tbpy5", x},
    {"squarePlanarPyramidal", "spy5", z},
    {"octahedral", "oc6", z},
    {"trigonalPrismatic", "tpr6", x},
    {"trigonalAntiprismatic", "tapr6", x},
    {"trigonalAntiprismaticStretched", "", x},
    {"pentagonalPlanarPyramidal", "ppy6", z},
    {"pentagonalBipyramidal", "pbpy7", x},
    {"octahedralFaceMonocapped", "ocf7", z},
    {"trigonalPrismaticSquareFaceMonocapped", "tprs7", Spatia::Point3d(0, -1, 0)},
    {"cubic", "cu8", z},
    {"squareAntiprismatic", "sapr8", z},
    {"dodecahedral", "dd8", z},
    {"hexagonalBipyramidal", "hbpy8", x},
    {"heptagonalBipyramidal", "hbpy9", z},
};

std::vector<GeometryName> Build()
{
    std::vector<GeometryName> names;
    for (Row const& row : rows) {
        char const* const known = *row.name != '\0' ? row.name : row.code;
        names.push_back({Vorlane::CoordinationGeometry::StringToCoordinationGeometry(known), row.name,
                         row.code, row.upright});
    }
    return names;
}

} // namespace

std::vector<GeometryName> const& GeometryNames()
{
    static std::vector<GeometryName> const names = Build();
    return names;
}

GeometryName const& NameOf(Vorlane::CoordinationGeometryType type)
{
    for (GeometryName const& entry : GeometryNames()) {
        if (entry.type == type) {
            return entry;
        }
    }
    throw std::out_of_range("no geometry has the number " + std::to_string(static_cast<int>(type)));
}

} // namespace Examples
