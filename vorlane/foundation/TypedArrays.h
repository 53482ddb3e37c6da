#ifndef VORLANE_FOUNDATION_TYPEDARRAYS_H
#define VORLANE_FOUNDATION_TYPEDARRAYS_H

/// \file
/// The plain typed arrays of the library: CArray with a constructor for a size and with assignment. They need
/// nothing but memory, so they may be built while the library loads.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"

namespace Vorlane {

/// An array of truth values. In an archive: the count, then 1 byte for each.
class VORLANE_EXPORT BoolArray : public CArray<bool, bool>
{
public:
    /// Empty.
    BoolArray() = default;

    /// `size` elements, all false, and the growth argument `growBy`, at least 1. A `size` below 1 gives an
    /// empty array and leaves the growth argument at 0.
    BoolArray(int size, int growBy);

    /// A copy of the elements; the growth argument is 0.
    BoolArray(BoolArray const& other);
    ~BoolArray() override;

    /// CArray::Copy.
    BoolArray& operator=(BoolArray const& other);
};

/// An array of integers. In an archive: the count, then 4 bytes for each.
class VORLANE_EXPORT IntArray : public CArray<int, int>
{
public:
    /// Empty.
    IntArray() = default;

    /// `size` elements, all 0, and the growth argument `growBy`, at least 1. A `size` below 1 gives an empty
    /// array and leaves the growth argument at 0.
    IntArray(int size, int growBy);

    /// A copy of the elements; the growth argument is 0.
    IntArray(IntArray const& other);
    ~IntArray() override;

    /// CArray::Copy.
    IntArray& operator=(IntArray const& other);
};

/// An array of doubles. In an archive: the count, then 8 bytes for each.
class VORLANE_EXPORT DoubleArray : public CArray<double, double>
{
public:
    /// Empty.
    DoubleArray() = default;

    /// `size` elements, all 0, and the growth argument `growBy`, at least 1. A `size` below 1 gives an empty
    /// array and leaves the growth argument at 0.
    DoubleArray(int size, int growBy);

    /// A copy of the elements; the growth argument is 0.
    DoubleArray(DoubleArray const& other);
    ~DoubleArray() override;

    /// CArray::Copy.
    DoubleArray& operator=(DoubleArray const& other);
};

} // namespace Vorlane

#endif
