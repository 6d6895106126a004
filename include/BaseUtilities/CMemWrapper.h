#pragma once

#include <BaseUtilities/Export.h>

/// Raw memory that may cross library boundaries: a block obtained here is
/// released here, by the library's own allocator.
///
/// Threads: any number at once.
class BASEUTILITIES_EXPORT CMemWrapper
{
public:
    /// A block of `size` bytes, zero-filled on request; null for a size of 0,
    /// never null otherwise. Throws std::bad_alloc.
    static void* AllocateMemory(unsigned long size, bool zeroFill);

    /// Frees the block and sets the caller's pointer to null; a null pointer
    /// is left alone. The bytes are not overwritten.
    static void ReleaseMemory(void*& block);
};
