#ifndef VORLANE_EXAMPLES_SHARED_VECTORS_H
#define VORLANE_EXAMPLES_SHARED_VECTORS_H

#include "vorlane/foundation/ValueTypes.h"

namespace Examples {

using Spatia::Point3d;

inline double Dot(Point3d const& a, Point3d const& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Point3d Unit(Point3d vector)
{
    return vector.Normalize();
}

} // namespace Examples

#endif
