#include <BaseUtilities/CBasicFlatString.h>

#include <BaseUtilities/TEST_STATUS.h>

#include "Allocations.h"
#include "Messages.h"
#include "Threads.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <stdexcept>
#include <string>
#include <tuple>

namespace
{
using Indent = std::tuple<unsigned long, char>;
Indent const none(0, '\0');

// DoBuild takes pointers; arrays are for its callers to turn into them.
char const* Text(char const* text)
{
    return text;
}

wchar_t const* Wide(wchar_t const* text)
{
    return text;
}

template <class... Args>
std::string Build(basic_sv_wrapper<char> const& fmt, Args const&... args)
{
    CSimpleBuffer out;
    CBasicFlatString::DoBuild(out, none, fmt, args...);
    return out.Get(0);
}

/// The first `size` bytes of an array that must already be that large.
std::string Bytes(CSimpleBuffer& buffer, unsigned long size)
{
    CAllocationCounter const during;
    char const* const start = buffer.Get(size);
    EXPECT_EQ(during.Count(), 0u) << "smaller than " << size;
    return std::string(start, size);
}

enum Unscoped { UnscopedSeven = 7 };

/// Says, at the very end of its thread, what is then still allocated.
class CThreadEndReport
{
public:
    explicit CThreadEndReport(long& live) : m_Live(live) {}
    CThreadEndReport(CThreadEndReport const&) = delete;
    CThreadEndReport& operator=(CThreadEndReport const&) = delete;
    ~CThreadEndReport() { m_Live = m_Counter.Live(); }

private:
    CAllocationCounter const m_Counter;
    long& m_Live;
};
} // namespace

TEST(CBasicFlatString, PassesEachArgumentAsItsOwnValue)
{
    int const object = 0;
    char expectedPointer[32];
    std::snprintf(expectedPointer, sizeof expectedPointer, "%p", static_cast<void const*>(&object));
    char const* const text = "text";
    struct
    {
        char const* name;
        std::string built;
        std::string expected;
    } const rows[] = {
        {"no arguments", Build("plain"), "plain"},
        {"percent sign", Build("100%%"), "100%"},
        {"char const*", Build("<%s>", text), "<text>"},
        {"two char const*", Build("%s and %s", text, text), "text and text"},
        {"char", Build("%c", 'x'), "x"},
        {"signed char", Build("%hhd", static_cast<signed char>(-128)), "-128"},
        {"unsigned char", Build("%u", static_cast<unsigned char>(255)), "255"},
        {"short", Build("%d", static_cast<short>(-32768)), "-32768"},
        {"unsigned short", Build("%u", static_cast<unsigned short>(65535)), "65535"},
        {"int", Build("%d", -2147483647), "-2147483647"},
        {"unsigned int", Build("%u", 4294967295u), "4294967295"},
        {"long", Build("%ld", -9000000000L), "-9000000000"},
        {"unsigned long", Build("%lu", 18446744073709551615UL), "18446744073709551615"},
        {"long long", Build("%lld", -9000000000LL), "-9000000000"},
        {"float", Build("%.2f", 1.5f), "1.50"},
        {"double", Build("%.3e", 12345.678), "1.235e+04"},
        {"long double", Build("%.1Lf", 2.5L), "2.5"},
        {"bool", Build("%d", true), "1"},
        {"pointer", Build("%p", &object), expectedPointer},
        {"nullptr", Build("%p", nullptr), "(nil)"},
        {"unscoped enumeration", Build("%u", UnscopedSeven), "7"},
        {"TEST_STATUS", Build("%x", TEST_STATUS_ERROR), "40000000"},
        {"wide text", Build("%ls", Wide(L"wide")), "wide"},
        {"width and precision", Build("%*.*f", 7, 2, 1.0), "   1.00"},
        {"mixed", Build("%s %d %lu %.1f", text, 1, 2UL, 3.0), "text 1 2 3.0"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(row.built, row.expected) << row.name;
}

// Deliberate in the library: the 8-bit value is widened without sign.
TEST(CBasicFlatString, FileTypePrintsAsItsUnsignedByte)
{
    using T = std::filesystem::file_type;
    struct
    {
        char const* name;
        T type;
        char const* expected;
    } const rows[] = {
        {"none", T::none, "0 000"},           {"not_found", T::not_found, "255 0ff"},
        {"regular", T::regular, "1 001"},     {"directory", T::directory, "2 002"},
        {"symlink", T::symlink, "3 003"},     {"block", T::block, "4 004"},
        {"character", T::character, "5 005"}, {"fifo", T::fifo, "6 006"},
        {"socket", T::socket, "7 007"},       {"unknown", T::unknown, "8 008"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(Build("%d %03x", row.type, row.type), row.expected) << row.name;
}

TEST(CBasicFlatString, FormatsOnlyTheSliceOfAnUnterminatedView)
{
    std::string const text = "before %d after";
    EXPECT_EQ(Build(basic_sv_wrapper<char>(text.data() + 7, 2), 42), "42");
    EXPECT_EQ(Build(basic_sv_wrapper<char>(text.data(), 9), 42), "before 42");
}

TEST(CBasicFlatString, LaterFormatReplacesALongerOne)
{
    EXPECT_EQ(Build("a rather long format %d", 1), "a rather long format 1");
    EXPECT_EQ(Build("%d", 2), "2");
}

TEST(CBasicFlatString, EmptyFormatGivesEmptyText)
{
    EXPECT_EQ(Build({}), "");
    EXPECT_EQ(Build(""), "");
    EXPECT_EQ(Build(basic_sv_wrapper<char>("text", 0), 1, Text("unused")), "");
}

TEST(CBasicFlatString, FormatEndsAtItsFirstNul)
{
    EXPECT_EQ(Build(basic_sv_wrapper<char>("a%d\0b%s", 7), 1), "a1");
}

TEST(CBasicFlatString, NulOfAnArgumentStaysInTheBytes)
{
    CSimpleBuffer out;
    CBasicFlatString::DoBuild(out, none, "a%cb", '\0');
    EXPECT_EQ(Bytes(out, 4), std::string("a\0b\0", 4));
}

TEST(CBasicFlatString, FormatsAndTextsOfEveryLengthComeOutWhole)
{
    for (unsigned long const length :
         {1ul, 511ul, 512ul, 513ul, 1022ul, 1023ul, 1024ul, 1025ul, 2047ul, 2048ul, 100000ul}) {
        SCOPED_TRACE(length);
        std::string const text(length, 'x');
        EXPECT_EQ(Build(text), text);
        EXPECT_EQ(Build("%s", text.c_str()), text);
    }
}

TEST(CBasicFlatString, FillCharactersPrecedeTheText)
{
    struct
    {
        char const* name;
        Indent indent;
        std::string expected;
    } const rows[] = {
        {"none", Indent(0, '*'), "text"},
        {"one", Indent(1, ' '), " text"},
        {"three stars", Indent(3, '*'), "***text"},
        {"NULs", Indent(2, '\0'), std::string("\0\0text", 6)},
        {"more than a step of the buffer", Indent(3000, '-'), std::string(3000, '-') + "text"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        CSimpleBuffer out;
        CBasicFlatString::DoBuild(out, row.indent, "%s", Text("text"));
        // With its terminator.
        EXPECT_EQ(Bytes(out, row.expected.size() + 1), std::string(row.expected + '\0'));
    }
}

TEST(CBasicFlatString, EmptyTextIsOnlyFilled)
{
    CSimpleBuffer out;
    CBasicFlatString::DoBuild(out, Indent(2, '.'), "");
    EXPECT_STREQ(out.Get(0), "..");
}

TEST(CBasicFlatString, CopiesTheWholeWorkBuffer)
{
    RunOnNewThread([] {
        CSimpleBuffer first;
        CBasicFlatString::DoBuild(first, none, std::string(2000, 'x'));
        CSimpleBuffer second;
        CBasicFlatString::DoBuild(second, none, "ab");
        // The rest of the longer message is still behind the shorter one.
        std::string const bytes = Bytes(second, 2048);
        EXPECT_EQ(bytes.substr(0, 2001), "ab" + ('\0' + std::string(1997, 'x')) + '\0');
        CSimpleBuffer third;
        CBasicFlatString::DoBuild(third, none, "ab");
        EXPECT_TRUE(second == third);
    });
}

TEST(CBasicFlatString, LargerOutputKeepsItsOwnArray)
{
    RunOnNewThread([] {
        CSimpleBuffer out;
        char* const array = static_cast<char*>(std::memset(out.Get(4096), '=', 4096));
        CBasicFlatString::DoBuild(out, none, "ab");
        EXPECT_EQ(out.Get(4096), array);
        EXPECT_STREQ(array, "ab");
        EXPECT_EQ(array[1024], '='); // behind the copy of the work buffer
    });
}

TEST(CBasicFlatString, FormattingFailureThrowsRuntimeErrorAndKeepsBothBuffers)
{
    CPlainLocale const plain;
    struct
    {
        char const* name;
        void (*fail)(CSimpleBuffer&);
    } const rows[] = {
        {"wide text without bytes in the locale",
         [](CSimpleBuffer& out) {
             CBasicFlatString::DoBuild(out, Indent(2, '*'), "%d %s %ls", 1, Text("x"),
                                       Wide(InvalidWide));
         }},
        {"width beyond int",
         [](CSimpleBuffer& out) {
             CBasicFlatString::DoBuild(out, Indent(2, '*'), "%2147483648d %s %ls", 1, Text("x"),
                                       Wide(L"x"));
         }},
        {"width beyond any number",
         [](CSimpleBuffer& out) {
             CBasicFlatString::DoBuild(out, Indent(2, '*'), "%99999999999d %s %ls", 1, Text("x"),
                                       Wide(L"x"));
         }},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        CSimpleBuffer out;
        CBasicFlatString::DoBuild(out, none, "%d %s %ls", 1, std::string(50, 'x').c_str(),
                                  Wide(L""));
        out.Get(0)[0] = '!'; // the two buffers now differ
        CSimpleBuffer const before(out);
        CAllocationCounter const during;
        ExpectFormattingFailure(Catch([&] { row.fail(out); }));
        EXPECT_EQ(during.Live(), 0);
        EXPECT_TRUE(out == before);

        CSimpleBuffer next;
        CBasicFlatString::DoBuild(next, none, "%d %s %ls", 1, Text("y"), Wide(L""));
        EXPECT_EQ(Bytes(next, 10), std::string("1 y \0xxxxx", 10));
    }
}

TEST(CBasicFlatString, ViewLongerThanAStringThrowsLengthErrorAndKeepsTheOutput)
{
    CSimpleBuffer out;
    CBasicFlatString::DoBuild(out, none, "kept");
    basic_sv_wrapper<char> const endless("x", std::numeric_limits<unsigned long>::max() / 2);
    EXPECT_THROW(CBasicFlatString::DoBuild(out, none, endless), std::length_error);
    EXPECT_STREQ(out.Get(0), "kept");
}

TEST(CBasicFlatString, FirstMessageOfAThreadMakesItsBuffersAndLaterOnesAllocateNothing)
{
    RunOnNewThread([] {
        CSimpleBuffer out;
        CAllocationCounter const first;
        CBasicFlatString::DoBuild(out, none, "%d", 1);
        EXPECT_EQ(first.Count(), 3u); // the format, the work buffer, the output
        CAllocationCounter const later;
        for (int i = 0; i < 100; ++i)
            CBasicFlatString::DoBuild(out, none, "%d and more", i);
        EXPECT_EQ(later.Count(), 0u);
        EXPECT_STREQ(out.Get(0), "99 and more");
    });
}

TEST(CBasicFlatString, FormatOfUpTo512CharactersNeedsNoAllocation)
{
    RunOnNewThread([] {
        CSimpleBuffer out;
        CBasicFlatString::DoBuild(out, none, "x");
        std::string const fits(512, 'x');
        std::string const longer(513, 'x');
        CAllocationCounter const whenItFits;
        CBasicFlatString::DoBuild(out, none, fits);
        EXPECT_EQ(whenItFits.Count(), 0u);
        CAllocationCounter const whenLonger;
        CBasicFlatString::DoBuild(out, none, longer);
        EXPECT_EQ(whenLonger.Count(), 1u);
        CBasicFlatString::DoBuild(out, none, longer);
        EXPECT_EQ(whenLonger.Count(), 1u);
    });
}

TEST(CBasicFlatString, BuffersGrowOnlyWhenFillTextAndTerminatorNeedIt)
{
    RunOnNewThread([] {
        CSimpleBuffer out;
        CBasicFlatString::DoBuild(out, none, "%s", Text("x"));
        std::string const text(1020, 'x');
        struct
        {
            char const* name;
            unsigned long fill;
            unsigned long allocations; // one for the work buffer, one for the output
        } const rows[] = {
            {"the last that fits", 3, 0},
            {"one more", 4, 2},
            {"the last of two steps", 1027, 0},
            {"one more than two steps", 1028, 2},
            {"shorter again", 0, 0},
        };
        for (auto const& row : rows) {
            SCOPED_TRACE(row.name);
            CAllocationCounter const during;
            CBasicFlatString::DoBuild(out, Indent(row.fill, '-'), "%s", text.c_str());
            EXPECT_EQ(during.Count(), row.allocations);
            EXPECT_EQ(out.Get(0), std::string(row.fill, '-') + text);
        }
    });
}

TEST(CBasicFlatString, EachListOfArgumentTypesHasBuffersOfItsOwn)
{
    RunOnNewThread([] {
        CSimpleBuffer out;
        CBasicFlatString::DoBuild(out, none, "%d", 1);
        CAllocationCounter const during;
        CBasicFlatString::DoBuild(out, none, "%u", 1u);
        EXPECT_EQ(during.Count(), 2u); // the format and the work buffer
        CBasicFlatString::DoBuild(out, none, "%d", 2);
        EXPECT_EQ(during.Count(), 2u);
    });
}

TEST(CBasicFlatString, EachThreadHasBuffersOfItsOwnUntilItEnds)
{
    auto const liveAtEnd = [](bool builds) {
        long live = 0;
        RunOnNewThread([&] {
            // Made before the buffers, so it goes after them.
            thread_local CThreadEndReport const report(live);
            if (!builds)
                return;
            CSimpleBuffer out;
            CAllocationCounter const during;
            CBasicFlatString::DoBuild(out, none, "%d", 1);
            out = CSimpleBuffer();
            EXPECT_EQ(during.Live(), 2);
        });
        return live;
    };
    // A thread also releases what its creator allocated for it.
    EXPECT_EQ(liveAtEnd(true), liveAtEnd(false));
}

TEST(CBasicFlatString, RecoversAfterAFailureOfAnyOfTheFirstAllocations)
{
    for (unsigned long number = 1; number <= 4; ++number) {
        RunOnNewThread([&] {
            SCOPED_TRACE(number);
            CSimpleBuffer out;
            {
                CAllocationFailure const failure(number);
                bool threw = false;
                try {
                    CBasicFlatString::DoBuild(out, none, "%d", 1);
                } catch (std::bad_alloc const&) {
                    threw = true;
                }
                EXPECT_EQ(threw, number <= 3); // the format, the work buffer, the output
                EXPECT_EQ(failure.Happened(), threw);
            }
            CBasicFlatString::DoBuild(out, none, "%d", 2);
            EXPECT_STREQ(out.Get(0), "2");
        });
    }
}

TEST(CBasicFlatString, RecoversAfterAFailureToGrow)
{
    struct
    {
        char const* name;
        unsigned long number;
        unsigned long nextLength;
    } const rows[] = {
        {"work buffer, then a shorter text", 1, 10},  {"work buffer, then the same", 1, 2000},
        {"work buffer, then a longer text", 1, 5000}, {"output, then a shorter text", 2, 10},
        {"output, then the same", 2, 2000},           {"output, then a longer text", 2, 5000},
    };
    for (auto const& row : rows) {
        RunOnNewThread([&] {
            SCOPED_TRACE(row.name);
            CSimpleBuffer out;
            std::string const text(5000, 'x');
            CBasicFlatString::DoBuild(out, none, "%.*s", 10, text.c_str());
            {
                CAllocationFailure const failure(row.number);
                EXPECT_THROW(CBasicFlatString::DoBuild(out, none, "%.*s", 2000, text.c_str()),
                             std::bad_alloc);
            }
            int const length = static_cast<int>(row.nextLength);
            CBasicFlatString::DoBuild(out, none, "%.*s", length, text.c_str());
            EXPECT_EQ(out.Get(0), std::string(row.nextLength, 'x'));
        });
    }
}

TEST(CBasicFlatString, TakesAsMuchRoomAfterAFailureToGrowAsWithoutOne)
{
    struct
    {
        char const* name;
        unsigned long fill;
        unsigned long nextFill;
        unsigned long allocations; // for the next message: the work buffer, the output
    } const rows[] = {
        {"the longest for one step, then that again", 3, 3, 0},
        {"the longest for one step, then one more", 3, 4, 2},
        {"the shortest for two steps, then that again", 4, 4, 0},
    };
    std::string const text(1020, 'x');
    std::string const longer(2000, 'x');
    for (auto const& row : rows) {
        RunOnNewThread([&] {
            SCOPED_TRACE(row.name);
            CSimpleBuffer out;
            CBasicFlatString::DoBuild(out, none, "%s", Text("x"));
            {
                CAllocationFailure const failure(1);
                EXPECT_THROW(CBasicFlatString::DoBuild(out, none, "%s", longer.c_str()),
                             std::bad_alloc);
            }
            CBasicFlatString::DoBuild(out, Indent(row.fill, '-'), "%s", text.c_str());
            CAllocationCounter const during;
            CBasicFlatString::DoBuild(out, Indent(row.nextFill, '-'), "%s", text.c_str());
            EXPECT_EQ(during.Count(), row.allocations);
            EXPECT_EQ(out.Get(0), std::string(row.nextFill, '-') + text);
        });
    }
}
