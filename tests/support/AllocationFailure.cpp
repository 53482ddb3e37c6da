#include "tests/support/AllocationFailure.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

using VorlaneTest::allocationSwitch;

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

/// What stands in front of memory of operator new, its size in it; no type of the library is aligned to more.
constexpr std::size_t head = 64;

bool IsRefused(std::size_t bytes)
{
    int& granted = allocationSwitch.granted;
    return (granted >= 0 && --granted < 0) || bytes > allocationSwitch.largest;
}

void* Take(std::size_t bytes)
{
    void* whole = nullptr;
    if (IsRefused(bytes) || bytes > unlimited - head || posix_memalign(&whole, head, head + bytes) != 0) {
        return nullptr;
    }
    std::memcpy(whole, &bytes, sizeof bytes);
    allocationSwitch.allocated += bytes;
    return static_cast<char*>(whole) + head;
}

void* TakeOrThrow(std::size_t bytes)
{
    void* const memory = Take(bytes);
    return memory != nullptr ? memory : throw std::bad_alloc();
}

void GiveBack(void* memory)
{
    if (memory != nullptr) {
        void* const whole = static_cast<char*>(memory) - head;
        std::size_t bytes = 0;
        std::memcpy(&bytes, whole, sizeof bytes);
        allocationSwitch.allocated -= bytes;
        std::free(whole);
    }
}

} // namespace

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
    bool const overflows = size != 0 && count > unlimited / size;
    return IsRefused(overflows ? unlimited : count * size) ? nullptr : __real_calloc(count, size);
}

void* __wrap_realloc(void* memory, std::size_t bytes)
{
    return IsRefused(bytes) ? nullptr : __real_realloc(memory, bytes);
}
}

// All forms that are in use, since the runtimes of the sanitizers lead none of them to another.

void* operator new(std::size_t bytes)
{
    return TakeOrThrow(bytes);
}

void* operator new[](std::size_t bytes)
{
    return TakeOrThrow(bytes);
}

void* operator new(std::size_t bytes, std::align_val_t)
{
    return TakeOrThrow(bytes);
}

void* operator new[](std::size_t bytes, std::align_val_t)
{
    return TakeOrThrow(bytes);
}

void* operator new(std::size_t bytes, std::nothrow_t const&) noexcept
{
    return Take(bytes);
}

void operator delete(void* memory) noexcept
{
    GiveBack(memory);
}

void operator delete[](void* memory) noexcept
{
    GiveBack(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    GiveBack(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    GiveBack(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept
{
    GiveBack(memory);
}

void operator delete[](void* memory, std::align_val_t) noexcept
{
    GiveBack(memory);
}
