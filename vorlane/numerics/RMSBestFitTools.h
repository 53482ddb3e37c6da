#ifndef VORLANE_NUMERICS_RMSBESTFITTOOLS_H
#define VORLANE_NUMERICS_RMSBESTFITTOOLS_H

/// \file
/// Least-squares geometry on sets of points. All points weigh the same; coordinates are in the caller's unit
/// of length. There is no shared state and nothing is allocated.

#include "vorlane/Export.h"
#include "vorlane/foundation/ValueTypes.h"

/// Planes through points and motions of one set onto another, by least squares.
namespace Vorlane::RMSBestFitTools {

/// Finds the plane with the least sum of squared distances from `points`.
///
/// \param centroid gets a point of the plane, the mean of the points; the origin if there are none.
/// \param normal gets the normal, of length 1 and either sign. Points on one line have many such planes;
///        one of them is given. Without points, with one, or with points all equal it is (0, 0, 1); so too
///        if a coordinate is NaN or infinite. Coordinates whose squares overflow (from about 1e154) give NaN
///        or (0, 0, 1).
///
/// Time grows with the number of points.
VORLANE_EXPORT void FindPlane(Orrin::LegacyArray<Spatia::Point3d> const& points, Spatia::Point3d& centroid,
                              Spatia::Point3d& normal);

/// Finds the rotation and translation that carry `first` onto `second`, paired by index, with the least sum
/// of squared distances, and moves `points` by them. The motion is always proper: a mirrored set gets the
/// best rotation, not the reflection. Sets of one point each give a pure translation; two points, or points
/// on one line, leave the turn about the line open, and one of the best rotations is taken.
///
/// \param points may be `first` or `second` itself.
/// \return false, with `points` untouched, if the sets differ in size or are empty or `points` is empty;
///         else true. Where either set has a NaN or infinite coordinate, every point gets one.
///
/// Time grows with the number of points.
///
/// Source: B. K. P. Horn, "Closed-form solution of absolute orientation using unit quaternions", Journal of
/// the Optical Society of America A 4 (1987).
VORLANE_EXPORT bool FindAndApplyTransformation(Orrin::LegacyArray<Spatia::Point3d> const& first,
                                               Orrin::LegacyArray<Spatia::Point3d> const& second,
                                               Orrin::LegacyArray<Spatia::Point3d>& points);

} // namespace Vorlane::RMSBestFitTools

#endif
