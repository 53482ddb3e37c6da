#include "tests/support/AllocationFailure.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
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

/// What stands in front of a counted allocation: its size, in as many bytes as keep the alignment.
constexpr std::size_t plainHead = alignof(std::max_align_t);

/// The memory behind a head of `head` bytes, which is to hold the size; null stays null.
void* Counted(void* whole, std::size_t head, std::size_t bytes)
{
    if (whole == nullptr) {
        return nullptr;
    }
    char* const memory = static_cast<char*>(whole) + head;
    std::memcpy(memory - sizeof(bytes), &bytes, sizeof(bytes));
    allocated += bytes;
    return memory;
}

void* Required(void* memory)
{
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void Release(void* memory, std::size_t head = plainHead)
{
    if (memory != nullptr) {
        std::size_t bytes = 0;
        std::memcpy(&bytes, static_cast<char*>(memory) - sizeof(bytes), sizeof(bytes));
        allocated -= bytes;
        std::free(static_cast<char*>(memory) - head);
    }
}

std::size_t HeadOf(std::align_val_t alignment)
{
    return std::max(plainHead, static_cast<std::size_t>(alignment));
}

} // namespace

void* operator new(std::size_t bytes, std::nothrow_t const&) noexcept
{
    bool const isTooLarge = bytes > std::numeric_limits<std::size_t>::max() - plainHead;
    return IsRefused(bytes) || isTooLarge ? nullptr
                                          : Counted(__real_malloc(plainHead + bytes), plainHead, bytes);
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
    std::size_t const head = HeadOf(alignment);
    std::size_t const most = std::numeric_limits<std::size_t>::max() - 2 * head;
    if (IsRefused(bytes) || bytes > most) {
        throw std::bad_alloc();
    }
    std::size_t const rounded = (bytes + head - 1) / head * head;
    return Required(Counted(std::aligned_alloc(head, head + rounded), head, bytes));
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

void operator delete(void* memory, std::align_val_t alignment) noexcept
{
    Release(memory, HeadOf(alignment));
}

void operator delete[](void* memory, std::align_val_t alignment) noexcept
{
    Release(memory, HeadOf(alignment));
}

void operator delete(void* memory, std::size_t, std::align_val_t alignment) noexcept
{
    Release(memory, HeadOf(alignment));
}

void operator delete[](void* memory, std::size_t, std::align_val_t alignment) noexcept
{
    Release(memory, HeadOf(alignment));
}
