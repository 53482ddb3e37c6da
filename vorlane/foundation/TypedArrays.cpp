#include "vorlane/foundation/TypedArrays.h"

#include <algorithm>

namespace Vorlane {

namespace {

template <typename Array>
void SetFirstSize(Array& array, int size, int growBy)
{
    if (size >= 1) {
        array.SetSize(size, std::max(growBy, 1));
    }
}

} // namespace

BoolArray::BoolArray(int size, int growBy)
{
    SetFirstSize(*this, size, growBy);
}

BoolArray::BoolArray(BoolArray const& other) : CArray()
{
    Copy(other);
}

BoolArray::~BoolArray() = default;

BoolArray& BoolArray::operator=(BoolArray const& other)
{
    Copy(other);
    return *this;
}

IntArray::IntArray(int size, int growBy)
{
    SetFirstSize(*this, size, growBy);
}

IntArray::IntArray(IntArray const& other) : CArray()
{
    Copy(other);
}

IntArray::~IntArray() = default;

IntArray& IntArray::operator=(IntArray const& other)
{
    Copy(other);
    return *this;
}

DoubleArray::DoubleArray(int size, int growBy)
{
    SetFirstSize(*this, size, growBy);
}

DoubleArray::DoubleArray(DoubleArray const& other) : CArray()
{
    Copy(other);
}

DoubleArray::~DoubleArray() = default;

DoubleArray& DoubleArray::operator=(DoubleArray const& other)
{
    Copy(other);
    return *this;
}

} // namespace Vorlane
