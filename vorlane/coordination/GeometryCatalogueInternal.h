#ifndef VORLANE_COORDINATION_GEOMETRYCATALOGUEINTERNAL_H
#define VORLANE_COORDINATION_GEOMETRYCATALOGUEINTERNAL_H

#include "vorlane/coordination/CoordinationGeometry.h"
#include "vorlane/coordination/CrossReference.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include <cstddef>

namespace Vorlane {
namespace CoordinationGeometry {

/// The number of geometries, `unknownGeometry` included.
inline constexpr std::size_t geometryCount = 31;

/// Whether a table has a row for every geometry, each at the number of its `type`.
template <typename Row, std::size_t count>
constexpr bool RowsStandAtTheirNumbers(Row const (&rows)[count])
{
    for (std::size_t number = 0; number < count; ++number) {
        if (static_cast<std::size_t>(rows[number].type) != number) {
            return false;
        }
    }
    return count == geometryCount;
}

/// Names in lower case.
using GeometryTable = CrossReference<CString, CoordinationGeometryType>;

/// The one name table, built on the first call and never changed after it.
GeometryTable& GetCoordinationGeometryTable();

} // namespace CoordinationGeometry
} // namespace Vorlane

#endif
