#include "platform/framework/CFile.h"

#include "platform/framework/FileExceptions.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <typeinfo>
#include <unistd.h>

namespace {

int CauseOf(int error)
{
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
        return CFileException::fileNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ETXTBSY:
    case EBADF: // the descriptor is ours and open, but for the other direction
        return CFileException::accessDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return CFileException::diskFull;
    case EIO:
        return CFileException::hardIO;
    default:
        return CFileException::generic;
    }
}

/// Repeats a call of the system that a signal interrupts.
template <typename Call>
auto Uninterrupted(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

int SystemFlags(unsigned int openFlags)
{
    int flags = O_CLOEXEC;
    switch (openFlags & 3u) {
    case CFile::modeRead:
        flags |= O_RDONLY;
        break;
    case CFile::modeWrite:
        flags |= O_WRONLY;
        break;
    case CFile::modeReadWrite:
        flags |= O_RDWR;
        break;
    default:
        AfxThrowInvalidArgException("open flags ", openFlags);
    }
    return (openFlags & CFile::modeCreate) != 0 ? flags | O_CREAT | O_TRUNC : flags;
}

bool IsRegular(int descriptor, struct stat& status)
{
    return descriptor != -1 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

CFile::CFile(char const* path, unsigned int openFlags) : m_path(path)
{
    int const flags = SystemFlags(openFlags);
    m_descriptor = Uninterrupted([&] { return open(m_path, flags, 0666); });
    if (m_descriptor == -1) {
        ThrowSystemError(errno, "open");
    }
    // The system opens a directory for reading and fails with the first read.
    struct stat status;
    if (fstat(m_descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        close(m_descriptor);
        ThrowSystemError(EISDIR, "open");
    }
}

CFile::~CFile()
{
    if (m_descriptor != -1) {
        close(m_descriptor);
    }
}

unsigned int CFile::Read(void* bytes, unsigned int count)
{
    auto const taken = Uninterrupted([&] { return read(m_descriptor, bytes, count); });
    if (taken == -1) {
        ThrowSystemError(errno, "read");
    }
    return static_cast<unsigned int>(taken);
}

void CFile::Write(void const* bytes, unsigned int count)
{
    char const* next = static_cast<char const*>(bytes);
    while (count > 0) {
        auto const written = Uninterrupted([&] { return write(m_descriptor, next, count); });
        if (written <= 0) {
            ThrowSystemError(written == 0 ? ENOSPC : errno, "write");
        }
        next += written;
        count -= static_cast<unsigned int>(written);
    }
}

unsigned char const* CFile::ReadInPlace(unsigned int)
{
    return nullptr;
}

unsigned char* CFile::WriteInPlace(unsigned int)
{
    return nullptr;
}

void CFile::Flush()
{
    // Pipes and the like have no device to bring the bytes to.
    if (Uninterrupted([&] { return fsync(m_descriptor); }) == -1 && errno != EINVAL && errno != ENOTSUP) {
        ThrowSystemError(errno, "flush");
    }
}

void CFile::Close()
{
    int const descriptor = m_descriptor;
    m_descriptor = -1;
    // After an interruption the descriptor is closed all the same; a second call could hit another file.
    if (descriptor != -1 && close(descriptor) == -1 && errno != EINTR) {
        ThrowSystemError(errno, "close");
    }
}

void CFile::SeekToBegin()
{
    if (lseek(m_descriptor, 0, SEEK_SET) == -1) {
        ThrowSystemError(errno, "rewind");
    }
}

bool CFile::StepBack(std::uint64_t count)
{
    return count <= INT64_MAX && lseek(m_descriptor, -static_cast<std::int64_t>(count), SEEK_CUR) != -1;
}

std::uint64_t CFile::GetLength() const
{
    struct stat status;
    return IsRegular(m_descriptor, status) ? static_cast<std::uint64_t>(status.st_size) : 0;
}

std::uint64_t CFile::GetRemaining() const
{
    struct stat status;
    if (!IsRegular(m_descriptor, status)) {
        return 0;
    }
    auto const position = lseek(m_descriptor, 0, SEEK_CUR);
    return position != -1 && position < status.st_size ? static_cast<std::uint64_t>(status.st_size - position)
                                                       : 0;
}

CString CFile::GetFilePath() const
{
    return m_path;
}

void CFile::ThrowSystemError(int error, char const* request) const
{
    AfxThrowFileException(m_descriptor == -1 && error == EBADF ? +CFileException::generic : CauseOf(error),
                          m_path, request);
}

CMemFile::CMemFile(std::vector<unsigned char> bytes) noexcept : m_bytes(std::move(bytes)) {}

CMemFile::~CMemFile() = default;

unsigned int CMemFile::Read(void* bytes, unsigned int count)
{
    std::size_t const taken = std::min<std::size_t>(count, m_bytes.size() - m_position);
    if (taken > 0) {
        std::memcpy(bytes, m_bytes.data() + m_position, taken);
        m_position += taken;
    }
    return static_cast<unsigned int>(taken);
}

void CMemFile::Write(void const* bytes, unsigned int count)
{
    unsigned char const* const begin = static_cast<unsigned char const*>(bytes);
    std::less<unsigned char const*> const isBefore;
    if (!isBefore(begin, m_bytes.data()) && isBefore(begin, m_bytes.data() + m_bytes.size())) {
        // They would move while the file grows.
        auto const copy =
            AfxWithMemoryException([&] { return std::vector<unsigned char>(begin, begin + count); });
        Write(copy.data(), count);
        return;
    }
    std::size_t const overwritten = std::min<std::size_t>(count, m_bytes.size() - m_position);
    AfxWithMemoryException([&] { m_bytes.insert(m_bytes.end(), begin + overwritten, begin + count); });
    std::copy(begin, begin + overwritten, m_bytes.data() + m_position);
    m_position += count;
}

unsigned char const* CMemFile::ReadInPlace(unsigned int count)
{
    if (typeid(*this) != typeid(CMemFile) || count > m_bytes.size() - m_position) {
        return nullptr;
    }
    m_position += count;
    return m_bytes.data() + m_position - count;
}

unsigned char* CMemFile::WriteInPlace(unsigned int count)
{
    if (typeid(*this) != typeid(CMemFile)) {
        return nullptr;
    }
    std::size_t const end = m_position + count;
    if (end > m_bytes.size()) {
        AfxWithMemoryException([&] { m_bytes.resize(end); });
    }
    m_position = end;
    return m_bytes.data() + end - count;
}

void CMemFile::Flush() {}

void CMemFile::Close() {}

void CMemFile::SeekToBegin()
{
    m_position = 0;
}

bool CMemFile::StepBack(std::uint64_t count)
{
    bool const isInside = count <= m_position;
    if (isInside) {
        m_position -= static_cast<std::size_t>(count);
    }
    return isInside;
}

std::uint64_t CMemFile::GetLength() const
{
    return m_bytes.size();
}

std::uint64_t CMemFile::GetRemaining() const
{
    return m_bytes.size() - m_position;
}
