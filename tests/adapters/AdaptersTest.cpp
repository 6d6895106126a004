#include "AdapterUses.h"

#include <BaseUtilities/adapters/GoogleTest.h>
#include <BaseUtilities/adapters/Qt.h>
#include <BaseUtilities/adapters/hash.h>
#include <BaseUtilities/adapters/ostream.h>
#ifdef WITH_FMT
#include <BaseUtilities/adapters/fmt.h>
#endif

#include <gtest/gtest.h>

#include <QHash>

#include <iomanip>
#include <sstream>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace
{
using namespace std::string_literals;
using View = basic_sv_wrapper<char>;

CSafeString WithNul()
{
    return View("a\0b");
}

template <class Stream, class T, class = void>
inline constexpr bool IsWritable = false;
template <class Stream, class T>
inline constexpr bool IsWritable<
    Stream, T, std::void_t<decltype(std::declval<Stream>() << std::declval<T const&>())>> = true;

TEST(HashAdapter, KeysUnorderedContainers)
{
    std::unordered_map<CSafeString, int> counts;
    ++counts["x"];
    ++counts[CSafeString("x")];
    ++counts[WithNul()];
    EXPECT_EQ(counts.size(), 2u);
    EXPECT_EQ(counts["x"], 2);
}

TEST(Adapters, GoTogetherInOneSource)
{
    std::vector<std::string> expected = {"text", "\"text\"", "text", "text"};
#ifdef WITH_FMT
    expected.emplace_back("text");
#endif
    EXPECT_EQ(WrittenByEachAdapter("text"), expected);
    EXPECT_TRUE(HashesAreThoseOfACopy("text"));
}

TEST(HashAdapter, CoversTheBytesBehindANul)
{
    std::hash<CSafeString> const hash;
    EXPECT_EQ(hash(WithNul()), std::hash<std::string>()("a\0b"s));
    EXPECT_NE(hash(WithNul()), hash("a"));
}

TEST(HashAdapter, EqualViewsHaveEqualHashes)
{
    std::hash<View> const hash;
    EXPECT_EQ(hash(View()), hash(View("")));
    EXPECT_EQ(hash(View("text")), hash(View("text!", 4)));
    EXPECT_EQ(std::hash<basic_sv_wrapper<char16_t>>()(u"ab"), std::hash<std::u16string>()(u"ab"));
    EXPECT_EQ(std::hash<basic_sv_wrapper<wchar_t>>()(L"ab"), std::hash<std::wstring>()(L"ab"));
}

TEST(OstreamAdapter, WritesAllBytesAsAStandardString)
{
    std::ostringstream stream;
    stream << WithNul() << '|' << std::setw(4) << std::left << CSafeString("x") << '|';
    EXPECT_EQ(stream.str(), "a\0b|x   |"s);
}

TEST(OstreamAdapter, WritesNothingForAnUnsetView)
{
    std::ostringstream stream;
    stream << View() << View("y");
    EXPECT_EQ(stream.str(), "y");
}

TEST(OstreamAdapter, TakesNothingThatMerelyConverts)
{
    struct Named
    {
        operator CSafeString() const { return "name"; }
    };
    static_assert(IsWritable<std::ostream&, CSafeString>);
    static_assert(!IsWritable<std::ostream&, Named>);
    static_assert(!IsWritable<std::ostream&, basic_sv_wrapper<wchar_t>>);
}

TEST(QtAdapter, ConvertsThereAndBackWithNuls)
{
    QString const text = ToQString(WithNul() + " \u00fc\U0001f600");
    EXPECT_EQ(text, QString::fromUtf8("a\0b \u00fc\U0001f600", 10));
    EXPECT_EQ(ToSafeString(text), WithNul() + " \u00fc\U0001f600");
}

TEST(QtAdapter, EmptyAndUnsetTextIsEmpty)
{
    EXPECT_EQ(ToQString(CSafeString()), QString());
    EXPECT_EQ(ToQString(View()), QString());
    EXPECT_EQ(ToSafeString(QString()), "");
}

TEST(QtAdapter, IllFormedBytesAreReplaced)
{
    EXPECT_EQ(ToQString(View("\xff")), QString(QChar(0xfffd)));
}

TEST(QtAdapter, KeysQHash)
{
    QHash<CSafeString, int> counts;
    ++counts["x"];
    ++counts["x"];
    ++counts[WithNul()];
    EXPECT_EQ(counts.size(), 2);
    EXPECT_EQ(counts.value("x"), 2);
}

TEST(QtAdapter, HashIsQtsOfAllBytesWithSeedZeroUnlessGiven)
{
    EXPECT_EQ(qHash(WithNul()), qHashBits("a\0b", 3, 0));
    EXPECT_EQ(qHash(WithNul(), 7), qHashBits("a\0b", 3, 7));
}

TEST(QtAdapter, SeedChangesTheHash)
{
    EXPECT_NE(qHash(CSafeString("text"), 1), qHash(CSafeString("text"), 2));
}

TEST(QtAdapter, DebugQuotesTheText)
{
    QString shown;
    QDebug(&shown).nospace() << CSafeString("a\"b") << View("c");
    EXPECT_EQ(shown, R"("a\"b""c")");
}

TEST(GoogleTestAdapter, ShowsTextBetweenQuotes)
{
    EXPECT_EQ(testing::PrintToString(WithNul()), testing::PrintToString("a\0b"s));
    EXPECT_EQ(testing::PrintToString(CSafeString("x")), "\"x\"");
    EXPECT_EQ(testing::PrintToString(View("x")), "\"x\"");
    EXPECT_EQ(testing::PrintToString(View()), "(not set)");
}

TEST(GoogleTestAdapter, ShowsTheChannelsOfAColour)
{
    EXPECT_EQ(testing::PrintToString(TQColor{1, 2, 3, 4}), "rgba(1, 2, 3, 4)");
}

#ifdef WITH_FMT
TEST(FmtAdapter, FormatsAsAString)
{
    EXPECT_EQ(fmt::format("[{:>3}|{:.1}|{}]", CSafeString("x"), View("yz"), WithNul()),
              "[  x|y|a\0b]"s);
    EXPECT_EQ(fmt::format("[{}]", View()), "[]");
}
#endif
} // namespace
