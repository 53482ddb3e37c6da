#ifndef VORLANE_PLATFORM_FRAMEWORK_ELEMENTSTORAGE_H
#define VORLANE_PLATFORM_FRAMEWORK_ELEMENTSTORAGE_H

/// \file
/// The raw memory below CArray, CMap and CPlex. A failed or oversized request raises CMemoryException and
/// leaves everything as it was. The memory is aligned for any type without an alignment of its own.

#include "platform/Export.h"

#include <cstddef>

/// Zero-filled memory for `count` elements of `size` bytes.
VORLANE_PLATFORM_EXPORT void* AfxCreateElements(std::size_t count, std::size_t size);

/// Moves `elements` bitwise to memory for `count` elements of `size` bytes, in place where the system can;
/// what lies behind the old elements is not filled.
VORLANE_PLATFORM_EXPORT void* AfxResizeElements(void* elements, std::size_t count, std::size_t size);

/// Fills with zeros.
VORLANE_PLATFORM_EXPORT void AfxZeroElements(void* elements, std::size_t count, std::size_t size) noexcept;

/// Frees what the functions above gave; null is allowed.
VORLANE_PLATFORM_EXPORT void AfxFreeElements(void* elements) noexcept;

#endif
