// Compiled, not run: every comparison that the strings promise and every one that they refuse,
// for each language standard and compiler that a caller may use. WITH_QT adds Qt's own
// comparisons, whose types convert from nearly everything, to the overload set.

#ifdef WITH_QT
#include <QtCore/QtCore>
#endif

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#if __cplusplus >= 202002L
#include <compare>
#endif

namespace
{
using CView = basic_sv_wrapper<char>;
using CWideView = basic_sv_wrapper<wchar_t>;
using CUtf16View = basic_sv_wrapper<char16_t>;

// What compiles in the caller's own code, warnings included: both operators in both directions.
template <class Left, class Right>
constexpr bool Compare(Left const& left, Right const& right)
{
    return left == right && right == left && !(left != right) && !(right != left);
}

// Whether the expression is well-formed, so that a refusal can be asserted.
template <class Left, class Right, class = void>
constexpr bool HasEqual = false;
template <class Left, class Right>
constexpr bool
    HasEqual<Left, Right, std::void_t<decltype(std::declval<Left>() == std::declval<Right>())>> =
        true;

template <class Left, class Right, class = void>
constexpr bool HasNotEqual = false;
template <class Left, class Right>
constexpr bool
    HasNotEqual<Left, Right, std::void_t<decltype(std::declval<Left>() != std::declval<Right>())>> =
        true;

template <class Left, class Right, class = void>
constexpr bool HasLess = false;
template <class Left, class Right>
constexpr bool
    HasLess<Left, Right, std::void_t<decltype(std::declval<Left>() < std::declval<Right>())>> =
        true;

template <class Left, class Right, class = void>
constexpr bool HasGreater = false;
template <class Left, class Right>
constexpr bool
    HasGreater<Left, Right, std::void_t<decltype(std::declval<Left>() > std::declval<Right>())>> =
        true;

template <class Left, class Right, class = void>
constexpr bool HasLessOrEqual = false;
template <class Left, class Right>
constexpr bool HasLessOrEqual<
    Left, Right, std::void_t<decltype(std::declval<Left>() <= std::declval<Right>())>> = true;

template <class Left, class Right, class = void>
constexpr bool HasGreaterOrEqual = false;
template <class Left, class Right>
constexpr bool HasGreaterOrEqual<
    Left, Right, std::void_t<decltype(std::declval<Left>() >= std::declval<Right>())>> = true;

template <class Left, class Right, class = void>
constexpr bool HasThreeWay = false;
#if __cplusplus >= 202002L
// In C++17 the operator is two tokens.
// clang-format off
template <class Left, class Right>
constexpr bool HasThreeWay<
    Left, Right, std::void_t<decltype(std::declval<Left>() <=> std::declval<Right>())>> = true;
// clang-format on
#endif

template <class Left, class Right>
constexpr bool EqualBothWays = HasEqual<Left, Right>&& HasEqual<Right, Left>&&
    HasNotEqual<Left, Right>&& HasNotEqual<Right, Left>;

template <class Left, class Right>
constexpr bool AnyOrder =
    HasLess<
        Left,
        Right> || HasGreater<Left, Right> || HasLessOrEqual<Left, Right> || HasGreaterOrEqual<Left, Right> || HasThreeWay<Left, Right>;

template <class Left, class Right>
constexpr bool UnorderedBothWays = !AnyOrder<Left, Right> && !AnyOrder<Right, Left>;

// The idioms see what there is.
static_assert(
    HasLess<
        int,
        long> && HasGreater<int, long> && HasLessOrEqual<int, long> && HasGreaterOrEqual<int, long> && HasEqual<int, long> && HasNotEqual<int, long>);
static_assert(HasThreeWay<int, int> == (__cplusplus >= 202002L));

class CDerived : public CSafeString
{
};

struct SConverting
{
    operator CSafeString() const;
};

struct SConvertingToView
{
    operator CView() const;
};

// Equality of views, each with everything it is made from.
static_assert(EqualBothWays<CView, CView>);
static_assert(CView("abc") == CView("abc") && CView("abc") != CView("abd"));
static_assert(EqualBothWays<CView const&, CView>);
static_assert(EqualBothWays<CView, char const (&)[4]>);
static_assert(EqualBothWays<CView, char (&)[4]>);
static_assert(EqualBothWays<CView, char const*>);
static_assert(EqualBothWays<CView, std::nullptr_t>);
static_assert(EqualBothWays<CView, std::string>);
static_assert(EqualBothWays<CView, std::string const&>);
static_assert(EqualBothWays<CView, std::string_view>);
static_assert(EqualBothWays<CView, CSafeString>);
static_assert(EqualBothWays<CView const&, CSafeString const&>);
static_assert(EqualBothWays<CView&, CSafeString&>);
static_assert(EqualBothWays<CWideView, CWideView>);
static_assert(EqualBothWays<CWideView, wchar_t const (&)[4]>);
static_assert(EqualBothWays<CWideView, std::wstring>);
static_assert(EqualBothWays<CWideView, std::wstring_view>);
static_assert(EqualBothWays<CUtf16View, CUtf16View>);
static_assert(EqualBothWays<CUtf16View, char16_t const (&)[4]>);
static_assert(EqualBothWays<CUtf16View, std::u16string>);
static_assert(EqualBothWays<CUtf16View, std::u16string_view>);
static_assert(!HasEqual<CView, int> && !HasEqual<CSafeString, int>);

// Equality of the owning string.
static_assert(EqualBothWays<CSafeString, CSafeString>);
static_assert(EqualBothWays<CSafeString const&, CSafeString const&>);
static_assert(EqualBothWays<CSafeString&, CSafeString const&>);
static_assert(EqualBothWays<CSafeString&, CSafeString>);
static_assert(EqualBothWays<CSafeString, char const (&)[4]>);
static_assert(EqualBothWays<CSafeString&, char const (&)[4]>);
static_assert(EqualBothWays<CSafeString const&, char const*>);
static_assert(EqualBothWays<CSafeString const&, char*>);
static_assert(EqualBothWays<CSafeString, std::nullptr_t>);
static_assert(EqualBothWays<CDerived, CDerived>);
static_assert(EqualBothWays<CDerived, CSafeString>);

// Order of views.
static_assert(HasLess<CView, CView>);
static_assert(HasLess<CView, char const (&)[4]> && HasLess<char const (&)[4], CView>);
static_assert(HasLess<CView, std::string> && HasLess<std::string, CView>);
static_assert(HasLess<CView, std::string_view> && HasLess<std::string_view, CView>);
static_assert(HasLess<CWideView, CWideView> && HasLess<CUtf16View, CUtf16View>);

// No order of the owning string, by whatever it converts to or is made from.
static_assert(UnorderedBothWays<CSafeString, CSafeString>);
static_assert(UnorderedBothWays<CSafeString&, CSafeString&>);
static_assert(UnorderedBothWays<CSafeString const&, CSafeString const&>);
static_assert(UnorderedBothWays<CSafeString&, CSafeString const&>);
static_assert(UnorderedBothWays<CSafeString, CView>);
static_assert(UnorderedBothWays<CSafeString&, CView&>);
static_assert(UnorderedBothWays<CSafeString const&, CView const&>);
static_assert(UnorderedBothWays<CSafeString, char const (&)[4]>);
static_assert(UnorderedBothWays<CSafeString const&, char const*>);
static_assert(UnorderedBothWays<CSafeString, char*>);
static_assert(UnorderedBothWays<CSafeString, std::nullptr_t>);
static_assert(UnorderedBothWays<CSafeString, std::string>);
static_assert(UnorderedBothWays<CSafeString const&, std::string const&>);
static_assert(UnorderedBothWays<CSafeString, std::string_view>);
static_assert(UnorderedBothWays<CSafeString const&, std::string_view const&>);
static_assert(UnorderedBothWays<CSafeString, CWideView>);
static_assert(UnorderedBothWays<CSafeString, CUtf16View>);
static_assert(UnorderedBothWays<CSafeString, char>);
static_assert(UnorderedBothWays<CSafeString, int>);
static_assert(UnorderedBothWays<CSafeString, CDerived>);
static_assert(UnorderedBothWays<CDerived, CDerived>);
static_assert(UnorderedBothWays<CDerived, CView>);
static_assert(UnorderedBothWays<CDerived&, char const*>);
static_assert(UnorderedBothWays<CSafeString, SConverting>);
static_assert(UnorderedBothWays<SConverting, SConverting>);
static_assert(UnorderedBothWays<CSafeString, SConvertingToView>);
static_assert(UnorderedBothWays<CSafeString, std::reference_wrapper<CSafeString const>>);
static_assert(UnorderedBothWays<std::reference_wrapper<CSafeString const>, CView>);
static_assert(!std::is_invocable_v<std::less<>, CSafeString const&, CSafeString const&>);
static_assert(!std::is_invocable_v<std::less<>, CSafeString const&, CView const&>);
static_assert(!std::is_invocable_v<std::greater<>, CSafeString const&, CSafeString const&>);

// The one order there is.
static_assert(std::is_invocable_r_v<bool, std::less<CSafeString> const&, CSafeString const&,
                                    CSafeString const&>);

#ifdef WITH_QT
static_assert(UnorderedBothWays<CSafeString, QString>);
static_assert(UnorderedBothWays<CSafeString const&, QString const&>);
static_assert(UnorderedBothWays<CSafeString, QByteArray>);
static_assert(UnorderedBothWays<CSafeString const&, QByteArray const&>);
static_assert(UnorderedBothWays<CSafeString, QByteArrayView>);
static_assert(UnorderedBothWays<CSafeString, QStringView>);
static_assert(UnorderedBothWays<CSafeString, QLatin1String>);
static_assert(UnorderedBothWays<CSafeString, QChar>);
#endif

static_assert(std::is_nothrow_move_constructible_v<CSafeString>);
static_assert(std::is_nothrow_move_assignable_v<CSafeString>);
} // namespace

// The same in code as a caller writes it, where a warning is an error too.
bool UseEveryComparison(CSafeString const& text, CView const& view, std::string const& standard,
                        std::string_view standardView, char const* pointer, CWideView wide,
                        CUtf16View utf16);

bool UseEveryComparison(CSafeString const& text, CView const& view, std::string const& standard,
                        std::string_view standardView, char const* pointer, CWideView wide,
                        CUtf16View utf16)
{
    std::map<CSafeString, int> const keyed{{"a", 1}};
    std::set<CSafeString> const ordered{"a", "b"};
    bool const views = Compare(view, view) && Compare(view, "abc") && Compare(view, standard)
                       && Compare(view, standardView) && Compare(view, pointer)
                       && Compare(view, text) && Compare(wide, L"abc") && Compare(utf16, u"abc");
    bool const strings = Compare(text, text) && Compare(text, "abc") && Compare(text, pointer);
    bool const mutables = CSafeString("a") == CSafeString("a") && CSafeString("a") != "b"
                          && CView("a") == CSafeString("a") && CSafeString("a") != CView("b");
    return views && strings && mutables && view < view && view < "b" && "b" < view
           && view < standard && view < standardView && wide < wide && utf16 < utf16
           && std::less<CSafeString>()(text, text) && keyed.count(text) == ordered.count(text);
}

// Calls whose arguments fit several overloads.
CSafeString UseEveryCallForm();

CSafeString UseEveryCallForm()
{
    CSafeString text(nullptr);
    text = CSafeString(3, 'x');
    text.append(0, 'x').append("abc", 2).append("abc").append({'a', 'b'}).append(3, 'x');
    text.append(CView("abc")).append("abc", 1, 2).append(text);
    text += 'c';
    text += "abc";
    text += {'a', 'b'};
    text += CView("abc");
    text += text;
    text = CSafeString::do_join({"a", "b"}, ",");
    text = CSafeString::do_join({"a", "b"}, ',');
    text = CSafeString::do_join({}, ",");
    text = CSafeString({"a", "b"}, ",");
    text = CSafeString({"a", "b"}, ',');
    text = text.join({"a", "b"}, ",");
    text = text.join({"a", "b", text}, ',');
    text = "abc";
    text.set("abc");
    text.set(L"abc");
    text.set(u"abc");
    text = CSafeString(L"abc");
    text = CSafeString(u"abc");
    text = CSafeString(std::string("abc"));
    text = CSafeString(std::string_view("abc"));
    return 'a' + text + 'b' + "c" + text;
}
