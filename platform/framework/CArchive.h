#ifndef VORLANE_PLATFORM_FRAMEWORK_CARCHIVE_H
#define VORLANE_PLATFORM_FRAMEWORK_CARCHIVE_H

/// \file
/// The framework's binary archive.

#include "platform/Export.h"
#include "platform/framework/CFile.h"
#include "platform/framework/CString.h"
#include "platform/framework/LittleEndian.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>

/// A stream of little-endian fields without gaps, into a file or out of it, by one mode for the archive's
/// life.
///
/// An insertion costs one comparison and a store on the archive's buffer, an extraction one comparison and a
/// load. Blocks that are larger than the buffer pass by it. The size of the buffer leaves no trace in the
/// file.
///
/// Failures: an insertion into a loading archive raises CArchiveException with cause `readOnly`, an
/// extraction from a storing one with `writeOnly`, and an extraction at the end of the file with `endOfFile`,
/// all with the name of the file; the value is then untouched. What the file raises passes through. After a
/// write that failed, the archive writes no more, since nobody knows where in the file it stands; Flush and
/// Close raise CFileException with the same cause again.
///
/// The archive borrows the file, which must outlive it or its Close; nobody else writes to a file while an
/// archive loads from it. It is used from one thread at a time.
class VORLANE_PLATFORM_EXPORT CArchive
{
public:
    /// What an archive is opened for.
    enum Mode : unsigned int
    {
        store = 0, ///< insertions go into the file
        load = 1   ///< extractions come from it
    };

    /// Any `bufferSize` works; one below 1 means 65536, and one below 8 is made 8, the size of the widest
    /// field. A null file or an unknown mode raises CInvalidArgException.
    CArchive(CFile* file, unsigned int mode, int bufferSize = 65536);

    /// Closes the archive; a failure is swallowed, so call Close to see it.
    ~CArchive();

    CArchive(CArchive const&) = delete;
    CArchive& operator=(CArchive const&) = delete;

    /// The direction, which the mode of the constructor settled.
    bool IsStoring() const noexcept { return !m_isLoading; }
    bool IsLoading() const noexcept { return m_isLoading; }

    /// Flushes and lets go of the file, which stays open. Closing a closed archive does nothing; any other
    /// use of it raises CArchiveException with cause `generic`.
    void Close();

    /// Lets go of the file and drops what the buffer holds. Raises nothing.
    void Abort() noexcept;

    /// Storing: writes what the buffer holds. Loading: gives the bytes that were read ahead back to the file,
    /// if that can step back.
    void Flush();

    /// Writes a block as it is.
    void Write(void const* bytes, unsigned int count)
    {
        // A block of no bytes takes the other branch too, where the mode is tested.
        if (std::size_t{count} - 1 < static_cast<std::size_t>(m_storeEnd - m_storeNext)) {
            std::memcpy(m_storeNext, bytes, count);
            m_storeNext += count;
        } else {
            WriteAcrossBuffer(static_cast<unsigned char const*>(bytes), count);
        }
    }

    /// Reads a block and gives the number of bytes read, which is less than `count` only at the end of the
    /// file.
    unsigned int Read(void* bytes, unsigned int count)
    {
        if (std::size_t{count} - 1 < static_cast<std::size_t>(m_loadEnd - m_loadNext)) {
            std::memcpy(bytes, m_loadNext, count);
            m_loadNext += count;
            return count;
        }
        return ReadAcrossBuffer(static_cast<unsigned char*>(bytes), count);
    }

    /// Room for a block of `count` bytes, in the archive's buffer or in the memory of the file. The bytes
    /// count as written, and the caller sets each of them before anything else happens to the archive. Null
    /// where there is no such room in one piece: Write does the same from memory of the caller.
    unsigned char* WriteInPlace(unsigned int count);

    /// A block of `count` bytes where it lies, in the archive's buffer or in the memory of the file, until
    /// the next use of either; the bytes count as read. Null, and nothing is read, where it doesn't lie in
    /// one piece, as at the end of the file: Read does the same into memory of the caller.
    unsigned char const* ReadInPlace(unsigned int count);

    /// The count form: below 0xFFFF in 2 bytes, else 0xFFFF and then 4 bytes. Takes the low 32 bits.
    void WriteCount(unsigned long count);

    /// 0 to 0xFFFFFFFF.
    unsigned long ReadCount();

    /// The number of bytes that are surely still to come: those in the buffer and those that the file vouches
    /// for, which are all of them unless it is a pipe or the like. 0 for a storing archive. Loaders ask it
    /// before they take memory for what a count announces; on a file it costs calls of the system, so ask for
    /// large counts only.
    std::uint64_t GetRemaining() const;

    /// Inserts a value as its bytes, the lowest first. A bool takes 1 byte, 1 or 0; any byte but 0 is loaded
    /// as true. `long` and `unsigned long` take 4 bytes: the low 32 bits are stored, and their value as a
    /// signed or unsigned number is loaded. So do `std::int64_t`, `std::uint64_t` and `std::size_t` where
    /// they are these types, as on 64-bit Linux; a `long long` takes 8 bytes everywhere.
    CArchive& operator<<(bool value) { return Insert(static_cast<std::uint8_t>(value ? 1 : 0)); }
    CArchive& operator<<(char value) { return Insert(static_cast<std::uint8_t>(value)); }
    CArchive& operator<<(signed char value) { return Insert(static_cast<std::uint8_t>(value)); }
    CArchive& operator<<(unsigned char value) { return Insert(static_cast<std::uint8_t>(value)); }
    CArchive& operator<<(short value) { return Insert(static_cast<std::uint16_t>(value)); }
    CArchive& operator<<(unsigned short value) { return Insert(static_cast<std::uint16_t>(value)); }
    CArchive& operator<<(int value) { return Insert(static_cast<std::uint32_t>(value)); }
    CArchive& operator<<(unsigned int value) { return Insert(static_cast<std::uint32_t>(value)); }
    CArchive& operator<<(long value) { return Insert(static_cast<std::uint32_t>(value)); }
    CArchive& operator<<(unsigned long value) { return Insert(static_cast<std::uint32_t>(value)); }
    CArchive& operator<<(long long value) { return Insert(static_cast<std::uint64_t>(value)); }
    CArchive& operator<<(unsigned long long value) { return Insert(static_cast<std::uint64_t>(value)); }
    CArchive& operator<<(float value) { return Insert(Bits<std::uint32_t>(value)); }
    CArchive& operator<<(double value) { return Insert(Bits<std::uint64_t>(value)); }

    /// Extracts a value that an insertion of the same type wrote. Where the archive ends first, `value`
    /// stays.
    CArchive& operator>>(bool& value)
    {
        value = Extract<std::uint8_t>() != 0;
        return *this;
    }
    CArchive& operator>>(char& value) { return ExtractAs<std::uint8_t>(value); }
    CArchive& operator>>(signed char& value) { return ExtractAs<std::uint8_t>(value); }
    CArchive& operator>>(unsigned char& value) { return ExtractAs<std::uint8_t>(value); }
    CArchive& operator>>(short& value) { return ExtractAs<std::uint16_t>(value); }
    CArchive& operator>>(unsigned short& value) { return ExtractAs<std::uint16_t>(value); }
    CArchive& operator>>(int& value) { return ExtractAs<std::uint32_t>(value); }
    CArchive& operator>>(unsigned int& value) { return ExtractAs<std::uint32_t>(value); }
    CArchive& operator>>(long& value)
    {
        value = static_cast<std::int32_t>(Extract<std::uint32_t>());
        return *this;
    }
    CArchive& operator>>(unsigned long& value) { return ExtractAs<std::uint32_t>(value); }
    CArchive& operator>>(long long& value) { return ExtractAs<std::uint64_t>(value); }
    CArchive& operator>>(unsigned long long& value) { return ExtractAs<std::uint64_t>(value); }
    CArchive& operator>>(float& value)
    {
        value = Bits<float>(Extract<std::uint32_t>());
        return *this;
    }
    CArchive& operator>>(double& value)
    {
        value = Bits<double>(Extract<std::uint64_t>());
        return *this;
    }

    /// An address would silently be taken for a bool.
    template <typename Pointee>
    CArchive& operator<<(Pointee*) = delete;

    /// The number of the layout that the serializers follow. Whoever drives the archive sets it; this class
    /// only keeps it.
    std::uint32_t m_nObjectSchema = 0xFFFFFFFFu;

private:
    template <typename To, typename From>
    static To Bits(From from)
    {
        static_assert(sizeof(To) == sizeof(From));
        To to;
        std::memcpy(&to, &from, sizeof(To));
        return to;
    }

    /// A number anywhere in the buffer.
    template <typename Word>
    struct __attribute__((packed)) Unaligned
    {
        Word word;
    };

    // Both ways the position is handed to the slow way, and the member wiped out there. So a compiler sees
    // that nobody asks for it between two fields, and writes it down behind the last one only.

    template <typename Word>
    CArchive& Insert(Word word)
    {
        unsigned char* next = m_storeNext;
        if (static_cast<std::size_t>(m_storeEnd - next) < sizeof(Word)) {
            m_storeNext = nullptr;
            next = MakeRoom(next);
        }
        AfxPutLittleEndian(next, word);
        m_storeNext = next + sizeof(Word);
        return *this;
    }

    template <typename Word>
    Word Extract()
    {
        unsigned char const* next = m_loadNext;
        if (static_cast<std::size_t>(m_loadEnd - next) < sizeof(Word)) {
            m_loadNext = nullptr;
            next = FillBuffer(next, sizeof(Word));
        }
        // As a number and not as bytes, which might be those of the member.
        Unaligned<Word> const field = *reinterpret_cast<Unaligned<Word> const*>(next);
        m_loadNext = next + sizeof(Word);
        return AfxGetLittleEndian<Word>(reinterpret_cast<unsigned char const*>(&field));
    }

    template <typename Word, typename Value>
    CArchive& ExtractAs(Value& value)
    {
        value = static_cast<Value>(Extract<Word>());
        return *this;
    }

    void CheckIsStoring() const;
    void CheckIsLoading() const;
    unsigned char* MakeRoom(unsigned char* next);
    bool Fetch(std::size_t needed);
    bool FetchInPlace(unsigned int count);
    unsigned char const* FillBuffer(unsigned char const* next, std::size_t needed);
    void WriteOut(unsigned char const* bytes, unsigned int count);
    template <typename WriteCall>
    auto UnlessFailed(WriteCall write);
    void WriteAcrossBuffer(unsigned char const* bytes, unsigned int count);
    unsigned int ReadAcrossBuffer(unsigned char* bytes, unsigned int count);

    // The pointers of the other mode are null, so that its fields never fit and the test of the mode stands
    // only where the buffer is full or used up.
    unsigned char* m_storeNext = nullptr;
    unsigned char* m_storeEnd = nullptr;
    unsigned char const* m_loadNext = nullptr; ///< in the buffer, or in the memory of the file
    unsigned char const* m_loadEnd = nullptr;

    CFile* m_file;
    std::unique_ptr<unsigned char[]> m_buffer;
    unsigned int m_bufferSize;
    bool m_isLoading;
    bool m_isInPlace = false; ///< the bytes to load lie in the memory of the file
    int m_failedWrite = 0;    ///< the cause of a write that failed, or 0
};

/// Writes the prefix of a text in the archive: its length in 1, 3, 7 or 15 bytes, the fewest that do, after
/// the mark of wide text if `isWide` is not 0.
VORLANE_PLATFORM_EXPORT void AfxWriteStringLength(CArchive& archive, unsigned int length, int isWide);

/// Reads the prefix of a text, also a longer one than needed: gives the number of characters and sets the
/// size of each, 1 or 2.
VORLANE_PLATFORM_EXPORT std::uint64_t AfxReadStringLength(CArchive& archive, int& characterSize);

/// A text: its prefix, then its bytes. Loading also takes wide text, narrowed as by CString(wchar_t const*,
/// int). A text longer than its file raises CArchiveException with cause `endOfFile` and no file name,
/// without taking memory for what is not there; one past what a CString can hold raises CMemoryException. The
/// target then keeps its value.
VORLANE_PLATFORM_EXPORT CArchive& operator<<(CArchive& archive, CString const& text);
VORLANE_PLATFORM_EXPORT CArchive& operator>>(CArchive& archive, CString& text);

#endif
