#include "Allocations.h"

#include <cstddef>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ALLOCATIONS_INTERPOSE_MALLOC 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ALLOCATIONS_INTERPOSE_MALLOC 0
#endif
#endif
#ifndef ALLOCATIONS_INTERPOSE_MALLOC
#define ALLOCATIONS_INTERPOSE_MALLOC 1
#endif

namespace
{
// Plain data only: these are used before and after every constructor of the thread.
thread_local unsigned long allocated = 0;
thread_local unsigned long released = 0;
thread_local unsigned long untilFailure[2] = {0, 0}; // 0: no failure is armed
thread_local bool failureHappened = false;

bool MustFail(EAllocator allocator)
{
    unsigned long& remaining = untilFailure[static_cast<int>(allocator)];
    if (remaining == 0 || --remaining != 0)
        return false;
    failureHappened = true;
    return true;
}

void* Allocate(std::size_t size)
{
    if (MustFail(EAllocator::New))
        throw std::bad_alloc();
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr)
        throw std::bad_alloc();
    ++allocated;
    return block;
}

void Release(void* block) noexcept
{
    if (block == nullptr)
        return;
    ++released;
    std::free(block);
}
} // namespace

CAllocationCounter::CAllocationCounter() : m_Allocated(allocated), m_Released(released) {}

unsigned long CAllocationCounter::Count() const
{
    return allocated - m_Allocated;
}

long CAllocationCounter::Live() const
{
    return static_cast<long>(allocated - m_Allocated) - static_cast<long>(released - m_Released);
}

bool CanFailMalloc()
{
    return ALLOCATIONS_INTERPOSE_MALLOC != 0;
}

CAllocationFailure::CAllocationFailure(unsigned long number, EAllocator allocator)
{
    failureHappened = false;
    untilFailure[static_cast<int>(allocator)] = number;
}

CAllocationFailure::~CAllocationFailure()
{
    untilFailure[0] = 0;
    untilFailure[1] = 0;
}

bool CAllocationFailure::Happened() const
{
    return failureHappened;
}

void* operator new(std::size_t size)
{
    return Allocate(size);
}

void* operator new[](std::size_t size)
{
    return Allocate(size);
}

void operator delete(void* block) noexcept
{
    Release(block);
}

void operator delete[](void* block) noexcept
{
    Release(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    Release(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    Release(block);
}

#if ALLOCATIONS_INTERPOSE_MALLOC
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size)
{
    return MustFail(EAllocator::Malloc) ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    return MustFail(EAllocator::Malloc) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size)
{
    return MustFail(EAllocator::Malloc) ? nullptr : __libc_realloc(block, size);
}
}
#endif
