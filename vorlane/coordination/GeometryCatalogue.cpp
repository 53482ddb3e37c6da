#include "vorlane/coordination/CoordinationGeometry.h"
#include "vorlane/coordination/GeometryCatalogueInternal.h"

#include <cstddef>

namespace Vorlane {
namespace CoordinationGeometry {
namespace {

struct GeometryRow
{
    CoordinationGeometryType type;
    int ligands;
    char const* names[3]; ///< the long name first if there is one; the rest is null
};

// The short codes follow the polyhedral symbols of inorganic nomenclature: shape letters and ligand number.
constexpr GeometryRow catalogue[] = {
    {unknownGeometry, 0, {}},
    {linear, 2, {"linear", "l2"}},
    {angular, 2, {"angular", "a2", "a2t4"}},
    {a2tp3, 2, {"a2tp3"}},
    {a2sp4, 2, {"a2sp4"}},
    {trigonalPlanar, 3, {"trigonalPlanar", "tp3"}},
    {trigonalPyramidal, 3, {"trigonalPyramidal", "tpy3", "tpy3t4"}},
    {tpy3tbpy5, 3, {"tpy3tbpy5"}},
    {tpy3oc6, 3, {"tpy3oc6"}},
    {tShaped, 3, {"tShaped", "ts3"}},
    {tetrahedral, 4, {"tetrahedral", "t4"}},
    {squarePlanar, 4, {"squarePlanar", "square", "sp4"}},
    {squarePyramidal, 4, {"squarePyramidal", "spy4"}},
    {trigonalPlanarPyramidal, 4, {"trigonalPlanarPyramidal", "tpy4"}},
    {seeSaw, 4, {"seeSaw", "ss4", "ss4oc6"}},
    {ss4tbpy5, 4, {"ss4tbpy5"}},
    {trigonalBipyramidal, 5, {"trigonalBipyramidal", "tbpy5"}},
    {squarePlanarPyramidal, 5, {"squarePlanarPyramidal", "spy5"}},
    {octahedral, 6, {"octahedral", "oc6"}},
    {trigonalPrismatic, 6, {"trigonalPrismatic", "tpr6"}},
    {trigonalAntiprismatic, 6, {"trigonalAntiprismatic", "tapr6"}},
    {trigonalAntiprismaticStretched, 6, {"trigonalAntiprismaticStretched"}},
    {pentagonalPlanarPyramidal, 6, {"pentagonalPlanarPyramidal", "ppy6"}},
    {pentagonalBipyramidal, 7, {"pentagonalBipyramidal", "pbpy7"}},
    {octahedralFaceMonocapped, 7, {"octahedralFaceMonocapped", "ocf7"}},
    {trigonalPrismaticSquareFaceMonocapped, 7, {"trigonalPrismaticSquareFaceMonocapped", "tprs7"}},
    {cubic, 8, {"cubic", "cu8"}},
    {squareAntiprismatic, 8, {"squareAntiprismatic", "sapr8"}},
    {dodecahedral, 8, {"dodecahedral", "dd8"}},
    {hexagonalBipyramidal, 8, {"hexagonalBipyramidal", "hbpy8"}},
    {heptagonalBipyramidal, 9, {"heptagonalBipyramidal", "hbpy9"}},
};

static_assert(RowsStandAtTheirNumbers(catalogue));

/// Enters all names, in lower case. A table that has entries stays as it is. Gives true.
bool FillCoordinationGeometryTable(GeometryTable& table)
{
    if (table.GetCount() != 0) {
        return true;
    }
    for (GeometryRow const& row : catalogue) {
        for (char const* name : row.names) {
            if (name != nullptr) {
                CString key(name);
                key.MakeLower();
                table.SetAt(key, row.type);
            }
        }
    }
    return true;
}

} // namespace

GeometryTable& GetCoordinationGeometryTable()
{
    // Two statics, so that a fill that runs out of memory is tried again without losing the table. Both are
    // safe to reach first from several threads.
    static GeometryTable table(10);
    [[maybe_unused]] static bool const filled = FillCoordinationGeometryTable(table);
    return table;
}

int GetCoordinationNumber(CoordinationGeometryType type)
{
    std::size_t const number = static_cast<unsigned int>(type);
    return number < geometryCount ? catalogue[number].ligands : 0;
}

CoordinationGeometryType StringToCoordinationGeometry(CString const& name)
{
    if (name.IsEmpty()) {
        return unknownGeometry;
    }
    CString folded(name);
    folded.MakeLower();
    CoordinationGeometryType type = unknownGeometry;
    GetCoordinationGeometryTable().Lookup(folded, type);
    return type;
}

} // namespace CoordinationGeometry
} // namespace Vorlane
