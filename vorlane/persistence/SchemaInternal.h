#ifndef VORLANE_PERSISTENCE_SCHEMAINTERNAL_H
#define VORLANE_PERSISTENCE_SCHEMAINTERNAL_H

/// \file
/// The questions that serializers put to the schema number. docs/archive-format.md lists who asks which.
///
/// Most compare it as an unsigned number, so that 0xFFFFFFFF, the number of an archive that nobody set, is
/// the newest. Some compare it as a signed one, so that 0xFFFFFFFF and everything from 0x80000000 up is old.

#include "vorlane/foundation/FrameworkSurface.h"

#include <cstddef>
#include <cstdint>

namespace Vorlane {

/// The schema number of an archive that nobody set.
constexpr std::uint32_t unsetSchema = 0xFFFFFFFFu;

/// A layout that came with schema number `first`, in both directions.
inline bool PresentFrom(CArchive const& ar, std::uint32_t first)
{
    return ar.m_nObjectSchema >= first;
}

/// A field that is always stored, and loaded from schema number `first` on.
inline bool StoredOrLoadedFrom(CArchive const& ar, std::uint32_t first)
{
    return ar.IsStoring() || ar.m_nObjectSchema >= first;
}

/// The same, for the tests that are signed.
inline bool StoredOrLoadedFromSigned(CArchive const& ar, std::uint32_t first)
{
    bool const isNegative = (ar.m_nObjectSchema & 0x80000000u) != 0;
    return ar.IsStoring() || (!isNegative && ar.m_nObjectSchema >= first);
}

/// Whether the coordinates of a Point3d are doubles at this schema number, and not floats.
constexpr bool Point3dIsDouble(std::uint32_t schema)
{
    return schema <= 6 || schema == 19 || schema == unsetSchema;
}

/// The bytes of a Point3d at this schema number.
constexpr std::size_t Point3dBytes(std::uint32_t schema)
{
    return Point3dIsDouble(schema) ? 24 : 12;
}

} // namespace Vorlane

#endif
