#include <BaseUtilities/CSafeString.h>

#include "Allocations.h"
#include "SafeStringInspection.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace
{
using CView = basic_sv_wrapper<char>;

CSafeString WithNul()
{
    return CView("ab\0cd", 5);
}
} // namespace

TEST(CSafeString, IsOnePointerWide)
{
    static_assert(sizeof(CSafeString) == sizeof(void*) && alignof(CSafeString) == alignof(void*));
    static_assert(std::is_standard_layout_v<CSafeString>);
    CSafeString const text("abc");
    ASSERT_NE(StorageOf(text), nullptr);
    EXPECT_EQ(*StorageOf(text), "abc");
    EXPECT_EQ(StorageOf(text)->c_str(), text.get());
}

// Construction

TEST(CSafeString, DefaultConstructedIsEmptyWithAValidPointer)
{
    CSafeString const text;
    EXPECT_STREQ(text.get(), "");
    EXPECT_EQ(text.size(), 0u);
    EXPECT_TRUE(text.empty());
}

TEST(CSafeString, NullPointerGivesEmptyTextWithAValidPointer)
{
    CSafeString const literal(nullptr);
    EXPECT_STREQ(literal.get(), "");
    EXPECT_EQ(literal.size(), 0u);
    char const* const pointer = nullptr;
    EXPECT_EQ(Bytes(CSafeString(pointer)), "");
}

TEST(CSafeString, PointerGivesTheTextUpToItsNul)
{
    EXPECT_EQ(Bytes(CSafeString("ab\0cd")), "ab");
    EXPECT_EQ(Bytes(CSafeString("")), "");
    EXPECT_EQ(Bytes(CSafeString(LongText)), LongText);
}

TEST(CSafeString, ViewGivesItsLengthInCharacters)
{
    EXPECT_EQ(Bytes(CSafeString(CView("abcdef", 3))), "abc");
    EXPECT_EQ(Bytes(CSafeString(CView("ab\0cd", 5))), std::string("ab\0cd", 5));
    EXPECT_EQ(Bytes(CSafeString(CView("abc", 0))), "");
}

TEST(CSafeString, NullViewOfLengthZeroGivesEmptyText)
{
    CSafeString const fromDefault{CView()};
    EXPECT_STREQ(fromDefault.get(), "");
    EXPECT_EQ(fromDefault.size(), 0u);
    EXPECT_EQ(Bytes(CSafeString(CView(nullptr, 0))), "");
}

TEST(CSafeString, NullViewWithALengthIsRefusedAndLeaksNothing)
{
    CAllocationCounter const during;
    for (unsigned long const length : {1UL, 3UL, 1000UL})
        ExpectThrows<std::logic_error>([length] { CSafeString const text(CView(nullptr, length)); },
                                       "basic_string: construction from null is not valid");
    EXPECT_EQ(during.Live(), 0);
}

TEST(CSafeString, ConstructionDoesNotConsultTheFlagOfTheView)
{
    CView unset("abc");
    unset.m_HasValue = false;
    EXPECT_EQ(Bytes(CSafeString(unset)), "abc");
    CView setButNull(nullptr, 3);
    setButNull.m_HasValue = true;
    ExpectThrows<std::logic_error>([&] { CSafeString const text(setButNull); },
                                   "basic_string: construction from null is not valid");
}

TEST(CSafeString, CountAndCharacterGiveThatManyCopies)
{
    EXPECT_EQ(Bytes(CSafeString(3, 'x')), "xxx");
    EXPECT_EQ(Bytes(CSafeString(0, 'x')), "");
    EXPECT_EQ(Bytes(CSafeString(2, '\0')), std::string(2, '\0'));
    EXPECT_EQ(Bytes(CSafeString(1000, 'y')), std::string(1000, 'y'));
}

TEST(CSafeString, CopyKeepsEmbeddedNulsInStorageOfItsOwn)
{
    CSafeString const source = WithNul();
    CSafeString const copy(source);
    EXPECT_EQ(Bytes(copy), std::string("ab\0cd", 5));
    EXPECT_STREQ(copy.get(), "ab");
    EXPECT_NE(StorageOf(copy), StorageOf(source));
    EXPECT_EQ(Bytes(source), Bytes(copy));
}

TEST(CSafeString, MoveConstructionTakesTheStorageAndLeavesNone)
{
    CSafeString source(LongText);
    std::string const* const storage = StorageOf(source);
    CSafeString const target(std::move(source));
    EXPECT_EQ(StorageOf(target), storage);
    EXPECT_EQ(StorageOf(source), nullptr); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(Bytes(target), LongText);
}

TEST(CSafeString, MovesAreNoexcept)
{
    static_assert(std::is_nothrow_move_constructible_v<CSafeString>);
    static_assert(std::is_nothrow_move_assignable_v<CSafeString>);
    static_assert(std::is_nothrow_destructible_v<CSafeString>);
    SUCCEED();
}

TEST(CSafeString, WideTextBecomesUtf8)
{
    EXPECT_EQ(Bytes(basic_sv_wrapper<wchar_t>(L"a\u00e4\u4e2d\U0001F600")),
              "a\xc3\xa4\xe4\xb8\xad\xf0\x9f\x98\x80");
    EXPECT_EQ(Bytes(basic_sv_wrapper<wchar_t>(L"a\0b")), std::string("a\0b", 3));
    EXPECT_EQ(Bytes(basic_sv_wrapper<wchar_t>()), "");
    EXPECT_EQ(Bytes(basic_sv_wrapper<wchar_t>(L"abc", 2)), "ab");
}

TEST(CSafeString, Utf16TextBecomesUtf8)
{
    EXPECT_EQ(Bytes(basic_sv_wrapper<char16_t>(u"a\u00e4\u4e2d\U0001F600")),
              "a\xc3\xa4\xe4\xb8\xad\xf0\x9f\x98\x80");
    EXPECT_EQ(Bytes(basic_sv_wrapper<char16_t>(u"a\0b")), std::string("a\0b", 3));
    EXPECT_EQ(Bytes(basic_sv_wrapper<char16_t>()), "");
    EXPECT_EQ(Bytes(basic_sv_wrapper<char16_t>(u"abc", 2)), "ab");
}

// Assignment and setting

TEST(CSafeString, CopyAssignmentCopiesTheWholeText)
{
    CSafeString const source = WithNul();
    CSafeString target("former");
    CSafeString& result = (target = source);
    EXPECT_EQ(&result, &target);
    EXPECT_EQ(Bytes(target), std::string("ab\0cd", 5));
    EXPECT_EQ(Bytes(source), std::string("ab\0cd", 5));
    EXPECT_NE(StorageOf(target), StorageOf(source));
}

TEST(CSafeString, CopyAssignmentGivesAMovedFromObjectNewStorage)
{
    CSafeString target("former");
    CSafeString const taker(std::move(target));
    CSafeString const source("new");
    target = source;
    EXPECT_EQ(Bytes(target), "new");
    EXPECT_EQ(Bytes(taker), "former");
}

TEST(CSafeString, CopyAssignmentToItselfChangesNothingAndAllocatesNothing)
{
    CSafeString text(LongText);
    CSafeString const& same = text;
    std::string const* const storage = StorageOf(text);
    CAllocationCounter const during;
    CSafeString& result = (text = same);
    EXPECT_EQ(during.Count(), 0u);
    EXPECT_EQ(during.Live(), 0);
    EXPECT_EQ(&result, &text);
    EXPECT_EQ(StorageOf(text), storage);
    EXPECT_EQ(Bytes(text), LongText);
}

TEST(CSafeString, MoveAssignmentExchangesTheTexts)
{
    CSafeString source("source");
    CSafeString target("target");
    std::string const* const sourceStorage = StorageOf(source);
    std::string const* const targetStorage = StorageOf(target);
    CSafeString& result = (target = std::move(source));
    EXPECT_EQ(&result, &target);
    EXPECT_EQ(Bytes(target), "source");
    EXPECT_EQ(Bytes(source), "target"); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(StorageOf(target), sourceStorage);
    EXPECT_EQ(StorageOf(source), targetStorage);
}

TEST(CSafeString, MoveAssignmentToAMovedFromObjectLeavesTheSourceWithNothing)
{
    CSafeString target("target");
    CSafeString const taker(std::move(target));
    CSafeString source("source");
    target = std::move(source);
    EXPECT_EQ(Bytes(target), "source");
    EXPECT_EQ(StorageOf(source), nullptr); // NOLINT(bugprone-use-after-move)
}

TEST(CSafeString, MoveAssignmentFromAMovedFromObjectHandsItTheText)
{
    CSafeString source("source");
    CSafeString const taker(std::move(source));
    CSafeString target("target");
    target = std::move(source); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(StorageOf(target), nullptr);
    EXPECT_EQ(Bytes(source), "target");
}

TEST(CSafeString, MoveAssignmentToItselfChangesNothing)
{
    CSafeString text(LongText);
    CSafeString& same = text;
    std::string const* const storage = StorageOf(text);
    text = std::move(same);
    EXPECT_EQ(StorageOf(text), storage);
    EXPECT_EQ(Bytes(text), LongText);
}

TEST(CSafeString, SetReplacesTheTextByTheWholeView)
{
    CSafeString text("former");
    text.set(CView("ab\0cd", 5));
    EXPECT_EQ(Bytes(text), std::string("ab\0cd", 5));
    text.set("short");
    EXPECT_EQ(Bytes(text), "short");
    text.set(LongText);
    EXPECT_EQ(Bytes(text), LongText);
}

TEST(CSafeString, SetOfANullViewEmptiesTheText)
{
    CSafeString text("former");
    text.set(CView());
    EXPECT_EQ(text.size(), 0u);
    EXPECT_STREQ(text.get(), "");
}

TEST(CSafeString, SetTakesAPartOfItsOwnText)
{
    CSafeString text("0123456789");
    text.set(CView(text.get() + 3, 4));
    EXPECT_EQ(Bytes(text), "3456");

    CSafeString onHeap(LongText);
    onHeap.set(CView(onHeap.get() + 6, 10));
    EXPECT_EQ(Bytes(onHeap), "characters");
    onHeap.set(CView(onHeap.get(), onHeap.size()));
    EXPECT_EQ(Bytes(onHeap), "characters");
}

TEST(CSafeString, SetConvertsUtf16AndWideText)
{
    CSafeString text("former");
    std::string const* const storage = StorageOf(text);
    text.set(basic_sv_wrapper<char16_t>(u"\u00e4\0b"));
    EXPECT_EQ(Bytes(text), std::string("\xc3\xa4\0b", 4));
    text.set(basic_sv_wrapper<wchar_t>(L"\U0001F600\0b"));
    EXPECT_EQ(Bytes(text), std::string("\xf0\x9f\x98\x80\0b", 6));
    text.set(basic_sv_wrapper<wchar_t>());
    EXPECT_EQ(Bytes(text), "");
    text.set(basic_sv_wrapper<char16_t>());
    EXPECT_EQ(Bytes(text), "");
    EXPECT_EQ(StorageOf(text), storage);
}

TEST(CSafeString, ClearEmptiesTheTextAndKeepsTheStorage)
{
    CSafeString text(LongText);
    std::string const* const storage = StorageOf(text);
    char const* const start = text.get();
    CAllocationCounter const during;
    text.clear();
    EXPECT_EQ(text.size(), 0u);
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(start[0], '\0');
    EXPECT_EQ(text.get(), start);
    EXPECT_EQ(StorageOf(text), storage);
    EXPECT_GE(storage->capacity(), 40u);
    EXPECT_EQ(during.Count(), 0u);
    EXPECT_EQ(during.Live(), 0);
}

// Access

TEST(CSafeString, GetAndDataAreTheSamePointerToTerminatedText)
{
    CSafeString text("abc");
    CSafeString const& constant = text;
    static_assert(std::is_same_v<decltype(text.get()), char const*>);
    static_assert(std::is_same_v<decltype(text.data()), char*>);
    static_assert(std::is_same_v<decltype(constant.data()), char const*>);
    EXPECT_EQ(text.data(), text.get());
    EXPECT_EQ(constant.data(), text.get());
    EXPECT_EQ(text.get()[3], '\0');
    text.data()[1] = 'X';
    EXPECT_EQ(Bytes(text), "aXc");
}

TEST(CSafeString, SizeCountsNuls)
{
    static_assert(std::is_same_v<decltype(CSafeString().size()), unsigned long>);
    EXPECT_EQ(WithNul().size(), 5u);
    EXPECT_FALSE(WithNul().empty());
    EXPECT_FALSE(CSafeString(1, '\0').empty());
    EXPECT_TRUE(CSafeString("").empty());
}

TEST(CSafeString, IndexRefersToTheCharacter)
{
    CSafeString text("abc");
    CSafeString const& constant = text;
    static_assert(std::is_same_v<decltype(text[0]), char&>);
    static_assert(std::is_same_v<decltype(constant[0]), char const&>);
    EXPECT_EQ(constant[0], 'a');
    EXPECT_EQ(constant[2], 'c');
    EXPECT_EQ(constant[3], '\0');
    EXPECT_EQ(&constant[1], text.get() + 1);
    text[1] = 'X';
    EXPECT_EQ(Bytes(text), "aXc");
}

TEST(CSafeString, FrontAndBackReferToTheFirstAndLastCharacter)
{
    CSafeString text("abc");
    CSafeString const& constant = text;
    EXPECT_EQ(&constant.front(), text.get());
    EXPECT_EQ(&constant.back(), text.get() + 2);
    text.front() = 'X';
    text.back() = 'Z';
    EXPECT_EQ(Bytes(text), "XbZ");
}

TEST(CSafeString, FrontOfEmptyTextIsTheTerminator)
{
    CSafeString text;
    CSafeString const& constant = text;
    EXPECT_EQ(&text.front(), text.get());
    EXPECT_EQ(&constant.front(), text.get());
    EXPECT_EQ(constant.front(), '\0');
}

TEST(CSafeString, IteratorsCoverTheWholeText)
{
    CSafeString text = WithNul();
    EXPECT_EQ(std::string(text.begin(), text.end()), std::string("ab\0cd", 5));
    EXPECT_EQ(std::string(text.cbegin(), text.cend()), std::string("ab\0cd", 5));
    EXPECT_EQ(std::string(text.rbegin(), text.rend()), std::string("dc\0ba", 5));
    EXPECT_EQ(std::string(text.crbegin(), text.crend()), std::string("dc\0ba", 5));
    *text.begin() = 'A';
    *text.rbegin() = 'D';
    EXPECT_EQ(Bytes(text), std::string("Ab\0cD", 5));
}

TEST(CSafeString, IteratorsAreThoseOfTheStandardString)
{
    CSafeString text("abc");
    static_assert(std::is_same_v<decltype(text.begin()), std::string::iterator>);
    static_assert(std::is_same_v<decltype(text.end()), std::string::iterator>);
    static_assert(std::is_same_v<decltype(text.cbegin()), std::string::const_iterator>);
    static_assert(std::is_same_v<decltype(text.cend()), std::string::const_iterator>);
    static_assert(std::is_same_v<decltype(text.rbegin()), std::string::reverse_iterator>);
    static_assert(std::is_same_v<decltype(text.rend()), std::string::reverse_iterator>);
    static_assert(std::is_same_v<decltype(text.crbegin()), std::string::const_reverse_iterator>);
    static_assert(std::is_same_v<decltype(text.crend()), std::string::const_reverse_iterator>);
    EXPECT_EQ(text.cbegin(), text.begin());
    EXPECT_EQ(text.cend(), text.end());
    EXPECT_EQ(text.begin(), StorageOf(text)->begin());
    EXPECT_EQ(text.end(), StorageOf(text)->end());
    EXPECT_EQ(text.rbegin().base(), text.end());
    EXPECT_EQ(text.rend().base(), text.begin());
    EXPECT_EQ(text.crbegin().base(), text.cend());
    EXPECT_EQ(text.crend().base(), text.cbegin());
}

namespace
{
template <class T, class = void>
constexpr bool HasConstantIterators = false;
template <class T>
constexpr bool HasConstantIterators<T, std::void_t<decltype(std::declval<T const&>().begin())>> =
    true;
template <class T, class = void>
constexpr bool HasConstantReverseIterators = false;
template <class T>
constexpr bool
    HasConstantReverseIterators<T, std::void_t<decltype(std::declval<T const&>().crend())>> = true;
} // namespace

TEST(CSafeString, IteratorFunctionsAreNotConst)
{
    static_assert(HasConstantIterators<std::string> && !HasConstantIterators<CSafeString>);
    static_assert(HasConstantReverseIterators<std::string>);
    static_assert(!HasConstantReverseIterators<CSafeString>);
    SUCCEED();
}

// Conversion

TEST(CSafeString, SubstrGivesAtMostTheCountFromThePosition)
{
    CSafeString const text("0123456789");
    EXPECT_EQ(Bytes(text.substr(2, 3)), "234");
    EXPECT_EQ(Bytes(text.substr(0, 10)), "0123456789");
    EXPECT_EQ(Bytes(text.substr(8, 100)), "89");
    EXPECT_EQ(Bytes(text.substr(4, 0)), "");
    EXPECT_EQ(Bytes(text.substr(7, std::numeric_limits<unsigned long>::max())), "789");
    EXPECT_EQ(Bytes(text), "0123456789");
}

TEST(CSafeString, SubstrKeepsEmbeddedNuls)
{
    EXPECT_EQ(Bytes(WithNul().substr(1, 3)), std::string("b\0c", 3));
}

TEST(CSafeString, SubstrAtTheEndIsEmpty)
{
    CSafeString const text("abc");
    EXPECT_EQ(Bytes(text.substr(text.size(), 5)), "");
    EXPECT_EQ(Bytes(CSafeString().substr(0, 1)), "");
}

TEST(CSafeString, SubstrBeyondTheEndThrowsOutOfRangeWithTheNumbers)
{
    CSafeString const text("abc");
    ExpectThrows<std::out_of_range>([&] { text.substr(4, 0); },
                                    "basic_string::substr: __pos (which is 4) > this->size() "
                                    "(which is 3)");
    ExpectThrows<std::out_of_range>(
        [&] { text.substr(std::numeric_limits<unsigned long>::max(), 1); },
        "basic_string::substr: __pos (which is 18446744073709551615) > this->size() (which is 3)");
}

TEST(CSafeString, ToPathKeepsTheWholeTextAsNativeString)
{
    EXPECT_EQ(CSafeString("/a//b/../c").to_path().native(), "/a//b/../c");
    EXPECT_EQ(WithNul().to_path().native(), std::string("ab\0cd", 5));
    EXPECT_EQ(CSafeString("\xff\xfe").to_path().native(), "\xff\xfe");
    EXPECT_TRUE(CSafeString().to_path().empty());
}

TEST(CSafeString, ToPathLeavesTheTextAlone)
{
    CSafeString const text(LongText);
    EXPECT_EQ(text.to_path().native(), LongText);
    EXPECT_EQ(Bytes(text), LongText);
}

// Lengths that no string can have

namespace
{
unsigned long const TooLong = std::string().max_size() + 1;
} // namespace

TEST(CSafeString, ConstructionBeyondTheMaximumThrowsLengthError)
{
    CAllocationCounter const during;
    ExpectThrows<std::length_error>([] { CSafeString const text(TooLong, 'x'); },
                                    "basic_string::_M_create");
    ExpectThrows<std::length_error>([] { CSafeString const text(CView("abc", TooLong)); },
                                    "basic_string::_M_create");
    EXPECT_EQ(during.Live(), 0);
}

TEST(CSafeString, SetBeyondTheMaximumThrowsLengthErrorAndKeepsTheText)
{
    CSafeString text("former");
    ExpectThrows<std::length_error>([&] { text.set(CView("abc", TooLong)); },
                                    "basic_string::_M_replace");
    EXPECT_EQ(Bytes(text), "former");
}

TEST(CSafeString, TextsMoveInsideContainersWithoutCopies)
{
    std::vector<CSafeString> texts;
    texts.reserve(1);
    texts.emplace_back(LongText);
    std::string const* const storage = StorageOf(texts.front());
    texts.reserve(100);
    EXPECT_EQ(StorageOf(texts.front()), storage);
}
