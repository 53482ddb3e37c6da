#ifndef VORLANE_EXAMPLES_SHARED_CONVEXHULL_H
#define VORLANE_EXAMPLES_SHARED_CONVEXHULL_H

#include "examples/shared/Vectors.h"

#include <vector>

namespace Examples {

/// The faces of the convex hull of some points, each a polygon of its corners in order. Coplanar triangles
/// are one face. Points in one plane have one face, points on one line none. Meant for a dozen points: the
/// time grows with the fourth power of their number.
std::vector<std::vector<Point3d>> ConvexHullFaces(std::vector<Point3d> const& points);

} // namespace Examples

#endif
