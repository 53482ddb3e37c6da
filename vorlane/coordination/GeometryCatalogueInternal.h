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

/// Names in lower case.
using GeometryTable = CrossReference<CString, CoordinationGeometryType>;

/// The one name table, built on the first call and never changed after it.
GeometryTable& GetCoordinationGeometryTable();

} // namespace CoordinationGeometry
} // namespace Vorlane

#endif
