#include <BaseUtilities/CSafeString.h>

#include "Allocations.h"
#include "SafeStringInspection.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace
{
using CView = basic_sv_wrapper<char>;

struct SJoin
{
    char const* name;
    std::vector<CSafeString> items;
    CView separator;
    std::string joined;
};

CSafeString const WithNul = CView("a\0b", 3);

std::vector<SJoin> const Joins = {
    {"NoItems", {}, ",", ""},
    {"OneItem", {"abc"}, ",", "abc"},
    {"OneEmptyItem", {""}, ",", ""},
    {"OneItemIsCopiedWhole", {WithNul}, ",", std::string("a\0b", 3)},
    {"ThreeItems", {"a", "b", "c"}, "-", "a-b-c"},
    {"LongSeparator", {"a", "b"}, ", and ", "a, and b"},
    {"EmptySeparator", {"a", "b", "c"}, "", "abc"},
    {"NullSeparator", {"a", "b", "c"}, CView(), "abc"},
    {"EmptyItemsInFront", {"", "", "x"}, ",", "x"},
    {"EmptyItemBetween", {"x", "", "y"}, ",", "x,,y"},
    {"EmptyItemAtTheEnd", {"x", ""}, ",", "x,"},
    {"EmptyItemsOnly", {"", "", ""}, ",", ""},
    {"EmptyItemsAround", {"", "x", "", "", "y", ""}, ",", "x,,,y,"},
    {"ItemsEndAtTheirNul", {WithNul, WithNul}, ",", "a,a"},
    {"ItemBeginningWithNulIsEmpty", {CSafeString(1, '\0'), "x"}, ",", "x"},
    {"SeparatorEndsAtItsNul", {"x", "y"}, CView("-\0+", 3), "x-y"},
    {"SeparatorOfTheLengthOfItsView", {"x", "y"}, CView("-+", 1), "x-y"},
};

class CSafeStringJoin : public testing::TestWithParam<SJoin>
{
};
} // namespace

TEST_P(CSafeStringJoin, DoJoinPutsTheSeparatorOnceTheResultIsNotEmpty)
{
    EXPECT_EQ(Bytes(CSafeString::do_join(GetParam().items, GetParam().separator)),
              GetParam().joined);
}

TEST_P(CSafeStringJoin, ConstructorGivesTheSameText)
{
    EXPECT_EQ(Bytes(CSafeString(GetParam().items, GetParam().separator)), GetParam().joined);
}

TEST_P(CSafeStringJoin, JoinReplacesTheTextAndReturnsACopyInItsOwnStorage)
{
    CSafeString text("former");
    CSafeString const returned = text.join(GetParam().items, GetParam().separator);
    EXPECT_EQ(Bytes(text), GetParam().joined);
    EXPECT_EQ(Bytes(returned), GetParam().joined);
    EXPECT_NE(StorageOf(returned), StorageOf(text));
}

TEST_P(CSafeStringJoin, LeavesTheItemsAlone)
{
    std::vector<CSafeString> const items = GetParam().items;
    static_cast<void>(CSafeString::do_join(items, GetParam().separator));
    EXPECT_EQ(items, GetParam().items);
}

INSTANTIATE_TEST_SUITE_P(Rows, CSafeStringJoin, testing::ValuesIn(Joins),
                         [](auto const& row) { return row.param.name; });

TEST(CSafeStringJoining, CharacterSeparatesTheItems)
{
    std::vector<CSafeString> const items{"a", "b", "c"};
    EXPECT_EQ(Bytes(CSafeString::do_join(items, '-')), "a-b-c");
    EXPECT_EQ(Bytes(CSafeString(items, '-')), "a-b-c");
    CSafeString text("former");
    EXPECT_EQ(Bytes(text.join(items, '-')), "a-b-c");
    EXPECT_EQ(Bytes(text), "a-b-c");
}

TEST(CSafeStringJoining, EveryCharacterButNulSeparates)
{
    std::vector<CSafeString> const items{"a", "b"};
    for (int value = 1; value < 256; ++value) {
        SCOPED_TRACE(value);
        auto const separator = static_cast<char>(value);
        EXPECT_EQ(Bytes(CSafeString::do_join(items, separator)),
                  std::string("a") + separator + "b");
    }
}

TEST(CSafeStringJoining, NulCharacterIsNoSeparator)
{
    std::vector<CSafeString> const items{"a", "b", "c"};
    EXPECT_EQ(Bytes(CSafeString::do_join(items, '\0')), "abc");
    EXPECT_EQ(Bytes(CSafeString(items, '\0')), "abc");
    CSafeString text("former");
    EXPECT_EQ(Bytes(text.join(items, '\0')), "abc");
    EXPECT_EQ(Bytes(text), "abc");
}

TEST(CSafeStringJoining, CharacterJoinCopiesASingleItemWhole)
{
    EXPECT_EQ(Bytes(CSafeString::do_join({WithNul}, ',')), std::string("a\0b", 3));
}

TEST(CSafeStringJoining, CharacterJoinOfNothingIsEmpty)
{
    EXPECT_EQ(Bytes(CSafeString::do_join({}, ',')), "");
}

TEST(CSafeStringJoining, BracesMakeTheItems)
{
    EXPECT_EQ(Bytes(CSafeString::do_join({"a", "b"}, ",")), "a,b");
    EXPECT_EQ(Bytes(CSafeString::do_join({"a", "b"}, ',')), "a,b");
    EXPECT_EQ(Bytes(CSafeString({"a", "b", "c"}, "; ")), "a; b; c");
}

TEST(CSafeStringJoining, ItemsMayHoldTheTextItself)
{
    CSafeString text("x");
    EXPECT_EQ(Bytes(text.join({text, text}, "-")), "x-x");
    EXPECT_EQ(Bytes(text), "x-x");
}

TEST(CSafeStringJoining, ReplacesTheStorageAndReleasesTheFormerText)
{
    CSafeString text(LongText);
    std::vector<CSafeString> const items{"a", "b"};
    std::string const* const former = StorageOf(text);
    CAllocationCounter const during;
    {
        CSafeString const returned = text.join(items, ",");
        EXPECT_EQ(during.Live(), 0); // the copy, less the former text's heap block
    }
    EXPECT_EQ(during.Live(), -1);
    EXPECT_NE(StorageOf(text), former);
}

TEST(CSafeStringJoining, NullSeparatorWithALengthIsRefusedWhateverTheItems)
{
    CView const refused(nullptr, 3);
    std::vector<std::vector<CSafeString>> const lists{{}, {"a"}, {"a", "b"}};
    char const* const what = "basic_string: construction from null is not valid";
    for (std::vector<CSafeString> const& items : lists) {
        SCOPED_TRACE(items.size());
        CAllocationCounter const during;
        ExpectThrows<std::logic_error>([&] { CSafeString::do_join(items, refused); }, what);
        ExpectThrows<std::logic_error>([&] { CSafeString const text(items, refused); }, what);
        EXPECT_EQ(during.Live(), 0);
    }
}

TEST(CSafeStringJoining, RefusedSeparatorLeavesTheTextOfJoin)
{
    CSafeString text("former");
    ExpectThrows<std::logic_error>(
        [&] {
            text.join({"a", "b"}, CView(nullptr, 1));
        },
        "basic_string: construction from null is not valid");
    EXPECT_EQ(Bytes(text), "former");
}
