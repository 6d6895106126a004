#include <BaseUtilities/CMemWrapper.h>

#include <gtest/gtest.h>

#include <algorithm>
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
