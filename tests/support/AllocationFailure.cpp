#include "tests/support/AllocationFailure.h"

#include <cerrno>
#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <new>

namespace {

/// How many allocations are granted before the one that fails; below 0 none fails.
thread_local int granted = -1;
thread_local std::size_t largest = std::numeric_limits<std::size_t>::max();
thread_local std::size_t allocated = 0;

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

std::size_t GetAllocatedBytes()
{
    return allocated;
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

namespace {

void* Counted(void* memory)
{
    allocated += malloc_usable_size(memory);
    return memory;
}

void* Required(void* memory)
{
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void Release(void* memory)
{
    allocated -= malloc_usable_size(memory);
    std::free(memory);
}

} // namespace

void* operator new(std::size_t bytes, std::nothrow_t const&) noexcept
{
    return IsRefused(bytes) ? nullptr : Counted(__real_malloc(bytes != 0 ? bytes : 1));
}

void* operator new(std::size_t bytes)
{
    return Required(operator new(bytes, std::nothrow));
}

void* operator new[](std::size_t bytes)
{
    return operator new(bytes);
}

void* operator new[](std::size_t bytes, std::nothrow_t const&) noexcept
{
    return operator new(bytes, std::nothrow);
}

void* operator new(std::size_t bytes, std::align_val_t alignment)
{
    std::size_t const step = static_cast<std::size_t>(alignment);
    std::size_t const rounded = (bytes + step - 1) / step * step;
    return Required(IsRefused(bytes) ? nullptr : Counted(std::aligned_alloc(step, rounded)));
}

void* operator new[](std::size_t bytes, std::align_val_t alignment)
{
    return operator new(bytes, alignment);
}

void operator delete(void* memory) noexcept
{
    Release(memory);
}

void operator delete[](void* memory) noexcept
{
    Release(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    Release(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    Release(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept
{
    Release(memory);
}

void operator delete[](void* memory, std::align_val_t) noexcept
{
    Release(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    Release(memory);
}

void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept
{
    Release(memory);
}
