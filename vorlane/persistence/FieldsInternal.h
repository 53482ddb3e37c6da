#ifndef VORLANE_PERSISTENCE_FIELDSINTERNAL_H
#define VORLANE_PERSISTENCE_FIELDSINTERNAL_H

/// \file
/// The words in which the serializers are written: one function for each form of a field, serving both
/// directions, so that a serializer reads like the table of its layout in docs/archive-format.md.
///
/// A function takes the archive and the value, stores the value or loads it, and assigns it only when it has
/// been read whole. The forms that lists of points and vertices need are templates over the archive, because
/// such lists move through the blocks of EntryRunsInternal.h, which stand in for the archive there.

#include "vorlane/foundation/FloatRounding.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/ValueTypes.h"
#include "vorlane/persistence/SchemaInternal.h"

#include <cstdint>
#include <string>
#include <type_traits>

namespace Vorlane {
namespace Fields {

/// A number of the archive's own forms, as wide as its type.
template <typename Value>
void Number(CArchive& ar, Value& value)
{
    if (ar.IsStoring()) {
        ar << value;
    } else {
        ar >> value;
    }
}

/// Whether the coordinates of a Point3d are doubles in this archive.
inline bool HasDoublePoint3d(CArchive const& ar)
{
    return Point3dIsDouble(ar.m_nObjectSchema);
}

/// int32: a signed number of 4 bytes.
inline void Int32(CArchive& ar, std::int32_t& value)
{
    Number(ar, value);
}

/// int32, for an enumeration; every number passes.
template <typename Enumeration>
void Enumerator(CArchive& ar, Enumeration& value)
{
    static_assert(std::is_same_v<std::underlying_type_t<Enumeration>, std::int32_t>);
    auto word = static_cast<std::int32_t>(value);
    Int32(ar, word);
    if (ar.IsLoading()) {
        value = static_cast<Enumeration>(word);
    }
}

/// uint16: an unsigned number of 2 bytes.
inline void Uint16(CArchive& ar, unsigned short& value)
{
    Number(ar, value);
}

/// float: 4 bytes.
inline void Float(CArchive& ar, float& value)
{
    Number(ar, value);
}

/// double: 8 bytes.
inline void Double(CArchive& ar, double& value)
{
    Number(ar, value);
}

/// bool: 1 byte; loading, any but 0 is true.
inline void Bool(CArchive& ar, bool& value)
{
    unsigned char byte = value ? 1 : 0;
    Number(ar, byte);
    if (ar.IsLoading()) {
        value = byte != 0;
    }
}

/// int32 flag: 4 bytes, 1 or 0; loading, any but 0 is true.
inline void Flag(CArchive& ar, bool& value)
{
    std::int32_t word = value ? 1 : 0;
    Int32(ar, word);
    if (ar.IsLoading()) {
        value = word != 0;
    }
}

/// int32 flag: 4 bytes, 1 or 0; loading, only the whole word 1 is true.
inline void FlagOfOne(CArchive& ar, bool& value)
{
    std::int32_t word = value ? 1 : 0;
    Int32(ar, word);
    if (ar.IsLoading()) {
        value = word == 1;
    }
}

/// int32 flag held in a word: stored as 1 for any but 0, and loaded so.
inline void FlagWord(CArchive& ar, std::int32_t& value)
{
    bool isSet = value != 0;
    Flag(ar, isSet);
    if (ar.IsLoading()) {
        value = isSet ? 1 : 0;
    }
}

/// text: narrowed into the archive and widened out of it. It ends at its first zero character, both ways.
inline void Text(CArchive& ar, std::wstring& text)
{
    if (ar.IsStoring()) {
        ar << CString(Orrin::ToSString(text).c_str());
    } else {
        CString narrow;
        ar >> narrow;
        text = AfxWithMemoryException(
            [&] { return Orrin::ToWString(std::string(static_cast<char const*>(narrow))); });
    }
}

/// A double held in a float: 4 bytes.
template <typename Archive>
void RoundedDouble(Archive& ar, double& value)
{
    float rounded = ar.IsStoring() ? RoundedToFloat(value) : 0.0f;
    Number(ar, rounded);
    if (!ar.IsStoring()) {
        value = static_cast<double>(rounded);
    }
}

/// Point2d: x and y as doubles.
template <typename Archive>
void Point2dFields(Archive& ar, Spatia::Point2d& point)
{
    Spatia::Point2d whole = point;
    Number(ar, whole.x);
    Number(ar, whole.y);
    if (!ar.IsStoring()) {
        point = whole;
    }
}

/// Point3d: x, y and z, as doubles or as floats.
template <typename Archive>
void Point3dFields(Archive& ar, Spatia::Point3d& point)
{
    Spatia::Point3d whole = point;
    if (HasDoublePoint3d(ar)) {
        Number(ar, whole.x);
        Number(ar, whole.y);
        Number(ar, whole.z);
    } else {
        RoundedDouble(ar, whole.x);
        RoundedDouble(ar, whole.y);
        RoundedDouble(ar, whole.z);
    }
    if (!ar.IsStoring()) {
        point = whole;
    }
}

/// A value of several fields that a load assigns once all of them are read. `field` is one of the functions
/// above, or of their kind.
template <typename Value>
void Whole(CArchive& ar, void (*field)(CArchive&, Value&), Value& value)
{
    if (ar.IsStoring()) {
        field(ar, value);
    } else {
        Value whole;
        field(ar, whole);
        value = whole;
    }
}

/// A value behind a pair of accessors; the setter is called in a load alone, with the whole value.
template <typename Value, typename Object, typename Getter, typename Setter>
void Property(CArchive& ar, void (*field)(CArchive&, Value&), Object& object, Getter getter, Setter setter)
{
    Value value = AfxWithMemoryException([&]() -> Value { return (object.*getter)(); });
    field(ar, value);
    if (ar.IsLoading()) {
        AfxWithMemoryException([&] { (object.*setter)(value); });
    }
}

} // namespace Fields
} // namespace Vorlane

#endif
