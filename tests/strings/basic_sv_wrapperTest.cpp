#include <BaseUtilities/basic_sv_wrapper.h>

#include <BaseUtilities/CSafeString.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

namespace
{
using CView = basic_sv_wrapper<char>;

// The same claims hold for each of the three character types.
template <class CharT>
class SvWrapperOf : public testing::Test
{
protected:
    using String = std::basic_string<CharT>;

    static String Text(char const* ascii) { return String(ascii, ascii + std::strlen(ascii)); }
    static String Text(char const* ascii, std::size_t size) { return String(ascii, ascii + size); }
};

struct SCharacterTypeNames
{
    template <class CharT>
    static std::string GetName(int)
    {
        return std::is_same_v<CharT, char>
                   ? "char"
                   : (std::is_same_v<CharT, wchar_t> ? "wchar_t" : "char16_t");
    }
};

using CharacterTypes = testing::Types<char, wchar_t, char16_t>;
TYPED_TEST_SUITE(SvWrapperOf, CharacterTypes, SCharacterTypeNames);
} // namespace

TYPED_TEST(SvWrapperOf, DefaultConstructedIsEmptyNullAndNotSet)
{
    constexpr basic_sv_wrapper<TypeParam> view;
    EXPECT_EQ(view.size(), 0u);
    EXPECT_EQ(view.data(), nullptr);
    EXPECT_FALSE(view.m_HasValue);
    EXPECT_TRUE(view.empty());
}

TYPED_TEST(SvWrapperOf, NullPointerGivesTheDefaultView)
{
    TypeParam const* const readOnly = nullptr;
    TypeParam* const writable = nullptr;
    for (basic_sv_wrapper<TypeParam> const& view :
         {basic_sv_wrapper<TypeParam>(readOnly), basic_sv_wrapper<TypeParam>(writable),
          basic_sv_wrapper<TypeParam>(nullptr)}) {
        EXPECT_EQ(view.size(), 0u);
        EXPECT_EQ(view.data(), nullptr);
        EXPECT_FALSE(view.m_HasValue);
    }
}

TYPED_TEST(SvWrapperOf, PointerTakesTheTextUpToItsNul)
{
    auto const text = TestFixture::Text("ab\0cd", 5);
    TypeParam const* const pointer = text.c_str();
    basic_sv_wrapper<TypeParam> const view(pointer);
    EXPECT_EQ(view.size(), 2u);
    EXPECT_EQ(view.data(), pointer);
    EXPECT_TRUE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, PointerToEmptyTextIsSet)
{
    TypeParam const nul{};
    basic_sv_wrapper<TypeParam> const view(&nul);
    EXPECT_EQ(view.size(), 0u);
    EXPECT_EQ(view.data(), &nul);
    EXPECT_TRUE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, LiteralKeepsItsEmbeddedNuls)
{
    static constexpr TypeParam literal[] = {'a', 0, 'b', 0};
    constexpr basic_sv_wrapper<TypeParam> view(literal);
    EXPECT_EQ(view.size(), 3u);
    EXPECT_EQ(view.data(), literal);
    EXPECT_TRUE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, EmptyLiteralIsSet)
{
    static constexpr TypeParam literal[] = {0};
    constexpr basic_sv_wrapper<TypeParam> view(literal);
    EXPECT_EQ(view.size(), 0u);
    EXPECT_EQ(view.data(), literal);
    EXPECT_TRUE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, WritableArrayEndsAtItsNul)
{
    TypeParam buffer[8] = {'a', 'b', 0, 'c'};
    basic_sv_wrapper<TypeParam> const view(buffer);
    EXPECT_EQ(view.size(), 2u);
    EXPECT_EQ(view.data(), buffer);
    EXPECT_TRUE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, StandardStringGivesItsSizeAndDataAndIsSet)
{
    auto const text = TestFixture::Text("a\0b", 3);
    basic_sv_wrapper<TypeParam> const view(text);
    EXPECT_EQ(view.size(), 3u);
    EXPECT_EQ(view.data(), text.data());
    EXPECT_TRUE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, EmptyStandardStringIsSet)
{
    typename TestFixture::String const text;
    basic_sv_wrapper<TypeParam> const view(text);
    EXPECT_EQ(view.size(), 0u);
    EXPECT_EQ(view.data(), text.data());
    EXPECT_TRUE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, StandardViewNeedsNoTerminator)
{
    auto const text = TestFixture::Text("abcd");
    basic_sv_wrapper<TypeParam> const view(std::basic_string_view<TypeParam>(text.data() + 1, 2));
    EXPECT_EQ(view.size(), 2u);
    EXPECT_EQ(view.data(), text.data() + 1);
    EXPECT_TRUE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, NullStandardViewIsNotSet)
{
    basic_sv_wrapper<TypeParam> const view{std::basic_string_view<TypeParam>()};
    EXPECT_EQ(view.size(), 0u);
    EXPECT_EQ(view.data(), nullptr);
    EXPECT_FALSE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, PointerAndLengthAreTakenAsGiven)
{
    auto const text = TestFixture::Text("abcd");
    basic_sv_wrapper<TypeParam> const view(text.data(), 3);
    EXPECT_EQ(view.size(), 3u);
    EXPECT_EQ(view.data(), text.data());
    EXPECT_TRUE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, NullPointerWithALengthKeepsTheLengthAndIsNotSet)
{
    basic_sv_wrapper<TypeParam> const view(nullptr, 3);
    EXPECT_EQ(view.size(), 3u);
    EXPECT_EQ(view.data(), nullptr);
    EXPECT_FALSE(view.m_HasValue);
}

TYPED_TEST(SvWrapperOf, LayoutIsLengthThenPointerThenFlag)
{
    using View = basic_sv_wrapper<TypeParam>;
    static_assert(sizeof(View) == 24 && alignof(View) == 8);
    static_assert(std::is_trivially_copyable_v<View>);

    auto const text = TestFixture::Text("abc");
    View const view(text);
    unsigned char image[sizeof(View)];
    std::memcpy(image, &view, sizeof(View));
    std::uint64_t length = 0;
    std::memcpy(&length, image, sizeof(length));
    TypeParam const* pointer = nullptr;
    std::memcpy(&pointer, image + 8, sizeof(pointer));
    EXPECT_EQ(length, 3u);
    EXPECT_EQ(pointer, text.data());
    EXPECT_EQ(image[16], 1u);
    EXPECT_EQ(sizeof(view.m_HasValue), 1u);
}

TYPED_TEST(SvWrapperOf, IteratesOverItsCharacters)
{
    auto const text = TestFixture::Text("abc");
    basic_sv_wrapper<TypeParam> const view(text);
    EXPECT_EQ(typename TestFixture::String(view.begin(), view.end()), text);
}

TYPED_TEST(SvWrapperOf, ConvertsToTheStandardViewOnlyWhenAsked)
{
    using View = basic_sv_wrapper<TypeParam>;
    using StandardView = std::basic_string_view<TypeParam>;
    static_assert(!std::is_convertible_v<View, StandardView>);
    auto const text = TestFixture::Text("a\0b", 3);
    auto const standard = static_cast<StandardView>(View(text));
    EXPECT_EQ(standard.data(), text.data());
    EXPECT_EQ(standard.size(), 3u);
}

TYPED_TEST(SvWrapperOf, IsMadeImplicitlyOfEveryTextOfItsCharacterTypeAndOfNoOther)
{
    using View = basic_sv_wrapper<TypeParam>;
    using Other = std::conditional_t<std::is_same_v<TypeParam, char>, wchar_t, char>;
    static_assert(std::is_convertible_v<TypeParam const*, View>);
    static_assert(std::is_convertible_v<TypeParam*, View>);
    static_assert(std::is_convertible_v<std::nullptr_t, View>);
    static_assert(std::is_convertible_v<TypeParam const(&)[4], View>);
    static_assert(std::is_convertible_v<TypeParam(&)[4], View>);
    static_assert(std::is_convertible_v<std::basic_string<TypeParam>, View>);
    static_assert(std::is_convertible_v<std::basic_string_view<TypeParam>, View>);
    static_assert(!std::is_constructible_v<View, Other const*>);
    static_assert(!std::is_constructible_v<View, Other const(&)[4]>);
    static_assert(!std::is_constructible_v<View, std::basic_string<Other>>);
    static_assert(!std::is_constructible_v<View, int>);
    static_assert(!std::is_constructible_v<View, void*>);
}

TYPED_TEST(SvWrapperOf, OrdersByCharactersThenTheShorterFirst)
{
    using View = basic_sv_wrapper<TypeParam>;
    auto const ab = TestFixture::Text("ab");
    auto const abc = TestFixture::Text("abc");
    auto const b = TestFixture::Text("b");
    EXPECT_TRUE(View(ab) < View(abc));
    EXPECT_FALSE(View(abc) < View(ab));
    EXPECT_TRUE(View(abc) < View(b));
    EXPECT_FALSE(View(b) < View(abc));
    EXPECT_FALSE(View(ab) < View(ab));
    EXPECT_TRUE(View() < View(b));
    EXPECT_FALSE(View(b) < View());
    EXPECT_FALSE(View() < View());
}

TYPED_TEST(SvWrapperOf, EqualityComparesTheCharacters)
{
    using View = basic_sv_wrapper<TypeParam>;
    auto const text = TestFixture::Text("abc");
    auto const same = TestFixture::Text("abc");
    auto const last = TestFixture::Text("abd");
    EXPECT_TRUE(View(text) == View(same));
    EXPECT_FALSE(View(text) != View(same));
    EXPECT_FALSE(View(text) == View(last));
    EXPECT_TRUE(View(text) != View(last));
}

namespace
{
CView Unset(CView view)
{
    view.m_HasValue = false;
    return view;
}

char const Abc[] = "abc";
char const OtherAbc[] = "abc";

struct SEquality
{
    char const* name;
    CView left;
    CView right;
    bool equal;
};

SEquality const Equalities[] = {
    {"SameTextSamePointer", CView(Abc), CView(Abc), true},
    {"SameTextOtherPointer", CView(Abc), CView(OtherAbc), true},
    {"PointerAndStandardView", CView(&Abc[0]), CView(std::string_view("abc")), true},
    {"OtherCharacters", CView("abc"), CView("abd"), false},
    {"OtherFirstCharacter", CView("abc"), CView("bbc"), false},
    {"OtherLength", CView("abc"), CView("ab"), false},
    {"SamePointerOtherLength", CView(Abc, 3), CView(Abc, 2), false},
    {"EmbeddedNulsEqual", CView("a\0b", 3), CView("a\0b", 3), true},
    {"DifferentBehindANul", CView("a\0b", 3), CView("a\0c", 3), false},
    {"BothDefault", CView(), CView(), true},
    {"DefaultAndEmptyText", CView(), CView(""), true},
    {"BothEmptyTexts", CView(""), CView(""), true},
    {"EmptyUnsetAndEmptySet", Unset(CView("")), CView(""), true},
    {"DefaultAndText", CView(), CView("a"), false},
    {"SameTextSetAndUnset", CView(Abc), Unset(CView(Abc)), false},
    {"SameTextBothUnset", Unset(CView(Abc)), Unset(CView(OtherAbc)), true},
    {"OtherTextBothUnset", Unset(CView("abc")), Unset(CView("abd")), false},
    {"NullWithALengthAndText", CView(nullptr, 3), CView(Abc), false},
    {"NullsWithTheSameLength", CView(nullptr, 3), CView(nullptr, 3), true},
    {"NullsWithOtherLengths", CView(nullptr, 3), CView(nullptr, 2), false},
    {"UpperAndLowerCase", CView("a"), CView("A"), false},
};

class SvWrapperEquality : public testing::TestWithParam<SEquality>
{
};
} // namespace

TEST_P(SvWrapperEquality, HoldsInBothDirectionsAndForInequality)
{
    auto const& [name, left, right, equal] = GetParam();
    EXPECT_EQ(left == right, equal);
    EXPECT_EQ(right == left, equal);
    EXPECT_EQ(left != right, !equal);
    EXPECT_EQ(right != left, !equal);
}

INSTANTIATE_TEST_SUITE_P(Rows, SvWrapperEquality, testing::ValuesIn(Equalities),
                         [](auto const& row) { return row.param.name; });

namespace
{
struct SOrder
{
    char const* name;
    CView lesser;
    CView greater;
    bool strictly;
};

SOrder const Orders[] = {
    {"FirstDifference", CView("abc"), CView("abd"), true},
    {"ShorterFirst", CView("ab"), CView("abc"), true},
    {"CharactersBeforeLength", CView("abc"), CView("b"), true},
    {"BytesAreUnsigned", CView("a"), CView("\x80"), true},
    {"HighBytes", CView("\x80"), CView("\xff"), true},
    {"NulIsACharacter", CView("a"), CView("a\0", 2), true},
    {"BehindANul", CView("a\0b", 3), CView("a\0c", 3), true},
    {"DefaultBeforeText", CView(), CView("a"), true},
    {"DefaultAndEmpty", CView(), CView(""), false},
    {"SameText", CView(Abc), CView(OtherAbc), false},
    {"FlagPlaysNoPart", Unset(CView(Abc)), CView(OtherAbc), false},
    {"FlagPlaysNoPartInADifference", CView("abc"), Unset(CView("abd")), true},
    {"UnsetLesser", Unset(CView("abc")), CView("abd"), true},
};

class SvWrapperOrder : public testing::TestWithParam<SOrder>
{
};
} // namespace

TEST_P(SvWrapperOrder, PutsTheLesserFirst)
{
    auto const& [name, lesser, greater, strictly] = GetParam();
    EXPECT_EQ(lesser < greater, strictly);
    EXPECT_FALSE(greater < lesser);
}

INSTANTIATE_TEST_SUITE_P(Rows, SvWrapperOrder, testing::ValuesIn(Orders),
                         [](auto const& row) { return row.param.name; });

TEST(basic_sv_wrapper, IsTrueOnlyWhenSetAndNotEmpty)
{
    EXPECT_TRUE(static_cast<bool>(CView("a")));
    EXPECT_TRUE(static_cast<bool>(CView("\0", 1)));
    EXPECT_FALSE(static_cast<bool>(CView("")));
    EXPECT_FALSE(static_cast<bool>(CView()));
    EXPECT_FALSE(static_cast<bool>(Unset(CView("a"))));
    EXPECT_FALSE(static_cast<bool>(CView(nullptr, 1)));
}

TEST(basic_sv_wrapper, BooleanTestIsExplicit)
{
    static_assert(!std::is_convertible_v<CView, bool>);
    static_assert(std::is_constructible_v<bool, CView>);
}

TEST(basic_sv_wrapper, EndsAtTheFirstNulOfASafeString)
{
    CSafeString const text(CView("ab\0cd", 5));
    CView const view = text;
    EXPECT_EQ(view.size(), 2u);
    EXPECT_EQ(view.data(), text.get());
    EXPECT_TRUE(view.m_HasValue);
}

TEST(basic_sv_wrapper, ViewOfAnEmptySafeStringIsSet)
{
    CSafeString const text;
    CView const view = text;
    EXPECT_EQ(view.size(), 0u);
    EXPECT_TRUE(view.m_HasValue);
}

TEST(basic_sv_wrapper, CountsLiteralCharactersOfEveryType)
{
    EXPECT_EQ(basic_sv_wrapper<char>("\xc3\xa4").size(), 2u);
    EXPECT_EQ(basic_sv_wrapper<wchar_t>(L"\U0001F600").size(), 1u);
    EXPECT_EQ(basic_sv_wrapper<char16_t>(u"\U0001F600").size(), 2u);
    EXPECT_EQ(basic_sv_wrapper<char>("a\0b").size(), 3u);
}

TEST(basic_sv_wrapper, WorksInConstantExpressions)
{
    constexpr CView literal("abc");
    constexpr CView part("abc", 2);
    constexpr CView pointer(static_cast<char const*>("bc"));
    constexpr CView standard(std::string_view("abc"));
    static_assert(literal.size() == 3 && part.size() == 2 && pointer.size() == 2);
    static_assert(literal == standard && literal != part && part < literal);
    static_assert(literal && !CView() && CView() == CView(""));
    static_assert(pointer.m_HasValue && !CView(nullptr).m_HasValue);
    static_assert(static_cast<std::string_view>(part) == "ab");
    static_assert(*literal.begin() == 'a' && literal.end() - literal.begin() == 3);
    static_assert(CView(nullptr).empty());
    SUCCEED();
}

TEST(basic_sv_wrapper, NoConstructorThrows)
{
    static_assert(std::is_nothrow_default_constructible_v<CView>);
    static_assert(std::is_nothrow_constructible_v<CView, char const*>);
    static_assert(std::is_nothrow_constructible_v<CView, char const(&)[4]>);
    static_assert(std::is_nothrow_constructible_v<CView, std::string const&>);
    static_assert(std::is_nothrow_constructible_v<CView, std::string_view>);
    static_assert(std::is_nothrow_constructible_v<CView, char const*, std::size_t>);
    SUCCEED();
}
