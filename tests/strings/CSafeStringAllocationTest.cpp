#include <BaseUtilities/CSafeString.h>

#include "Allocations.h"
#include "SafeStringInspection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace
{
using CView = basic_sv_wrapper<char>;

char16_t const LongUtf16[] = u"forty characters, which go onto the heap";
wchar_t const LongWide[] = L"forty characters, which go onto the heap";

// The operands of every operation; the texts are on the heap, so that no allocation is spared.
struct SOperands
{
    CSafeString text{"the former text, on the heap as well as the others"};
    CSafeString other{LongText};
    std::vector<CSafeString> items{LongText, LongText};
    std::vector<CSafeString> oneItem{LongText};
};

std::string const Former = "the former text, on the heap as well as the others";

struct SOperation
{
    char const* name;
    void (*run)(SOperands& operands);
    int allocations; // by operator new; 0 where conversions leave the number open
};

void Discard(CSafeString const&) {}

// What makes a new string out of its operands and changes none of them.
SOperation const Makers[] = {
    {"Default", [](SOperands&) { Discard(CSafeString()); }, 1},
    {"EmptyText", [](SOperands&) { Discard(CSafeString("")); }, 1},
    {"NullPointer", [](SOperands&) { Discard(CSafeString(nullptr)); }, 1},
    {"ShortPointer", [](SOperands&) { Discard(CSafeString("short")); }, 1},
    {"Pointer", [](SOperands&) { Discard(CSafeString(LongText)); }, 2},
    {"EmptyView", [](SOperands&) { Discard(CSafeString(CView())); }, 1},
    {"View", [](SOperands&) { Discard(CSafeString(CView(LongText))); }, 2},
    {"NoCopiesOfACharacter", [](SOperands&) { Discard(CSafeString(0, 'x')); }, 1},
    {"CopiesOfACharacter", [](SOperands&) { Discard(CSafeString(40, 'x')); }, 2},
    {"Copy", [](SOperands& with) { Discard(CSafeString(with.text)); }, 2},
    {"Wide", [](SOperands&) { Discard(CSafeString(basic_sv_wrapper<wchar_t>(LongWide))); }, 0},
    {"Utf16", [](SOperands&) { Discard(CSafeString(basic_sv_wrapper<char16_t>(LongUtf16))); }, 0},
    {"ShortWide", [](SOperands&) { Discard(CSafeString(basic_sv_wrapper<wchar_t>(L"a"))); }, 2},
    {"ShortUtf16", [](SOperands&) { Discard(CSafeString(basic_sv_wrapper<char16_t>(u"a"))); }, 2},
    {"JoinOfNothing", [](SOperands&) { Discard(CSafeString::do_join({}, ",")); }, 2},
    {"JoinOfOneItem", [](SOperands& with) { Discard(CSafeString::do_join(with.oneItem, ",")); }, 4},
    {"Join", [](SOperands& with) { Discard(CSafeString::do_join(with.items, ",")); }, 5},
    {"JoinByACharacter", [](SOperands& with) { Discard(CSafeString::do_join(with.items, ',')); },
     5},
    {"JoinByALongSeparator",
     [](SOperands& with) { Discard(CSafeString::do_join(with.items, LongText)); }, 6},
    {"JoiningConstructor", [](SOperands& with) { Discard(CSafeString(with.items, ",")); }, 5},
    {"JoiningConstructorByACharacter",
     [](SOperands& with) { Discard(CSafeString(with.items, ',')); }, 5},
    {"AddStrings", [](SOperands& with) { Discard(with.text + with.other); }, 3},
    {"AddRvalues", [](SOperands& with) { Discard(std::move(with.text) + std::move(with.other)); },
     3},
    {"AddRvalueAndLvalue", [](SOperands& with) { Discard(std::move(with.text) + with.other); }, 3},
    {"AddLvalueAndRvalue", [](SOperands& with) { Discard(with.text + std::move(with.other)); }, 3},
    {"AddPointerAndString", [](SOperands& with) { Discard(LongText + with.text); }, 5},
    {"AddPointerAndRvalue", [](SOperands& with) { Discard(LongText + std::move(with.text)); }, 3},
    {"AddStringAndPointer", [](SOperands& with) { Discard(with.text + LongText); }, 3},
    {"AddRvalueAndPointer", [](SOperands& with) { Discard(std::move(with.text) + LongText); }, 3},
    {"AddStringAndCharacter", [](SOperands& with) { Discard(with.text + 'x'); }, 3},
    {"AddRvalueAndCharacter", [](SOperands& with) { Discard(std::move(with.text) + 'x'); }, 3},
    {"AddCharacterAndString", [](SOperands& with) { Discard('x' + with.text); }, 4},
    {"AddCharacterAndRvalue", [](SOperands& with) { Discard('x' + std::move(with.text)); }, 3},
    {"Substr", [](SOperands& with) { Discard(with.text.substr(2, 30)); }, 2},
    {"ShortSubstr", [](SOperands& with) { Discard(with.text.substr(2, 3)); }, 1},
    {"ToStringOfInt", [](SOperands&) { Discard(CSafeString::to_string(-12)); }, 1},
    {"ToStringOfLong", [](SOperands&) { Discard(CSafeString::to_string(-1234567890123456L)); }, 3},
    {"ToStringOfDouble", [](SOperands&) { Discard(CSafeString::to_string(1e20)); }, 3},
    {"ToStringOfLongDouble", [](SOperands&) { Discard(CSafeString::to_string(1e20L)); }, 3},
};

// What changes the text in place, so that a failure must leave it as it was.
SOperation const Changers[] = {
    {"AddString", [](SOperands& with) { with.text += with.other; }, 1},
    {"AddItself", [](SOperands& with) { with.text += with.text; }, 1},
    {"AddPointer", [](SOperands& with) { with.text += LongText; }, 1},
    {"AddView", [](SOperands& with) { with.text += CView(LongText); }, 1},
    {"AddCharacter", [](SOperands& with) { with.text += 'x'; }, 1},
    {"AddList",
     [](SOperands& with) {
         with.text += {'a', 'b'};
     },
     1},
    {"AppendView", [](SOperands& with) { with.text.append(CView(LongText)); }, 1},
    {"AppendPart", [](SOperands& with) { with.text.append(CView(LongText), 1, 30); }, 1},
    {"AppendCounted", [](SOperands& with) { with.text.append(LongText, 30); }, 1},
    {"AppendPointer", [](SOperands& with) { with.text.append(LongText); }, 1},
    {"AppendCopies", [](SOperands& with) { with.text.append(30, 'x'); }, 1},
    {"AppendList",
     [](SOperands& with) {
         with.text.append({'a', 'b'});
     },
     1},
    {"SetView", [](SOperands& with) { with.text.set(std::string_view(Former + Former)); }, 2},
    {"SetUtf16", [](SOperands& with) { with.text.set(std::u16string(60, u'x')); }, 0},
    {"SetWide", [](SOperands& with) { with.text.set(std::wstring(60, L'x')); }, 0},
};

template <class Operation>
std::string NameOf(testing::TestParamInfo<Operation> const& row)
{
    return row.param.name;
}

class CSafeStringMaker : public testing::TestWithParam<SOperation>
{
protected:
    // The operands without spare room, which would save the appends their allocation.
    SOperands m_Operands;

    void ExpectUnchangedOperands() const
    {
        EXPECT_EQ(Bytes(m_Operands.text), Former);
        EXPECT_EQ(Bytes(m_Operands.other), LongText);
        EXPECT_EQ(m_Operands.items, (std::vector<CSafeString>{LongText, LongText}));
        EXPECT_EQ(m_Operands.oneItem, (std::vector<CSafeString>{LongText}));
    }
};

class CSafeStringChanger : public CSafeStringMaker
{
};
} // namespace

TEST_P(CSafeStringMaker, AllocatesExactlyWhatItMakesAndKeepsNoneOfIt)
{
    CAllocationCounter const during;
    GetParam().run(m_Operands);
    unsigned long const count = during.Count();
    EXPECT_EQ(during.Live(), 0);
    if (GetParam().allocations != 0) {
        EXPECT_EQ(count, static_cast<unsigned long>(GetParam().allocations));
    }
}

TEST_P(CSafeStringMaker, FailureOfEachAllocationIsBadAllocAndLeaksNothing)
{
    CAllocationCounter const during;
    int const failures = FailEachAllocation([this] { GetParam().run(m_Operands); },
                                            [&] { EXPECT_EQ(during.Live(), 0); });
    EXPECT_GE(failures, std::max(1, GetParam().allocations));
    EXPECT_EQ(during.Live(), 0);
    ExpectUnchangedOperands();
}

TEST_P(CSafeStringMaker, FailureOfEachMallocIsBadAllocAndLeaksNothing)
{
    if (!CanFailMalloc())
        GTEST_SKIP() << "the sanitizer owns malloc";
    CAllocationCounter const during;
    int const failures =
        FailEachAllocation([this] { GetParam().run(m_Operands); },
                           [&] { EXPECT_EQ(during.Live(), 0); }, EAllocator::Malloc);
    EXPECT_GE(failures, std::max(1, GetParam().allocations));
    EXPECT_EQ(during.Live(), 0);
    ExpectUnchangedOperands();
}

INSTANTIATE_TEST_SUITE_P(Rows, CSafeStringMaker, testing::ValuesIn(Makers), NameOf<SOperation>);

TEST_P(CSafeStringChanger, FailureOfEachAllocationLeavesTheTextAndLeaksNothing)
{
    CAllocationCounter const during;
    int const failures = FailEachAllocation([this] { GetParam().run(m_Operands); },
                                            [&] {
                                                EXPECT_EQ(during.Live(), 0);
                                                EXPECT_EQ(CView(m_Operands.text), Former);
                                            });
    EXPECT_GE(failures, std::max(1, GetParam().allocations));
    EXPECT_EQ(during.Live(), 0); // the grown block stands in place of the old
    EXPECT_NE(Bytes(m_Operands.text), Former);
    m_Operands.text.set(Former);
    ExpectUnchangedOperands();
}

TEST_P(CSafeStringChanger, FailureOfEachMallocLeavesTheTextAndLeaksNothing)
{
    if (!CanFailMalloc())
        GTEST_SKIP() << "the sanitizer owns malloc";
    CAllocationCounter const during;
    int const failures = FailEachAllocation([this] { GetParam().run(m_Operands); },
                                            [&] {
                                                EXPECT_EQ(during.Live(), 0);
                                                EXPECT_EQ(CView(m_Operands.text), Former);
                                            },
                                            EAllocator::Malloc);
    EXPECT_GE(failures, std::max(1, GetParam().allocations));
    EXPECT_EQ(during.Live(), 0);
    EXPECT_NE(Bytes(m_Operands.text), Former);
}

INSTANTIATE_TEST_SUITE_P(Rows, CSafeStringChanger, testing::ValuesIn(Changers), NameOf<SOperation>);

TEST(CSafeStringAllocation, EveryObjectHasAStandardStringOfItsOwnAlsoWhenEmpty)
{
    CAllocationCounter const during;
    CSafeString const first;
    CSafeString const second("");
    CSafeString const third(0, 'x');
    CSafeString const copy(first);
    EXPECT_EQ(during.Count(), 4u);
    EXPECT_EQ(during.Live(), 4);
}

TEST(CSafeStringAllocation, DestructionFreesTheTextAndTheStandardString)
{
    CAllocationCounter const during;
    {
        CSafeString const text(LongText);
        EXPECT_EQ(during.Live(), 2);
    }
    EXPECT_EQ(during.Live(), 0);
}

TEST(CSafeStringAllocation, MovesAllocateAndReleaseNothing)
{
    CSafeString first(LongText);
    CSafeString second("second");
    CAllocationCounter const during;
    CSafeString third(std::move(first));
    second = std::move(third);
    first = std::move(second); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(during.Count(), 0u);
    EXPECT_EQ(during.Live(), 0);
    EXPECT_EQ(Bytes(first), LongText);
}

TEST(CSafeStringAllocation, CopyAssignmentNeverReusesTheOldStorage)
{
    CSafeString target(1000, 'x'); // room enough for the new text
    CSafeString const source(LongText);
    CAllocationCounter const during;
    target = source;
    EXPECT_EQ(during.Count(), 2u);
    EXPECT_EQ(during.Live(), 0);
    EXPECT_EQ(StorageOf(target)->capacity(), 40u);
}

TEST(CSafeStringAllocation, CopyAssignmentReleasesTheOldTextBeforeItAllocates)
{
    CSafeString target(Former.c_str());
    CSafeString const source(LongText);
    CAllocationCounter const during;
    {
        CAllocationFailure const failure(1);
        EXPECT_THROW(target = source, std::bad_alloc);
    }
    EXPECT_EQ(during.Live(), -2); // the standard string and its text
}

TEST(CSafeStringAllocation, FailedCopyAssignmentLeavesTheTargetWithoutStorage)
{
    CSafeString target(Former.c_str());
    CSafeString const source(LongText);
    int const failures = FailEachAllocation([&] { target = source; },
                                            [&] { EXPECT_EQ(StorageOf(target), nullptr); });
    EXPECT_EQ(failures, 2);
    EXPECT_EQ(Bytes(target), LongText); // assigned again, now with memory
    EXPECT_EQ(Bytes(source), LongText);
}

TEST(CSafeStringAllocation, FailedCopyAssignmentLeaksNothing)
{
    CSafeString const source(LongText);
    CAllocationCounter const during;
    {
        CSafeString target(Former.c_str());
        EXPECT_EQ(FailEachAllocation([&] { target = source; }, [] {}), 2);
    }
    EXPECT_EQ(during.Live(), 0);
}

TEST(CSafeStringAllocation, SetKeepsStorageThatIsLargeEnough)
{
    CSafeString text(1000, 'x');
    char const* const start = text.get();
    CAllocationCounter const during;
    text.set(LongText);
    text.set("");
    text.set(CView(LongText));
    EXPECT_EQ(during.Count(), 0u);
    EXPECT_EQ(text.get(), start);
    EXPECT_EQ(StorageOf(text)->capacity(), 1000u);
}

TEST(CSafeStringAllocation, SetOfConvertedTextKeepsStorageThatIsLargeEnough)
{
    CSafeString text(1000, 'x');
    char const* const start = text.get();
    text.set(basic_sv_wrapper<wchar_t>(LongWide));
    EXPECT_EQ(Bytes(text), LongText);
    text.set(basic_sv_wrapper<char16_t>(LongUtf16));
    EXPECT_EQ(Bytes(text), LongText);
    EXPECT_EQ(text.get(), start);
    EXPECT_EQ(StorageOf(text)->capacity(), 1000u);
}

TEST(CSafeStringAllocation, AccessAllocatesNothing)
{
    CSafeString text(LongText);
    CAllocationCounter const during;
    static_cast<void>(text.get());
    static_cast<void>(text.data());
    static_cast<void>(text.size());
    static_cast<void>(text.empty());
    static_cast<void>(text[0]);
    static_cast<void>(text.front());
    static_cast<void>(text.back());
    bool const sized = text.end() - text.begin() == 40 && text.crend() - text.crbegin() == 40;
    EXPECT_EQ(during.Count(), 0u);
    EXPECT_TRUE(sized);
}

TEST(CSafeStringAllocation, FailedToPathLeaksNothing)
{
    CSafeString const text("/a/path/that/is/long/enough/for/the/heap");
    CAllocationCounter const during;
    int const failures = FailEachAllocation([&] { static_cast<void>(text.to_path()); },
                                            [&] { EXPECT_EQ(during.Live(), 0); });
    EXPECT_GE(failures, 1);
    EXPECT_EQ(during.Live(), 0);
}

// The object has the new text as soon as that is joined; only the copy to return may still fail.
TEST(CSafeStringAllocation, FailedJoinLeavesTheFormerTextUntilTheNewOneIsJoined)
{
    SOperands operands;
    std::vector<std::string> left;
    CAllocationCounter const during;
    int const failures =
        FailEachAllocation([&] { static_cast<void>(operands.text.join(operands.items, ",")); },
                           [&] {
                               left.push_back(Bytes(operands.text));
                               operands.text = CSafeString(CView(Former));
                           });
    std::string const joined = std::string(LongText) + "," + LongText;
    std::vector<std::string> expected(5, Former);
    expected.insert(expected.end(), 2, joined);
    EXPECT_EQ(failures, 7);
    EXPECT_EQ(left, expected);
    EXPECT_EQ(Bytes(operands.text), joined);
    EXPECT_EQ(operands.items, (std::vector<CSafeString>{LongText, LongText}));
}

TEST(CSafeStringAllocation, JoinMakesNoRoomForWhatFollowsANul)
{
    std::string const tail = std::string("ab\0", 3) + std::string(100'000, 'x');
    std::vector<CSafeString> const items(2, CSafeString(CView(tail)));
    CAllocationCounter const during;
    CSafeString const joined = CSafeString::do_join(items, ",");
    EXPECT_EQ(during.Count(), 2u); // the strings of the separator and of the result
    EXPECT_EQ(StorageOf(joined)->capacity(), std::string().capacity());
    EXPECT_EQ(Bytes(joined), "ab,ab");
}

// Of all lengths around those at which the text grows or is filled in advance.
TEST(CSafeStringAllocation, JoinGrowsWhenAndAsAppendingDoes)
{
    for (std::size_t const length : {1u, 7u, 15u, 16u, 100u, 4095u, 4096u, 4097u, 10'000u}) {
        std::vector<CSafeString> const items(13'000 / length + 3, CSafeString(length, 'x'));
        SCOPED_TRACE(std::to_string(items.size()) + " items of " + std::to_string(length));

        CAllocationCounter const joining;
        CSafeString const joined = CSafeString::do_join(items, ", ");
        long const blocksOfJoining = joining.Live();
        unsigned long const allocationsOfJoining = joining.Count();

        CAllocationCounter const appending;
        CSafeString const separator(", ");
        CSafeString appended;
        for (CSafeString const& item : items) {
            if (!appended.empty())
                appended += separator;
            appended += item;
        }
        EXPECT_EQ(allocationsOfJoining, appending.Count());
        EXPECT_EQ(blocksOfJoining, appending.Live() - 1); // that of the separator is still there
        EXPECT_EQ(StorageOf(joined)->capacity(), StorageOf(appended)->capacity());
        EXPECT_EQ(Bytes(joined), Bytes(appended));
    }
}

TEST(CSafeStringAllocation, FailedJoinLeaksNothing)
{
    SOperands operands;
    CAllocationCounter const during;
    int const failures =
        FailEachAllocation([&] { static_cast<void>(operands.text.join(operands.items, ",")); },
                           [&] { EXPECT_EQ(during.Live(), 0); });
    EXPECT_EQ(during.Live(), 0);
    EXPECT_EQ(failures, 7);
}
