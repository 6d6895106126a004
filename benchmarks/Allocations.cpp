#include "Allocations.h"

#include <cstddef>

namespace
{
thread_local unsigned long allocations = 0;
} // namespace

unsigned long AllocationsSoFar()
{
    return allocations;
}

// In place of the C library's, for every module of the process.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size)
{
    ++allocations;
    return __libc_realloc(block, size);
}
}
