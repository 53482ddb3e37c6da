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
    AfxThrowInvalidArgException("an argument is not valid");
}

void AfxThrowIndexException(long long index, long long last)
{
    if (last < 0) {
        AfxThrowInvalidArgException("index ", index, " is outside an empty range");
    }
    AfxThrowInvalidArgException("index ", index, " is outside 0 to ", last);
}

void AfxThrowMemoryException()
{
    throw CMemoryException();
}

void AfxThrowVectorTooLong()
{
    throw AfxWithMemoryException([] { return std::length_error("vector<T> too long"); });
}

void AfxThrowOleException(long result)
{
    throw AfxWithMemoryException([&] { return COleException(result); });
}
