#include <BaseUtilities/TQAppExitException.h>

#include "Allocations.h"

#include <gtest/gtest.h>

#include <cstring>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

static_assert(!std::is_base_of_v<std::exception, TQAppExitException>);
static_assert(std::has_virtual_destructor_v<TQAppExitException>);
static_assert(std::is_copy_constructible_v<TQAppExitException>);
static_assert(std::is_copy_assignable_v<TQAppExitException>);
static_assert(sizeof(TQAppExitException) == 24, "the virtual table, the message, the status");
static_assert(std::is_same_v<decltype(TQAppExitException::m_ExceptionThrown), bool>);

namespace
{
constexpr TEST_STATUS OtherStatus = TEST_STATUS(0x12345678);

// Read before anything of this program runs.
bool const thrownAtLoad = TQAppExitException::m_ExceptionThrown;

/// Each test starts with the flag clear and leaves it as it found it.
class TQAppExitExceptionTest : public testing::Test
{
protected:
    TQAppExitExceptionTest() { TQAppExitException::ExceptionThrown(false); }
    ~TQAppExitExceptionTest() override { TQAppExitException::ExceptionThrown(m_Before); }

private:
    bool const m_Before = TQAppExitException::ExceptionThrown();
};
} // namespace

TEST_F(TQAppExitExceptionTest, FlagIsClearAtLoad)
{
    EXPECT_FALSE(thrownAtLoad);
}

TEST_F(TQAppExitExceptionTest, DefaultConstructionGivesTheDefaultTextAndStatus)
{
    TQAppExitException const request;
    EXPECT_STREQ(request.what(), "TQAppExitException request.");
    EXPECT_EQ(request.GetStatus(), 0x40000000u);
}

TEST_F(TQAppExitExceptionTest, EmptyMessageGivesTheDefaultTextAndKeepsTheStatus)
{
    struct
    {
        char const* name;
        TQAppExitException request;
        TEST_STATUS status;
    } const rows[] = {
        {"({})", TQAppExitException({}), TEST_STATUS_ERROR},
        {"({}, status)", TQAppExitException({}, OtherStatus), OtherStatus},
        {"(nullptr)", TQAppExitException(nullptr), TEST_STATUS_ERROR},
        {"(nullptr, status)", TQAppExitException(nullptr, OtherStatus), OtherStatus},
        {"empty literal", TQAppExitException("", OtherStatus), OtherStatus},
        {"default view", TQAppExitException(basic_sv_wrapper<char>(), OtherStatus), OtherStatus},
        {"length 0 with a pointer",
         TQAppExitException(basic_sv_wrapper<char>("text", 0), OtherStatus), OtherStatus},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_STREQ(row.request.what(), "TQAppExitException request.");
        EXPECT_EQ(row.request.GetStatus(), row.status);
    }
}

TEST_F(TQAppExitExceptionTest, MessageIsKeptVerbatimUpToItsFirstNul)
{
    std::string const slice = "the front and the rest";
    struct
    {
        char const* name;
        std::string expected;
        basic_sv_wrapper<char> message;
    } const rows[] = {
        {"one character", "x", "x"},
        {"conversion", "%s %n %", "%s %n %"},
        {"slice without a terminator", "the front", basic_sv_wrapper<char>(slice.data(), 9)},
        {"embedded NUL", "ab", basic_sv_wrapper<char>("ab\0cd", 5)},
        {"leading NUL", "", basic_sv_wrapper<char>("\0cd", 3)},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        TQAppExitException const request(row.message, OtherStatus);
        EXPECT_EQ(request.what(), row.expected);
        EXPECT_EQ(request.GetStatus(), OtherStatus);
        EXPECT_EQ(TQAppExitException(row.message).GetStatus(), TEST_STATUS_ERROR);
    }
}

TEST_F(TQAppExitExceptionTest, AnyStatusIsStored)
{
    for (unsigned const bits : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(bits);
        EXPECT_EQ(TQAppExitException("x", TEST_STATUS(bits)).GetStatus(), bits);
    }
}

TEST_F(TQAppExitExceptionTest, MessageAndStatusLieInThatOrderBehindTheVirtualTable)
{
    TQAppExitException const request("message", OtherStatus);
    char const* const bytes = reinterpret_cast<char const*>(&request);
    // The message, a CSafeString, is one pointer to a standard string.
    std::string const* message = nullptr;
    std::memcpy(&message, bytes + sizeof(void*), sizeof message);
    TEST_STATUS status{};
    std::memcpy(&status, bytes + sizeof(void*) + sizeof(CSafeString), sizeof status);
    EXPECT_EQ(*message, "message");
    EXPECT_EQ(message->c_str(), request.what());
    EXPECT_EQ(status, OtherStatus);
}

TEST_F(TQAppExitExceptionTest, PassesHandlersOfStandardExceptions)
{
    std::string handler = "none";
    try {
        try {
            throw TQAppExitException("message", OtherStatus);
        } catch (std::runtime_error const&) {
            handler = "std::runtime_error";
        } catch (std::exception const&) {
            handler = "std::exception";
        }
    } catch (TQAppExitException const& request) {
        handler = "TQAppExitException";
        EXPECT_STREQ(request.what(), "message");
        EXPECT_EQ(request.GetStatus(), OtherStatus);
    }
    EXPECT_EQ(handler, "TQAppExitException");
}

TEST_F(TQAppExitExceptionTest, WhatIsNotVirtual)
{
    struct Derived : TQAppExitException
    {
        using TQAppExitException::TQAppExitException;
        char const* what() const { return "the derived text"; }
    };
    Derived const derived("the base's text");
    TQAppExitException const& base = derived;
    EXPECT_STREQ(base.what(), "the base's text");
    EXPECT_STREQ(derived.what(), "the derived text");
}

TEST_F(TQAppExitExceptionTest, IsDestroyedWholeThroughTheBase)
{
    struct Derived : TQAppExitException
    {
        using TQAppExitException::TQAppExitException;
        std::string m_More = "a text too long for any small buffer inside a string";
    };
    CAllocationCounter const during;
    std::unique_ptr<TQAppExitException>(new Derived("message")).reset();
    EXPECT_EQ(during.Live(), 0);
}

TEST_F(TQAppExitExceptionTest, ConstructionSetsTheFlagWithoutAThrow)
{
    EXPECT_FALSE(TQAppExitException::ExceptionThrown());
    TQAppExitException const request;
    EXPECT_TRUE(TQAppExitException::ExceptionThrown());
    EXPECT_TRUE(TQAppExitException::m_ExceptionThrown);
}

TEST_F(TQAppExitExceptionTest, EveryFormOfConstructionSetsTheFlag)
{
    struct
    {
        char const* name;
        std::unique_ptr<TQAppExitException> (*make)();
    } const rows[] = {
        {"()", [] { return std::make_unique<TQAppExitException>(); }},
        {"(text)", [] { return std::make_unique<TQAppExitException>("x"); }},
        {"(text, status)", [] { return std::make_unique<TQAppExitException>("x", OtherStatus); }},
        {"(nullptr)", [] { return std::make_unique<TQAppExitException>(nullptr); }},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        TQAppExitException::ExceptionThrown(false);
        row.make();
        EXPECT_TRUE(TQAppExitException::ExceptionThrown());
    }
}

TEST_F(TQAppExitExceptionTest, FlagOutlivesTheObject)
{
    try {
        throw TQAppExitException();
    } catch (TQAppExitException const&) {
    }
    EXPECT_TRUE(TQAppExitException::ExceptionThrown());
}

TEST_F(TQAppExitExceptionTest, FlagTakesTheValueGiven)
{
    TQAppExitException::ExceptionThrown(true);
    EXPECT_TRUE(TQAppExitException::ExceptionThrown());
    EXPECT_TRUE(TQAppExitException::m_ExceptionThrown);
    TQAppExitException::ExceptionThrown(false);
    EXPECT_FALSE(TQAppExitException::ExceptionThrown());
    EXPECT_FALSE(TQAppExitException::m_ExceptionThrown);
}

TEST_F(TQAppExitExceptionTest, ExceptionThrownReadsTheStaticItself)
{
    TQAppExitException::m_ExceptionThrown = true;
    EXPECT_TRUE(TQAppExitException::ExceptionThrown());
}

// Deliberate in the library: a copy is the member-wise one and makes no new request.
TEST_F(TQAppExitExceptionTest, CopyKeepsTextAndStatusAndLeavesTheFlag)
{
    auto original = std::make_unique<TQAppExitException>("message", OtherStatus);
    TQAppExitException::ExceptionThrown(false);
    TQAppExitException const copy(*original);
    EXPECT_FALSE(TQAppExitException::ExceptionThrown());
    TQAppExitException assigned;
    TQAppExitException::ExceptionThrown(false);
    assigned = *original;
    EXPECT_FALSE(TQAppExitException::ExceptionThrown());

    EXPECT_NE(copy.what(), original->what());
    EXPECT_STREQ(original->what(), "message");
    original.reset();
    EXPECT_STREQ(copy.what(), "message");
    EXPECT_EQ(copy.GetStatus(), OtherStatus);
    EXPECT_STREQ(assigned.what(), "message");
    EXPECT_EQ(assigned.GetStatus(), OtherStatus);
}

TEST_F(TQAppExitExceptionTest, KeepsItsTextWhenOfferedForMoving)
{
    TQAppExitException original("message");
    TQAppExitException const taken(std::move(original));
    EXPECT_STREQ(taken.what(), "message");
    EXPECT_STREQ(original.what(), "message"); // NOLINT(bugprone-use-after-move): the claim
}

TEST_F(TQAppExitExceptionTest, FailedAllocationLeavesTheFlagAndNoLeak)
{
    CAllocationCounter const during;
    int failures = 0;
    for (bool happened = true; happened; ++failures) {
        TQAppExitException::ExceptionThrown(false);
        CAllocationFailure const failure(static_cast<unsigned long>(failures) + 1);
        try {
            TQAppExitException const request("a text too long for any small buffer of a string");
        } catch (std::bad_alloc const&) {
            EXPECT_FALSE(TQAppExitException::ExceptionThrown());
        }
        happened = failure.Happened();
        EXPECT_EQ(TQAppExitException::ExceptionThrown(), !happened);
    }
    EXPECT_EQ(failures - 1, 2); // the string and its text
    EXPECT_EQ(during.Live(), 0);
}

TEST_F(TQAppExitExceptionTest, NullViewWithALengthThrowsLogicErrorAndLeavesTheFlag)
{
    try {
        TQAppExitException const request(basic_sv_wrapper<char>(nullptr, 3));
        FAIL() << "no exception";
    } catch (std::exception const& error) {
        EXPECT_EQ(typeid(error), typeid(std::logic_error));
        EXPECT_STREQ(error.what(), "basic_string: construction from null is not valid");
    }
    EXPECT_FALSE(TQAppExitException::ExceptionThrown());
}
