#include <BaseUtilities/EncodingConversions.h>

#include "Allocations.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>

#include <string>
#include <string_view>

namespace
{
using namespace std::string_literals;

// A text in the three encodings. None is followed by what must not be read.
struct SEncoded
{
    char const* name;
    std::string utf8;
    std::u16string utf16;
    std::wstring wide;
};

SEncoded const Encoded[] = {
    {"Empty", "", u"", L""},
    {"Ascii", "Hello, world~", u"Hello, world~", L"Hello, world~"},
    {"Controls", "\x01\t\n\x7f", u"\x01\t\n\x7f", L"\x01\t\n\x7f"},
    {"FirstOfTwoBytes", "\xc2\x80", u"\u0080"s, L"\u0080"s},
    {"Latin", "Gr\xc3\xbc\xc3\x9f", u"Gr\u00fc\u00df", L"Gr\u00fc\u00df"},
    {"LastOfTwoBytes", "\xdf\xbf", u"\u07ff", L"\u07ff"},
    {"FirstOfThreeBytes", "\xe0\xa0\x80", u"\u0800", L"\u0800"},
    {"Cjk", "\xe4\xb8\xad\xe6\x96\x87", u"\u4e2d\u6587", L"\u4e2d\u6587"},
    {"BelowTheSurrogates", "\xed\x9f\xbf", u"\ud7ff", L"\ud7ff"},
    {"AboveTheSurrogates", "\xee\x80\x80", u"\ue000", L"\ue000"},
    {"LastOfThreeBytes", "\xef\xbf\xbd", u"\ufffd", L"\ufffd"},
    {"FirstSurrogatePair", "\xf0\x90\x80\x80", u"\U00010000", L"\U00010000"},
    {"Emoji", "a\xf0\x9f\x98\x80z", u"a\U0001F600z", L"a\U0001F600z"},
    {"LastCharacter", "\xf4\x8f\xbf\xbf", u"\U0010FFFF", L"\U0010FFFF"},
    {"EmbeddedNuls", "a\0b\0\0c"s, u"a\0b\0\0c"s, L"a\0b\0\0c"s},
    {"OnlyANul", "\0"s, u"\0"s, L"\0"s},
    {"Long", std::string(5000, 'x') + "\xc3\xa4", std::u16string(5000, u'x') + u"\u00e4",
     std::wstring(5000, L'x') + L"\u00e4"},
};

class EncodingConversions : public testing::TestWithParam<SEncoded>
{
};

template <class CharT>
basic_sv_wrapper<CharT> ViewOf(std::basic_string<CharT> const& text, std::size_t length)
{
    return basic_sv_wrapper<CharT>(text.data(), length);
}
} // namespace

TEST_P(EncodingConversions, Utf8BecomesUtf16)
{
    auto const converted = Utf8ToUtf16(GetParam().utf8);
    ASSERT_NE(converted, nullptr);
    EXPECT_EQ(*converted, GetParam().utf16);
}

TEST_P(EncodingConversions, Utf16BecomesUtf8)
{
    auto const converted = Utf16ToUtf8(GetParam().utf16);
    ASSERT_NE(converted, nullptr);
    EXPECT_EQ(*converted, GetParam().utf8);
}

TEST_P(EncodingConversions, WideBecomesUtf8)
{
    auto const converted = StdWStrToUtf8(GetParam().wide);
    ASSERT_NE(converted, nullptr);
    EXPECT_EQ(*converted, GetParam().utf8);
}

TEST_P(EncodingConversions, LengthBoundsTheInput)
{
    auto const& [name, utf8, utf16, wide] = GetParam();
    EXPECT_EQ(*Utf8ToUtf16(ViewOf(utf8 + "tail", utf8.size())), utf16);
    EXPECT_EQ(*Utf16ToUtf8(ViewOf(utf16 + u"tail", utf16.size())), utf8);
    EXPECT_EQ(*StdWStrToUtf8(ViewOf(wide + L"tail", wide.size())), utf8);
}

INSTANTIATE_TEST_SUITE_P(Rows, EncodingConversions, testing::ValuesIn(Encoded),
                         [](auto const& row) { return row.param.name; });

TEST(EncodingConversion, NullViewGivesAnEmptyString)
{
    auto const utf16 = Utf8ToUtf16(basic_sv_wrapper<char>());
    auto const fromUtf16 = Utf16ToUtf8(basic_sv_wrapper<char16_t>());
    auto const fromWide = StdWStrToUtf8(basic_sv_wrapper<wchar_t>());
    ASSERT_TRUE(utf16 != nullptr && fromUtf16 != nullptr && fromWide != nullptr);
    EXPECT_TRUE(utf16->empty());
    EXPECT_TRUE(fromUtf16->empty());
    EXPECT_TRUE(fromWide->empty());
}

// The input's end is the block's end, so that a sanitizer sees a read beyond it.
TEST(EncodingConversion, ViewNeedsNoTerminator)
{
    auto const narrow = std::make_unique<char[]>(2);
    auto const utf16 = std::make_unique<char16_t[]>(2);
    auto const wide = std::make_unique<wchar_t[]>(2);
    for (std::size_t i = 0; i < 2; ++i) {
        narrow[i] = 'a';
        utf16[i] = u'a';
        wide[i] = L'a';
    }
    EXPECT_EQ(*Utf8ToUtf16(basic_sv_wrapper<char>(narrow.get(), 2)), u"aa");
    EXPECT_EQ(*Utf16ToUtf8(basic_sv_wrapper<char16_t>(utf16.get(), 2)), "aa");
    EXPECT_EQ(*StdWStrToUtf8(basic_sv_wrapper<wchar_t>(wide.get(), 2)), "aa");
}

TEST(EncodingConversion, OutsideTheBasicPlaneIsASurrogatePairAndBack)
{
    auto const pair = Utf8ToUtf16("\xf0\x9f\x98\x80");
    ASSERT_EQ(pair->size(), 2u);
    EXPECT_EQ((*pair)[0], 0xd83d);
    EXPECT_EQ((*pair)[1], 0xde00);
    EXPECT_EQ(*Utf16ToUtf8(*pair), "\xf0\x9f\x98\x80");
}

TEST(EncodingConversion, IllFormedUtf8FollowsQt)
{
    for (std::string const& text :
         {"\xff"s, "a\x80z"s, "\xc3"s, "\xc3z"s, "\xe4\xb8"s, "\xe4\xb8z"s, "\xf0\x9f\x98"s,
          "\xc0\x80"s, "\xe0\x80\x80"s, "\xed\xa0\x80"s, "\xed\xa0\xbd\xed\xb8\x80"s,
          "\xf4\x90\x80\x80"s, "\xf8\x88\x80\x80\x80"s, "\xef\xbb\xbf"s,
          "\xef\xbb\xbf"
          "abc"s,
          "abc\xef\xbb\xbf"s}) {
        SCOPED_TRACE(testing::PrintToString(text));
        QString const expected =
            QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        EXPECT_EQ(*Utf8ToUtf16(text), expected.toStdU16String());
    }
    EXPECT_EQ(*Utf8ToUtf16("a\xffz"), u"a\ufffdz");
}

TEST(EncodingConversion, IllFormedUtf16FollowsQt)
{
    char16_t const high = 0xd83d;
    char16_t const low = 0xde00;
    for (std::u16string const& text :
         {std::u16string{high}, std::u16string{low}, std::u16string{low, high},
          std::u16string{high, high, low}, std::u16string{u'a', high, u'z'},
          std::u16string{u'a', low, u'z'}, std::u16string{0xfeff, u'a'},
          std::u16string{0xfffe, u'a'}, std::u16string{0xffff}}) {
        SCOPED_TRACE(testing::PrintToString(text));
        QString const expected(reinterpret_cast<QChar const*>(text.data()),
                               static_cast<qsizetype>(text.size()));
        EXPECT_EQ(*Utf16ToUtf8(text), expected.toUtf8().toStdString());
    }
    EXPECT_EQ(*Utf16ToUtf8(std::u16string{u'a', low, u'z'}), "a?z");
}

TEST(EncodingConversion, IllFormedWideTextFollowsQt)
{
    for (std::wstring const& text :
         {std::wstring{0xd83d}, std::wstring{0xde00}, std::wstring{0xd83d, 0xde00},
          std::wstring{0x110000}, std::wstring{L'a', 0x7fffffff, L'z'}, std::wstring{-1, L'z'},
          std::wstring{0xfeff, L'a'}, std::wstring{L'a', 0xfeff}, std::wstring{0xffff}}) {
        SCOPED_TRACE(testing::PrintToString(text));
        QString const expected = QString::fromUcs4(reinterpret_cast<char32_t const*>(text.data()),
                                                   static_cast<qsizetype>(text.size()));
        EXPECT_EQ(*StdWStrToUtf8(text), expected.toUtf8().toStdString());
    }
}

TEST(EncodingConversion, LeadingByteOrderMarkIsDroppedFromUtf8AndWideTextOnly)
{
    EXPECT_EQ(*Utf8ToUtf16("\xef\xbb\xbfz"), u"z");
    EXPECT_EQ(*Utf8ToUtf16("z\xef\xbb\xbf"), u"z\ufeff");
    EXPECT_EQ(*StdWStrToUtf8(L"\ufeffz"), "z");
    EXPECT_EQ(*Utf16ToUtf8(u"\ufeffz"), "\xef\xbb\xbfz");
}

TEST(EncodingConversion, DeleterIsThePlainFunctionCustomDelete)
{
    auto const utf16 = Utf8ToUtf16("a");
    auto const* const deleteUtf16 = utf16.get_deleter().target<void (*)(std::u16string*)>();
    ASSERT_NE(deleteUtf16, nullptr);
    EXPECT_EQ(*deleteUtf16, &CustomDelete<std::u16string>);
    auto const fromUtf16 = Utf16ToUtf8(u"a");
    auto const* const deleteFromUtf16 = fromUtf16.get_deleter().target<void (*)(std::string*)>();
    ASSERT_NE(deleteFromUtf16, nullptr);
    EXPECT_EQ(*deleteFromUtf16, &CustomDelete<std::string>);
    auto const fromWide = StdWStrToUtf8(L"a");
    auto const* const deleteFromWide = fromWide.get_deleter().target<void (*)(std::string*)>();
    ASSERT_NE(deleteFromWide, nullptr);
    EXPECT_EQ(*deleteFromWide, &CustomDelete<std::string>);
}

TEST(EncodingConversion, ReleaseCallsTheDeleterExactlyOnce)
{
    int calls = 0;
    auto const counting = [&calls](auto owner, bool byReset) {
        auto const release = owner.get_deleter();
        owner.get_deleter() = [&calls, release](auto* text) {
            ++calls;
            release(text);
        };
        if (byReset)
            owner.reset();
    };
    for (bool const byReset : {true, false}) {
        CAllocationCounter const during;
        calls = 0;
        counting(Utf8ToUtf16(std::string(100, 'x')), byReset);
        counting(Utf16ToUtf8(std::u16string(100, u'x')), byReset);
        counting(StdWStrToUtf8(std::wstring(100, L'x')), byReset);
        EXPECT_EQ(calls, 3);
        EXPECT_EQ(during.Live(), 0);
    }
}

TEST(EncodingConversion, ShortTextAllocatesTheStringAlone)
{
    CAllocationCounter const during;
    auto const narrow = Utf16ToUtf8(u"a");
    EXPECT_EQ(during.Count(), 1u);
    auto const wide = StdWStrToUtf8(L"a");
    EXPECT_EQ(during.Count(), 2u);
    auto const utf16 = Utf8ToUtf16("a");
    EXPECT_EQ(during.Count(), 3u);
}

namespace
{
struct SConversion
{
    char const* name;
    void (*convert)();
};

SConversion const Conversions[] = {
    {"Utf8ToUtf16", [] { Utf8ToUtf16("forty characters, which go onto the heap"); }},
    {"Utf16ToUtf8", [] { Utf16ToUtf8(u"forty characters, which go onto the heap"); }},
    {"StdWStrToUtf8", [] { StdWStrToUtf8(L"forty characters, which go onto the heap"); }},
};

class EncodingConversionFailure : public testing::TestWithParam<SConversion>
{
};
} // namespace

TEST_P(EncodingConversionFailure, OfEachAllocationByNewIsBadAllocAndLeaksNothing)
{
    CAllocationCounter const during;
    int const failures =
        FailEachAllocation(GetParam().convert, [&] { EXPECT_EQ(during.Live(), 0); });
    EXPECT_GE(failures, 2);
    EXPECT_EQ(during.Live(), 0);
}

TEST_P(EncodingConversionFailure, OfEachAllocationByMallocIsBadAllocAndLeaksNothing)
{
    if (!CanFailMalloc())
        GTEST_SKIP() << "the sanitizer owns malloc";
    CAllocationCounter const during;
    int const failures = FailEachAllocation(
        GetParam().convert, [&] { EXPECT_EQ(during.Live(), 0); }, EAllocator::Malloc);
    EXPECT_GE(failures, 3); // Qt's as well as the strings'
    EXPECT_EQ(during.Live(), 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, EncodingConversionFailure, testing::ValuesIn(Conversions),
                         [](auto const& row) { return row.param.name; });
