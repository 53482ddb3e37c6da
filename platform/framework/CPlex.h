#ifndef VORLANE_PLATFORM_FRAMEWORK_CPLEX_H
#define VORLANE_PLATFORM_FRAMEWORK_CPLEX_H

/// \file
/// The memory blocks of the framework's maps.

#include "platform/Export.h"

#include <cstddef>

/// The head of a memory block for a number of elements; blocks form a chain, the newest first.
struct VORLANE_PLATFORM_EXPORT CPlex
{
    alignas(std::max_align_t) CPlex* pNext; ///< the older block

    /// The memory behind the head.
    void* data() { return this + 1; }

    /// Puts a block of memory for `count` elements of `elementSize` bytes at the head of the
    /// chain and gives it. A failed allocation raises CMemoryException and leaves the chain as it was.
    static CPlex* Create(CPlex*& head, unsigned int count, unsigned int elementSize);

    /// Frees this block and those behind it.
    void FreeDataChain();
};

#endif
