#ifndef VORLANE_PERSISTENCE_ENTRYRUNSINTERNAL_H
#define VORLANE_PERSISTENCE_ENTRYRUNSINTERNAL_H

/// \file
/// Moves runs of small entries of one size, such as the vertices of a mesh, a block at a time.
///
/// The fields of an entry are written into a block of memory, or read from it, with no test between them. The
/// block is a part of the archive's buffer or of a file in memory where there is one of its size; else it is
/// spare memory, and the archive moves it as a whole. The bytes are those of one field after the other.

#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/persistence/SchemaInternal.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>

namespace Vorlane {
namespace Fields {

/// The most bytes of a run that move at a time: much more than the archive's usual buffer, since the system
/// writes large blocks to a file at less cost, and little enough to stay near the processor.
constexpr std::size_t runBlockBytes = 1048576;

/// The number of entries that move at a time.
constexpr std::size_t EntriesOfBlock(std::size_t left, std::size_t entryBytes)
{
    return std::min(left, runBlockBytes / entryBytes);
}

/// Memory for the blocks of a run that have no place in the archive, taken when first asked for.
class SpareBlock
{
public:
    explicit SpareBlock(std::size_t size) : m_size(size) {}

    unsigned char* Bytes()
    {
        if (!m_bytes) {
            m_bytes = AfxWithMemoryException(
                [&] { return std::unique_ptr<unsigned char[]>(new unsigned char[m_size]); });
        }
        return m_bytes.get();
    }

private:
    std::size_t m_size;
    std::unique_ptr<unsigned char[]> m_bytes;
};

/// The unsigned integer of as many bytes as `Value`.
template <typename Value>
using BitsOf = std::conditional_t<sizeof(Value) == 8, std::uint64_t, std::uint32_t>;

/// Stands in for a storing archive: fields go to consecutive bytes of a block. The width of points is a part
/// of the type, so that it is asked once a run and not once a point.
template <bool point3dIsDouble>
class BlockWriter
{
public:
    explicit BlockWriter(unsigned char* block) : m_next(block) {}

    static constexpr bool IsStoring() { return true; }

    template <typename Value>
    void Number(Value& value)
    {
        BitsOf<Value> bits;
        static_assert(sizeof(bits) == sizeof(value));
        std::memcpy(&bits, &value, sizeof(bits));
        unsigned char* const next = m_next; // a byte might alias the member, which would then be loaded anew
        AfxPutLittleEndian(next, bits);
        m_next = next + sizeof(bits);
    }

    unsigned char const* Next() const { return m_next; }

private:
    unsigned char* m_next;
};

/// Stands in for a loading archive: fields come from consecutive bytes of a block.
template <bool point3dIsDouble>
class BlockReader
{
public:
    explicit BlockReader(unsigned char const* block) : m_next(block) {}

    static constexpr bool IsStoring() { return false; }

    template <typename Value>
    void Number(Value& value)
    {
        using Bits = BitsOf<Value>;
        static_assert(sizeof(Bits) == sizeof(value));
        Bits const bits = AfxGetLittleEndian<Bits>(m_next);
        std::memcpy(&value, &bits, sizeof(bits));
        m_next += sizeof(bits);
    }

    unsigned char const* Next() const { return m_next; }

private:
    unsigned char const* m_next;
};

/// What FieldsInternal.h asks of an archive, for the blocks.
template <bool point3dIsDouble, typename Value>
void Number(BlockWriter<point3dIsDouble>& block, Value& value)
{
    block.Number(value);
}

template <bool point3dIsDouble, typename Value>
void Number(BlockReader<point3dIsDouble>& block, Value& value)
{
    block.Number(value);
}

template <bool point3dIsDouble>
constexpr bool HasDoublePoint3d(BlockWriter<point3dIsDouble> const&)
{
    return point3dIsDouble;
}

template <bool point3dIsDouble>
constexpr bool HasDoublePoint3d(BlockReader<point3dIsDouble> const&)
{
    return point3dIsDouble;
}

template <typename Block, typename StoreEntry>
[[gnu::noinline]] void StoreBlocks(CArchive& ar, std::size_t count, std::size_t entryBytes,
                                   StoreEntry storeEntry)
{
    SpareBlock spare(EntriesOfBlock(count, entryBytes) * entryBytes);
    for (std::size_t done = 0; done < count;) {
        std::size_t const end = done + EntriesOfBlock(count - done, entryBytes);
        auto const size = static_cast<unsigned int>((end - done) * entryBytes);
        unsigned char* const room = ar.WriteInPlace(size);
        unsigned char* const bytes = room != nullptr ? room : spare.Bytes();
        Block block(bytes);
        for (; done < end; ++done) {
            storeEntry(block, done);
        }
        assert(block.Next() == bytes + size);
        if (room == nullptr) {
            ar.Write(bytes, size);
        }
    }
}

/// Stores `count` entries of `entryBytes` bytes; `storeEntry(block, index)` puts one into a BlockWriter.
template <typename StoreEntry>
void StoreRun(CArchive& ar, std::size_t count, std::size_t entryBytes, StoreEntry storeEntry)
{
    if (Point3dIsDouble(ar.m_nObjectSchema)) {
        StoreBlocks<BlockWriter<true>>(ar, count, entryBytes, storeEntry);
    } else {
        StoreBlocks<BlockWriter<false>>(ar, count, entryBytes, storeEntry);
    }
}

/// Raises the exception of an archive that has ended: the one that an extraction raises, with the file's
/// name.
[[noreturn]] inline void RaiseEndOfFile(CArchive& ar)
{
    unsigned char missing = 0;
    ar >> missing;
    AfxThrowArchiveException(CArchiveException::endOfFile, nullptr); // a pipe that got new bytes just now
}

template <typename Block, typename LoadEntry>
[[gnu::noinline]] void LoadBlocks(CArchive& ar, std::size_t begin, std::size_t end, std::size_t entryBytes,
                                  LoadEntry loadEntry)
{
    SpareBlock spare(EntriesOfBlock(end - begin, entryBytes) * entryBytes);
    while (begin < end) {
        auto const size = static_cast<unsigned int>(EntriesOfBlock(end - begin, entryBytes) * entryBytes);
        unsigned int present = size;
        unsigned char const* bytes = ar.ReadInPlace(size);
        if (bytes == nullptr) {
            unsigned char* const copy = spare.Bytes();
            present = ar.Read(copy, size);
            bytes = copy;
        }
        Block block(bytes);
        for (std::size_t left = present / entryBytes; left > 0; --left) {
            loadEntry(block, begin);
            ++begin;
        }
        if (present < size) {
            RaiseEndOfFile(ar);
        }
    }
}

/// Loads the entries from `begin` to `end`, without it; `loadEntry(block, index)` gets one from a
/// BlockReader. Where the archive ends early, the entries that it holds whole are loaded before the exception
/// is raised.
template <typename LoadEntry>
void LoadRun(CArchive& ar, std::size_t begin, std::size_t end, std::size_t entryBytes, LoadEntry loadEntry)
{
    if (Point3dIsDouble(ar.m_nObjectSchema)) {
        LoadBlocks<BlockReader<true>>(ar, begin, end, entryBytes, loadEntry);
    } else {
        LoadBlocks<BlockReader<false>>(ar, begin, end, entryBytes, loadEntry);
    }
}

} // namespace Fields
} // namespace Vorlane

#endif
