#include <BaseUtilities/DoThrow.h>

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/TQAppExitException.h>

#include "Allocations.h"
#include "Messages.h"
#include "Threads.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <typeinfo>

namespace
{
constexpr TEST_STATUS OtherStatus = TEST_STATUS(0x12345678);

template <class... Args>
Caught CatchThrown(TEST_STATUS status, basic_sv_wrapper<char> const& fmt, Args const&... args)
{
    return Catch([&] { DoThrow<TQRunTimeException>(status, fmt, args...); });
}

void ExpectCaught(Caught const& caught, std::type_info const& type, std::string const& text,
                  TEST_STATUS status)
{
    ASSERT_NE(caught.type, nullptr) << "nothing was thrown";
    EXPECT_EQ(*caught.type, type);
    EXPECT_EQ(caught.text, text);
    EXPECT_EQ(caught.status, status);
}

/// An exception of an application's own, which tells how it was constructed.
struct Recorded
{
    Recorded() : m_Form("default") {}
    Recorded(basic_sv_wrapper<char> const& message, TEST_STATUS status)
        : m_Form("message and status"),
          m_Text(message.data(), message.size()),
          m_HasValue(message.m_HasValue),
          m_Status(status)
    {
    }
    std::string m_Form;
    std::string m_Text;
    bool m_HasValue = false;
    TEST_STATUS m_Status = TEST_STATUS(0);
};

template <class... Args>
Recorded CatchRecorded(TEST_STATUS status, basic_sv_wrapper<char> const& fmt, Args const&... args)
{
    try {
        DoThrow<Recorded>(status, fmt, args...);
    } catch (Recorded const& recorded) {
        return recorded;
    }
}

/// Allocations of `action`, which throws, made by this thread.
template <class Action>
unsigned long AllocationsOf(Action const& action)
{
    CAllocationCounter const during;
    try {
        action();
    } catch (TQException const&) {
        return during.Count();
    }
    ADD_FAILURE() << "nothing was thrown";
    return 0;
}

/// What constructing and throwing the exception costs without any formatting.
unsigned long AllocationsOfThrowing(char const* text)
{
    return AllocationsOf([&] { throw TQRunTimeException(text, OtherStatus); });
}

// Compiles without a warning only because DoThrow is known not to return.
int NeverReturns()
{
    DoThrow<TQRunTimeException>(OtherStatus, "%d", 1);
}
} // namespace

TEST(DoThrow, ThrowsTheFormattedMessageWithTheStatus)
{
    ExpectCaught(CatchThrown(OtherStatus, "%s holds %d files.", "folder", 3),
                 typeid(TQRunTimeException), "folder holds 3 files.", OtherStatus);
    ExpectCaught(CatchThrown(TEST_STATUS(0), "plain"), typeid(TQRunTimeException), "plain",
                 TEST_STATUS(0));
    EXPECT_THROW(NeverReturns(), TQRunTimeException);
}

TEST(DoThrow, ThrowsEveryClassOfTheFamilyByItsExactType)
{
    struct
    {
        char const* name;
        std::type_info const& type;
        void (*raise)();
    } const rows[] = {
        {"TQException", typeid(TQException),
         [] { DoThrow<TQException>(OtherStatus, "%s", "text"); }},
        {"TQAppException", typeid(TQAppException),
         [] { DoThrow<TQAppException>(OtherStatus, "%s", "text"); }},
        {"TQDOMDocException", typeid(TQDOMDocException),
         [] { DoThrow<TQDOMDocException>(OtherStatus, "%s", "text"); }},
        {"TQParseTreeException", typeid(TQParseTreeException),
         [] { DoThrow<TQParseTreeException>(OtherStatus, "%s", "text"); }},
        {"TQRunTimeException", typeid(TQRunTimeException),
         [] { DoThrow<TQRunTimeException>(OtherStatus, "%s", "text"); }},
        {"CTestSuiteException", typeid(CTestSuiteException),
         [] { DoThrow<CTestSuiteException>(OtherStatus, "%s", "text"); }},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        ExpectCaught(Catch(row.raise), row.type, "text", OtherStatus);
    }
}

TEST(DoThrow, ThrowsAnExitRequest)
{
    struct RestoreFlag
    {
        ~RestoreFlag() { TQAppExitException::ExceptionThrown(m_Before); }
        bool const m_Before = TQAppExitException::ExceptionThrown();
    } const restore;
    try {
        DoThrow<TQAppExitException>(OtherStatus, "leave with %d", 3);
    } catch (TQAppExitException const& request) {
        EXPECT_STREQ(request.what(), "leave with 3");
        EXPECT_EQ(request.GetStatus(), OtherStatus);
    }
}

TEST(DoThrow, ConstructsFromTheMessageViewAndTheStatus)
{
    Recorded const recorded = CatchRecorded(OtherStatus, "a%cb", 'x');
    EXPECT_EQ(recorded.m_Form, "message and status");
    EXPECT_EQ(recorded.m_Text, "axb");
    EXPECT_TRUE(recorded.m_HasValue);
    EXPECT_EQ(recorded.m_Status, OtherStatus);
}

TEST(DoThrow, TakesEveryTypeOfArgument)
{
    char array[] = "array";
    char* const writable = array;
    char const* const constant = "constant";
    std::string const standard = "standard";
    CSafeString const safe("safe");
    struct
    {
        char const* name;
        Caught caught;
        std::string expected;
    } const rows[] = {
        {"literal", CatchThrown(OtherStatus, "<%s>", "literal"), "<literal>"},
        {"array", CatchThrown(OtherStatus, "<%s>", array), "<array>"},
        {"char*", CatchThrown(OtherStatus, "<%s>", writable), "<array>"},
        {"char const*", CatchThrown(OtherStatus, "<%s>", constant), "<constant>"},
        {"std::string", CatchThrown(OtherStatus, "<%s>", standard), "<standard>"},
        {"CSafeString", CatchThrown(OtherStatus, "<%s>", safe), "<safe>"},
        {"wide literal", CatchThrown(OtherStatus, "<%ls>", L"wide"), "<wide>"},
        {"numbers", CatchThrown(OtherStatus, "%d %u %.1f", -1, 2u, 3.0), "-1 2 3.0"},
        {"mixed", CatchThrown(OtherStatus, "%s%d%s%s", standard, 1, safe, "x"), "standard1safex"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        ExpectCaught(row.caught, typeid(TQRunTimeException), row.expected, OtherStatus);
    }
}

TEST(DoThrow, TakesTheTypesThatTheLibraryItselfNames)
{
    using T = TQRunTimeException;
    using Text = char const*;
    using std::filesystem::file_type;
    struct
    {
        char const* name;
        void (*raise)();
        char const* expected;
    } const rows[] = {
        {"text", [] { DoThrow<T, Text>(OtherStatus, "<%s>", "a"); }, "<a>"},
        {"two texts", [] { DoThrow<T, Text, Text>(OtherStatus, "%s %s", "a", "b"); }, "a b"},
        {"text and file type",
         [] { DoThrow<T, Text, file_type>(OtherStatus, "%s %d", "a", file_type::fifo); }, "a 6"},
        {"std::string twice, int, text",
         [] {
             DoThrow<TQRunTimeException, std::string, std::string, int, char const*>(
                 OtherStatus, "%s %s %d %s", "a", std::string("b"), 3, "d");
         },
         "a b 3 d"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        ExpectCaught(Catch(row.raise), typeid(T), row.expected, OtherStatus);
    }
}

TEST(DoThrow, PrintsAMissingFilesTypeAs255)
{
    ExpectCaught(CatchThrown(TEST_STATUS_ERROR, "Unexpected file type for %s: %d", "file",
                             std::filesystem::file_type::not_found),
                 typeid(TQRunTimeException), "Unexpected file type for file: 255",
                 TEST_STATUS_ERROR);
}

TEST(DoThrow, FormatsOnlyTheSliceOfAnUnterminatedView)
{
    std::string const text = "before %d after";
    ExpectCaught(CatchThrown(OtherStatus, basic_sv_wrapper<char>(text.data(), 9), 42),
                 typeid(TQRunTimeException), "before 42", OtherStatus);
}

// Deliberate in the library: an empty format drops the status and all arguments.
TEST(DoThrow, EmptyFormatThrowsTheClassesDefaultsWhateverElseIsPassed)
{
    char const* const null = nullptr;
    struct
    {
        char const* name;
        Caught caught;
    } const rows[] = {
        {"literal", CatchThrown(OtherStatus, "")},
        {"default view", CatchThrown(OtherStatus, basic_sv_wrapper<char>())},
        {"length 0 with a pointer", CatchThrown(OtherStatus, basic_sv_wrapper<char>("text", 0))},
        {"with arguments", CatchThrown(OtherStatus, "", "unused", 1, std::string("unused"))},
        {"with a null text", CatchThrown(OtherStatus, "", null)},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        ExpectCaught(row.caught, typeid(TQRunTimeException), "TQRunTimeException Thrown",
                     TEST_STATUS_ERROR);
    }
    ExpectCaught(Catch([] { DoThrow<CTestSuiteException>(OtherStatus, ""); }),
                 typeid(CTestSuiteException), "CTestSuiteException Thrown", TEST_STATUS_ERROR);
    EXPECT_EQ(CatchRecorded(OtherStatus, "", 1).m_Form, "default");
}

TEST(DoThrow, EmptyFormatMakesNoBuffers)
{
    RunOnNewThread([] {
        unsigned long const thrown = AllocationsOf([] { throw TQRunTimeException(); });
        EXPECT_EQ(AllocationsOf([] { DoThrow<TQRunTimeException>(OtherStatus, "", 1); }), thrown);
    });
}

TEST(DoThrow, EmptyMessageBecomesTheClassesDefaultAndKeepsTheStatus)
{
    struct
    {
        char const* name;
        Caught caught;
    } const rows[] = {
        {"empty argument", CatchThrown(OtherStatus, "%s", "")},
        {"NUL as first character", CatchThrown(OtherStatus, "%cabc", '\0')},
        {"NUL at the start of the format", CatchThrown(OtherStatus, "\0abc")},
        {"precision 0", CatchThrown(OtherStatus, "%.0s", "text")},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        ExpectCaught(row.caught, typeid(TQRunTimeException), "TQRunTimeException Thrown",
                     OtherStatus);
    }
    Recorded const recorded = CatchRecorded(OtherStatus, "%s", "");
    EXPECT_EQ(recorded.m_Form, "message and status");
    EXPECT_EQ(recorded.m_Text, "");
    EXPECT_EQ(recorded.m_Status, OtherStatus);
}

TEST(DoThrow, MessageEndsAtItsFirstNul)
{
    ExpectCaught(CatchThrown(OtherStatus, "ab%ccd", '\0'), typeid(TQRunTimeException), "ab",
                 OtherStatus);
    EXPECT_EQ(CatchRecorded(OtherStatus, "ab%ccd", '\0').m_Text, "ab");
}

TEST(DoThrow, IndentsNothing)
{
    CIndentLevel const level(3);
    ExpectCaught(CatchThrown(OtherStatus, "%s", "text"), typeid(TQRunTimeException), "text",
                 OtherStatus);
}

TEST(DoThrow, LongMessagesComeOutWhole)
{
    for (unsigned long const length : {512ul, 513ul, 1023ul, 1024ul, 1025ul, 100000ul}) {
        SCOPED_TRACE(length);
        std::string const text(length, 'x');
        EXPECT_EQ(CatchThrown(OtherStatus, "%s", text).text, text);
        EXPECT_EQ(CatchThrown(OtherStatus, text).text, text);
    }
}

TEST(DoThrow, ShorterMessageFollowsALongerOne)
{
    EXPECT_EQ(CatchThrown(OtherStatus, "%s", "a longer message").text, "a longer message");
    EXPECT_EQ(CatchThrown(OtherStatus, "%s", "short").text, "short");
}

TEST(DoThrow, TakesTheTextOfACaughtExceptionAsArgument)
{
    Caught const caught = Catch([] {
        try {
            DoThrow<TQAppException>(OtherStatus, "inner %s", "text");
        } catch (TQException const& inner) {
            DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "outer: %s", inner.what());
        }
    });
    ExpectCaught(caught, typeid(TQRunTimeException), "outer: inner text", TEST_STATUS_ERROR);
}

TEST(DoThrow, FormattingFailureLeavesAsRuntimeErrorAndTheNextMessageIsWhole)
{
    CPlainLocale const plain;
    ExpectFormattingFailure(CatchThrown(OtherStatus, "%ls", InvalidWide));
    ExpectFormattingFailure(CatchThrown(OtherStatus, "%2147483648d", 1));
    EXPECT_EQ(CatchThrown(OtherStatus, "%ls", L"wide").text, "wide");
    EXPECT_EQ(CatchThrown(OtherStatus, "%d", 1).text, "1");
}

TEST(DoThrow, AllocatesOnlyWhatTheExceptionNeedsOnceTheThreadIsWarm)
{
    RunOnNewThread([] {
        auto const raise = [] { DoThrow<TQRunTimeException>(OtherStatus, "%s %d", "text", 1); };
        unsigned long const thrown = AllocationsOfThrowing("text 1");
        // The format, the work buffer and the output, which stay for the thread's life.
        EXPECT_EQ(AllocationsOf(raise), thrown + 3);
        EXPECT_EQ(AllocationsOf(raise), thrown);
        EXPECT_EQ(AllocationsOf(raise), thrown);
    });
}

TEST(DoThrow, LiteralsAndTextPointersOfEveryKindShareTheThreadsBuffers)
{
    RunOnNewThread([] {
        char array[] = "d";
        char* const writable = array;
        char const* const constant = array;
        unsigned long const thrown = AllocationsOfThrowing("text");
        struct
        {
            char const* name;
            std::function<void()> raise;
            unsigned long buffers;
        } const rows[] = {
            {"the first", [] { DoThrow<TQRunTimeException>(OtherStatus, "%s", "a"); }, 3},
            {"a longer one", [] { DoThrow<TQRunTimeException>(OtherStatus, "%s", "abcdef"); }, 0},
            {"an array", [&] { DoThrow<TQRunTimeException>(OtherStatus, "%s", array); }, 0},
            {"char*", [&] { DoThrow<TQRunTimeException>(OtherStatus, "%s", writable); }, 0},
            {"char const*", [&] { DoThrow<TQRunTimeException>(OtherStatus, "%s", constant); }, 0},
        };
        for (auto const& row : rows)
            EXPECT_EQ(AllocationsOf(row.raise), thrown + row.buffers) << row.name;
    });
}

TEST(DoThrow, OwningTextsShareTheFormatAndTheWorkBufferOfPointers)
{
    RunOnNewThread([] {
        std::string const standard = "standard";
        CSafeString const safe("safe");
        unsigned long const thrown = AllocationsOfThrowing("text");
        AllocationsOf([] { DoThrow<TQRunTimeException>(OtherStatus, "%s", "a"); });
        // Only the output of each.
        EXPECT_EQ(AllocationsOf([&] { DoThrow<TQRunTimeException>(OtherStatus, "%s", standard); }),
                  thrown + 1);
        EXPECT_EQ(AllocationsOf([&] { DoThrow<TQRunTimeException>(OtherStatus, "%s", safe); }),
                  thrown + 1);
    });
}

TEST(DoThrow, StandardStringsBuildAsPointersInTheSameBuffersAsEverythingElse)
{
    RunOnNewThread([] {
        Catch([] {
            DoThrow<TQRunTimeException, std::string, std::string, int, char const*>(
                OtherStatus, "%s %s %d %s", "a", "b", 3, "d");
        });
        CAllocationCounter const during;
        CFormattedString const text("%s %s %d %s", "a", "b", 3, "d");
        EXPECT_EQ(during.Count(), 1u); // its own buffer
    });
}

TEST(DoThrow, EachExceptionClassHasAnOutputOfItsOwn)
{
    RunOnNewThread([] {
        unsigned long const thrown = AllocationsOfThrowing("text");
        AllocationsOf([] { DoThrow<TQRunTimeException>(OtherStatus, "%d", 1); });
        EXPECT_EQ(AllocationsOf([] { DoThrow<TQException>(OtherStatus, "%d", 1); }), thrown + 1);
    });
}

TEST(DoThrow, RecoversAfterAFailureOfAnyAllocation)
{
    unsigned long number = 0;
    for (bool happened = true; happened;) {
        ++number;
        RunOnNewThread([&] {
            SCOPED_TRACE(number);
            auto const raise = [] { DoThrow<TQRunTimeException>(OtherStatus, "%s %d", "text", 1); };
            {
                CAllocationFailure const failure(number);
                Caught const caught = Catch(raise);
                happened = failure.Happened();
                ASSERT_NE(caught.type, nullptr);
                EXPECT_EQ(*caught.type,
                          happened ? typeid(std::bad_alloc) : typeid(TQRunTimeException));
            }
            ExpectCaught(Catch(raise), typeid(TQRunTimeException), "text 1", OtherStatus);
        });
    }
    EXPECT_GT(number, 4u); // at least the three buffers and the exception's text
}

namespace
{
/// Takes its message only once every thread has built its own.
struct Late
{
    Late() = default;
    Late(basic_sv_wrapper<char> const& message, TEST_STATUS status) : m_Status(status)
    {
        s_Barrier.Wait();
        m_Text.assign(message.data(), message.size());
    }
    std::string m_Text;
    TEST_STATUS m_Status = TEST_STATUS(0);

    static CBarrier s_Barrier;
};

CBarrier Late::s_Barrier(2);
} // namespace

TEST(DoThrow, TwoThreadsThatThrowAtOnceEachGetTheirOwnMessage)
{
    RunOnThreads(2, [](unsigned index) {
        for (unsigned round = 0; round < 100; ++round) {
            try {
                DoThrow<Late>(TEST_STATUS(index), "%s %u of round %u", "thread", index, round);
            } catch (Late const& late) {
                EXPECT_EQ(late.m_Text,
                          "thread " + std::to_string(index) + " of round " + std::to_string(round));
                EXPECT_EQ(late.m_Status, index);
            }
        }
    });
}
