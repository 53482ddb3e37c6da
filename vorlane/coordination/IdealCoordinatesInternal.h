#ifndef VORLANE_COORDINATION_IDEALCOORDINATESINTERNAL_H
#define VORLANE_COORDINATION_IDEALCOORDINATESINTERNAL_H

#include "vorlane/coordination/CoordinationGeometry.h"

namespace Vorlane {
namespace CoordinationGeometry {

/// The ideal sites of a geometry: `count` points, site 1 first, or none.
struct IdealSites
{
    Spatia::Point3d const* first = nullptr;
    int count = 0;
};

/// The catalogue's sites; none for a geometry without sites and for any number that is no geometry.
IdealSites GetIdealSites(CoordinationGeometryType type);

/// Finds three unit vectors with given mutual angles, in radians, around the x axis, site 1 in the plane y =
/// 0. Gives false, and leaves the sites alone, if there are none.
bool PlaceTrigonalPyramid(double angle12, double angle13, double angle23, Spatia::Point3d& site1,
                          Spatia::Point3d& site2, Spatia::Point3d& site3);

} // namespace CoordinationGeometry
} // namespace Vorlane

#endif
