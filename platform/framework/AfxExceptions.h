#ifndef VORLANE_PLATFORM_FRAMEWORK_AFXEXCEPTIONS_H
#define VORLANE_PLATFORM_FRAMEWORK_AFXEXCEPTIONS_H

/// \file
/// The exceptions of the framework that carry no text of their own, and the functions that raise them.
/// The exceptions of files and archives stand in FileExceptions.h.
///
/// Everything is thrown by value. Each concrete class adds one standard base, so that a caller may catch the
/// framework's class, CException, or the standard class.

#include "platform/Export.h"

#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

/// The common base of the framework's exceptions.
class VORLANE_PLATFORM_EXPORT CException
{
public:
    virtual ~CException();

protected:
    CException() = default;
    CException(CException const&) = default;
    CException& operator=(CException const&) = default;
};

/// An argument or an index outside its range.
class VORLANE_PLATFORM_EXPORT CInvalidArgException : public CException, public std::invalid_argument
{
public:
    /// `message` says what was asked and what was there.
    explicit CInvalidArgException(std::string const& message);
    ~CInvalidArgException() override;
};

/// A failed allocation.
class VORLANE_PLATFORM_EXPORT CMemoryException : public CException, public std::bad_alloc
{
public:
    ~CMemoryException() override;

    /// A fixed text, so that telling takes no memory.
    char const* what() const noexcept override;
};

/// An internal failure of the text classes other than memory.
class VORLANE_PLATFORM_EXPORT COleException : public CException, public std::runtime_error
{
public:
    /// Carries the code of the failure.
    explicit COleException(long result);
    ~COleException() override;

    /// The 32-bit result code.
    long m_result;
};

/// Raises CInvalidArgException with a text that says no more than that an argument is not valid.
[[noreturn]] VORLANE_PLATFORM_EXPORT void AfxThrowInvalidArgException();

/// Raises CInvalidArgException with the text "index 7 is outside 0 to 5"; `last` below 0 stands for an empty
/// range and gives "index 7 is outside an empty range".
[[noreturn]] VORLANE_PLATFORM_EXPORT void AfxThrowIndexException(long long index, long long last);

/// Raises CMemoryException.
[[noreturn]] VORLANE_PLATFORM_EXPORT void AfxThrowMemoryException();

/// Raises std::length_error "vector<T> too long", for a size that no list can have.
[[noreturn]] VORLANE_PLATFORM_EXPORT void AfxThrowVectorTooLong();

/// Raises COleException.
[[noreturn]] VORLANE_PLATFORM_EXPORT void AfxThrowOleException(long result);

/// Gives the result of `operation`; a std::bad_alloc that leaves it becomes the framework's CMemoryException.
/// Whatever takes memory from the standard library on behalf of a caller goes through here.
template <typename Operation>
decltype(auto) AfxWithMemoryException(Operation&& operation)
{
    try {
        return std::forward<Operation>(operation)();
    } catch (CMemoryException const&) {
        throw;
    } catch (std::bad_alloc const&) {
        AfxThrowMemoryException();
    }
}

/// Raises CInvalidArgException with a message of these texts and numbers, one behind the other.
template <typename... Parts>
[[noreturn]] void AfxThrowInvalidArgException(Parts const&... parts)
{
    throw AfxWithMemoryException([&] {
        std::string message;
        auto const append = [&](auto const& part) {
            if constexpr (std::is_arithmetic_v<std::decay_t<decltype(part)>>) {
                message += std::to_string(part);
            } else {
                message += part;
            }
        };
        (append(parts), ...);
        return CInvalidArgException(message);
    });
}

#endif
