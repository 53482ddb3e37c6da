#ifndef VORLANE_PLATFORM_FRAMEWORK_CMAP_H
#define VORLANE_PLATFORM_FRAMEWORK_CMAP_H

/// \file
/// The framework's hash map.

#include "platform/Export.h"
#include "platform/framework/AfxExceptions.h"
#include "platform/framework/CObject.h"
#include "platform/framework/CPlex.h"
#include "platform/framework/CString.h"
#include "platform/framework/ElementStorage.h"
#include "platform/framework/ElementTransfer.h"
#include "platform/framework/MapIndex.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>

/// What POSITION points to; it is never defined.
struct CPositionTag;

/// An opaque token of an iteration; 0 means that no entry is left.
using POSITION = CPositionTag*;

/// The hash of a text: from 0, times 33 plus the next byte, up to the terminator.
VORLANE_PLATFORM_EXPORT unsigned int AfxHashText(char const* text) noexcept;

/// The hash of a key: for a number or an address its low 32 bits shifted right by 4, unsigned; for a text
/// AfxHashText. May be specialised for keys of other kinds.
template <class ARG_KEY>
unsigned int HashKey(ARG_KEY key)
{
    if constexpr (std::is_convertible_v<ARG_KEY, char const*>) {
        return AfxHashText(key);
    } else if constexpr (std::is_pointer_v<ARG_KEY>) {
        return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(key) >> 4);
    } else {
        return static_cast<std::uint32_t>(key) >> 4;
    }
}

/// A hash map in the manner of the framework. The bucket of a key is HashKey modulo the table's size, 17
/// unless InitHashTable sets another. A new entry goes to the head of its bucket; an iteration runs through
/// the buckets by their index, each from its head, so the newest entry of a bucket comes first. The table is
/// never rehashed.
///
/// A look-up takes constant time on average for any number of entries: a map that outgrows its table keeps a
/// second index beside it, which has no influence on the order.
///
/// A failed allocation raises CMemoryException; the map is then as before. References to values, and
/// positions, stay valid until RemoveAll. Arguments may be keys and values of the map itself.
template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
class CMap : public CObject
{
public:
    /// Entries are taken from blocks of `blockSize`; one below 1 means 10.
    explicit CMap(int blockSize = 10)
        : m_blockSize(blockSize < 1 ? 10u : static_cast<unsigned int>(blockSize))
    {}

    ~CMap() override { RemoveAll(); }

    /// The number of entries.
    int GetCount() const noexcept { return m_count; }
    int GetSize() const noexcept { return m_count; }

    /// Whether there are no entries.
    bool IsEmpty() const noexcept { return m_count == 0; }

    /// The number of buckets.
    unsigned int GetHashTableSize() const noexcept { return m_tableSize; }

    /// Whether `key` is there; its value is then assigned to `value`, which is else untouched. Allocates
    /// nothing.
    bool Lookup(ARG_KEY key, VALUE& value) const
    {
        CAssoc const* const entry = Find(key, HashOf(key));
        if (entry == nullptr) {
            return false;
        }
        value = entry->value;
        return true;
    }

    /// The value of `key`, inserted as `VALUE()` where the key is new.
    VALUE& operator[](ARG_KEY key)
    {
        unsigned int const hash = HashOf(key);
        CAssoc* const entry = Find(key, hash);
        return entry != nullptr ? entry->value : Insert(hash, key)->value;
    }

    /// Sets the value of `key`, inserted where it is new.
    void SetAt(ARG_KEY key, ARG_VALUE value)
    {
        unsigned int const hash = HashOf(key);
        CAssoc* const entry = Find(key, hash);
        if (entry != nullptr) {
            entry->value = value;
        } else {
            Insert(hash, key, value);
        }
    }

    /// Removes every entry and frees all memory; the table's size stays.
    void RemoveAll() noexcept;

    /// Sets the number of buckets, and allocates the table at once if `allocateNow` is not 0, else with the
    /// first entry. A size of 0 raises CInvalidArgException, and so does any change while there are entries.
    void InitHashTable(unsigned int size, int allocateNow = 1);

    /// The position of the first entry in iteration order, or 0.
    POSITION GetStartPosition() const { return ToPosition(FirstFrom(0)); }

    /// Assigns the entry at `position`, which must not be 0 (CInvalidArgException), and moves the position
    /// on.
    void GetNextAssoc(POSITION& position, KEY& key, VALUE& value) const
    {
        if (position == nullptr) {
            AfxThrowInvalidArgException("no entry is left");
        }
        CAssoc const* const entry = reinterpret_cast<CAssoc const*>(position);
        key = entry->key;
        value = entry->value;
        position =
            ToPosition(entry->pNext != nullptr ? entry->pNext
                                               : FirstFrom(std::size_t{entry->nHashValue % m_tableSize} + 1));
    }

    /// Stores the count, then key and value of each entry in iteration order; or loads such entries on top of
    /// the present ones. SerializeElements tells the form of keys and values. An archive that ends early
    /// leaves the entries that came.
    // Exported, since compilers call by name what they know to stand in the vtable of an exported map.
    VORLANE_PLATFORM_EXPORT void Serialize(CArchive& archive) override;

private:
    struct CAssoc
    {
        CAssoc(ARG_KEY newKey, unsigned int hash) : nHashValue(hash), key(newKey), value() {}
        CAssoc(ARG_KEY newKey, unsigned int hash, ARG_VALUE newValue)
            : nHashValue(hash), key(newKey), value(newValue)
        {}

        CAssoc* pNext = nullptr;        ///< in its bucket
        CAssoc* pNextInIndex = nullptr; ///< in its slot of the index
        unsigned int nHashValue;        ///< the full hash
        KEY key;
        VALUE value;
    };
    static_assert(alignof(CAssoc) <= alignof(std::max_align_t), "a block has no larger alignment");

    /// The number that gives a key its slot in the index: a number itself, which tells more than its hash, as
    /// sixteen neighbours share one; the hash of anything else.
    template <class SOME_KEY>
    static std::uint32_t IndexNumber(unsigned int hash, [[maybe_unused]] SOME_KEY const& key)
    {
        if constexpr (std::is_integral_v<KEY>) {
            return static_cast<std::uint32_t>(key);
        } else {
            return hash;
        }
    }

    static POSITION ToPosition(CAssoc const* entry)
    {
        return reinterpret_cast<POSITION>(const_cast<CAssoc*>(entry));
    }

    CAssoc* FirstFrom(std::size_t bucket) const
    {
        if (m_count != 0) {
            for (; bucket < m_tableSize; ++bucket) {
                if (m_table[bucket] != nullptr) {
                    return m_table[bucket];
                }
            }
        }
        return nullptr;
    }

    /// How keys are handed on inside: never by value, which for a text would count one more owner.
    using KeyReference = std::remove_reference_t<ARG_KEY> const&;

    static unsigned int HashOf(KeyReference key)
    {
        if constexpr (std::is_convertible_v<KeyReference, char const*>) {
            return AfxHashText(key);
        } else {
            return HashKey<ARG_KEY>(key);
        }
    }

    CAssoc* Find(KeyReference key, unsigned int hash) const;

    template <class... Value>
    CAssoc* Insert(unsigned int hash, KeyReference key, Value&&... value);

    void AllocateTable();
    void ExtendIndex();

    /// Calls `visit` for every entry, in the order of memory.
    template <class Visit>
    void ForEachEntry(Visit visit) const
    {
        unsigned int inBlock = m_usedOfBlock;
        for (CPlex* block = m_blocks; block != nullptr; block = block->pNext) {
            CAssoc* const entries = static_cast<CAssoc*>(block->data());
            std::for_each(entries, entries + inBlock, visit);
            inBlock = m_blockSize;
        }
    }

    CAssoc** m_table = nullptr; ///< the heads of the buckets; null until it is needed
    unsigned int m_tableSize = 17;
    int m_count = 0;
    CPlex* m_blocks = nullptr; ///< the newest first; entries fill each from its begin
    unsigned int m_usedOfBlock = 0;
    unsigned int m_blockSize;
    MapIndex<CAssoc> m_index;
};

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
auto CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>::Find(KeyReference key, unsigned int hash) const -> CAssoc*
{
    if (m_count == 0) {
        return nullptr;
    }
    if (m_index.IsBuilt()) {
        CAssoc* entry = m_index.Head(IndexNumber(hash, key));
        while (entry != nullptr && !(entry->nHashValue == hash && entry->key == key)) {
            entry = entry->pNextInIndex;
        }
        return entry;
    }
    CAssoc* entry = m_table[hash % m_tableSize];
    while (entry != nullptr && !(entry->nHashValue == hash && entry->key == key)) {
        entry = entry->pNext;
    }
    return entry;
}

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
template <class... Value>
typename CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>::CAssoc*
CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>::Insert(unsigned int hash, KeyReference key, Value&&... value)
{
    if (m_count == INT_MAX) {
        AfxThrowMemoryException();
    }
    if (m_table == nullptr) {
        AllocateTable();
    }
    if (m_blocks == nullptr || m_usedOfBlock == m_blockSize) {
        CPlex::Create(m_blocks, m_blockSize, sizeof(CAssoc));
        m_usedOfBlock = 0;
    }
    // Should a constructor raise, its place in the block is simply still free.
    CAssoc* const entry = ::new (static_cast<CAssoc*>(m_blocks->data()) + m_usedOfBlock)
        CAssoc(key, hash, std::forward<Value>(value)...);
    ++m_usedOfBlock;
    CAssoc*& bucket = m_table[hash % m_tableSize];
    entry->pNext = bucket;
    bucket = entry;
    ++m_count;
    if (m_index.IsBuilt()) {
        m_index.Link(*entry, IndexNumber(hash, entry->key));
    }
    if (m_index.IsTooSmallFor(m_count, m_tableSize)) {
        ExtendIndex();
    }
    return entry;
}

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
void CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>::RemoveAll() noexcept
{
    if constexpr (!std::is_trivially_destructible_v<CAssoc>) {
        ForEachEntry([](CAssoc& entry) { entry.~CAssoc(); });
    }
    m_index.Clear();
    AfxFreeElements(m_table);
    m_table = nullptr;
    m_count = 0;
    if (m_blocks != nullptr) {
        m_blocks->FreeDataChain();
        m_blocks = nullptr;
    }
    m_usedOfBlock = 0;
}

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
void CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>::InitHashTable(unsigned int size, int allocateNow)
{
    if (size == 0) {
        AfxThrowInvalidArgException("a hash table of size 0");
    }
    if (m_count != 0) {
        AfxThrowInvalidArgException("a new hash table for a map that holds ", m_count, " entries");
    }
    CAssoc** const table =
        allocateNow != 0 ? static_cast<CAssoc**>(AfxCreateElements(size, sizeof(CAssoc*))) : nullptr;
    AfxFreeElements(m_table);
    m_table = table;
    m_tableSize = size;
}

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
void CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>::AllocateTable()
{
    m_table = static_cast<CAssoc**>(AfxCreateElements(m_tableSize, sizeof(CAssoc*)));
}

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
void CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>::ExtendIndex()
{
    if (m_index.Extend(m_count)) {
        ForEachEntry(
            [this](CAssoc& entry) { m_index.Link(entry, IndexNumber(entry.nHashValue, entry.key)); });
    }
}

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
void CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>::Serialize(CArchive& archive)
{
    if (archive.IsStoring()) {
        archive.WriteCount(static_cast<unsigned long>(m_count));
        for (std::size_t bucket = 0; m_count != 0 && bucket < m_tableSize; ++bucket) {
            for (CAssoc* entry = m_table[bucket]; entry != nullptr; entry = entry->pNext) {
                SerializeElements<KEY>(archive, &entry->key, 1);
                SerializeElements<VALUE>(archive, &entry->value, 1);
            }
        }
        return;
    }
    for (unsigned long missing = archive.ReadCount(); missing > 0; --missing) {
        KEY key{};
        VALUE value{};
        SerializeElements<KEY>(archive, &key, 1);
        SerializeElements<VALUE>(archive, &value, 1);
        (*this)[key] = value;
    }
}

#endif
