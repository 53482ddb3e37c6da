#include "vorlane/persistence/ArchiveForm.h"

#include "vorlane/foundation/CountedEntries.h"
#include "vorlane/persistence/EntryRunsInternal.h"
#include "vorlane/persistence/FieldsInternal.h"

#include <cstdint>
#include <limits>

using Spatia::Matrix3x3;
using Spatia::Matrix4x4;
using Spatia::Point2d;
using Spatia::Point3d;

namespace Vorlane {

namespace {

template <int size, typename Matrix>
void SerializeElements(CArchive& ar, Matrix& matrix)
{
    for (int row = 0; row < size; ++row) {
        for (int column = 0; column < size; ++column) {
            Fields::Double(ar, matrix(row, column));
        }
    }
}

/// An array of points: the count form, then each point through `pointFields(archive or block, point)`, which
/// takes `pointBytes` bytes.
template <typename Point, typename PointFields>
void SerializePoints(CArchive& ar, Orrin::LegacyArray<Point>& points, std::size_t pointBytes,
                     PointFields pointFields)
{
    if (ar.IsStoring()) {
        ar.WriteCount(points.size());
        Fields::StoreRun(ar, points.size(), pointBytes, [&](auto& block, std::size_t index) {
            pointFields(block, points[static_cast<long>(index)]);
        });
        return;
    }
    std::size_t const maximum = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(Point);
    std::size_t const count = CheckedEntryCount(static_cast<std::uint32_t>(ar.ReadCount()), maximum);
    auto const resize = [&](std::size_t size) {
        points.resize(static_cast<unsigned int>(size), Point());
    };
    auto const loadRange = [&](std::size_t begin, std::size_t end) {
        Fields::LoadRun(ar, begin, end, pointBytes, [&](auto& block, std::size_t index) {
            pointFields(block, points[static_cast<long>(index)]);
        });
    };
    LoadCountedEntries(ar, points.size(), count, pointBytes, sizeof(Point), resize, loadRange);
}

} // namespace

void SerializePoint2d(CArchive& ar, Point2d& point)
{
    Fields::Point2dFields(ar, point);
}

void SerializePoint3d(CArchive& ar, Point3d& point)
{
    Fields::Point3dFields(ar, point);
}

void SerializeMatrix3x3(CArchive& ar, Matrix3x3& matrix)
{
    SerializeElements<3>(ar, matrix);
}

void SerializeMatrix4x4(CArchive& ar, Matrix4x4& matrix)
{
    SerializeElements<4>(ar, matrix);
}

void SerializePoint2dArray(CArchive& ar, Orrin::LegacyArray<Point2d>& points)
{
    SerializePoints(ar, points, 16, [](auto& block, Point2d& point) { Fields::Point2dFields(block, point); });
}

void SerializePoint3dArray(CArchive& ar, Orrin::LegacyArray<Point3d>& points)
{
    SerializePoints(ar, points, Point3dBytes(ar.m_nObjectSchema),
                    [](auto& block, Point3d& point) { Fields::Point3dFields(block, point); });
}

CArchive& operator>>(CArchive& ar, Point2d& value)
{
    SerializePoint2d(ar, value);
    return ar;
}

// The inserting operators take constants, so that a store may be written of any value; on a loading archive
// they load all the same, as the header says.

CArchive& operator<<(CArchive& ar, Point2d const& value)
{
    return ar >> const_cast<Point2d&>(value);
}

CArchive& operator>>(CArchive& ar, Point3d& value)
{
    SerializePoint3d(ar, value);
    return ar;
}

CArchive& operator<<(CArchive& ar, Point3d const& value)
{
    return ar >> const_cast<Point3d&>(value);
}

CArchive& operator>>(CArchive& ar, Matrix3x3& value)
{
    SerializeMatrix3x3(ar, value);
    return ar;
}

CArchive& operator<<(CArchive& ar, Matrix3x3 const& value)
{
    return ar >> const_cast<Matrix3x3&>(value);
}

CArchive& operator>>(CArchive& ar, Matrix4x4& value)
{
    SerializeMatrix4x4(ar, value);
    return ar;
}

CArchive& operator<<(CArchive& ar, Matrix4x4 const& value)
{
    return ar >> const_cast<Matrix4x4&>(value);
}

} // namespace Vorlane
