#include "Allocations.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
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
thread_local unsigned long allocated[2] = {0, 0}; // by EAllocator, as all of these
thread_local unsigned long released[2] = {0, 0};
thread_local unsigned long untilFailure[2] = {0, 0}; // 0: no failure is armed
thread_local bool failureHappened = false;
std::atomic<int> allFailures = 0; // of the process

int Index(EAllocator allocator)
{
    return static_cast<int>(allocator);
}

bool MustFail(EAllocator allocator)
{
    unsigned long& remaining = untilFailure[Index(allocator)];
    if (remaining == 0)
        return false;
    --remaining;
    if (remaining != 0)
        return false;
    failureHappened = true;
    ++allFailures;
    return true;
}

void* Allocate(std::size_t size)
{
    if (MustFail(EAllocator::New))
        throw std::bad_alloc();
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr)
        throw std::bad_alloc();
    ++allocated[Index(EAllocator::New)];
    return block;
}

void Release(void* block) noexcept
{
    if (block == nullptr)
        return;
    ++released[Index(EAllocator::New)];
    std::free(block);
}

class CFailuresPerTest : public testing::EmptyTestEventListener
{
private:
    void OnTestEnd(testing::TestInfo const&) override
    {
        if (int const failures = allFailures.exchange(0))
            testing::Test::RecordProperty("allocationFaults", failures);
    }
};

[[maybe_unused]] bool const isListening = [] { // clazy:exclude=non-pod-global-static (a bool)
    testing::UnitTest::GetInstance()->listeners().Append(new CFailuresPerTest);
    return true;
}();
} // namespace

CAllocationCounter::CAllocationCounter(EAllocator allocator)
    : m_Allocator(allocator),
      m_Allocated(allocated[Index(allocator)]),
      m_Released(released[Index(allocator)])
{
}

unsigned long CAllocationCounter::Count() const
{
    return allocated[Index(m_Allocator)] - m_Allocated;
}

long CAllocationCounter::Live() const
{
    return static_cast<long>(Count())
           - static_cast<long>(released[Index(m_Allocator)] - m_Released);
}

bool CanFailMalloc()
{
    return ALLOCATIONS_INTERPOSE_MALLOC != 0;
}

CAllocationFailure::CAllocationFailure(unsigned long number, EAllocator allocator)
{
    failureHappened = false;
    untilFailure[Index(allocator)] = number;
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
void __libc_free(void* block);
}

namespace
{
bool MallocMustFail()
{
    if (!MustFail(EAllocator::Malloc))
        return false;
    errno = ENOMEM; // which callers rely on
    return true;
}

void* Counted(void* block)
{
    if (block != nullptr)
        ++allocated[Index(EAllocator::Malloc)];
    return block;
}
} // namespace

extern "C" {
void* malloc(std::size_t size)
{
    return MallocMustFail() ? nullptr : Counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size)
{
    return MallocMustFail() ? nullptr : Counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size)
{
    if (MallocMustFail())
        return nullptr;
    void* const moved = __libc_realloc(block, size);
    return block == nullptr ? Counted(moved) : moved;
}

void free(void* block)
{
    if (block != nullptr)
        ++released[Index(EAllocator::Malloc)];
    __libc_free(block);
}
}
#endif
