#include "platform/framework/CPlex.h"

#include "platform/framework/ElementStorage.h"

#include <cstdint>
#include <limits>
#include <new>

CPlex* CPlex::Create(CPlex*& head, unsigned int count, unsigned int elementSize)
{
    std::uint64_t const bytes = sizeof(CPlex) + std::uint64_t{count} * elementSize;
    std::size_t const requested =
        bytes <= std::numeric_limits<std::size_t>::max() ? static_cast<std::size_t>(bytes) : SIZE_MAX;
    head = ::new (AfxResizeElements(nullptr, requested, 1)) CPlex{head};
    return head;
}

void CPlex::FreeDataChain()
{
    CPlex* block = this;
    while (block != nullptr) {
        CPlex* const next = block->pNext;
        AfxFreeElements(block);
        block = next;
    }
}
