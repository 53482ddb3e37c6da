#include "tests/support/AllocationFailure.h"

#include <cerrno>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

/// How many allocations are granted before the one that fails; below 0 none fails.
thread_local int granted = -1;
thread_local std::size_t largest = std::numeric_limits<std::size_t>::max();

bool IsRefused(std::size_t bytes)
{
    if (granted >= 0 && --granted < 0) {
        return true;
    }
    return bytes > largest;
}

} // namespace

namespace VorlaneTest {

AllocationFailure::AllocationFailure(int precedingCount)
{
    granted = precedingCount;
}

AllocationFailure::~AllocationFailure()
{
    granted = -1;
}

bool AllocationFailure::HasHappened() const
{
    return granted < 0;
}

AllocationLimit::AllocationLimit(std::size_t bytes)
{
    largest = bytes;
}

AllocationLimit::~AllocationLimit()
{
    largest = std::numeric_limits<std::size_t>::max();
}

} // namespace VorlaneTest

// The linker leads calls of malloc to __wrap_malloc, and so on.
extern "C" {

void* __real_malloc(std::size_t bytes);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t bytes);

void* __wrap_malloc(std::size_t bytes)
{
    return IsRefused(bytes) ? nullptr : __real_malloc(bytes);
}

void* __wrap_calloc(std::size_t count, std::size_t size)
{
    std::size_t const most = std::numeric_limits<std::size_t>::max();
    bool const isRefused = IsRefused(size != 0 && count > most / size ? most : count * size);
    return isRefused ? nullptr : __real_calloc(count, size);
}

void* __wrap_realloc(void* memory, std::size_t bytes)
{
    return IsRefused(bytes) ? nullptr : __real_realloc(memory, bytes);
}
}

void* operator new(std::size_t bytes, std::nothrow_t const&) noexcept
{
    return IsRefused(bytes) ? nullptr : __real_malloc(bytes != 0 ? bytes : 1);
}

void* operator new(std::size_t bytes)
{
    void* const memory = operator new(bytes, std::nothrow);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new[](std::size_t bytes)
{
    return operator new(bytes);
}

void* operator new[](std::size_t bytes, std::nothrow_t const&) noexcept
{
    return operator new(bytes, std::nothrow);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}
