#ifndef VORLANE_PERSISTENCE_ARCHIVEFORM_H
#define VORLANE_PERSISTENCE_ARCHIVEFORM_H

/// \file
/// The archive form of points, matrices and arrays of points. docs/archive-format.md is the whole format.
///
/// Each function stores its argument into a storing archive and loads it from a loading one; the argument of
/// a store is not changed. The schema number is the archive's `m_nObjectSchema`, read at each call. Where an
/// archive ends before a field is complete, CArchiveException with the cause `endOfFile` is raised, and what
/// was complete before stays loaded. Nothing is kept between calls, and an archive is used from one thread at
/// a time.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/ValueTypes.h"

namespace Vorlane {

/// x and y as doubles, 16 bytes at every schema number. A point that the archive holds in part is left alone.
VORLANE_EXPORT void SerializePoint2d(CArchive& ar, Spatia::Point2d& point);

/// x, y and z: 24 bytes of doubles at the schema numbers 0 to 6, 19 and 0xFFFFFFFF, else 12 bytes of floats,
/// to which a store rounds (to infinity beyond their range). A point that the archive holds in part is left
/// alone.
VORLANE_EXPORT void SerializePoint3d(CArchive& ar, Spatia::Point3d& point);

/// Nine doubles by rows, 72 bytes at every schema number. Elements are loaded one by one.
VORLANE_EXPORT void SerializeMatrix3x3(CArchive& ar, Spatia::Matrix3x3& matrix);

/// Sixteen doubles by rows, 128 bytes at every schema number. Elements are loaded one by one.
VORLANE_EXPORT void SerializeMatrix4x4(CArchive& ar, Spatia::Matrix4x4& matrix);

/// The number of points in the count form, then each point as by SerializePoint2d.
///
/// A load first gives the array the size that the archive tells, new points being zero. If the archive ends
/// early, the points read so far are loaded, old ones within the size stay, and the rest is zero. A size that
/// the rest of the archive cannot hold, and that would take more than 16 MB, is taken up only as far as its
/// bytes are there.
///
/// \throws std::length_error "vector<T> too long" for a size from 0x80000000 up; the array is then as it was.
/// \throws CMemoryException if the memory cannot be had.
VORLANE_EXPORT void SerializePoint2dArray(CArchive& ar, Orrin::LegacyArray<Spatia::Point2d>& points);

/// The same with SerializePoint3d, whose width each point follows.
VORLANE_EXPORT void SerializePoint3dArray(CArchive& ar, Orrin::LegacyArray<Spatia::Point3d>& points);

/// The operators call the function of their type and give the archive back, for chaining. The direction is
/// the archive's and not the operator's: on a loading archive `ar << point` loads into the point, which must
/// then be one that may change.
VORLANE_EXPORT CArchive& operator>>(CArchive& ar, Spatia::Point2d& value);
VORLANE_EXPORT CArchive& operator<<(CArchive& ar, Spatia::Point2d const& value);
VORLANE_EXPORT CArchive& operator>>(CArchive& ar, Spatia::Point3d& value);
VORLANE_EXPORT CArchive& operator<<(CArchive& ar, Spatia::Point3d const& value);
VORLANE_EXPORT CArchive& operator>>(CArchive& ar, Spatia::Matrix3x3& value);
VORLANE_EXPORT CArchive& operator<<(CArchive& ar, Spatia::Matrix3x3 const& value);
VORLANE_EXPORT CArchive& operator>>(CArchive& ar, Spatia::Matrix4x4& value);
VORLANE_EXPORT CArchive& operator<<(CArchive& ar, Spatia::Matrix4x4 const& value);

} // namespace Vorlane

#endif
