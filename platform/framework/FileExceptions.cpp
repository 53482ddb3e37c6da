#include "platform/framework/FileExceptions.h"

namespace {

std::string Quoted(char const* fileName)
{
    bool const isNamed = fileName != nullptr && *fileName != '\0';
    return isNamed ? " \"" + std::string(fileName) + "\"" : std::string();
}

std::string DescribeArchiveFailure(int cause, char const* fileName)
{
    std::string const archive = "archive" + Quoted(fileName);
    switch (cause) {
    case CArchiveException::generic:
        return archive + " is closed";
    case CArchiveException::readOnly:
        return archive + " is loading: a value can't be inserted";
    case CArchiveException::endOfFile:
        return archive + " ended before a value was complete";
    case CArchiveException::writeOnly:
        return archive + " is storing: a value can't be extracted";
    default:
        return archive + " failed with cause " + std::to_string(cause);
    }
}

std::string DescribeFileFailure(int cause, char const* fileName, char const* request)
{
    std::string const wanted = "cannot " + std::string(request) + " file" + Quoted(fileName) + ": ";
    switch (cause) {
    case CFileException::fileNotFound:
        return wanted + "not found";
    case CFileException::accessDenied:
        return wanted + "access denied";
    case CFileException::hardIO:
        return wanted + "the device failed";
    case CFileException::diskFull:
        return wanted + "no space left";
    default:
        return wanted + "cause " + std::to_string(cause);
    }
}

} // namespace

CArchiveException::CArchiveException(int cause, char const* fileName)
    : std::runtime_error(DescribeArchiveFailure(cause, fileName)), m_cause(cause), m_strFileName(fileName)
{}

CArchiveException::~CArchiveException() = default;

CFileException::CFileException(int cause, char const* fileName, char const* request)
    : std::runtime_error(DescribeFileFailure(cause, fileName, request)), m_cause(cause),
      m_strFileName(fileName)
{}

CFileException::~CFileException() = default;

void AfxThrowArchiveException(int cause, char const* fileName)
{
    throw AfxWithMemoryException([&] { return CArchiveException(cause, fileName); });
}

void AfxThrowFileException(int cause, char const* fileName, char const* request)
{
    throw AfxWithMemoryException([&] { return CFileException(cause, fileName, request); });
}
