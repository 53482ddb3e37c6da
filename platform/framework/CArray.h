#ifndef VORLANE_PLATFORM_FRAMEWORK_CARRAY_H
#define VORLANE_PLATFORM_FRAMEWORK_CARRAY_H

/// \file
/// The framework's growable array.

#include "platform/Export.h"
#include "platform/framework/AfxExceptions.h"
#include "platform/framework/CObject.h"
#include "platform/framework/ElementStorage.h"
#include "platform/framework/ElementTransfer.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <type_traits>

/// A growable contiguous array of TYPE with `int` indexes from 0. ARG_TYPE is how an element is handed over:
/// TYPE, TYPE const& or TYPE&.
///
/// Elements move bitwise when the storage grows, and the storage grows in place where the system can; so an
/// element must not point into itself. A new element is zero-filled and then default-constructed: a plain
/// number is 0, a class has what its constructor sets. Elements that leave the array are destroyed.
///
/// An index below 0, or at or past the size, raises CInvalidArgException. A failed allocation raises
/// CMemoryException; size, elements and storage are then as before. So they are after an exception of an
/// element's constructor, though the storage may have grown. An argument may be an element of the array
/// itself.
template <class TYPE, class ARG_TYPE = TYPE const&>
class CArray : public CObject
{
public:
    /// Empty, without storage.
    CArray() = default;

    ~CArray() override
    {
        Destroy(0, m_nSize);
        AfxFreeElements(m_pData);
    }

    /// The number of elements.
    int GetSize() const noexcept { return m_nSize; }

    /// Whether the size is 0.
    bool IsEmpty() const noexcept { return m_nSize == 0; }

    /// The number of elements that the present storage has room for.
    int GetCapacity() const noexcept { return m_nMaxSize; }

    /// The element at `index`, from 0 to the size minus 1; CInvalidArgException for any other.
    TYPE const& GetAt(int index) const
    {
        CheckIndex(index);
        return m_pData[index];
    }
    TYPE& GetAt(int index)
    {
        CheckIndex(index);
        return m_pData[index];
    }
    TYPE const& operator[](int index) const { return GetAt(index); }
    TYPE& operator[](int index) { return GetAt(index); }

    /// Assigns to the element at `index`, as by GetAt.
    void SetAt(int index, ARG_TYPE value) { GetAt(index) = value; }

    /// Element 0, or null while there is no storage.
    TYPE const* GetData() const noexcept { return m_pData; }
    TYPE* GetData() noexcept { return m_pData; }

    /// Changes the size. A `growBy` of 0 or more becomes the growth argument, also when the call fails later;
    /// one below 0 keeps it. Size 0 frees the storage; any other smaller size keeps it. The first storage has
    /// room for the larger of the growth argument and `size`. After that, storage that is too small grows by
    /// the growth argument, or, where that is 0, by an eighth of the present size, at least 4 and at most
    /// 1024 elements; and to `size` if that is more. A size below 0, or a capacity past `int`, raises
    /// CInvalidArgException.
    void SetSize(int size, int growBy = -1);

    /// Appends and gives the new index; amortised constant time for sizes up to some ten thousand, and beyond
    /// that as cheap as the system extends memory in place.
    int Add(ARG_TYPE value)
    {
        int const index = m_nSize;
        if constexpr (std::is_trivially_default_constructible_v<TYPE> && std::is_trivially_copyable_v<TYPE>) {
            if (index < m_nMaxSize) {
                m_pData[index] = value;
                m_nSize = index + 1;
                return index;
            }
        }
        SetAtGrow(index, value);
        return index;
    }

    /// Stores at `index`, extending the array where it is too short. An index below 0 raises
    /// CInvalidArgException.
    void SetAtGrow(int index, ARG_TYPE value);

    /// Becomes an element-wise copy of `other`; the growth argument stays. A copy of itself does nothing.
    void Copy(CArray const& other);

    /// Size 0, without storage.
    void RemoveAll() { SetSize(0, -1); }

    /// Stores the count and the elements, or loads them in place of the present ones; SerializeElements tells
    /// their form. Loading sets the size first, and an archive that ends early leaves it so: with the
    /// elements that came, the rest as before or new. But a count that needs more memory than 32 MB and than
    /// the archive surely holds is not believed: the array then grows with what is read, and an early end
    /// leaves it at the size reached. A count of 2^31 or more raises CInvalidArgException.
    // Exported, since compilers call by name what they know to stand in the vtable of an exported array.
    VORLANE_PLATFORM_EXPORT void Serialize(CArchive& archive) override;

private:
    void CheckIndex(int index) const
    {
        if (static_cast<unsigned int>(index) >= static_cast<unsigned int>(m_nSize)) {
            AfxThrowIndexException(index, m_nSize - 1);
        }
    }

    void Destroy(int first, int end) noexcept
    {
        if (first < end) {
            std::destroy(m_pData + first, m_pData + end);
        }
    }

    int GetGrownCapacity(int size) const;
    void LoadUnbelieved(CArchive& archive, int count);
    void Construct(int first, int end);

    TYPE* m_pData = nullptr;
    int m_nSize = 0;
    int m_nMaxSize = 0;
    int m_nGrowBy = 0;
};

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetSize(int size, int growBy)
{
    static_assert(alignof(TYPE) <= alignof(std::max_align_t), "the storage has no larger alignment");
    if (size < 0) {
        AfxThrowInvalidArgException("an array of size ", size);
    }
    if (growBy >= 0) {
        m_nGrowBy = growBy;
    }
    if (size == 0) {
        Destroy(0, m_nSize);
        AfxFreeElements(m_pData);
        m_pData = nullptr;
        m_nSize = 0;
        m_nMaxSize = 0;
        return;
    }
    if (m_pData == nullptr) {
        int const capacity = std::max(m_nGrowBy, size);
        m_pData = static_cast<TYPE*>(AfxCreateElements(static_cast<std::size_t>(capacity), sizeof(TYPE)));
        m_nMaxSize = capacity;
        Construct(0, size);
    } else if (size <= m_nSize) {
        Destroy(size, m_nSize);
    } else {
        if (size > m_nMaxSize) {
            int const capacity = GetGrownCapacity(size);
            m_pData = static_cast<TYPE*>(
                AfxResizeElements(m_pData, static_cast<std::size_t>(capacity), sizeof(TYPE)));
            m_nMaxSize = capacity;
        }
        AfxZeroElements(m_pData + m_nSize, static_cast<std::size_t>(size - m_nSize), sizeof(TYPE));
        Construct(m_nSize, size);
    }
    m_nSize = size;
}

template <class TYPE, class ARG_TYPE>
int CArray<TYPE, ARG_TYPE>::GetGrownCapacity(int size) const
{
    int const step = m_nGrowBy != 0 ? m_nGrowBy : std::clamp(m_nSize / 8, 4, 1024);
    if (m_nMaxSize > INT_MAX - step) {
        AfxThrowInvalidArgException("an array with room for ", m_nMaxSize, " elements can't grow by ", step);
    }
    return std::max(size, m_nMaxSize + step);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::Construct(int first, int end)
{
    // Where the constructor would set nothing, the zeros are the value.
    if constexpr (!std::is_trivially_default_constructible_v<TYPE>) {
        std::uninitialized_value_construct(m_pData + first, m_pData + end);
    }
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetAtGrow(int index, ARG_TYPE value)
{
    if (index < 0 || index == INT_MAX) {
        AfxThrowIndexException(index, INT_MAX - 1);
    }
    if (index < m_nSize) {
        m_pData[index] = value;
        return;
    }
    if constexpr (!std::is_same_v<std::remove_cv_t<std::remove_reference_t<ARG_TYPE>>, TYPE>) {
        // The value may refer to a part of an element, such as the bytes of a short text.
        TYPE element{};
        element = value;
        SetSize(index + 1, -1);
        m_pData[index] = std::move(element);
        return;
    }
    // The value may be an element, which moves with the storage.
    auto* const address = std::addressof(value);
    std::less<void const*> const isBefore;
    bool const isElement = m_nSize > 0 && !isBefore(address, m_pData) && isBefore(address, m_pData + m_nSize);
    std::ptrdiff_t const offset =
        isElement ? reinterpret_cast<char const*>(address) - reinterpret_cast<char const*>(m_pData) : 0;
    SetSize(index + 1, -1);
    if (isElement) {
        m_pData[index] = *reinterpret_cast<decltype(address)>(reinterpret_cast<char*>(m_pData) + offset);
    } else {
        m_pData[index] = value;
    }
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::Copy(CArray const& other)
{
    if (this != &other) {
        SetSize(other.m_nSize, -1);
        std::copy(other.m_pData, other.m_pData + other.m_nSize, m_pData);
    }
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::Serialize(CArchive& archive)
{
    if (archive.IsStoring()) {
        archive.WriteCount(static_cast<unsigned long>(m_nSize));
        SerializeElements<TYPE>(archive, m_pData, m_nSize);
        return;
    }
    constexpr std::uint64_t alwaysBelieved = 32 << 20;
    int const count = static_cast<std::int32_t>(archive.ReadCount());
    std::uint64_t const bytes = count > 0 ? static_cast<std::uint64_t>(count) * sizeof(TYPE) : 0;
    if (bytes > alwaysBelieved && bytes > archive.GetRemaining()) {
        LoadUnbelieved(archive, count);
    } else {
        SetSize(count, -1);
        SerializeElements<TYPE>(archive, m_pData, count);
    }
}

/// Loads `count` elements in steps that double.
template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::LoadUnbelieved(CArchive& archive, int count)
{
    constexpr int firstStep = static_cast<int>(sizeof(TYPE) < (1 << 20) ? (1 << 20) / sizeof(TYPE) : 1);
    SetSize(std::min(count, m_nSize), -1);
    for (int loaded = 0; loaded < count;) {
        int const step = std::min(count - loaded, std::max(loaded, firstStep));
        SetSize(std::max(loaded + step, m_nSize), -1);
        SerializeElements<TYPE>(archive, m_pData + loaded, step);
        loaded += step;
    }
}

#endif
