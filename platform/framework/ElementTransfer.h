#ifndef VORLANE_PLATFORM_FRAMEWORK_ELEMENTTRANSFER_H
#define VORLANE_PLATFORM_FRAMEWORK_ELEMENTTRANSFER_H

/// \file
/// How the elements of arrays and maps go through an archive.

#include "platform/framework/AfxExceptions.h"
#include "platform/framework/CArchive.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

/// Stores or loads `count` elements of `size` bytes as they lie in memory, in blocks of whole elements of at
/// most 2147483647 bytes. Truth values become 0 or 1 on loading. An archive that ends early raises
/// CArchiveException with cause `endOfFile` and no file name; what came before is in its place.
VORLANE_PLATFORM_EXPORT void AfxTransferElements(CArchive& archive, void* elements, std::size_t size,
                                                 std::ptrdiff_t count, bool areTruthValues);

/// The 4 bytes of an address in an archive. One that doesn't fit raises CInvalidArgException on storing.
VORLANE_PLATFORM_EXPORT std::uintptr_t AfxTransferAddress(CArchive& archive, std::uintptr_t address);

/// Whether elements go one by one through the operators of the archive: texts, and numbers whose bytes in
/// memory are not those of the archive.
template <class TYPE>
constexpr bool afxGoesByOperator = std::is_same_v<TYPE, CString> || std::is_same_v<TYPE, long> ||
                                   std::is_same_v<TYPE, unsigned long> ||
                                   (std::is_arithmetic_v<TYPE> && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__);

/// Stores or loads elements: texts in the text form, addresses as 4 bytes, and whatever may be copied bitwise
/// as one block of memory. May be specialised for other elements, which raise CInvalidArgException here. So
/// does a null pointer with a `count` other than 0.
template <class TYPE>
void SerializeElements(CArchive& archive, TYPE* elements, std::ptrdiff_t count)
{
    if (count == 0) {
        return;
    }
    if (elements == nullptr || count < 0) {
        AfxThrowInvalidArgException(elements == nullptr ? "no memory for " : "a transfer of ", count,
                                    " elements");
    }
    if constexpr (afxGoesByOperator<TYPE>) {
        for (TYPE* element = elements; element != elements + count; ++element) {
            if (archive.IsStoring()) {
                archive << *element;
            } else {
                archive >> *element;
            }
        }
    } else if constexpr (std::is_pointer_v<TYPE>) {
        for (TYPE* element = elements; element != elements + count; ++element) {
            *element = reinterpret_cast<TYPE>(
                AfxTransferAddress(archive, reinterpret_cast<std::uintptr_t>(*element)));
        }
    } else if constexpr (std::is_trivially_copyable_v<TYPE>) {
        AfxTransferElements(archive, elements, sizeof(TYPE), count, std::is_same_v<TYPE, bool>);
    } else {
        AfxThrowInvalidArgException("elements of this type have no archive form");
    }
}

#endif
