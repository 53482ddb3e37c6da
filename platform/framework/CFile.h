#ifndef VORLANE_PLATFORM_FRAMEWORK_CFILE_H
#define VORLANE_PLATFORM_FRAMEWORK_CFILE_H

/// \file
/// Files on disk and in memory, below an archive.

#include "platform/Export.h"
#include "platform/framework/CString.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// A file of the system. It has no buffer of its own, so an error is never delayed: what Write took is the
/// system's. Interrupted and partial calls of the system are carried on with. Every failure raises
/// CFileException with the path and a cause: `fileNotFound`, `accessDenied`, `diskFull`, `hardIO` or
/// `generic`.
///
/// Derived classes may stand for other places; they override the virtual operations.
class VORLANE_PLATFORM_EXPORT CFile
{
public:
    /// How a file is opened: one of the first three, joined with the fourth or not.
    enum OpenFlags : unsigned int
    {
        modeRead = 0,       ///< no writing
        modeWrite = 1,      ///< no reading
        modeReadWrite = 2,  ///< both
        modeCreate = 0x1000 ///< makes the file, or empties the one that is there
    };

    /// A closed file.
    CFile() noexcept = default;

    /// Opens `path` with one of the modes, joined with `modeCreate` or not. Without it the file must exist,
    /// and it keeps its bytes. A directory is refused with `accessDenied`.
    CFile(char const* path, unsigned int openFlags);

    /// Closes the file; a failure is swallowed, so call Close to see it.
    virtual ~CFile();

    CFile(CFile const&) = delete;
    CFile& operator=(CFile const&) = delete;

    /// Reads up to `count` bytes and gives their number: fewer at the end of the file, or where a pipe has no
    /// more at present; 0 means the end.
    virtual unsigned int Read(void* bytes, unsigned int count);

    /// Writes `count` bytes, all of them or an exception.
    virtual void Write(void const* bytes, unsigned int count);

    /// The next `count` bytes where they lie, for a file that holds its bytes in memory; the position moves
    /// behind them. They stay there until the file is written to. Null, and nothing moves, where there are no
    /// such bytes: Read is the way then.
    virtual unsigned char const* ReadInPlace(unsigned int count);

    /// Memory of the file for `count` bytes at the position, which moves behind them; they are part of the
    /// file at once, and the caller sets each of them before anything else happens to it. Null, and nothing
    /// moves, for a file without such memory: Write is the way then.
    virtual unsigned char* WriteInPlace(unsigned int count);

    /// Asks the system to bring what was written to the device, where the file is on one.
    virtual void Flush();

    /// Closes the file and reports what the system met. Closing a closed file does nothing.
    virtual void Close();

    /// Goes to the first byte.
    virtual void SeekToBegin();

    /// Moves the position back by `count` bytes. False, and nothing moves, where the file can't, as a pipe.
    virtual bool StepBack(std::uint64_t count);

    /// The number of bytes of the file; 0 where there is no telling, as for a pipe.
    virtual std::uint64_t GetLength() const;

    /// The number of bytes that surely lie behind the position; 0 where there is no telling. Whoever takes
    /// memory for what a file announces asks this first.
    virtual std::uint64_t GetRemaining() const;

    /// The path that the file was opened with, or an empty text.
    virtual CString GetFilePath() const;

private:
    [[noreturn]] void ThrowSystemError(int error, char const* request) const;

    int m_descriptor = -1;
    CString m_path;
};

/// A file in memory; its path is empty.
class VORLANE_PLATFORM_EXPORT CMemFile : public CFile
{
public:
    /// Empty.
    CMemFile() noexcept = default;

    /// Starts with these bytes and at their begin, ready to be read.
    explicit CMemFile(std::vector<unsigned char> bytes) noexcept;
    ~CMemFile() override;

    /// The whole content, wherever the position is.
    std::vector<unsigned char> const& Bytes() const noexcept { return m_bytes; }

    unsigned int Read(void* bytes, unsigned int count) override;

    /// Overwrites and extends, also with bytes of this file; a failed allocation raises CMemoryException.
    void Write(void const* bytes, unsigned int count) override;

    /// These give null to a derived class, whose own Read and Write thus see every byte.
    ///
    /// \throws CMemoryException if the file cannot be extended.
    unsigned char const* ReadInPlace(unsigned int count) override;
    unsigned char* WriteInPlace(unsigned int count) override;

    /// Do nothing: the content stays, and the file can be used on.
    void Flush() override;
    void Close() override;

    void SeekToBegin() override;
    bool StepBack(std::uint64_t count) override;
    std::uint64_t GetLength() const override;
    std::uint64_t GetRemaining() const override;

private:
    std::vector<unsigned char> m_bytes;
    std::size_t m_position = 0;
};

#endif
