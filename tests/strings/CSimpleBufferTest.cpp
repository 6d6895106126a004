#include <BaseUtilities/CSimpleBuffer.h>

#include "Allocations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

namespace
{
// The two members, read from the object: the array and its size, in this order.
struct SMembers
{
    char* pBuffer;
    unsigned long size;
};

SMembers MembersOf(CSimpleBuffer const& buffer)
{
    static_assert(sizeof(CSimpleBuffer) == sizeof(SMembers));
    SMembers members{};
    std::memcpy(&members, static_cast<void const*>(&buffer), sizeof(members));
    return members;
}

// A buffer grown to `size` bytes, all of them `fill`.
void Fill(CSimpleBuffer& buffer, unsigned long size, char fill)
{
    char* const start = buffer.Get(size);
    std::fill_n(start, MembersOf(buffer).size, fill);
}

// The state that a failed growth leaves: no array, but the size that it was to have.
void FailGrowth(CSimpleBuffer& buffer, unsigned long size)
{
    CAllocationFailure const failure(1);
    EXPECT_THROW(buffer.Get(size), std::bad_alloc);
}

bool HoldsOnly(CSimpleBuffer const& buffer, char fill)
{
    auto const [start, size] = MembersOf(buffer);
    return std::count(start, start + size, fill) == static_cast<long>(size);
}
} // namespace

TEST(CSimpleBuffer, DefaultConstructedHasNoArrayAndSizeZero)
{
    CAllocationCounter const during;
    CSimpleBuffer const buffer;
    EXPECT_EQ(MembersOf(buffer).pBuffer, nullptr);
    EXPECT_EQ(MembersOf(buffer).size, 0u);
    EXPECT_EQ(during.Count(), 0u);
    static_assert(std::is_nothrow_default_constructible_v<CSimpleBuffer>);
}

TEST(CSimpleBuffer, GrowsToTheNextMultipleOf1024AndAtLeastThat)
{
    struct SRow
    {
        unsigned long wanted;
        unsigned long size;
    };
    for (auto const& [wanted, size] :
         {SRow{0, 1024}, SRow{1, 1024}, SRow{1023, 1024}, SRow{1024, 1024}, SRow{1025, 2048},
          SRow{2047, 2048}, SRow{2048, 2048}, SRow{2049, 3072}, SRow{1000000, 1000448}}) {
        SCOPED_TRACE(wanted);
        CSimpleBuffer viaGet;
        char* const got = viaGet.Get(wanted);
        EXPECT_EQ(got, MembersOf(viaGet).pBuffer);
        EXPECT_NE(MembersOf(viaGet).pBuffer, nullptr);
        EXPECT_EQ(MembersOf(viaGet).size, size);
        CSimpleBuffer viaResize;
        char* const resized = viaResize.Resize(wanted);
        EXPECT_EQ(resized, MembersOf(viaResize).pBuffer);
        EXPECT_NE(MembersOf(viaResize).pBuffer, nullptr);
        EXPECT_EQ(MembersOf(viaResize).size, size);
        Fill(viaGet, wanted, 'x'); // the whole size is there to write
    }
}

TEST(CSimpleBuffer, AllocatesOneArrayPerGrowthAndFreesTheOldOne)
{
    CAllocationCounter const during;
    CSimpleBuffer buffer;
    buffer.Get(1);
    EXPECT_EQ(during.Count(), 1u);
    buffer.Get(1025);
    EXPECT_EQ(during.Count(), 2u);
    EXPECT_EQ(during.Live(), 1);
    buffer.Resize(5000);
    EXPECT_EQ(during.Count(), 3u);
    EXPECT_EQ(during.Live(), 1);
}

TEST(CSimpleBuffer, KeepsTheArrayAndItsContentsUpToItsSize)
{
    CSimpleBuffer buffer;
    std::strcpy(buffer.Get(1025), "kept");
    char* const start = MembersOf(buffer).pBuffer;
    CAllocationCounter const during;
    for (unsigned long const wanted : {0UL, 1UL, 1024UL, 1025UL, 2047UL, 2048UL}) {
        EXPECT_EQ(buffer.Get(wanted), start);
        EXPECT_EQ(buffer.Resize(wanted), start);
    }
    EXPECT_EQ(during.Count(), 0u);
    EXPECT_STREQ(start, "kept");
    EXPECT_EQ(MembersOf(buffer).size, 2048u);
}

// Counted, not compared by address or bytes: the heap may hand the same block back. The old array
// goes before the new one comes, so its contents cannot have been copied.
TEST(CSimpleBuffer, GrowthReleasesTheOldArrayBeforeItAllocates)
{
    CSimpleBuffer buffer;
    std::strcpy(buffer.Get(1024), "lost");
    CAllocationCounter const during;
    FailGrowth(buffer, 2048);
    EXPECT_EQ(during.Live(), -1);
}

TEST(CSimpleBuffer, DestructorFreesTheArray)
{
    CAllocationCounter const during;
    {
        CSimpleBuffer buffer;
        buffer.Get(3000);
        EXPECT_EQ(during.Live(), 1);
    }
    EXPECT_EQ(during.Live(), 0);
}

TEST(CSimpleBuffer, CopyHasTheSameSizeAndBytesInItsOwnArray)
{
    CSimpleBuffer source;
    Fill(source, 3000, 's');
    CSimpleBuffer const copy(source);
    EXPECT_EQ(MembersOf(copy).size, 3072u);
    EXPECT_NE(MembersOf(copy).pBuffer, MembersOf(source).pBuffer);
    EXPECT_TRUE(HoldsOnly(copy, 's'));
    EXPECT_TRUE(copy == source);
}

TEST(CSimpleBuffer, CopyOfAnEmptyBufferIsEmptyAndAllocatesNothing)
{
    CSimpleBuffer const source;
    CAllocationCounter const during;
    CSimpleBuffer const copy(source);
    EXPECT_EQ(MembersOf(copy).pBuffer, nullptr);
    EXPECT_EQ(MembersOf(copy).size, 0u);
    EXPECT_EQ(during.Count(), 0u);
}

TEST(CSimpleBuffer, AssignmentGrowsTheTargetToTheSource)
{
    CSimpleBuffer source;
    Fill(source, 2048, 's');
    CSimpleBuffer target;
    Fill(target, 1024, 't');
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(MembersOf(target).size, 2048u);
    EXPECT_NE(MembersOf(target).pBuffer, MembersOf(source).pBuffer);
    EXPECT_TRUE(target == source);
    EXPECT_TRUE(HoldsOnly(source, 's'));
}

TEST(CSimpleBuffer, AssignmentFillsAnEmptyTarget)
{
    CSimpleBuffer source;
    Fill(source, 1024, 's');
    CSimpleBuffer target;
    target = source;
    EXPECT_TRUE(target == source);
}

TEST(CSimpleBuffer, AssignmentKeepsALargerArrayAndTheBytesBehindTheSource)
{
    CSimpleBuffer source;
    Fill(source, 1024, 's');
    CSimpleBuffer target;
    Fill(target, 2048, 't');
    char* const start = MembersOf(target).pBuffer;
    CAllocationCounter const during;
    target = source;
    EXPECT_EQ(during.Count(), 0u);
    EXPECT_EQ(MembersOf(target).pBuffer, start);
    EXPECT_EQ(MembersOf(target).size, 2048u);
    EXPECT_EQ(std::count(start, start + 2048, 's'), 1024);
    EXPECT_EQ(start[1023], 's');
    EXPECT_EQ(start[1024], 't');
    EXPECT_FALSE(target == source);
}

TEST(CSimpleBuffer, AssignmentOfTheSameSizeKeepsTheArray)
{
    CSimpleBuffer source;
    Fill(source, 1024, 's');
    CSimpleBuffer target;
    Fill(target, 1024, 't');
    char* const start = MembersOf(target).pBuffer;
    target = source;
    EXPECT_EQ(MembersOf(target).pBuffer, start);
    EXPECT_TRUE(HoldsOnly(target, 's'));
}

TEST(CSimpleBuffer, AssignmentOfAnEmptyBufferReleasesTheArray)
{
    CSimpleBuffer const source;
    CSimpleBuffer target;
    target.Get(2048);
    CAllocationCounter const during;
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(during.Live(), -1);
    EXPECT_EQ(MembersOf(target).pBuffer, nullptr);
    EXPECT_EQ(MembersOf(target).size, 0u);
}

TEST(CSimpleBuffer, AssignmentOfEmptyToEmptyChangesNothing)
{
    CSimpleBuffer const source;
    CSimpleBuffer target;
    target = source;
    EXPECT_EQ(MembersOf(target).pBuffer, nullptr);
    EXPECT_EQ(MembersOf(target).size, 0u);
}

TEST(CSimpleBuffer, AssignmentToItselfDoesNothing)
{
    CSimpleBuffer buffer;
    Fill(buffer, 1024, 'b');
    CSimpleBuffer const& same = buffer;
    char* const start = MembersOf(buffer).pBuffer;
    CAllocationCounter const during;
    EXPECT_EQ(&(buffer = same), &buffer);
    EXPECT_EQ(during.Count(), 0u);
    EXPECT_EQ(MembersOf(buffer).pBuffer, start);
    EXPECT_TRUE(HoldsOnly(buffer, 'b'));

    CSimpleBuffer empty;
    CSimpleBuffer const& sameEmpty = empty;
    empty = sameEmpty;
    EXPECT_EQ(MembersOf(empty).size, 0u);
}

// Equality

TEST(CSimpleBuffer, EmptyBufferEqualsNothingNotEvenItself)
{
    CSimpleBuffer const empty;
    CSimpleBuffer const otherEmpty;
    CSimpleBuffer grown;
    Fill(grown, 1024, 'x');
    EXPECT_FALSE(empty == empty);
    EXPECT_FALSE(empty == otherEmpty);
    EXPECT_FALSE(empty == grown);
    EXPECT_FALSE(grown == empty);
    EXPECT_TRUE(empty != empty);
    EXPECT_TRUE(empty != grown);
}

TEST(CSimpleBuffer, EqualityComparesTheWholeCapacity)
{
    CSimpleBuffer left;
    CSimpleBuffer right;
    Fill(left, 2000, 'x');
    Fill(right, 2000, 'x');
    EXPECT_TRUE(left == right);
    EXPECT_FALSE(left != right);
    right.Get(0)[2047] = 'y'; // behind what was asked for
    EXPECT_FALSE(left == right);
    EXPECT_TRUE(left != right);
    right.Get(0)[2047] = 'x';
    right.Get(0)[0] = 'y';
    EXPECT_FALSE(left == right);
}

TEST(CSimpleBuffer, OtherSizesAreUnequalThoughTheBytesMatch)
{
    CSimpleBuffer smaller;
    CSimpleBuffer larger;
    Fill(smaller, 1024, 'x');
    Fill(larger, 2048, 'x');
    EXPECT_FALSE(smaller == larger);
    EXPECT_FALSE(larger == smaller);
}

TEST(CSimpleBuffer, GrownBufferEqualsItself)
{
    CSimpleBuffer buffer;
    Fill(buffer, 1024, 'x');
    EXPECT_TRUE(buffer == buffer);
}

// Failure

TEST(CSimpleBuffer, FailedGrowthLeavesNoArrayAndTheNewSize)
{
    CSimpleBuffer fresh;
    FailGrowth(fresh, 1025);
    EXPECT_EQ(MembersOf(fresh).pBuffer, nullptr);
    EXPECT_EQ(MembersOf(fresh).size, 2048u);

    CSimpleBuffer grown;
    grown.Get(1024);
    FailGrowth(grown, 3000);
    EXPECT_EQ(MembersOf(grown).pBuffer, nullptr);
    EXPECT_EQ(MembersOf(grown).size, 3072u);
}

TEST(CSimpleBuffer, FailedGrowthAnswersNullUpToItsSizeAndTriesAgainBeyondIt)
{
    CSimpleBuffer buffer;
    FailGrowth(buffer, 1025);
    CAllocationCounter const during;
    for (unsigned long const wanted : {0UL, 1UL, 1024UL, 1025UL, 2048UL}) {
        EXPECT_EQ(buffer.Get(wanted), nullptr);
        EXPECT_EQ(buffer.Resize(wanted), nullptr);
    }
    EXPECT_EQ(during.Count(), 0u);
    EXPECT_NE(buffer.Get(2049), nullptr);
    EXPECT_EQ(MembersOf(buffer).size, 3072u);
    EXPECT_EQ(during.Count(), 1u);
}

TEST(CSimpleBuffer, ImpossibleSizesThrowBadAllocAndAreRecorded)
{
    for (unsigned long const wanted : {std::numeric_limits<unsigned long>::max() / 2 + 2,
                                       std::numeric_limits<unsigned long>::max()}) {
        CSimpleBuffer buffer;
        EXPECT_THROW(buffer.Get(wanted), std::bad_alloc);
        EXPECT_EQ(MembersOf(buffer).pBuffer, nullptr);
        EXPECT_GE(MembersOf(buffer).size, wanted);
    }
}

TEST(CSimpleBuffer, FailedCopyConstructionLeaksNothing)
{
    CSimpleBuffer source;
    Fill(source, 2048, 's');
    CAllocationCounter const during;
    int const failures = FailEachAllocation([&] { CSimpleBuffer const copy(source); },
                                            [&] { EXPECT_EQ(during.Live(), 0); });
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(during.Live(), 0);
    EXPECT_TRUE(HoldsOnly(source, 's'));
}

TEST(CSimpleBuffer, FailedAssignmentLeavesNoArrayAndTheSizeOfTheSource)
{
    CSimpleBuffer source;
    Fill(source, 2048, 's');
    CSimpleBuffer target;
    Fill(target, 1024, 't');
    int const failures = FailEachAllocation([&] { target = source; },
                                            [&] {
                                                EXPECT_EQ(MembersOf(target).pBuffer, nullptr);
                                                EXPECT_EQ(MembersOf(target).size, 2048u);
                                                EXPECT_EQ(target.Get(2048), nullptr);
                                            });
    EXPECT_EQ(failures, 1);
    EXPECT_TRUE(target == source); // assigned again, now with memory
}

// A size recorded by a failed growth stands for no bytes: nothing may be read or written there.

TEST(CSimpleBuffer, CopyOfABufferWhoseGrowthFailedIsEmpty)
{
    CSimpleBuffer failed;
    FailGrowth(failed, 2048);
    CSimpleBuffer const copy(failed);
    EXPECT_EQ(MembersOf(copy).pBuffer, nullptr);
    EXPECT_EQ(MembersOf(copy).size, 0u);
}

TEST(CSimpleBuffer, AssignmentOfABufferWhoseGrowthFailedEmptiesTheTarget)
{
    CSimpleBuffer failed;
    FailGrowth(failed, 2048);
    CSimpleBuffer target;
    target.Get(1024);
    target = failed;
    EXPECT_EQ(MembersOf(target).pBuffer, nullptr);
    EXPECT_EQ(MembersOf(target).size, 0u);
}

TEST(CSimpleBuffer, AssignmentToABufferWhoseGrowthFailedFillsIt)
{
    CSimpleBuffer source;
    Fill(source, 1024, 's');
    CSimpleBuffer failed;
    FailGrowth(failed, 4096);
    failed = source;
    EXPECT_EQ(MembersOf(failed).size, 1024u);
    EXPECT_TRUE(failed == source);
}

TEST(CSimpleBuffer, AssignmentToItselfKeepsTheSizeThatAFailedGrowthRecorded)
{
    CSimpleBuffer failed;
    FailGrowth(failed, 2048);
    CSimpleBuffer const& same = failed;
    failed = same;
    EXPECT_EQ(MembersOf(failed).pBuffer, nullptr);
    EXPECT_EQ(MembersOf(failed).size, 2048u);
}

TEST(CSimpleBuffer, BufferWhoseGrowthFailedEqualsNothing)
{
    CSimpleBuffer failed;
    FailGrowth(failed, 2048);
    CSimpleBuffer otherFailed;
    FailGrowth(otherFailed, 2048);
    CSimpleBuffer grown;
    Fill(grown, 2048, 'x');
    EXPECT_FALSE(failed == otherFailed);
    EXPECT_FALSE(failed == grown);
    EXPECT_FALSE(grown == failed);
    EXPECT_FALSE(failed == failed);
}
