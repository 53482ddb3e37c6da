#include "platform/framework/AfxExceptions.h"

CException::~CException() = default;

CInvalidArgException::CInvalidArgException(std::string const& message) : std::invalid_argument(message) {}

CInvalidArgException::~CInvalidArgException() = default;

CMemoryException::~CMemoryException() = default;

char const* CMemoryException::what() const noexcept
{
    return "out of memory";
}

COleException::COleException(long result)
    : std::runtime_error("text failure with result " + std::to_string(result)), m_result(result)
{}

COleException::~COleException() = default;

void AfxThrowInvalidArgException()
{
    throw CInvalidArgException("an argument is not valid");
}

void AfxThrowInvalidArgException(std::string const& message)
{
    throw CInvalidArgException(message);
}

void AfxThrowIndexException(long long index, long long last)
{
    std::string const range = last < 0 ? "an empty range" : "0 to " + std::to_string(last);
    throw CInvalidArgException("index " + std::to_string(index) + " is outside " + range);
}

void AfxThrowMemoryException()
{
    throw CMemoryException();
}

void AfxThrowOleException(long result)
{
    throw COleException(result);
}
