#include <BaseUtilities/CSafeString.h>

#include "Allocations.h"
#include "SafeStringInspection.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace
{
using CView = basic_sv_wrapper<char>;

// Both operands hold a NUL, which tells what each form reads. Left is "l", NUL, "L"; right is
// "r", NUL, "R"; the pointer is "p" up to its NUL.
struct SConcatenation
{
    char const* name;
    CSafeString (*add)(CSafeString& left, CSafeString& right);
    std::string sum;
};

char const Pointer[] = "p\0P";

SConcatenation const Concatenations[] = {
    {"LvalueAndLvalue",
     [](CSafeString& left, CSafeString& right) { return std::as_const(left) + right; },
     std::string("l\0Lr\0R", 6)},
    {"RvalueAndRvalue",
     [](CSafeString& left, CSafeString& right) { return std::move(left) + std::move(right); },
     std::string("l\0Lr\0R", 6)},
    {"RvalueAndLvalue",
     [](CSafeString& left, CSafeString& right) { return std::move(left) + right; },
     std::string("l\0Lr\0R", 6)},
    {"LvalueAndRvalue",
     [](CSafeString& left, CSafeString& right) { return left + std::move(right); },
     std::string("l\0Lr\0R", 6)},
    {"PointerAndLvalue", [](CSafeString&, CSafeString& right) { return Pointer + right; },
     std::string("pr\0R", 4)},
    {"PointerAndRvalue",
     [](CSafeString&, CSafeString& right) { return Pointer + std::move(right); },
     std::string("pr\0R", 4)},
    {"LvalueAndPointer", [](CSafeString& left, CSafeString&) { return left + Pointer; },
     std::string("l\0Lp", 4)},
    {"RvalueAndPointer", [](CSafeString& left, CSafeString&) { return std::move(left) + Pointer; },
     std::string("l\0Lp", 4)},
    {"LvalueAndCharacter", [](CSafeString& left, CSafeString&) { return left + 'c'; },
     std::string("l\0Lc", 4)},
    {"RvalueAndCharacter", [](CSafeString& left, CSafeString&) { return std::move(left) + 'c'; },
     std::string("l\0Lc", 4)},
    {"LvalueAndNul", [](CSafeString& left, CSafeString&) { return left + '\0'; },
     std::string("l\0L\0", 4)},
    {"RvalueAndNul", [](CSafeString& left, CSafeString&) { return std::move(left) + '\0'; },
     std::string("l\0L\0", 4)},
    {"CharacterAndLvalueUpToItsNul", [](CSafeString&, CSafeString& right) { return 'c' + right; },
     "cr"},
    {"CharacterAndRvalue", [](CSafeString&, CSafeString& right) { return 'c' + std::move(right); },
     std::string("cr\0R", 4)},
    {"NulAndLvalueUpToItsNul", [](CSafeString&, CSafeString& right) { return '\0' + right; },
     std::string("\0r", 2)},
    {"NulAndRvalue", [](CSafeString&, CSafeString& right) { return '\0' + std::move(right); },
     std::string("\0r\0R", 4)},
};

class CSafeStringConcatenation : public testing::TestWithParam<SConcatenation>
{
protected:
    CSafeString m_Left{CView("l\0L", 3)};
    CSafeString m_Right{CView("r\0R", 3)};
};
} // namespace

TEST_P(CSafeStringConcatenation, PutsTheLeftTextFirst)
{
    EXPECT_EQ(Bytes(GetParam().add(m_Left, m_Right)), GetParam().sum);
}

TEST_P(CSafeStringConcatenation, LeavesTheOperandsTheirTextAndStorage)
{
    std::string const* const left = StorageOf(m_Left);
    std::string const* const right = StorageOf(m_Right);
    CSafeString const sum = GetParam().add(m_Left, m_Right);
    EXPECT_EQ(StorageOf(m_Left), left);
    EXPECT_EQ(StorageOf(m_Right), right);
    EXPECT_EQ(Bytes(m_Left), std::string("l\0L", 3));
    EXPECT_EQ(Bytes(m_Right), std::string("r\0R", 3));
    EXPECT_NE(StorageOf(sum), left);
    EXPECT_NE(StorageOf(sum), right);
}

TEST_P(CSafeStringConcatenation, KeepsNothingButTheResult)
{
    StorageOf(m_Left)->assign(LongText);
    StorageOf(m_Right)->assign(LongText);
    CAllocationCounter const during;
    CSafeString const sum = GetParam().add(m_Left, m_Right);
    EXPECT_EQ(during.Live(), 2); // its standard string, and that one's text
}

INSTANTIATE_TEST_SUITE_P(Rows, CSafeStringConcatenation, testing::ValuesIn(Concatenations),
                         [](auto const& row) { return row.param.name; });

TEST(CSafeStringConcatenating, NullPointerOnTheLeftOfALvalueIsEmptyText)
{
    CSafeString const right(CView("r\0R", 3));
    char const* const null = nullptr;
    EXPECT_EQ(Bytes(null + right), std::string("r\0R", 3));
}

TEST(CSafeStringConcatenating, EmptyOperandsAddNothing)
{
    CSafeString const empty;
    CSafeString const text("abc");
    EXPECT_EQ(Bytes(empty + empty), "");
    EXPECT_EQ(Bytes(empty + text), "abc");
    EXPECT_EQ(Bytes(text + empty), "abc");
    EXPECT_EQ(Bytes(text + ""), "abc");
    EXPECT_EQ(Bytes("" + text), "abc");
    EXPECT_EQ(Bytes('x' + empty), "x");
    EXPECT_EQ(Bytes('x' + CSafeString()), "x");
    EXPECT_EQ(Bytes(empty + 'x'), "x");
}

TEST(CSafeStringConcatenating, ChainsFromTheLeft)
{
    CSafeString const text("t");
    EXPECT_EQ(Bytes("a" + text + "b" + 'c' + text + CSafeString("d")), "atbctd");
}

// The temporary takes one block, reserved for both lengths; the result its standard string and a
// block for the copy.
TEST(CSafeStringConcatenating, CostsOneTemporaryAndOneCopyAlsoForRvalues)
{
    CSafeString left(LongText);
    CSafeString right(LongText);
    auto const count = [](auto add) {
        CAllocationCounter const during;
        CSafeString const sum = add();
        return during.Count();
    };
    EXPECT_EQ(count([&] { return std::as_const(left) + std::as_const(right); }), 3u);
    EXPECT_EQ(count([&] { return std::move(left) + std::move(right); }), 3u);
    EXPECT_EQ(count([&] { return std::move(left) + std::as_const(right); }), 3u);
    EXPECT_EQ(count([&] { return std::as_const(left) + std::move(right); }), 3u);
    EXPECT_EQ(count([&] { return left + LongText; }), 3u);
    EXPECT_EQ(count([&] { return std::move(left) + LongText; }), 3u);
    EXPECT_EQ(count([&] { return LongText + std::move(right); }), 3u);
}

TEST(CSafeStringConcatenating, PointerOnTheLeftOfALvalueIsMadeAStringFirst)
{
    CSafeString const right(LongText);
    CAllocationCounter const during;
    CSafeString const sum = LongText + right;
    EXPECT_EQ(during.Count(), 5u);
    EXPECT_EQ(during.Live(), 2);
}

TEST(CSafeStringConcatenating, ShortSumsAllocateTheResultAlone)
{
    CSafeString const left("left");
    CSafeString const right("right");
    CAllocationCounter const during;
    CSafeString const sum = left + right;
    EXPECT_EQ(during.Count(), 1u);
}

TEST(CSafeStringConcatenating, ResultHoldsNoMoreThanItsText)
{
    CSafeString const left(LongText);
    EXPECT_EQ(StorageOf(left + left)->capacity(), 80u);
    EXPECT_EQ(StorageOf(CSafeString(10, 'x') + CSafeString(10, 'y'))->capacity(), 20u);
    EXPECT_EQ(StorageOf(left + 'c')->capacity(), 41u);
    EXPECT_EQ(StorageOf('c' + left)->capacity(), 41u);
}

namespace
{
struct STooLongSum
{
    char const* name;
    void (*add)(CSafeString& full);
};

STooLongSum const TooLongSums[] = {
    {"FullAndString", [](CSafeString& full) { full + CSafeString("x"); }},
    {"StringAndFull", [](CSafeString& full) { CSafeString("x") + full; }},
    {"FullRvalues", [](CSafeString& full) { std::move(full) + CSafeString("x"); }},
    {"FullAndItself", [](CSafeString& full) { std::as_const(full) + std::as_const(full); }},
    {"PointerAndFull", [](CSafeString& full) { "x" + full; }},
    {"PointerAndFullRvalue", [](CSafeString& full) { "x" + std::move(full); }},
    {"FullAndPointer", [](CSafeString& full) { full + "x"; }},
    {"FullAndCharacter", [](CSafeString& full) { full + 'x'; }},
    {"CharacterAndFullRvalue", [](CSafeString& full) { 'x' + std::move(full); }},
};

class CSafeStringTooLongSum : public testing::TestWithParam<STooLongSum>
{
};
} // namespace

TEST_P(CSafeStringTooLongSum, ThrowsLengthErrorAndKeepsTheOperand)
{
    CSafeString text("former");
    CAllocationCounter const during;
    {
        CClaimedSize const full(text, std::string().max_size());
        ExpectThrows<std::length_error>([&] { GetParam().add(text); }, "basic_string::_M_create");
    }
    EXPECT_EQ(during.Live(), 0);
    EXPECT_EQ(Bytes(text), "former");
}

INSTANTIATE_TEST_SUITE_P(Rows, CSafeStringTooLongSum, testing::ValuesIn(TooLongSums),
                         [](auto const& row) { return row.param.name; });
