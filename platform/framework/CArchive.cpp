#include "platform/framework/CArchive.h"

#include "platform/framework/FileExceptions.h"

#include <algorithm>
#include <array>
#include <climits>
#include <new>

namespace {

constexpr int defaultBufferSize = 65536;
constexpr int widestField = 8;

// What stands in place of a count or length that needs the next wider form.
constexpr std::uint8_t longerThanByte = 0xFF;
constexpr std::uint16_t longerThanWord = 0xFFFF;
constexpr std::uint32_t longerThanDoubleWord = 0xFFFFFFFF;
constexpr std::uint16_t wideTextFollows = 0xFFFE;

/// How many bytes of a text are read without asking whether they are there.
constexpr int unaskedBytes = 65536;

template <typename Word>
Word Get(CArchive& archive)
{
    Word word;
    archive >> word;
    return word;
}

std::unique_ptr<unsigned char[]> AllocateBuffer(unsigned int size)
{
    return AfxWithMemoryException([&] { return std::unique_ptr<unsigned char[]>(new unsigned char[size]); });
}

CString ReadNarrowText(CArchive& archive, int length)
{
    CString text;
    while (text.GetLength() < length) {
        int const before = text.GetLength();
        int block = length - before;
        if (block > unaskedBytes) {
            std::uint64_t const expected =
                std::max(archive.GetRemaining(), static_cast<std::uint64_t>(std::max(before, unaskedBytes)));
            block = static_cast<int>(std::min<std::uint64_t>(static_cast<std::uint64_t>(block), expected));
        }
        char* const buffer = text.GetBuffer(before + block);
        unsigned int const taken = archive.Read(buffer + before, static_cast<unsigned int>(block));
        if (taken < static_cast<unsigned int>(block)) {
            AfxThrowArchiveException(CArchiveException::endOfFile);
        }
        text.ReleaseBuffer(before + block);
    }
    return text;
}

CString ReadWideText(CArchive& archive, int length)
{
    constexpr int blockLength = 1024;
    std::array<unsigned char, 2 * blockLength> bytes;
    std::array<wchar_t, blockLength> characters;
    CString text;
    while (text.GetLength() < length) {
        int const block = std::min(length - text.GetLength(), blockLength);
        unsigned int const byteCount = 2 * static_cast<unsigned int>(block);
        if (archive.Read(bytes.data(), byteCount) < byteCount) {
            AfxThrowArchiveException(CArchiveException::endOfFile);
        }
        for (std::size_t i = 0; i < static_cast<std::size_t>(block); ++i) {
            characters[i] = static_cast<wchar_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
        }
        text += CString(characters.data(), block);
    }
    return text;
}

} // namespace

CArchive::CArchive(CFile* file, unsigned int mode, int bufferSize) : m_file(file), m_isLoading(mode == load)
{
    if (file == nullptr) {
        AfxThrowInvalidArgException("an archive without a file");
    }
    if (mode != store && mode != load) {
        AfxThrowInvalidArgException("an archive of mode ", mode);
    }
    m_bufferSize =
        static_cast<unsigned int>(bufferSize < 1 ? defaultBufferSize : std::max(bufferSize, widestField));
    m_buffer = AllocateBuffer(m_bufferSize);
    if (m_isLoading) {
        m_loadNext = m_loadEnd = m_buffer.get();
    } else {
        m_storeNext = m_buffer.get();
        m_storeEnd = m_storeNext + m_bufferSize;
    }
}

CArchive::~CArchive()
{
    try {
        Close();
    } catch (...) {
        // Whoever wants to know calls Close.
    }
}

void CArchive::Close()
{
    if (m_file == nullptr) {
        return;
    }
    try {
        Flush();
    } catch (...) {
        Abort();
        throw;
    }
    Abort();
}

void CArchive::Abort() noexcept
{
    m_file = nullptr;
    m_storeNext = m_storeEnd = nullptr;
    m_loadNext = m_loadEnd = nullptr;
    m_buffer.reset();
}

void CArchive::Flush()
{
    if (m_isLoading) {
        CheckIsLoading();
        if (m_loadNext != m_loadEnd && m_file->StepBack(static_cast<std::uint64_t>(m_loadEnd - m_loadNext))) {
            m_loadNext = m_loadEnd;
        }
        return;
    }
    CheckIsStoring();
    WriteOut(m_buffer.get(), static_cast<unsigned int>(m_storeNext - m_buffer.get()));
    m_storeNext = m_buffer.get();
}

/// Runs `write`, which writes to the file, unless a write has failed before.
template <typename WriteCall>
auto CArchive::UnlessFailed(WriteCall write)
{
    if (m_failedWrite != 0) {
        AfxThrowFileException(m_failedWrite, m_file->GetFilePath(), "go on after a failed write to");
    }
    try {
        return write();
    } catch (CFileException const& exception) {
        m_failedWrite =
            exception.m_cause != CFileException::none ? exception.m_cause : +CFileException::generic;
        throw;
    } catch (...) {
        m_failedWrite = CFileException::generic;
        throw;
    }
}

unsigned char* CArchive::WriteInPlace(unsigned int count)
{
    CheckIsStoring();
    if (count > static_cast<std::size_t>(m_storeEnd - m_storeNext)) {
        Flush();
        if (count > m_bufferSize) {
            return UnlessFailed([&] { return m_file->WriteInPlace(count); });
        }
    }
    m_storeNext += count;
    return m_storeNext - count;
}

unsigned char const* CArchive::ReadInPlace(unsigned int count)
{
    CheckIsLoading();
    if (count > static_cast<std::size_t>(m_loadEnd - m_loadNext)) {
        bool const isThere =
            FetchInPlace(std::max(count, m_bufferSize)) || (count <= m_bufferSize && Fetch(count));
        if (!isThere) {
            return nullptr;
        }
    }
    m_loadNext += count;
    return m_loadNext - count;
}

void CArchive::WriteCount(unsigned long count)
{
    std::uint32_t const low = static_cast<std::uint32_t>(count);
    if (low < longerThanWord) {
        *this << static_cast<std::uint16_t>(low);
    } else {
        *this << longerThanWord << low;
    }
}

unsigned long CArchive::ReadCount()
{
    std::uint16_t const count = Get<std::uint16_t>(*this);
    return count != longerThanWord ? count : Get<std::uint32_t>(*this);
}

std::uint64_t CArchive::GetRemaining() const
{
    bool const isOpenForLoading = m_isLoading && m_file != nullptr;
    return isOpenForLoading ? static_cast<std::uint64_t>(m_loadEnd - m_loadNext) + m_file->GetRemaining() : 0;
}

void CArchive::CheckIsStoring() const
{
    if (m_file == nullptr) {
        AfxThrowArchiveException(CArchiveException::generic);
    }
    if (m_isLoading) {
        AfxThrowArchiveException(CArchiveException::readOnly, m_file->GetFilePath());
    }
}

void CArchive::CheckIsLoading() const
{
    if (m_file == nullptr) {
        AfxThrowArchiveException(CArchiveException::generic);
    }
    if (!m_isLoading) {
        AfxThrowArchiveException(CArchiveException::writeOnly, m_file->GetFilePath());
    }
}

/// Empties the buffer, which is full up to `next`, so that any field fits, and gives its begin.
unsigned char* CArchive::MakeRoom(unsigned char* next)
{
    m_storeNext = next;
    CheckIsStoring();
    Flush();
    return m_storeNext;
}

/// Reads on until `needed` bytes, at most the size of the buffer, lie in one piece. False, with what there
/// was, where the file ends before.
bool CArchive::Fetch(std::size_t needed)
{
    if (FetchInPlace(m_bufferSize)) {
        return true;
    }
    std::size_t available = static_cast<std::size_t>(m_loadEnd - m_loadNext);
    unsigned char* const buffer = m_buffer.get();
    if (available > 0) {
        std::memmove(buffer, m_loadNext, available);
    }
    m_loadNext = m_loadEnd = buffer;
    m_loadEnd += available;
    while (available < needed) {
        unsigned int const taken =
            m_file->Read(buffer + available, m_bufferSize - static_cast<unsigned int>(available));
        if (taken == 0) {
            return false;
        }
        available += taken;
        m_loadEnd += taken;
    }
    return true;
}

/// Takes the next `count` bytes where they lie, in the memory of the file. False, and they are still to be
/// read, where they don't.
bool CArchive::FetchInPlace(unsigned int count)
{
    std::size_t const available = static_cast<std::size_t>(m_loadEnd - m_loadNext);
    if (available > 0 && !(m_isInPlace && m_file->StepBack(available))) {
        return false;
    }
    unsigned char const* const bytes = m_file->ReadInPlace(count);
    m_isInPlace = bytes != nullptr;
    m_loadNext = m_isInPlace ? bytes : m_buffer.get();
    m_loadEnd = m_isInPlace ? bytes + count : m_loadNext;
    return m_isInPlace;
}

/// Brings the bytes of a field, which begins at `next`, into one piece, and gives its begin.
unsigned char const* CArchive::FillBuffer(unsigned char const* next, std::size_t needed)
{
    m_loadNext = next;
    CheckIsLoading();
    if (!Fetch(needed)) {
        AfxThrowArchiveException(CArchiveException::endOfFile, m_file->GetFilePath());
    }
    return m_loadNext;
}

void CArchive::WriteOut(unsigned char const* bytes, unsigned int count)
{
    UnlessFailed([&] {
        if (count > 0) {
            m_file->Write(bytes, count);
        }
    });
}

void CArchive::WriteAcrossBuffer(unsigned char const* bytes, unsigned int count)
{
    CheckIsStoring();
    std::size_t const room = static_cast<std::size_t>(m_storeEnd - m_storeNext);
    if (count > room) {
        Flush();
        if (count >= m_bufferSize) {
            WriteOut(bytes, count);
            return;
        }
    }
    if (count > 0) {
        std::memcpy(m_storeNext, bytes, count);
        m_storeNext += count;
    }
}

unsigned int CArchive::ReadAcrossBuffer(unsigned char* bytes, unsigned int count)
{
    CheckIsLoading();
    unsigned int done = 0;
    while (done < count) {
        unsigned int const missing = count - done;
        std::size_t const available = static_cast<std::size_t>(m_loadEnd - m_loadNext);
        unsigned int taken = 0;
        if (available > 0) {
            taken = static_cast<unsigned int>(std::min<std::size_t>(available, missing));
            std::memcpy(bytes + done, m_loadNext, taken);
            m_loadNext += taken;
        } else if (missing >= m_bufferSize) {
            taken = m_file->Read(bytes + done, missing);
            if (taken == 0) {
                break;
            }
        } else if (!Fetch(1)) {
            break;
        }
        done += taken;
    }
    return done;
}

void AfxWriteStringLength(CArchive& archive, unsigned int length, int isWide)
{
    if (isWide != 0) {
        archive << longerThanByte << wideTextFollows;
    }
    if (length < longerThanByte) {
        archive << static_cast<std::uint8_t>(length);
        return;
    }
    archive << longerThanByte;
    if (length < wideTextFollows) {
        archive << static_cast<std::uint16_t>(length);
        return;
    }
    archive << longerThanWord << std::uint32_t{length};
    if (length == longerThanDoubleWord) {
        archive << static_cast<unsigned long long>(length);
    }
}

std::uint64_t AfxReadStringLength(CArchive& archive, int& characterSize)
{
    characterSize = 1;
    std::uint8_t inByte = Get<std::uint8_t>(archive);
    if (inByte != longerThanByte) {
        return inByte;
    }
    std::uint16_t inWord = Get<std::uint16_t>(archive);
    if (inWord == wideTextFollows) {
        characterSize = 2;
        inByte = Get<std::uint8_t>(archive);
        if (inByte != longerThanByte) {
            return inByte;
        }
        inWord = Get<std::uint16_t>(archive);
    }
    if (inWord != longerThanWord) {
        return inWord;
    }
    std::uint32_t const inDoubleWord = Get<std::uint32_t>(archive);
    return inDoubleWord != longerThanDoubleWord ? inDoubleWord : Get<unsigned long long>(archive);
}

CArchive& operator<<(CArchive& archive, CString const& text)
{
    unsigned int const length = static_cast<unsigned int>(text.GetLength());
    AfxWriteStringLength(archive, length, 0);
    archive.Write(text, length);
    return archive;
}

CArchive& operator>>(CArchive& archive, CString& text)
{
    int characterSize = 1;
    std::uint64_t const length = AfxReadStringLength(archive, characterSize);
    if (length > INT_MAX) {
        AfxThrowMemoryException();
    }
    text = characterSize == 1 ? ReadNarrowText(archive, static_cast<int>(length))
                              : ReadWideText(archive, static_cast<int>(length));
    return archive;
}
