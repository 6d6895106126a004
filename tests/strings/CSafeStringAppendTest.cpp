#include <BaseUtilities/CSafeString.h>

#include "Allocations.h"
#include "SafeStringInspection.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace
{
using CView = basic_sv_wrapper<char>;

struct SAppend
{
    char const* name;
    CSafeString& (*append)(CSafeString& text);
    std::string appended;
};

// Appends the texts that tell the forms apart: those that read a NUL-terminated text, and those
// that take every character.
SAppend const Appends[] = {
    {"AddSafeStringUpToItsNul",
     [](CSafeString& text) -> CSafeString& { return text += CSafeString(CView("x\0y", 3)); }, "x"},
    {"AddEmptySafeString", [](CSafeString& text) -> CSafeString& { return text += CSafeString(); },
     ""},
    {"AddPointerUpToItsNul", [](CSafeString& text) -> CSafeString& { return text += "x\0y"; }, "x"},
    {"AddEmptyPointer", [](CSafeString& text) -> CSafeString& { return text += ""; }, ""},
    {"AddCharacter", [](CSafeString& text) -> CSafeString& { return text += 'x'; }, "x"},
    {"AddNulCharacter", [](CSafeString& text) -> CSafeString& { return text += '\0'; },
     std::string(1, '\0')},
    {"AddCharacterList",
     [](CSafeString& text) -> CSafeString& {
         return text += {'x', '\0', 'y'};
     },
     std::string("x\0y", 3)},
    {"AddEmptyCharacterList",
     [](CSafeString& text) -> CSafeString& { return text += std::initializer_list<char>{}; }, ""},
    {"AddViewWithNuls", [](CSafeString& text) -> CSafeString& { return text += CView("x\0y", 3); },
     std::string("x\0y", 3)},
    {"AddViewOfItsLengthOnly",
     [](CSafeString& text) -> CSafeString& { return text += CView("xyz", 2); }, "xy"},
    {"AddNullView", [](CSafeString& text) -> CSafeString& { return text += CView(); }, ""},
    {"ViewOfAWholeSafeString",
     [](CSafeString& text) -> CSafeString& {
         CSafeString const other(CView("x\0y", 3));
         return text += CView(other.get(), other.size());
     },
     std::string("x\0y", 3)},
    {"ViewWithNuls",
     [](CSafeString& text) -> CSafeString& { return text.append(CView("x\0y", 3)); },
     std::string("x\0y", 3)},
    {"NullView", [](CSafeString& text) -> CSafeString& { return text.append(CView()); }, ""},
    {"UnsetViewWithText",
     [](CSafeString& text) -> CSafeString& {
         CView unset("xy");
         unset.m_HasValue = false;
         return text.append(unset);
     },
     "xy"},
    {"SafeStringThroughTheViewUpToItsNul",
     [](CSafeString& text) -> CSafeString& { return text.append(CSafeString(CView("x\0y", 3))); },
     "x"},
    {"PartOfAView",
     [](CSafeString& text) -> CSafeString& { return text.append(CView("0123456"), 2, 3); }, "234"},
    {"PartOfAViewWithNuls",
     [](CSafeString& text) -> CSafeString& { return text.append(CView("ab\0cd", 5), 1, 3); },
     std::string("b\0c", 3)},
    {"PartBeyondTheEndOfAView",
     [](CSafeString& text) -> CSafeString& { return text.append(CView("0123456"), 5, 100); }, "56"},
    {"PartWithTheLargestCount",
     [](CSafeString& text) -> CSafeString& {
         return text.append(CView("0123"), 1, std::numeric_limits<unsigned long>::max());
     },
     "123"},
    {"PartAtTheEndOfAView",
     [](CSafeString& text) -> CSafeString& { return text.append(CView("abc"), 3, 5); }, ""},
    {"PartOfNoCharacters",
     [](CSafeString& text) -> CSafeString& { return text.append(CView("abc"), 1, 0); }, ""},
    {"PartOfANullView",
     [](CSafeString& text) -> CSafeString& { return text.append(CView(), 0, 5); }, ""},
    {"CountedPointerWithNuls",
     [](CSafeString& text) -> CSafeString& { return text.append("x\0yz", 3); },
     std::string("x\0y", 3)},
    {"CountedPointer", [](CSafeString& text) -> CSafeString& { return text.append("abc", 2); },
     "ab"},
    {"CountedPointerOfNone",
     [](CSafeString& text) -> CSafeString& { return text.append("abc", 0); }, ""},
    {"PointerUpToItsNul", [](CSafeString& text) -> CSafeString& { return text.append("x\0y"); },
     "x"},
    {"Copies", [](CSafeString& text) -> CSafeString& { return text.append(3, 'x'); }, "xxx"},
    {"CopiesOfNul", [](CSafeString& text) -> CSafeString& { return text.append(2, '\0'); },
     std::string(2, '\0')},
    {"NoCopies", [](CSafeString& text) -> CSafeString& { return text.append(0, 'x'); }, ""},
    {"CharacterList",
     [](CSafeString& text) -> CSafeString& {
         return text.append({'x', '\0', 'y'});
     },
     std::string("x\0y", 3)},
    {"EmptyCharacterList",
     [](CSafeString& text) -> CSafeString& { return text.append(std::initializer_list<char>{}); },
     ""},
};

class CSafeStringAppend : public testing::TestWithParam<SAppend>
{
};
} // namespace

TEST_P(CSafeStringAppend, PutsTheTextAtTheEnd)
{
    CSafeString text(CView("a\0b", 3));
    GetParam().append(text);
    EXPECT_EQ(Bytes(text), std::string("a\0b", 3) + GetParam().appended);
}

TEST_P(CSafeStringAppend, FillsEmptyText)
{
    CSafeString text;
    GetParam().append(text);
    EXPECT_EQ(Bytes(text), GetParam().appended);
}

TEST_P(CSafeStringAppend, ReturnsTheObjectItself)
{
    CSafeString text("abc");
    EXPECT_EQ(&GetParam().append(text), &text);
}

TEST_P(CSafeStringAppend, KeepsTheStandardString)
{
    CSafeString text(LongText);
    std::string const* const storage = StorageOf(text);
    GetParam().append(text);
    EXPECT_EQ(StorageOf(text), storage);
}

TEST_P(CSafeStringAppend, WritesInPlaceWhileTheCapacitySuffices)
{
    CSafeString text("former");
    StorageOf(text)->reserve(100);
    char const* const start = text.get();
    GetParam().append(text);
    EXPECT_EQ(text.get(), start);
    EXPECT_EQ(Bytes(text), "former" + GetParam().appended);
}

TEST_P(CSafeStringAppend, DoublesTheCapacityOnceItIsExceeded)
{
    for (unsigned long const full : {15UL, 40UL, 1000UL}) {
        SCOPED_TRACE(full);
        CSafeString text(full, 'f');
        ASSERT_EQ(StorageOf(text)->capacity(), full);
        GetParam().append(text);
        EXPECT_EQ(StorageOf(text)->capacity(), GetParam().appended.empty() ? full : 2 * full);
        EXPECT_EQ(Bytes(text), std::string(full, 'f') + GetParam().appended);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, CSafeStringAppend, testing::ValuesIn(Appends),
                         [](auto const& row) { return row.param.name; });

TEST(CSafeStringAppending, AppendsItsOwnText)
{
    CSafeString text("0123456789");
    text += text;
    EXPECT_EQ(Bytes(text), "01234567890123456789");
    text.append(CView(text.get() + 8, 4));
    EXPECT_EQ(Bytes(text), "012345678901234567898901");
    text.append(text.get(), 2);
    EXPECT_EQ(Bytes(text), "01234567890123456789890101");
}

TEST(CSafeStringAppending, LeavesTheAppendedStringAlone)
{
    CSafeString const other(CView("x\0y", 3));
    CSafeString text("a");
    text += other;
    text.append(other);
    EXPECT_EQ(Bytes(other), std::string("x\0y", 3));
}

TEST(CSafeStringAppending, GrowthBeyondTheDoubleTakesWhatIsNeeded)
{
    CSafeString text(20, 'f');
    text.append(100, 'x');
    EXPECT_EQ(StorageOf(text)->capacity(), 120u);
    text.append(CView(LongText));
    EXPECT_EQ(StorageOf(text)->capacity(), 240u);
    text.append(std::string(1000, 'y'));
    EXPECT_EQ(StorageOf(text)->capacity(), 1160u);
}

TEST(CSafeStringAppending, AllocatesOnceToGrowAndFreesTheOldBlock)
{
    CSafeString text(40, 'f');
    CAllocationCounter const during;
    text += 'x';
    EXPECT_EQ(during.Count(), 1u);
    EXPECT_EQ(during.Live(), 0); // the new block stands in place of the old
    for (int i = 0; i < 39; ++i)
        text += 'x';
    EXPECT_EQ(during.Count(), 1u);
    text += 'x';
    EXPECT_EQ(during.Count(), 2u);
}

TEST(CSafeStringAppending, PartBeginningBeyondTheViewThrowsOutOfRangeAndKeepsTheText)
{
    CSafeString text("former");
    ExpectThrows<std::out_of_range>(
        [&] { text.append(CView("abc"), 4, 0); },
        "basic_string::append: __pos (which is 4) > __size (which is 3)");
    ExpectThrows<std::out_of_range>(
        [&] { text.append(CView(), 1, 1); },
        "basic_string::append: __pos (which is 1) > __size (which is 0)");
    EXPECT_EQ(Bytes(text), "former");
}

namespace
{
struct STooLong
{
    char const* name;
    void (*append)(CSafeString& text, unsigned long count);
    char const* what;
};

STooLong const TooLongAppends[] = {
    {"AddView", [](CSafeString& text, unsigned long count) { text += CView("abc", count); },
     "basic_string::append"},
    {"View", [](CSafeString& text, unsigned long count) { text.append(CView("abc", count)); },
     "basic_string::append"},
    {"CountedPointer", [](CSafeString& text, unsigned long count) { text.append("abc", count); },
     "basic_string::append"},
    {"PartOfAView",
     [](CSafeString& text, unsigned long count) { text.append(CView("abc", count), 0, count); },
     "basic_string::_M_create"},
    {"Copies", [](CSafeString& text, unsigned long count) { text.append(count, 'x'); },
     "basic_string::_M_replace_aux"},
};

class CSafeStringTooLongAppend : public testing::TestWithParam<STooLong>
{
};
} // namespace

TEST_P(CSafeStringTooLongAppend, ThrowsLengthErrorAndKeepsTheText)
{
    CSafeString text("former");
    unsigned long const count = std::string().max_size() - text.size() + 1;
    CAllocationCounter const during;
    ExpectThrows<std::length_error>([&] { GetParam().append(text, count); }, GetParam().what);
    EXPECT_EQ(during.Live(), 0);
    EXPECT_EQ(Bytes(text), "former");
}

INSTANTIATE_TEST_SUITE_P(Rows, CSafeStringTooLongAppend, testing::ValuesIn(TooLongAppends),
                         [](auto const& row) { return row.param.name; });

namespace
{
struct SFull
{
    char const* name;
    void (*append)(CSafeString& text);
    char const* what;
};

SFull const FullAppends[] = {
    {"AddSafeString", [](CSafeString& text) { text += CSafeString("x"); }, "basic_string::append"},
    {"AddPointer", [](CSafeString& text) { text += "x"; }, "basic_string::append"},
    {"AddCharacter", [](CSafeString& text) { text += 'x'; }, "basic_string::_M_create"},
    {"AddList", [](CSafeString& text) { text += {'x'}; }, "basic_string::append"},
    {"AddView", [](CSafeString& text) { text += CView("x"); }, "basic_string::append"},
    {"View", [](CSafeString& text) { text.append(CView("x")); }, "basic_string::append"},
    {"CountedPointer", [](CSafeString& text) { text.append("x", 1); }, "basic_string::append"},
    {"Pointer", [](CSafeString& text) { text.append("x"); }, "basic_string::append"},
    {"Copies", [](CSafeString& text) { text.append(1, 'x'); }, "basic_string::_M_replace_aux"},
    {"List", [](CSafeString& text) { text.append({'x'}); }, "basic_string::append"},
};

class CSafeStringFullAppend : public testing::TestWithParam<SFull>
{
};
} // namespace

TEST_P(CSafeStringFullAppend, ThrowsLengthErrorAndKeepsTheText)
{
    CSafeString text("former");
    CAllocationCounter const during;
    {
        CClaimedSize const full(text, std::string().max_size());
        ExpectThrows<std::length_error>([&] { GetParam().append(text); }, GetParam().what);
    }
    EXPECT_EQ(during.Live(), 0);
    EXPECT_EQ(Bytes(text), "former");
}

INSTANTIATE_TEST_SUITE_P(Rows, CSafeStringFullAppend, testing::ValuesIn(FullAppends),
                         [](auto const& row) { return row.param.name; });
