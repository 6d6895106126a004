#include <TextLayout.h>

#include <gmock/gmock.h>

using testing::ElementsAre;

TEST(Printable, KeepsTextAndEscapesWhatWouldCommandTheTerminal)
{
    struct CRow
    {
        char const* m_Name;
        std::string m_Text;
        std::string m_Printable;
    };
    CRow const rows[] = {
        {"plain", "GPL-3 (old)", "GPL-3 (old)"},
        {"UTF-8", "漢é😀", "漢é😀"},
        {"escape sequence", "\x1b[31mred", "\\x1B[31mred"},
        {"line feed", "a\nb\r", "a\\x0Ab\\x0D"},
        {"NUL and DEL", std::string("\0\x7F", 2), "\\x00\\x7F"},
        {"C1 control",
         "\xC2\x9B"
         "2J",
         "\\xC2\\x9B2J"},
        {"right-to-left override",
         "\xE2\x80\xAE"
         "x",
         "\\xE2\\x80\\xAEx"},
        {"Latin-1", "caf\xE9!", "caf\\xE9!"},
        {"truncated", "\xE6\xBC", "\\xE6\\xBC"},
        {"overlong", "\xE0\x80\xAF", "\\xE0\\x80\\xAF"},
        {"surrogate", "\xED\xA0\x80", "\\xED\\xA0\\x80"},
        {"beyond Unicode", "\xF4\x90\x80\x80", "\\xF4\\x90\\x80\\x80"},
    };
    for (CRow const& row : rows) {
        SCOPED_TRACE(row.m_Name);
        EXPECT_EQ(Printable(row.m_Text), row.m_Printable);
    }
}

TEST(Printable, KeepsLineFeedsOnRequest)
{
    EXPECT_EQ(Printable("a\nb\t", true), "a\nb\\x09");
}

TEST(DisplayWidth, CountsColumnsNotBytes)
{
    EXPECT_EQ(DisplayWidth(""), 0u);
    EXPECT_EQ(DisplayWidth("abc"), 3u);
    EXPECT_EQ(DisplayWidth("é"), 1u);
    EXPECT_EQ(DisplayWidth("漢字"), 4u);
    EXPECT_EQ(DisplayWidth("e\xCC\x81"), 1u) << "a combining accent takes no column";
}

TEST(ElideStart, KeepsTheEndOfALongText)
{
    EXPECT_EQ(ElideStart("folder/name", 11, "…"), "folder/name");
    EXPECT_EQ(ElideStart("folder/name", 10, "…"), "…lder/name");
    EXPECT_EQ(ElideStart("folder/name", 7, "..."), "...name");
    EXPECT_EQ(ElideStart("漢字漢字", 6, "…"), "…漢字") << "half a character is not shown";
    EXPECT_EQ(ElideStart("name", 3, "..."), "...");
    EXPECT_EQ(ElideStart("name", 2, "..."), "");
    EXPECT_EQ(ElideStart("name", 0, ""), "");
}

TEST(Wrap, BreaksAtBlanksThenAnywhere)
{
    EXPECT_THAT(Wrap("", 10), ElementsAre(""));
    EXPECT_THAT(Wrap("one two three", 13), ElementsAre("one two three"));
    EXPECT_THAT(Wrap("one two three", 12), ElementsAre("one two", "three"));
    EXPECT_THAT(Wrap("one two three", 7), ElementsAre("one two", "three"));
    EXPECT_THAT(Wrap("one two three", 4), ElementsAre("one", "two", "thre", "e"));
    EXPECT_THAT(Wrap("abcdef", 2), ElementsAre("ab", "cd", "ef"));
    EXPECT_THAT(Wrap("漢字", 1), ElementsAre("漢", "字")) << "one character at least";
}

TEST(Wrap, KeepsLineFeedsAndTheIndentationBehindThem)
{
    EXPECT_THAT(Wrap("a\n   b = 1", 80), ElementsAre("a", "   b = 1"));
    EXPECT_THAT(Wrap("a\n\nb", 80), ElementsAre("a", "", "b"));
    EXPECT_THAT(Wrap("one two", std::string::npos), ElementsAre("one two"));
}

TEST(ByteText, ChoosesTheUnitThatLeavesFewDigits)
{
    EXPECT_EQ(ByteText(0), "0 B");
    EXPECT_EQ(ByteText(1023), "1023 B");
    EXPECT_EQ(ByteText(1024), "1.0 KiB");
    EXPECT_EQ(ByteText(1536), "1.5 KiB");
    EXPECT_EQ(ByteText(1048575), "1.0 MiB");
    EXPECT_EQ(ByteText(5ULL << 30U), "5.0 GiB");
    EXPECT_EQ(ByteText(UINTMAX_MAX), "16.0 EiB");
}
