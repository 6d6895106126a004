#include <BaseUtilities/StringUtilities.h>

#include "Allocations.h"
#include "ScopedEnvironment.h"
#include "ScopedLocale.h"
#include "TemporaryFolder.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <future>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <locale.h>

using namespace std::string_literals;
using testing::ElementsAre;

namespace
{
using Texts = std::vector<std::string>;

std::string Bytes(CSafeString const& text)
{
    return std::string(text.data(), text.size());
}

Texts Bytes(std::vector<CSafeString> const& texts)
{
    Texts result;
    for (CSafeString const& text : texts)
        result.push_back(Bytes(text));
    return result;
}

Texts Split(std::string const& text, std::string const& separator)
{
    return Bytes(StringSplit(text, separator));
}

std::vector<CSafeString> Items(Texts const& texts)
{
    std::vector<CSafeString> result;
    for (std::string const& text : texts)
        result.emplace_back(basic_sv_wrapper<char>(text));
    return result;
}

QString AsQtReadsIt(std::string const& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string UpToNul(QByteArray const& bytes)
{
    return bytes.constData();
}

Texts SplitByQt(std::string const& text, std::string const& separator)
{
    Texts result;
    for (QString const& part :
         AsQtReadsIt(text).split(AsQtReadsIt(separator), Qt::KeepEmptyParts, Qt::CaseSensitive))
        result.push_back(UpToNul(part.toUtf8()));
    return result;
}

std::string JoinByQt(Texts const& items, std::string const& separator)
{
    QStringList list;
    for (std::string const& item : items)
        list.append(AsQtReadsIt(item.c_str()));
    return UpToNul(list.join(AsQtReadsIt(separator)).toUtf8());
}

/// Text from a small alphabet, so that separators occur in it: letters of both
/// cases, several bytes long, ill-formed bytes and NULs among them.
class CTextSource
{
public:
    std::string Text(std::size_t mostPieces)
    {
        static std::vector<std::string> const pieces{"a",
                                                     "A",
                                                     "b",
                                                     ",",
                                                     ",",
                                                     ", ",
                                                     "\0"s,
                                                     "\xC3\xA4",
                                                     "\xC3\x84",
                                                     "\xE2\x82\xAC",
                                                     "\xF0\x9F\x98\x80",
                                                     "\xFF",
                                                     "\xC3",
                                                     "\xEF\xBB\xBF",
                                                     "e\xCC\x81"};
        std::string text;
        for (std::size_t count = Number(mostPieces); count != 0; --count)
            text += pieces[Number(pieces.size() - 1)];
        return text;
    }
    std::size_t Number(std::size_t most)
    {
        return std::uniform_int_distribution<std::size_t>(0, most)(m_Engine);
    }

private:
    std::mt19937 m_Engine{20240229};
};

struct SSplitRow
{
    char const* m_Name;
    std::string m_Text;
    std::string m_Separator;
    Texts m_Parts;
};

class StringSplitTable : public testing::TestWithParam<SSplitRow>
{
};

class StringJoinTable : public testing::TestWithParam<SSplitRow>
{
};

auto const NameOfRow = [](auto const& info) { return std::string(info.param.m_Name); };
} // namespace

TEST_P(StringSplitTable, GivesTheseParts)
{
    SSplitRow const& row = GetParam();
    EXPECT_EQ(Split(row.m_Text, row.m_Separator), row.m_Parts);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, StringSplitTable,
    testing::Values(
        SSplitRow{"AdjacentSeparatorsGiveAnEmptyPart", "a,,b", ",", {"a", "", "b"}},
        SSplitRow{"LeadingSeparatorGivesAnEmptyFirstPart", ",a", ",", {"", "a"}},
        SSplitRow{"TrailingSeparatorGivesAnEmptyLastPart", "a,", ",", {"a", ""}},
        SSplitRow{"SeparatorAloneGivesTwoEmptyParts", ",", ",", {"", ""}},
        SSplitRow{"EmptyTextGivesOneEmptyPart", "", ",", {""}},
        SSplitRow{"EmptyTextAtAnEmptySeparatorGivesTwoEmptyParts", "", "", {"", ""}},
        SSplitRow{"AbsentSeparatorGivesTheWholeText", "abc", ",", {"abc"}},
        SSplitRow{"MatchIsCaseSensitive", "aXb", "x", {"aXb"}},
        SSplitRow{"MatchOfOneCaseOnly", "aXbxc", "x", {"aXb", "c"}},
        SSplitRow{"EmptySeparatorSplitsBetweenAllCharacters", "abc", "", {"", "a", "b", "c", ""}},
        SSplitRow{"EmptySeparatorKeepsCharactersOfSeveralBytesWhole",
                  "\xC3\xA4\xE2\x82\xAC",
                  "",
                  {"", "\xC3\xA4", "\xE2\x82\xAC", ""}},
        SSplitRow{
            "EmptySeparatorTakesSurrogatePairsApart", "\xF0\x9F\x98\x80", "", {"", "?", "?", ""}},
        SSplitRow{"LongSeparatorMatchesAsAWhole", "a--b-c", "--", {"a", "b-c"}},
        SSplitRow{"OverlappingMatchesCountOnceFromTheLeft", "a---b", "--", {"a", "-b"}},
        SSplitRow{"SeparatorLongerThanTheText", "a", "abc", {"a"}},
        SSplitRow{"TextEqualToTheSeparator", "abc", "abc", {"", ""}},
        SSplitRow{"BlanksArePartOfTheParts", " a , b ", ",", {" a ", " b "}},
        SSplitRow{"SeparatorBeyondAscii",
                  "a\xE2\x82\xAC"
                  "b",
                  "\xE2\x82\xAC",
                  {"a", "b"}},
        SSplitRow{"PartsBeyondAscii", "\xC3\xA4,\xC3\xB6", ",", {"\xC3\xA4", "\xC3\xB6"}},
        SSplitRow{"SeparatorIsNoPattern", "a.b|c", "|", {"a.b", "c"}},
        SSplitRow{"PartEndsAtItsFirstNul", "a\0b,c"s, ",", {"a", "c"}},
        SSplitRow{"NulAsSeparator", "a\0b"s, "\0"s, {"a", "b"}},
        SSplitRow{
            "IllFormedByteBecomesTheReplacementCharacter", "a\xFF,b", ",", {"a\xEF\xBF\xBD", "b"}},
        SSplitRow{"LineEndsAreNotSpecial", "a\r\nb", "\n", {"a\r", "b"}}),
    NameOfRow);

TEST(StringSplit, AgreesWithQtOnRandomText)
{
    CTextSource source;
    for (int round = 0; round < 3000; ++round) {
        std::string const text = source.Text(14);
        std::string const separator = source.Text(2);
        ASSERT_EQ(Split(text, separator), SplitByQt(text, separator))
            << "round " << round << ": " << testing::PrintToString(text) << " at "
            << testing::PrintToString(separator);
    }
}

TEST(StringSplit, ReadsViewsOnlyAsFarAsTheyReach)
{
    std::string const text = "a,b;cdef";
    EXPECT_THAT(
        Bytes(StringSplit(basic_sv_wrapper<char>(text.data(), 4), basic_sv_wrapper<char>(",;", 1))),
        ElementsAre("a", "b;"));
}

TEST(StringSplit, TakesUnsetViewsAsEmpty)
{
    EXPECT_THAT(Bytes(StringSplit(basic_sv_wrapper<char>(), ",")), ElementsAre(""));
    EXPECT_THAT(Bytes(StringSplit("ab", basic_sv_wrapper<char>())), ElementsAre("", "a", "b", ""));
}

TEST(StringSplit, HandlesManyParts)
{
    std::string const text(100000, ',');
    EXPECT_EQ(StringSplit(text, ",").size(), 100001u);
}

namespace
{
template <class Operation>
void ExpectNullIsRefused(Operation operation)
{
    try {
        operation(basic_sv_wrapper<char>(nullptr, 3));
        ADD_FAILURE() << "nothing was thrown";
    } catch (std::logic_error const& error) {
        EXPECT_STREQ(error.what(), "basic_string: construction from null is not valid");
    }
}

using View = basic_sv_wrapper<char> const&;
} // namespace

TEST(StringSplit, RefusesANullTextWithALength)
{
    ExpectNullIsRefused([](View null) { StringSplit(null, ","); });
}

TEST(StringSplit, RefusesANullSeparatorWithALength)
{
    ExpectNullIsRefused([](View null) { StringSplit("a,b", null); });
}

// Five, for room that grows by doubling would hold eight.
TEST(StringSplit, MakesRoomForItsPartsOnce)
{
    EXPECT_EQ(StringSplit("a,b,c,d,e", ",").capacity(), 5u);
}

TEST(StringSplit, PassesOnEveryFailedAllocation)
{
    std::string const text = "a part too long for the short form,another one of that kind,c";
    CAllocationCounter const during;
    int const failures = FailEachAllocation([&] { StringSplit(text, ","); }, [] {});
    EXPECT_GT(failures, 4); // the text, the vector, three parts at least
    EXPECT_EQ(during.Live(), 0);
}

TEST_P(StringJoinTable, GivesThisText)
{
    SSplitRow const& row = GetParam();
    EXPECT_EQ(Bytes(StringJoin(Items(row.m_Parts), row.m_Separator)), row.m_Text);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, StringJoinTable,
    testing::Values(
        SSplitRow{"NoItemsGiveEmptyText", "", ",", {}},
        SSplitRow{"OneItemStandsWithoutTheSeparator", "a", ",", {"a"}},
        SSplitRow{"OneEmptyItem", "", ",", {""}},
        SSplitRow{"SeparatorStandsBetweenEachTwo", "a, b, c", ", ", {"a", "b", "c"}},
        SSplitRow{"EmptyItemsAtTheFrontKeepTheirSeparators", ",,a", ",", {"", "", "a"}},
        SSplitRow{"EmptyItemsAtTheEndKeepTheirSeparators", "a,,", ",", {"a", "", ""}},
        SSplitRow{"EmptyItemsAlone", ",,", ",", {"", "", ""}},
        SSplitRow{"EmptySeparator", "abc", "", {"a", "b", "c"}},
        SSplitRow{"SeparatorBeyondAscii",
                  "a\xE2\x82\xAC"
                  "b",
                  "\xE2\x82\xAC",
                  {"a", "b"}},
        SSplitRow{
            "ItemsBeyondAscii", "\xC3\xA4,\xF0\x9F\x98\x80", ",", {"\xC3\xA4", "\xF0\x9F\x98\x80"}},
        SSplitRow{"ItemsThatHoldTheSeparatorAreNotQuoted", "a,b,c", ",", {"a,b", "c"}},
        SSplitRow{"ItemEndsAtItsFirstNul", "a,c", ",", {"a\0b"s, "c"}},
        SSplitRow{"ResultEndsAtTheNulOfItsSeparator", "a", "\0"s, {"a", "b"}},
        SSplitRow{
            "IllFormedByteBecomesTheReplacementCharacter", "a\xEF\xBF\xBD,b", ",", {"a\xFF", "b"}},
        SSplitRow{"CharacterSplitOverTwoItemsIsNotJoined",
                  "\xEF\xBF\xBD\xEF\xBF\xBD",
                  "",
                  {"\xC3", "\xA4"}}),
    NameOfRow);

TEST(StringJoin, AgreesWithQtOnRandomText)
{
    CTextSource source;
    for (int round = 0; round < 3000; ++round) {
        Texts items;
        for (std::size_t count = source.Number(5); count != 0; --count)
            items.push_back(source.Text(5));
        std::string const separator = source.Text(2);
        ASSERT_EQ(Bytes(StringJoin(Items(items), separator)), JoinByQt(items, separator))
            << "round " << round << ": " << testing::PrintToString(items) << " with "
            << testing::PrintToString(separator);
    }
}

TEST(StringJoin, PutsBackWhatStringSplitTookApart)
{
    std::string const text = ",a,,b\xC3\xA4,";
    EXPECT_EQ(Bytes(StringJoin(StringSplit(text, ","), ",")), text);
}

TEST(StringJoin, TakesItemsInBraces)
{
    EXPECT_EQ(Bytes(StringJoin({"a", "b"}, ",")), "a,b");
}

TEST(StringJoin, LeavesTheItemsAsTheyWere)
{
    std::vector<CSafeString> const items = Items({"a\0b"s, ""});
    StringJoin(items, ",");
    EXPECT_THAT(Bytes(items), ElementsAre("a\0b"s, ""));
}

TEST(StringJoin, TakesAnUnsetSeparatorAsEmpty)
{
    EXPECT_EQ(Bytes(StringJoin(Items({"a", "b"}), basic_sv_wrapper<char>())), "ab");
}

TEST(StringJoin, RefusesANullSeparatorWithALength)
{
    ExpectNullIsRefused([](View null) { StringJoin({}, null); });
}

TEST(StringJoin, PassesOnEveryFailedAllocation)
{
    std::vector<CSafeString> const items =
        Items({"an item too long for the short form", "another one of that kind"});
    CAllocationCounter const during;
    int const failures = FailEachAllocation(
        [&] { StringJoin(items, " - a separator longer than sixteen bytes - "); }, [] {});
    EXPECT_GT(failures, 3); // the separator, two items, the result
    EXPECT_EQ(during.Live(), 0);
}

namespace
{
std::string AllBytes()
{
    std::string bytes;
    for (int byte = 0; byte <= UCHAR_MAX; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

struct SLetterCase
{
    char const* m_Name;
    CSafeString (*m_Convert)(View);
    int (*m_ConvertByte)(int);
};

SLetterCase const LetterCases[] = {{"upper", &ToUpper, &std::toupper},
                                   {"lower", &ToLower, &std::tolower}};

// Every byte at every place of texts of these lengths, for long ones are converted in another way.
void ExpectTheCLibrarysLetterCase()
{
    std::string const bytes = AllBytes() + AllBytes();
    for (SLetterCase const& to : LetterCases) {
        std::string expected;
        for (char const byte : bytes)
            expected += static_cast<char>(to.m_ConvertByte(static_cast<unsigned char>(byte)));
        for (std::size_t const length : {1UL, 63UL, 64UL, 65UL, 256UL}) {
            SCOPED_TRACE(std::string("to ") + to.m_Name + ", length " + std::to_string(length));
            for (std::size_t start = 0; start <= UCHAR_MAX; ++start) {
                ASSERT_EQ(Bytes(to.m_Convert(bytes.substr(start, length))),
                          expected.substr(start, length));
            }
        }
    }
}

/// A locale with letters of eight bits, Latin-1's unless told otherwise, to be
/// found for as long as this lives, made by the system's own tool from its
/// sources, where these are installed.
class CEightBitLocale
{
public:
    static constexpr char const* Name = "letters-of-eight-bits";

    explicit CEightBitLocale(std::string const& source = "-i en_US -f ISO-8859-1")
        : m_Path("LOCPATH", m_Folder.Path().native())
    {
        std::string const make =
            "localedef " + source + " '" + m_Folder / Name + "' >/dev/null 2>&1";
        m_Made = std::system(make.c_str()) == 0;
    }
    bool Made() const { return m_Made; }

private:
    CTemporaryFolder m_Folder;
    CScopedEnvironment m_Path;
    bool m_Made = false;
};

/// The locale of the calling thread alone, as long as this lives.
class CThreadLocale
{
public:
    explicit CThreadLocale(char const* name)
        : m_Locale(newlocale(LC_ALL_MASK, name, locale_t())),
          m_Before(uselocale(m_Locale))
    {
    }
    CThreadLocale(CThreadLocale const&) = delete;
    CThreadLocale& operator=(CThreadLocale const&) = delete;
    ~CThreadLocale()
    {
        uselocale(m_Before);
        if (IsSet())
            freelocale(m_Locale);
    }
    bool IsSet() const { return m_Locale != locale_t(); }

private:
    locale_t m_Locale;
    locale_t m_Before;
};

// Sixteen letters as Latin-1, as often as makes a text of so many bytes.
std::string LatinLetters(std::string const& letters, std::size_t size)
{
    std::string text;
    while (text.size() < size)
        text += letters;
    return text;
}

void ExpectLatin1LetterCase()
{
    for (std::size_t const size : {16UL, 160UL}) {
        std::string const small = LatinLetters("\xE4\xF6\xFC\xE9 abcd\xDF\xF7ijk ", size);
        std::string const large = LatinLetters("\xC4\xD6\xDC\xC9 ABCD\xDF\xF7IJK ", size);
        EXPECT_EQ(Bytes(ToUpper(small)), large);
        EXPECT_EQ(Bytes(ToLower(large)), small);
    }
}

void ExpectNoLatin1LetterCase()
{
    for (std::size_t const size : {16UL, 160UL}) {
        std::string const text = LatinLetters("\xE4\xF6\xFC\xC4\xD6\xDC\xC9\xE9", size);
        EXPECT_EQ(Bytes(ToUpper(text)), text);
        EXPECT_EQ(Bytes(ToLower(text)), text);
    }
}
} // namespace

TEST(LetterCase, ChangesOnlyAsciiLettersInTheDefaultLocale)
{
    CScopedLocale const locale("C");
    std::string const others = "09@[`{\x7F\x80\xC3\xA4\xE4\xC4\xFF";
    EXPECT_EQ(Bytes(ToUpper("abcxyzABCXYZ" + others)), "ABCXYZABCXYZ" + others);
    EXPECT_EQ(Bytes(ToLower("abcxyzABCXYZ" + others)), "abcxyzabcxyz" + others);
}

TEST(LetterCase, AgreesWithTheCLibraryOnEveryByteInTheDefaultLocale)
{
    CScopedLocale const locale("C");
    ExpectTheCLibrarysLetterCase();
}

TEST(LetterCase, AgreesWithTheCLibraryOnEveryByteInAUtf8Locale)
{
    CScopedLocale const locale("C.UTF-8");
    if (!locale.IsSet())
        GTEST_SKIP() << "no locale C.UTF-8";
    ExpectTheCLibrarysLetterCase();
}

TEST(LetterCase, FollowsALocaleOfEightBitLetters)
{
    CEightBitLocale const sources;
    CScopedLocale const locale(CEightBitLocale::Name);
    if (!sources.Made() || !locale.IsSet())
        GTEST_SKIP() << "no sources to make a Latin-1 locale from";
    ExpectLatin1LetterCase();
    ExpectTheCLibrarysLetterCase();
}

// There a letter differs from the other one of its pair by one, not by a bit of its own.
TEST(LetterCase, FollowsALocaleWhosePairsOfLettersLieSideBySide)
{
    CEightBitLocale const sources("-i cy_GB -f ISO-8859-14");
    CScopedLocale const locale(CEightBitLocale::Name);
    if (!sources.Made() || !locale.IsSet())
        GTEST_SKIP() << "no sources to make a Celtic locale from";
    EXPECT_EQ(Bytes(ToUpper(LatinLetters("\xA2", 100))), LatinLetters("\xA1", 100));
    EXPECT_EQ(Bytes(ToLower(LatinLetters("\xA1", 100))), LatinLetters("\xA2", 100));
    ExpectTheCLibrarysLetterCase();
}

TEST(LetterCase, FollowsEachChangeOfTheLocale)
{
    CEightBitLocale const sources;
    if (!sources.Made())
        GTEST_SKIP() << "no sources to make a Latin-1 locale from";
    CScopedLocale const plain("C");
    ExpectNoLatin1LetterCase();
    {
        CScopedLocale const latin(CEightBitLocale::Name);
        ExpectLatin1LetterCase();
    }
    ExpectNoLatin1LetterCase();
}

TEST(LetterCase, FollowsTheLocaleOfTheThreadBeforeThatOfTheProcess)
{
    CEightBitLocale const sources;
    if (!sources.Made())
        GTEST_SKIP() << "no sources to make a Latin-1 locale from";
    CScopedLocale const plain("C");
    {
        CThreadLocale const latin(CEightBitLocale::Name);
        ASSERT_TRUE(latin.IsSet());
        ExpectLatin1LetterCase();
        ExpectTheCLibrarysLetterCase();
        std::thread([] { ExpectNoLatin1LetterCase(); }).join();
    }
    ExpectNoLatin1LetterCase();
}

TEST(LetterCase, FollowsALocaleThatAnotherThreadSetsForTheProcess)
{
    CEightBitLocale const sources;
    if (!sources.Made())
        GTEST_SKIP() << "no sources to make a Latin-1 locale from";
    CScopedLocale const plain("C");
    std::promise<void> started;
    std::promise<void> set;
    std::thread worker([&] {
        ExpectNoLatin1LetterCase();
        started.set_value();
        set.get_future().wait();
        ExpectLatin1LetterCase();
    });
    started.get_future().wait();
    CScopedLocale const latin(CEightBitLocale::Name);
    set.set_value();
    worker.join();
}

TEST(LetterCase, KeepsEmbeddedNulsAndConvertsBehindThem)
{
    EXPECT_EQ(Bytes(ToUpper("a\0b"s)), "A\0B"s);
    EXPECT_EQ(Bytes(ToLower("A\0B"s)), "a\0b"s);
}

TEST(LetterCase, OfEmptyTextIsEmpty)
{
    EXPECT_EQ(Bytes(ToUpper("")), "");
    EXPECT_EQ(Bytes(ToLower("")), "");
    EXPECT_EQ(Bytes(ToUpper(basic_sv_wrapper<char>())), "");
    EXPECT_EQ(Bytes(ToLower(basic_sv_wrapper<char>())), "");
}

// Writable, so that nothing but the functions themselves keeps it as it was.
TEST(LetterCase, LeavesTheArgumentAsItWas)
{
    char text[] = "aB, longer than what a string keeps in itself";
    std::string const before = text;
    EXPECT_NE(ToUpper(text), text);
    EXPECT_EQ(text, before);
    EXPECT_NE(ToLower(text), text);
    EXPECT_EQ(text, before);
}

TEST(LetterCase, RefusesANullTextWithALength)
{
    ExpectNullIsRefused([](View null) { ToUpper(null); });
    ExpectNullIsRefused([](View null) { ToLower(null); });
}

TEST(LetterCase, PassesOnEveryFailedAllocation)
{
    std::string const text(100, 'a');
    CAllocationCounter const during;
    EXPECT_GT(FailEachAllocation([&] { ToUpper(text); }, [] {}), 1);
    EXPECT_GT(FailEachAllocation([&] { ToLower(text); }, [] {}), 1);
    EXPECT_EQ(during.Live(), 0);
}

namespace
{
struct SPluralRow
{
    char const* m_Name;
    unsigned long m_Count;
    basic_sv_wrapper<char> m_Singular;
    basic_sv_wrapper<char> m_Plural;
    std::string m_Noun;
    std::string m_Verb;
};

class PluralTable : public testing::TestWithParam<SPluralRow>
{
};

basic_sv_wrapper<char> const Unset;

basic_sv_wrapper<char> FlaggedUnset(basic_sv_wrapper<char> view)
{
    view.m_HasValue = false;
    return view;
}
} // namespace

TEST_P(PluralTable, NounIs)
{
    SPluralRow const& row = GetParam();
    EXPECT_EQ(Bytes(PluralNoun(row.m_Count, row.m_Singular, row.m_Plural)), row.m_Noun);
}

TEST_P(PluralTable, VerbIs)
{
    SPluralRow const& row = GetParam();
    EXPECT_EQ(Bytes(PluralVerb(row.m_Count, row.m_Singular, row.m_Plural)), row.m_Verb);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PluralTable,
    testing::Values(
        SPluralRow{"NoneWithEmptyPlural", 0, "test", "", "tests", "test"},
        SPluralRow{"OneWithEmptyPlural", 1, "test", "", "test", "tests"},
        SPluralRow{"TwoWithEmptyPlural", 2, "test", "", "tests", "test"},
        SPluralRow{"MostWithEmptyPlural", ULONG_MAX, "test", "", "tests", "test"},
        SPluralRow{"OneInTheLowHalfOnlyIsMany", 0x100000001, "test", "", "tests", "test"},
        SPluralRow{"NoneWithPlural", 0, "box", "boxes", "boxes", "boxes"},
        SPluralRow{"OneWithPluralStillGivesThePlural", 1, "box", "boxes", "boxes", "boxes"},
        SPluralRow{"TwoWithPlural", 2, "box", "boxes", "boxes", "boxes"},
        SPluralRow{"NoneWithUnsetPlural", 0, "test", Unset, "tests", "test"},
        SPluralRow{"OneWithUnsetPlural", 1, "test", Unset, "test", "tests"},
        SPluralRow{"TwoWithUnsetPlural", 2, "test", Unset, "tests", "test"},
        SPluralRow{"PluralFlaggedUnsetLetsTheCountChoose", 2, "box", FlaggedUnset("boxes"), "boxs",
                   "box"},
        SPluralRow{"OneWithVerbEndingInSGetsAnotherOne", 1, "pass", "", "pass", "passs"},
        SPluralRow{"ThreeWithVerbEndingInS", 3, "pass", "", "passs", "pass"},
        SPluralRow{"EmptySingularForOne", 1, "", "", "", "s"},
        SPluralRow{"EmptySingularForTwo", 2, "", "", "s", ""},
        SPluralRow{"UnsetSingularForTwo", 2, Unset, "", "s", ""},
        SPluralRow{"EmptySingularWithPlural", 1, "", "are", "are", "are"},
        SPluralRow{"TextBeyondAscii", 2, "\xC3\xA4", "", "\xC3\xA4s", "\xC3\xA4"},
        SPluralRow{"NulsAreKeptInTheSingular", 2, "a\0b", "", "a\0bs"s, "a\0b"s},
        SPluralRow{"NulsAreKeptInThePlural", 2, "a", "a\0b", "a\0b"s, "a\0b"s},
        SPluralRow{"PluralThatIsOnlyABlankCounts", 1, "a", " ", " ", " "}),
    NameOfRow);

TEST(PluralForms, RefuseANullSingularWithALength)
{
    ExpectNullIsRefused([](View null) { PluralNoun(1, null, ""); });
    ExpectNullIsRefused([](View null) { PluralNoun(2, null, ""); });
    ExpectNullIsRefused([](View null) { PluralVerb(1, null, ""); });
    ExpectNullIsRefused([](View null) { PluralVerb(2, null, ""); });
}

TEST(PluralForms, PassOnEveryFailedAllocation)
{
    std::string const word(40, 'w');
    CAllocationCounter const during;
    for (unsigned long const count : {1ul, 2ul}) {
        EXPECT_GT(FailEachAllocation([&] { PluralNoun(count, word, ""); }, [] {}), 1);
        EXPECT_GT(FailEachAllocation([&] { PluralNoun(count, "w", word); }, [] {}), 1);
        EXPECT_GT(FailEachAllocation([&] { PluralVerb(count, word, ""); }, [] {}), 1);
        EXPECT_GT(FailEachAllocation([&] { PluralVerb(count, "w", word); }, [] {}), 1);
    }
    EXPECT_EQ(during.Live(), 0);
}
