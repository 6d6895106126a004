#include <BaseUtilities/TQException.h>

#include <BaseUtilities/CSafeString.h>

#include "Allocations.h"
#include "Threads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

// The tree: single, public inheritance, and no other parentage among the classes.
static_assert(std::is_base_of_v<std::runtime_error, TQException>);
static_assert(std::is_base_of_v<TQException, TQAppException>);
static_assert(std::is_base_of_v<TQException, TQDOMDocException>);
static_assert(std::is_base_of_v<TQException, TQParseTreeException>);
static_assert(std::is_base_of_v<TQException, TQRunTimeException>);
static_assert(std::is_base_of_v<TQDOMDocException, CTestSuiteException>);
static_assert(std::is_convertible_v<TQException*, std::runtime_error*>);
static_assert(std::is_convertible_v<TQAppException*, TQException*>);
static_assert(std::is_convertible_v<TQDOMDocException*, TQException*>);
static_assert(std::is_convertible_v<TQParseTreeException*, TQException*>);
static_assert(std::is_convertible_v<TQRunTimeException*, TQException*>);
static_assert(std::is_convertible_v<CTestSuiteException*, TQDOMDocException*>);
static_assert(!std::is_base_of_v<TQAppException, CTestSuiteException>);
static_assert(!std::is_base_of_v<TQParseTreeException, CTestSuiteException>);
static_assert(!std::is_base_of_v<TQRunTimeException, CTestSuiteException>);
static_assert(!std::is_base_of_v<TQDOMDocException, TQAppException>);
static_assert(!std::is_base_of_v<TQDOMDocException, TQParseTreeException>);
static_assert(!std::is_base_of_v<TQDOMDocException, TQRunTimeException>);

namespace
{
// The standard base, the status behind it, and nothing that a descendant adds.
struct Layout : std::runtime_error
{
    TEST_STATUS m_Status;
};

template <class T>
constexpr bool HasTheFamilysShape =
    sizeof(T) == sizeof(Layout) && alignof(T) == alignof(Layout)
    && std::has_virtual_destructor_v<T>&& std::is_copy_constructible_v<
        T>&& std::is_copy_assignable_v<T>&& std::is_nothrow_copy_constructible_v<T>;

static_assert(HasTheFamilysShape<TQException>);
static_assert(HasTheFamilysShape<TQAppException>);
static_assert(HasTheFamilysShape<TQDOMDocException>);
static_assert(HasTheFamilysShape<TQParseTreeException>);
static_assert(HasTheFamilysShape<TQRunTimeException>);
static_assert(HasTheFamilysShape<CTestSuiteException>);
static_assert(sizeof(TQException) == 24);

constexpr TEST_STATUS OtherStatus = TEST_STATUS(0x12345678);

using Made = std::unique_ptr<TQException>;

/// One class of the family, with what can be done to it by its type alone.
struct FamilyClass
{
    std::string name;
    std::string defaultText;
    std::vector<std::string> handlers; // those that must catch it
    std::type_info const* type;
    std::function<Made()> makeDefault;
    std::function<Made(basic_sv_wrapper<char> const&)> makeText;
    std::function<Made(basic_sv_wrapper<char> const&, TEST_STATUS)> make;
    std::function<Made(TEST_STATUS)> makeBraces;
    std::function<Made()> makeBracesAlone;
    std::function<Made(TEST_STATUS)> makeNull;
    std::function<Made(TQException const&)> copy;
    std::function<void(TQException&, TQException const&)> assign;
    std::function<void(basic_sv_wrapper<char> const&, TEST_STATUS)> raise;
};

template <class T>
FamilyClass Describe(char const* name, char const* defaultText, std::vector<std::string> handlers)
{
    FamilyClass row{name, defaultText, std::move(handlers), &typeid(T), {}, {}, {}, {}, {}, {}, {},
                    {},   {}};
    row.makeDefault = [] { return std::make_unique<T>(); };
    row.makeText = [](basic_sv_wrapper<char> const& text) { return std::make_unique<T>(text); };
    row.make = [](basic_sv_wrapper<char> const& text, TEST_STATUS status) {
        return std::make_unique<T>(text, status);
    };
    row.makeBraces = [](TEST_STATUS status) { return Made(new T({}, status)); };
    row.makeBracesAlone = [] { return Made(new T({})); };
    row.makeNull = [](TEST_STATUS status) { return Made(new T(nullptr, status)); };
    row.copy = [](TQException const& from) {
        return std::make_unique<T>(dynamic_cast<T const&>(from));
    };
    row.assign = [](TQException& to, TQException const& from) {
        dynamic_cast<T&>(to) = dynamic_cast<T const&>(from);
    };
    row.raise = [](basic_sv_wrapper<char> const& text, TEST_STATUS status) {
        throw T(text, status);
    };
    return row;
}

std::vector<FamilyClass> Family()
{
    return {
        Describe<TQException>("TQException", "TQException Thrown", {"TQException"}),
        Describe<TQAppException>("TQAppException", "TQAppException Exception Thrown",
                                 {"TQException", "TQAppException"}),
        Describe<TQDOMDocException>("TQDOMDocException", "TQDOMDocException Thrown",
                                    {"TQException", "TQDOMDocException"}),
        Describe<TQParseTreeException>("TQParseTreeException", "TQParseTreeException Thrown",
                                       {"TQException", "TQParseTreeException"}),
        Describe<TQRunTimeException>("TQRunTimeException", "TQRunTimeException Thrown",
                                     {"TQException", "TQRunTimeException"}),
        Describe<CTestSuiteException>("CTestSuiteException", "CTestSuiteException Thrown",
                                      {"TQException", "TQDOMDocException", "CTestSuiteException"}),
    };
}

std::type_info const& DynamicType(TQException const& exception)
{
    return typeid(exception);
}

/// Whether `catch (Handler const&)` takes what the class throws.
template <class Handler>
bool IsCaughtBy(FamilyClass const& thrown)
{
    try {
        try {
            thrown.raise("message", OtherStatus);
        } catch (Handler const&) {
            return true;
        }
    } catch (...) {
    }
    return false;
}

class TQExceptionFamily : public testing::TestWithParam<FamilyClass>
{
};

INSTANTIATE_TEST_SUITE_P(, TQExceptionFamily, testing::ValuesIn(Family()),
                         [](auto const& row) { return row.param.name; });
} // namespace

TEST_P(TQExceptionFamily, DefaultConstructionGivesTheDefaultTextAndStatus)
{
    Made const made = GetParam().makeDefault();
    EXPECT_EQ(made->what(), GetParam().defaultText);
    EXPECT_EQ(made->GetStatus(), 0x40000000u);
    EXPECT_EQ(DynamicType(*made), *GetParam().type);
}

TEST_P(TQExceptionFamily, EmptyMessageGivesTheDefaultTextAndKeepsTheStatus)
{
    char const text[] = "text behind a length of 0";
    struct
    {
        char const* name;
        basic_sv_wrapper<char> message;
    } const rows[] = {
        {"default view", basic_sv_wrapper<char>()},
        {"null pointer", basic_sv_wrapper<char>(static_cast<char const*>(nullptr))},
        {"null pointer of length 0", basic_sv_wrapper<char>(nullptr, 0)},
        {"length 0 with a pointer", basic_sv_wrapper<char>(text, 0)},
        {"empty literal", ""},
        {"empty std::string", basic_sv_wrapper<char>(std::string())},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        Made const made = GetParam().make(row.message, OtherStatus);
        EXPECT_EQ(made->what(), GetParam().defaultText);
        EXPECT_EQ(made->GetStatus(), OtherStatus);
        EXPECT_EQ(GetParam().makeText(row.message)->what(), GetParam().defaultText);
        EXPECT_EQ(GetParam().makeText(row.message)->GetStatus(), TEST_STATUS_ERROR);
    }
}

TEST_P(TQExceptionFamily, BracesAndNullptrMeanAnEmptyMessage)
{
    struct
    {
        char const* name;
        Made made;
        TEST_STATUS status;
    } const rows[] = {
        {"({})", GetParam().makeBracesAlone(), TEST_STATUS_ERROR},
        {"({}, status)", GetParam().makeBraces(OtherStatus), OtherStatus},
        {"(nullptr, status)", GetParam().makeNull(OtherStatus), OtherStatus},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.made->what(), GetParam().defaultText);
        EXPECT_EQ(row.made->GetStatus(), row.status);
    }
}

TEST_P(TQExceptionFamily, MessageIsKeptVerbatim)
{
    std::string const slice = "the front and the rest";
    struct
    {
        char const* name;
        std::string expected;
        basic_sv_wrapper<char> message;
    } const rows[] = {
        {"one character", "x", "x"},
        {"blank", " ", " "},
        {"conversion", "%s %n %", "%s %n %"},
        {"lines", "\ttwo\nlines\n", "\ttwo\nlines\n"},
        {"UTF-8", "gr\xC3\xBC\xC3\x9F", "gr\xC3\xBC\xC3\x9F"},
        {"the root's default", "TQException Thrown", "TQException Thrown"},
        {"slice without a terminator", "the front", basic_sv_wrapper<char>(slice.data(), 9)},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(GetParam().makeText(row.message)->what(), row.expected);
        EXPECT_EQ(GetParam().makeText(row.message)->GetStatus(), TEST_STATUS_ERROR);
        EXPECT_EQ(GetParam().make(row.message, OtherStatus)->what(), row.expected);
    }
}

TEST_P(TQExceptionFamily, LongMessageIsKeptWhole)
{
    std::string const message(100000, 'x');
    EXPECT_EQ(GetParam().makeText(message)->what(), message);
}

// Deliberate in the library: only the length decides whether a message is empty.
TEST_P(TQExceptionFamily, MessageEndsAtItsFirstNul)
{
    EXPECT_STREQ(GetParam().makeText(basic_sv_wrapper<char>("ab\0cd", 5))->what(), "ab");
    EXPECT_STREQ(GetParam().makeText(basic_sv_wrapper<char>("\0cd", 3))->what(), "");
}

TEST_P(TQExceptionFamily, AnyStatusIsStored)
{
    for (unsigned const bits : {0u, 1u, 0x40000000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(bits);
        EXPECT_EQ(GetParam().make("x", TEST_STATUS(bits))->GetStatus(), bits);
        EXPECT_EQ(GetParam().make({}, TEST_STATUS(bits))->GetStatus(), bits);
    }
}

TEST_P(TQExceptionFamily, StatusLiesBehindTheStandardBase)
{
    Made const made = GetParam().make("x", OtherStatus);
    TEST_STATUS stored{};
    std::memcpy(&stored, reinterpret_cast<char const*>(made.get()) + sizeof(std::runtime_error),
                sizeof stored);
    EXPECT_EQ(stored, OtherStatus);
}

TEST_P(TQExceptionFamily, NullViewWithALengthThrowsLogicError)
{
    try {
        GetParam().makeText(basic_sv_wrapper<char>(nullptr, 3));
        FAIL() << "no exception";
    } catch (std::exception const& error) {
        EXPECT_EQ(typeid(error), typeid(std::logic_error));
        EXPECT_STREQ(error.what(), "basic_string: construction from null is not valid");
    }
}

TEST_P(TQExceptionFamily, CopyKeepsTypeTextAndStatus)
{
    Made original = GetParam().make("message", OtherStatus);
    Made const copy = GetParam().copy(*original);
    EXPECT_STREQ(original->what(), "message");
    original.reset();
    EXPECT_STREQ(copy->what(), "message");
    EXPECT_EQ(copy->GetStatus(), OtherStatus);
    EXPECT_EQ(DynamicType(*copy), *GetParam().type);
}

TEST_P(TQExceptionFamily, AssignmentTakesTextAndStatus)
{
    Made const target = GetParam().makeDefault();
    GetParam().assign(*target, *GetParam().make("message", OtherStatus));
    EXPECT_STREQ(target->what(), "message");
    EXPECT_EQ(target->GetStatus(), OtherStatus);
}

TEST_P(TQExceptionFamily, ThrownObjectArrivesWithTypeTextAndStatus)
{
    try {
        GetParam().raise("message", OtherStatus);
        FAIL() << "no exception";
    } catch (TQException const& caught) {
        EXPECT_EQ(typeid(caught), *GetParam().type);
        EXPECT_STREQ(caught.what(), "message");
        EXPECT_EQ(caught.GetStatus(), OtherStatus);
    }
}

TEST_P(TQExceptionFamily, WhatDoesNotChangeWhenOthersAreConstructed)
{
    Made const first = GetParam().makeText("the first message");
    Made const defaulted = GetParam().makeDefault();
    char const* const text = first->what();
    for (FamilyClass const& other : Family()) {
        other.makeText("another message, longer than the first");
        other.makeDefault();
    }
    TQException::DoMakeWhatString("text in the holder");
    EXPECT_EQ(first->what(), text);
    EXPECT_STREQ(text, "the first message");
    EXPECT_EQ(defaulted->what(), GetParam().defaultText);
}

TEST_P(TQExceptionFamily, IsCaughtByItsBasesAndNoOthers)
{
    struct
    {
        char const* name;
        bool caught;
    } const rows[] = {
        {"TQException", IsCaughtBy<TQException>(GetParam())},
        {"TQAppException", IsCaughtBy<TQAppException>(GetParam())},
        {"TQDOMDocException", IsCaughtBy<TQDOMDocException>(GetParam())},
        {"TQParseTreeException", IsCaughtBy<TQParseTreeException>(GetParam())},
        {"TQRunTimeException", IsCaughtBy<TQRunTimeException>(GetParam())},
        {"CTestSuiteException", IsCaughtBy<CTestSuiteException>(GetParam())},
    };
    std::vector<std::string> catching;
    for (auto const& row : rows)
        if (row.caught)
            catching.emplace_back(row.name);
    EXPECT_EQ(catching, GetParam().handlers);
    EXPECT_TRUE(IsCaughtBy<std::runtime_error>(GetParam()));
    EXPECT_TRUE(IsCaughtBy<std::exception>(GetParam()));
    EXPECT_FALSE(IsCaughtBy<std::logic_error>(GetParam()));
}

TEST_P(TQExceptionFamily, IsDestroyedWholeThroughTheStandardBase)
{
    CAllocationCounter const during;
    {
        std::unique_ptr<std::exception> const made =
            GetParam().makeText("a message too long for any small buffer inside a string");
        EXPECT_STREQ(made->what(), "a message too long for any small buffer inside a string");
    }
    EXPECT_EQ(during.Live(), 0);
}

TEST_P(TQExceptionFamily, AllocationFailureLeavesTheConstructorAndNoLeak)
{
    CAllocationCounter const during;
    int const failures = FailEachAllocation(
        [&] { GetParam().makeText("a message too long for any small buffer inside a string"); },
        [&] { EXPECT_EQ(during.Live(), 0); });
    EXPECT_GE(failures, 3); // the object, the copy of the text, the text of the base
}

TEST_P(TQExceptionFamily, ConstructionLeavesTheHoldersTextAlone)
{
    char const* const held = TQException::DoMakeWhatString("held");
    GetParam().makeText("message");
    GetParam().makeDefault();
    EXPECT_STREQ(held, "held");
}

TEST(DoMakeWhatString, GivesTheTextUpToItsFirstNul)
{
    std::string const slice = "the front and the rest";
    struct
    {
        char const* name;
        char const* expected;
        basic_sv_wrapper<char> message;
    } const rows[] = {
        {"one character", "x", "x"},
        {"slice without a terminator", "the front", basic_sv_wrapper<char>(slice.data(), 9)},
        {"embedded NUL", "ab", basic_sv_wrapper<char>("ab\0cd", 5)},
        {"leading NUL", "", basic_sv_wrapper<char>("\0cd", 3)},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_STREQ(TQException::DoMakeWhatString(row.message), row.expected);
    }
}

TEST(DoMakeWhatString, EmptyMessageGivesItsOwnDefaultText)
{
    EXPECT_STREQ(TQException::DoMakeWhatString({}), "Torqel Exception thrown.");
    EXPECT_STREQ(TQException::DoMakeWhatString(""), "Torqel Exception thrown.");
    EXPECT_STREQ(TQException::DoMakeWhatString(basic_sv_wrapper<char>("x", 0)),
                 "Torqel Exception thrown.");
}

TEST(DoMakeWhatString, TextSurvivesItsArgumentUntilTheNextCall)
{
    auto message = std::make_unique<std::string>(1000, 'x');
    char const* const text = TQException::DoMakeWhatString(*message);
    EXPECT_NE(text, message->data());
    message.reset();
    EXPECT_EQ(text, std::string(1000, 'x'));
}

// The new text is built before the old one is released, so the two never share storage.
TEST(DoMakeWhatString, EachCallReturnsStorageOfItsOwn)
{
    char const* const first = TQException::DoMakeWhatString("first");
    char const* const second = TQException::DoMakeWhatString("second");
    EXPECT_NE(first, second);
    EXPECT_STREQ(second, "second");
}

TEST(DoMakeWhatString, TakesItsOwnTextAsArgument)
{
    char const* const text = TQException::DoMakeWhatString("the held text, and its end");
    EXPECT_STREQ(TQException::DoMakeWhatString(text + 15), "and its end");
}

TEST(DoMakeWhatString, HoldsOneTextAtATime)
{
    TQException::DoMakeWhatString("a text too long for any small buffer inside a string");
    CAllocationCounter const during;
    TQException::DoMakeWhatString("another one too long for any small buffer inside a string");
    TQException::DoMakeWhatString("a third one too long for any small buffer inside a string");
    EXPECT_EQ(during.Live(), 0);
}

TEST(DoMakeWhatString, HoldsOneTextForAllThreads)
{
    TQException::DoMakeWhatString("a text too long for any small buffer inside a string");
    RunOnNewThread([] {
        CAllocationCounter const during;
        TQException::DoMakeWhatString("another one too long for any small buffer inside a string");
        EXPECT_EQ(during.Live(), 0); // the other thread's text is released
    });
}

// The holder is made first, and only then is the text refused: these calls meet in nothing but the
// making, which ThreadSanitizer watches. A process of its own, so that they are the first.
TEST(DoMakeWhatStringDeathTest, MakesItsHolderOnceForConcurrentFirstCalls)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const makeAtOnce = [] {
        bool refused[8] = {};
        CBarrier start(8);
        RunOnThreads(8, [&](unsigned index) {
            start.Wait();
            try {
                TQException::DoMakeWhatString(basic_sv_wrapper<char>(nullptr, 3));
            } catch (std::logic_error const&) {
                refused[index] = true;
            }
        });
        bool const all =
            std::all_of(std::begin(refused), std::end(refused), [](bool one) { return one; });
        bool const works = std::strcmp(TQException::DoMakeWhatString("text"), "text") == 0;
        std::exit(all && works ? 0 : 1); // not at once: ThreadSanitizer has its say, too
    };
    EXPECT_EXIT(makeAtOnce(), testing::ExitedWithCode(0), "");
}

TEST(DoMakeWhatString, FailedAllocationKeepsTheHeldText)
{
    char const* const held = TQException::DoMakeWhatString("held");
    for (unsigned long number = 1; number <= 2; ++number) {
        SCOPED_TRACE(number);
        CAllocationFailure const failure(number);
        EXPECT_THROW(
            TQException::DoMakeWhatString("a text too long for any small buffer inside a string"),
            std::bad_alloc);
        EXPECT_STREQ(held, "held");
    }
}

TEST(DoMakeWhatString, NullViewWithALengthThrowsLogicErrorAndKeepsTheHeldText)
{
    char const* const held = TQException::DoMakeWhatString("held");
    EXPECT_THROW(TQException::DoMakeWhatString(basic_sv_wrapper<char>(nullptr, 3)),
                 std::logic_error);
    EXPECT_STREQ(held, "held");
}
