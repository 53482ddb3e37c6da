#include "platform/framework/ElementStorage.h"

#include "platform/framework/AfxExceptions.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

void* AfxCreateElements(std::size_t count, std::size_t size)
{
    void* const elements = std::calloc(count, size);
    if (elements == nullptr) {
        AfxThrowMemoryException();
    }
    return elements;
}

void* AfxResizeElements(void* elements, std::size_t count, std::size_t size)
{
    // Blocks of some size are mapped pages, which realloc extends without a copy.
    void* const resized = count <= PTRDIFF_MAX / size ? std::realloc(elements, count * size) : nullptr;
    if (resized == nullptr) {
        AfxThrowMemoryException();
    }
    return resized;
}

void AfxZeroElements(void* elements, std::size_t count, std::size_t size) noexcept
{
    std::memset(elements, 0, count * size);
}

void AfxFreeElements(void* elements) noexcept
{
    std::free(elements);
}
