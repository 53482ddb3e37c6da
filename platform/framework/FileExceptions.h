#ifndef VORLANE_PLATFORM_FRAMEWORK_FILEEXCEPTIONS_H
#define VORLANE_PLATFORM_FRAMEWORK_FILEEXCEPTIONS_H

/// \file
/// The exceptions of files and archives.

#include "platform/framework/AfxExceptions.h"
#include "platform/framework/CString.h"

#include <stdexcept>
#include <string>

/// A misuse of an archive, or an archive that ends too early.
class VORLANE_PLATFORM_EXPORT CArchiveException : public CException, public std::runtime_error
{
public:
    /// What went wrong.
    enum Cause : int
    {
        none = 0,      ///< no failure
        generic = 1,   ///< use of a closed archive
        readOnly = 2,  ///< an insertion into a loading archive
        endOfFile = 3, ///< the archive ends before a value is complete
        writeOnly = 4  ///< an extraction from a storing archive
    };

    /// A null `fileName` stands for none.
    CArchiveException(int cause, char const* fileName);
    ~CArchiveException() override;

    int m_cause;           ///< one of Cause
    CString m_strFileName; ///< the archive's file, empty for none
};

/// A request that the system refused or could not complete.
class VORLANE_PLATFORM_EXPORT CFileException : public CException, public std::runtime_error
{
public:
    /// What went wrong.
    enum Cause : int
    {
        none = 0,         ///< no failure
        generic = 1,      ///< none of the others
        fileNotFound = 2, ///< no file is there, or its path is too long
        accessDenied = 5, ///< by permissions, or because the file is of another kind or open for another use
        hardIO = 10,      ///< the device failed
        diskFull = 13     ///< no space, or a quota or size limit reached
    };

    /// `request` completes "cannot ..."; a null `fileName` stands for none.
    CFileException(int cause, char const* fileName, char const* request);
    ~CFileException() override;

    int m_cause;           ///< one of Cause
    CString m_strFileName; ///< empty for none
};

/// Raises CArchiveException.
[[noreturn]] VORLANE_PLATFORM_EXPORT void AfxThrowArchiveException(int cause, char const* fileName = nullptr);

/// Raises CFileException; `request` says what was asked and completes "cannot ...", such as "write".
[[noreturn]] VORLANE_PLATFORM_EXPORT void AfxThrowFileException(int cause, char const* fileName = nullptr,
                                                                char const* request = "use");

#endif
