#include <BaseUtilities/CSafeString.h>

#include "Allocations.h"
#include "SafeStringInspection.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <set>
#include <string_view>

namespace
{
using CView = basic_sv_wrapper<char>;

int Sign(int value)
{
    return (value > 0) - (value < 0);
}

struct SOrder
{
    char const* name;
    std::string_view left;
    std::string_view right;
    int sign;
};

SOrder const Orders[] = {
    {"Equal", "abc", "abc", 0},
    {"BothEmpty", "", "", 0},
    {"LastCharacter", "abc", "abd", -1},
    {"FirstCharacter", "bbc", "abd", 1},
    {"Shorter", "ab", "abc", -1},
    {"EmptyAndText", "", "a", -1},
    {"BytesBeforeLength", "b", "abc", 1},
    {"BytesAreUnsigned", "\x80", "a", 1},
    {"NulBeforeText", {"a\0", 2}, "ab", -1},
    {"NulIsLongerThanNothing", {"a\0", 2}, "a", 1},
    {"DifferentBehindANul", {"a\0b", 3}, {"a\0c", 3}, -1},
    {"EqualWithNuls", {"a\0b", 3}, {"a\0b", 3}, 0},
    {"UpperBeforeLower", "Z", "a", -1},
};

class CSafeStringOrder : public testing::TestWithParam<SOrder>
{
protected:
    CSafeString const m_Left{CView(GetParam().left)};
    CSafeString const m_Right{CView(GetParam().right)};
};
} // namespace

TEST_P(CSafeStringOrder, CompareHasTheSignOfTheOrder)
{
    EXPECT_EQ(Sign(m_Left.compare(GetParam().right)), GetParam().sign);
    EXPECT_EQ(Sign(m_Right.compare(GetParam().left)), -GetParam().sign);
}

TEST_P(CSafeStringOrder, LessIsTheRuleOfCompareOverTheWholeTexts)
{
    std::less<CSafeString> const less;
    EXPECT_EQ(less(m_Left, m_Right), GetParam().sign < 0);
    EXPECT_EQ(less(m_Right, m_Left), GetParam().sign > 0);
}

TEST_P(CSafeStringOrder, EqualityComparesSizesAndBytes)
{
    bool const equal = GetParam().sign == 0;
    EXPECT_EQ(m_Left == m_Right, equal);
    EXPECT_EQ(m_Right == m_Left, equal);
    EXPECT_EQ(m_Left != m_Right, !equal);
    EXPECT_EQ(m_Right != m_Left, !equal);
}

INSTANTIATE_TEST_SUITE_P(Rows, CSafeStringOrder, testing::ValuesIn(Orders),
                         [](auto const& row) { return row.param.name; });

TEST(CSafeStringComparison, EqualBytesCompareAsTheDifferenceOfTheSizes)
{
    EXPECT_EQ(CSafeString("ab").compare("abc"), -1);
    EXPECT_EQ(CSafeString("abc").compare(""), 3);
    EXPECT_EQ(CSafeString("").compare("abcd"), -4);
    EXPECT_EQ(CSafeString("abc").compare("abc"), 0);
}

TEST(CSafeStringComparison, CompareTakesANullViewAsEmptyText)
{
    EXPECT_EQ(CSafeString("abc").compare(CView()), 3);
    EXPECT_EQ(CSafeString().compare(CView()), 0);
    EXPECT_EQ(CSafeString("abc").compare(nullptr), 3);
}

TEST(CSafeStringComparison, CompareSeesAnotherStringUpToItsFirstNul)
{
    CSafeString const withNul(CView("ab\0cd", 5));
    EXPECT_EQ(CSafeString("ab").compare(withNul), 0);
    EXPECT_EQ(withNul.compare(withNul), 3);
}

TEST(CSafeStringComparison, CompareClampsANegativeDifference)
{
    constexpr unsigned long halfRange = 2147483648UL;
    CSafeString const text;
    EXPECT_EQ(text.compare(CView("x", halfRange - 1)), -2147483647);
    EXPECT_EQ(text.compare(CView("x", halfRange)), std::numeric_limits<int>::min());
    EXPECT_EQ(text.compare(CView("x", halfRange + 1)), std::numeric_limits<int>::min());
    EXPECT_EQ(text.compare(CView("x", 3 * halfRange)), std::numeric_limits<int>::min());
}

TEST(CSafeStringComparison, CompareClampsAPositiveDifference)
{
    CSafeString const text("text");
    for (unsigned long const size : {2147483646UL, 2147483647UL}) {
        CClaimedSize const claimed(text, size);
        EXPECT_EQ(text.compare(""), static_cast<int>(size));
    }
    for (unsigned long const size : {2147483648UL, 6442450944UL}) {
        CClaimedSize const claimed(text, size);
        EXPECT_EQ(text.compare(""), std::numeric_limits<int>::max());
    }
}

TEST(CSafeStringComparison, EqualsItself)
{
    CSafeString const text("abc");
    CSafeString const& same = text;
    EXPECT_TRUE(text == same);
    EXPECT_FALSE(text != same);
}

TEST(CSafeStringComparison, LiteralIsComparedWithTheWholeText)
{
    CSafeString const text("abc");
    EXPECT_TRUE(text == "abc");
    EXPECT_TRUE("abc" == text);
    EXPECT_FALSE(text != "abc");
    EXPECT_FALSE("abc" != text);
    EXPECT_FALSE(text == "abd");
    EXPECT_FALSE("abd" == text);
    EXPECT_TRUE("abd" != text);
    EXPECT_TRUE(text != "ab");
    CSafeString const withNul(CView("ab\0cd", 5));
    EXPECT_FALSE(withNul == "ab");
    EXPECT_TRUE("ab" != withNul);
}

TEST(CSafeStringComparison, NullPointerEqualsEmptyText)
{
    char const* const null = nullptr;
    EXPECT_TRUE(CSafeString() == null);
    EXPECT_TRUE(null == CSafeString());
    EXPECT_TRUE(CSafeString("a") != null);
}

TEST(CSafeStringComparison, ViewIsComparedWithTheTextUpToItsFirstNul)
{
    CSafeString const withNul(CView("ab\0cd", 5));
    EXPECT_TRUE(withNul == CView("ab"));
    EXPECT_TRUE(CView("ab") == withNul);
    EXPECT_FALSE(withNul != CView("ab"));
    EXPECT_FALSE(CView("ab") != withNul);
    EXPECT_FALSE(withNul == CView("ab\0cd", 5));
    EXPECT_FALSE(CView("ab\0cd", 5) == withNul);
    EXPECT_TRUE(CView("ab\0cd", 5) != withNul);
    EXPECT_TRUE(withNul != CView("abc"));
}

TEST(CSafeStringComparison, EmptyTextEqualsTheDefaultView)
{
    EXPECT_TRUE(CSafeString() == CView());
    EXPECT_TRUE(CView() == CSafeString());
    EXPECT_FALSE(CSafeString() != CView());
}

TEST(CSafeStringComparison, KeysOrderedContainers)
{
    std::set<CSafeString> const ordered{"b", "", "a\x80", "a", "ab", "b"};
    std::string inOrder;
    for (CSafeString const& text : ordered)
        inOrder += Bytes(text) + '|';
    EXPECT_EQ(inOrder, "|a|ab|a\x80|b|");

    std::map<CSafeString, int> const keyed{{CView("k\0a", 3), 1}, {CView("k\0b", 3), 2}};
    EXPECT_EQ(keyed.at(CView("k\0b", 3)), 2);
}

TEST(CSafeStringComparison, AllocatesNothing)
{
    CSafeString const left(LongText);
    CSafeString const right(LongText);
    CAllocationCounter const during;
    bool const equal = left == right && left == LongText && left == CView(LongText)
                       && left.compare(LongText) == 0 && !std::less<CSafeString>()(left, right);
    EXPECT_EQ(during.Count(), 0u);
    EXPECT_TRUE(equal);
}
