#ifndef VORLANE_EXAMPLES_SHARED_RIBBON_H
#define VORLANE_EXAMPLES_SHARED_RIBBON_H

#include "examples/shared/Vectors.h"

#include <string>

namespace Examples {

/// A picture of a chain of points, in angstrom, such as the C-alpha atoms of a protein: a ribbon along the
/// Hermite curve through them, blue at its start and red at its end, seen along z. The chain breaks where two
/// points are more than 5 angstrom apart. Empty if no two points are nearer.
///
/// \param idPrefix  keeps the drawings of one page apart.
/// \param asFile    whether the drawing stands alone.
std::string DrawRibbon(Orrin::LegacyArray<Point3d> const& chain, std::string const& idPrefix, bool asFile);

} // namespace Examples

#endif
