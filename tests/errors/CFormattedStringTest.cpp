#include <BaseUtilities/CFormattedString.h>

#include <BaseUtilities/CSafeString.h>

#include "Allocations.h"
#include "Messages.h"
#include "Threads.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <new>
#include <string>
#include <tuple>
#include <type_traits>

static_assert(std::is_same_v<decltype(CFormattedString::m_sIndentLevel), unsigned long>);
static_assert(sizeof(CFormattedString::m_sIndentLevel) == 8);
static_assert(std::is_same_v<decltype(CFormattedString::EMPTY_STR), char const[1]>);
static_assert(std::is_convertible_v<CFormattedString, CSafeString>);
static_assert(!std::is_copy_constructible_v<CFormattedString>);
static_assert(sizeof(CFormattedString) == 40, "the indentation, the buffer, the text pointer");

namespace
{
// Read before anything of this program runs.
unsigned long const levelAtLoad = CFormattedString::m_sIndentLevel;
} // namespace

TEST(CFormattedString, LevelIsZeroAtLoad)
{
    EXPECT_EQ(levelAtLoad, 0u);
}

TEST(CFormattedString, EmptyStrIsTheEmptyText)
{
    EXPECT_EQ(CFormattedString::EMPTY_STR[0], '\0');
}

TEST(CFormattedString, TwoSpacesForEachLevelPrecedeTheText)
{
    struct
    {
        char const* name;
        unsigned long level;
        std::string spaces;
    } const rows[] = {
        {"level 0", 0, ""},
        {"level 1", 1, "  "},
        {"level 3", 3, "      "},
        {"level 1000", 1000, std::string(2000, ' ')},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        CIndentLevel const level(row.level);
        EXPECT_EQ(CFormattedString("text").get(), row.spaces + "text");
        EXPECT_EQ(CFormattedString("%s: %d", "text", 1).get(), row.spaces + "text: 1");
        EXPECT_EQ(CFormattedString("").get(), row.spaces);
    }
}

TEST(CFormattedString, LevelCountsAtConstructionOnly)
{
    CIndentLevel const none(0);
    CFormattedString const before("text");
    CIndentLevel const three(3);
    EXPECT_STREQ(before.get(), "text");
    CFormattedString const after("text");
    EXPECT_STREQ(after.get(), "      text");
}

TEST(CFormattedString, EmptyFormatGivesEmptyTextThatIsNotNull)
{
    EXPECT_STREQ(CFormattedString("").get(), "");
    EXPECT_STREQ(CFormattedString({}).get(), "");
    EXPECT_STREQ(CFormattedString(basic_sv_wrapper<char>("text", 0), 1).get(), "");
}

TEST(CFormattedString, TakesEveryTypeOfArgument)
{
    char array[] = "array";
    char* const writable = array;
    char const* const constant = "constant";
    std::string const standard = "standard";
    CSafeString const safe("safe");
    struct
    {
        char const* name;
        CSafeString text;
        std::string expected;
    } const rows[] = {
        {"literal", CFormattedString("<%s>", "literal"), "<literal>"},
        {"array", CFormattedString("<%s>", array), "<array>"},
        {"char*", CFormattedString("<%s>", writable), "<array>"},
        {"char const*", CFormattedString("<%s>", constant), "<constant>"},
        {"std::string", CFormattedString("<%s>", standard), "<standard>"},
        {"CSafeString", CFormattedString("<%s>", safe), "<safe>"},
        {"temporaries", CFormattedString("%s%s", std::string("a"), CSafeString("b")), "ab"},
        {"wide literal", CFormattedString("<%ls>", L"wide"), "<wide>"},
        {"int", CFormattedString("%d", -1), "-1"},
        {"file type", CFormattedString("%d", std::filesystem::file_type::not_found), "255"},
        {"two literals", CFormattedString("%s %s", "a", "longer"), "a longer"},
    };
    for (auto const& row : rows)
        EXPECT_STREQ(row.text.get(), row.expected.c_str()) << row.name;
}

TEST(CFormattedString, TakesNumbersAsIdentifiersDo)
{
    unsigned short const s = 0xBEEF;
    unsigned char const b = 0x0F;
    CFormattedString const text("%08X-%04X-%04X-%02X%02X%02X%02X%02X%02X%02X%02X", 0xDEADBEEFu, s,
                                s, b, b, b, b, b, b, b, b);
    EXPECT_STREQ(text.get(), "DEADBEEF-BEEF-BEEF-0F0F0F0F0F0F0F0F");
}

TEST(CFormattedString, KeepsItsTextWhenOthersAreBuilt)
{
    CFormattedString const first("%s", "the first text");
    CFormattedString const second("%s", std::string(3000, 'x'));
    EXPECT_STREQ(first.get(), "the first text");
    EXPECT_EQ(second.get(), std::string(3000, 'x'));
}

TEST(CFormattedString, ConvertsToASafeStringOfItsTextUpToTheFirstNul)
{
    CFormattedString const formatted("a%cb", '\0');
    CSafeString const text = formatted;
    EXPECT_EQ(text.size(), 1u);
    EXPECT_STREQ(text.get(), "a");
    EXPECT_NE(text.get(), formatted.get());
}

TEST(CFormattedString, HoldsIndentationThenBufferThenText)
{
    CIndentLevel const level(3);
    CFormattedString formatted("text");
    char* const bytes = reinterpret_cast<char*>(&formatted);
    using Indent = std::tuple<unsigned long, char>;
    EXPECT_EQ(*std::launder(reinterpret_cast<Indent*>(bytes)), Indent(6, ' '));
    auto* const buffer = std::launder(reinterpret_cast<CSimpleBuffer*>(bytes + sizeof(Indent)));
    EXPECT_EQ(buffer->Get(0), formatted.get());
    char const* text = nullptr;
    std::memcpy(&text, bytes + sizeof(Indent) + sizeof(CSimpleBuffer), sizeof text);
    EXPECT_EQ(text, formatted.get());
}

TEST(CFormattedString, FormattingFailureLeavesTheConstructorAndNoLeak)
{
    CPlainLocale const plain;
    CAllocationCounter const during;
    ExpectFormattingFailure(Catch([] { CFormattedString const text("%2147483648d", 1); }));
    ExpectFormattingFailure(Catch([] { CFormattedString const text("%ls", InvalidWide); }));
    long const threadsBuffers = 2; // the format of each; no work buffer was needed
    EXPECT_LE(during.Live(), threadsBuffers);
    EXPECT_STREQ(CFormattedString("%d", 1).get(), "1");
}

TEST(CFormattedString, AllocatesOnlyItsOwnBufferOnceTheThreadIsWarm)
{
    CFormattedString("%s %d", "warm", 1);
    CAllocationCounter const during;
    {
        CFormattedString const text("%s %d", "text", 2);
        EXPECT_EQ(during.Count(), 1u);
    }
    EXPECT_EQ(during.Live(), 0);
}

TEST(CFormattedString, TextsOfEveryKindAndLengthShareTheThreadsBuffers)
{
    RunOnNewThread([] {
        char array[] = "array";
        CFormattedString("%s", "a");
        CAllocationCounter const during;
        CFormattedString("%s", "a longer literal");
        CFormattedString("%s", array);
        CFormattedString("%s", array + 1);
        CFormattedString("%s", static_cast<char const*>(array));
        EXPECT_EQ(during.Count(), 4u); // the buffer of each object
        std::string const standard = "standard";
        CSafeString const safe("safe");
        CAllocationCounter const owners;
        CFormattedString("%s", standard);
        CFormattedString("%s", safe);
        EXPECT_EQ(owners.Count(), 2u);
    });
}

TEST(CFormattedString, FailedAllocationLeavesTheConstructorAndNoLeak)
{
    CFormattedString("%s %d", "warm", 1);
    CAllocationCounter const during;
    int const failures = FailEachAllocation([] { CFormattedString("%s %d", "text", 2); },
                                            [&] { EXPECT_EQ(during.Live(), 0); });
    EXPECT_EQ(failures, 1);
    EXPECT_STREQ(CFormattedString("%s %d", "text", 3).get(), "text 3");
}
