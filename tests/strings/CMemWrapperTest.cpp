#include <BaseUtilities/CMemWrapper.h>

#include "Allocations.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

TEST(CMemWrapper, SizeZeroGivesNullWithAndWithoutZeroFill)
{
    EXPECT_EQ(CMemWrapper::AllocateMemory(0, true), nullptr);
    EXPECT_EQ(CMemWrapper::AllocateMemory(0, false), nullptr);
}

TEST(CMemWrapper, ZeroFillClearsTheWholeBlock)
{
    // Dirties a block of the size first, which the heap readily hands out again.
    void* block = CMemWrapper::AllocateMemory(4096, false);
    std::fill_n(static_cast<char*>(block), 4096, 'x');
    CMemWrapper::ReleaseMemory(block);

    block = CMemWrapper::AllocateMemory(4096, true);
    char const* const bytes = static_cast<char const*>(block);
    EXPECT_EQ(std::count(bytes, bytes + 4096, '\0'), 4096);
    CMemWrapper::ReleaseMemory(block);
}

TEST(CMemWrapper, BlockIsOfTheSizeAskedForWithAndWithoutZeroFill)
{
    constexpr unsigned long size = 1UL << 20U;
    for (bool const zeroFill : {false, true}) {
        void* block = CMemWrapper::AllocateMemory(size, zeroFill);
        EXPECT_GE(malloc_usable_size(block), size);
        EXPECT_LT(malloc_usable_size(block), size + size / 2);
        CMemWrapper::ReleaseMemory(block);
    }
}

TEST(CMemWrapper, BlockWithoutZeroFillIsWritable)
{
    void* block = CMemWrapper::AllocateMemory(100, false);
    ASSERT_NE(block, nullptr);
    std::fill_n(static_cast<char*>(block), 100, 'x');
    CMemWrapper::ReleaseMemory(block);
}

TEST(CMemWrapper, FailedAllocationThrowsBadAlloc)
{
    constexpr unsigned long tooMuch = std::numeric_limits<unsigned long>::max() / 2;
    EXPECT_THROW(CMemWrapper::AllocateMemory(tooMuch, false), std::bad_alloc);
    EXPECT_THROW(CMemWrapper::AllocateMemory(tooMuch, true), std::bad_alloc);
}

TEST(CMemWrapper, ReleaseSetsTheCallersPointerToNull)
{
    void* block = CMemWrapper::AllocateMemory(1, false);
    CMemWrapper::ReleaseMemory(block);
    EXPECT_EQ(block, nullptr);
}

TEST(CMemWrapper, ReleaseOfNullDoesNothing)
{
    void* block = nullptr;
    CMemWrapper::ReleaseMemory(block);
    EXPECT_EQ(block, nullptr);
}

TEST(CMemWrapper, EveryFailingAllocationThrowsBadAlloc)
{
    if (!CanFailMalloc())
        GTEST_SKIP() << "the sanitizer owns malloc";
    for (bool const zeroFill : {false, true}) {
        SCOPED_TRACE(zeroFill ? "zero-filled" : "not filled");
        int const failures = FailEachAllocation(
            [zeroFill] {
                void* block = CMemWrapper::AllocateMemory(100, zeroFill);
                CMemWrapper::ReleaseMemory(block);
            },
            [] {}, EAllocator::Malloc);
        EXPECT_EQ(failures, 1);
    }
}

TEST(CMemWrapper, SizeZeroAllocatesNothing)
{
    if (!CanFailMalloc())
        GTEST_SKIP() << "the sanitizer owns malloc";
    CAllocationFailure const next(1, EAllocator::Malloc);
    CMemWrapper::AllocateMemory(0, true);
    CMemWrapper::AllocateMemory(0, false);
    EXPECT_FALSE(next.Happened());
}

// Seen by the runtime library's own account, as the block of this size is a mapping of its own.
TEST(CMemWrapper, ReleaseFreesTheBlock)
{
    if (!CanFailMalloc())
        GTEST_SKIP() << "the sanitizer owns malloc, and reports the leak itself";
    if (mallinfo2().arena == 0)
        GTEST_SKIP() << "malloc is valgrind's, which reports the leak itself";
    constexpr std::size_t size = 64UL << 20;
    std::size_t const before = mallinfo2().hblkhd;
    void* block = CMemWrapper::AllocateMemory(size, false);
    EXPECT_GE(mallinfo2().hblkhd, before + size);
    CMemWrapper::ReleaseMemory(block);
    EXPECT_EQ(mallinfo2().hblkhd, before);
}

// What malloc and free know, so that the block of either kind is theirs.
TEST(CMemWrapper, BlocksAreThoseOfTheRuntimeLibrary)
{
    for (bool const zeroFill : {false, true}) {
        std::free(CMemWrapper::AllocateMemory(100, zeroFill));
        void* block = std::malloc(100);
        CMemWrapper::ReleaseMemory(block);
        EXPECT_EQ(block, nullptr);
    }
}
