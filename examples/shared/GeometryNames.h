#ifndef VORLANE_EXAMPLES_SHARED_GEOMETRYNAMES_H
#define VORLANE_EXAMPLES_SHARED_GEOMETRYNAMES_H

#include "vorlane/coordination/CoordinationGeometry.h"

#include <string>
#include <vector>

namespace Examples {

/// What a person calls a geometry, and how a picture of it stands.
struct GeometryName
{
    Vorlane::CoordinationGeometryType type;
    std::string name;        ///< the long name of the library, empty if it has none
    std::string code;        ///< the short code, empty if it has none
    Spatia::Point3d upright; ///< the direction among the ideal sites that a picture shows upwards

    /// The long name if there is one, else the code.
    std::string const& Title() const { return name.empty() ? code : name; }
};

/// All 30 geometries in the order of their numbers.
std::vector<GeometryName> const& GeometryNames();

/// The entry of a type.
GeometryName const& NameOf(Vorlane::CoordinationGeometryType type);

} // namespace Examples

#endif
