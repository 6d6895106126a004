#include <BaseUtilities/TQUserAbort.h>

#include "AbortFlags.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <type_traits>
#include <vector>

static_assert(std::is_empty_v<TQUserAbort>);
static_assert(!std::is_polymorphic_v<TQUserAbort>);
static_assert(!std::is_base_of_v<std::exception, TQUserAbort>);
static_assert(std::is_same_v<decltype(TQUserAbort::m_UserAbortOk), bool>);
static_assert(std::is_same_v<decltype(TQUserAbort::m_UserAbortPaused), bool>);
static_assert(std::is_same_v<decltype(TQUserAbort::m_UserAbortSent), bool>);
static_assert(std::is_same_v<decltype(TQUserAbort::m_UserAbortRequested), bool>);
static_assert(std::is_same_v<decltype(TQUserAbort::m_UserAbortEnabled), bool>);

namespace
{
// Read before anything of this program runs.
std::string const flagsAtLoad = CurrentFlags();

/// What an operation does to the states that `when` matches. A state is five
/// places: ok, paused, sent, requested, enabled. In `when` a dot matches both
/// values; in `then` it keeps the flag.
struct Rule
{
    char const* operation;
    char const* when;
    char const* then;
    char const* result; // "", "true", "false" or "thrown"
};

constexpr Rule rules[] = {
    {"UserAbortReset", ".....", "0000.", ""},
    {"UserAbortSent", "..0..", ".....", "false"},
    {"UserAbortSent", "..1..", ".....", "true"},
    {"Send", ".00..", "..1..", "thrown"},
    {"Send", ".01..", ".....", ""},
    {"Send", ".1...", ".....", ""},
    {"SetUserAbortOk", ".....", "1....", ""},
    {"IsUserAbortOk", "0....", ".....", "false"},
    {"IsUserAbortOk", "1....", ".....", "true"},
    {"UserAbortEnabled", "....0", ".....", "false"},
    {"UserAbortEnabled", "....1", ".....", "true"},
    {"EnableUserAbort(true)", ".....", "00001", "true"},
    {"EnableUserAbort(false)", ".....", "....0", "false"},
    {"RequestUserAbort", "..1..", ".....", "false"},
    {"RequestUserAbort", "..0.0", "...0.", "false"},
    {"RequestUserAbort", "..001", "...1.", "true"},
    {"RequestUserAbort", "..011", ".....", "false"},
    {"UserAbortRequested", "...0.", ".....", "false"},
    {"UserAbortRequested", "...1.", ".....", "true"},
    {"UserAbortPause", ".....", ".1...", ""},
    {"UserAbortResume", ".....", ".0...", ""},
    {"IsPaused", ".0...", ".....", "false"},
    {"IsPaused", ".1...", ".....", "true"},
};

bool Matches(std::string const& flags, std::string const& when)
{
    for (std::size_t i = 0; i < flags.size(); ++i)
        if (when[i] != '.' && when[i] != flags[i])
            return false;
    return true;
}

std::string After(std::string flags, std::string const& then)
{
    for (std::size_t i = 0; i < flags.size(); ++i)
        if (then[i] != '.')
            flags[i] = then[i];
    return flags;
}

Rule const& RuleFor(std::string const& operation, std::string const& flags)
{
    Rule const* found = nullptr;
    for (Rule const& rule : rules) {
        if (operation != rule.operation || !Matches(flags, rule.when))
            continue;
        EXPECT_EQ(found, nullptr) << "two rules for " << operation << " in " << flags;
        found = &rule;
    }
    EXPECT_NE(found, nullptr) << "no rule for " << operation << " in " << flags;
    static constexpr Rule none{"", ".....", ".....", "no rule"};
    return found == nullptr ? none : *found;
}

class TQUserAbortTest : public testing::Test
{
    CRestoreAbortFlags const m_Restore;
};

class TQUserAbortOperation : public testing::TestWithParam<AbortOperation>
{
    CRestoreAbortFlags const m_Restore;
};

INSTANTIATE_TEST_SUITE_P(, TQUserAbortOperation, testing::ValuesIn(AbortOperations()),
                         [](auto const& row) { return std::string(row.param.testName); });
} // namespace

TEST_F(TQUserAbortTest, AllFlagsAreFalseAtLoad)
{
    EXPECT_EQ(flagsAtLoad, "00000");
}

TEST_P(TQUserAbortOperation, DoesWhatTheTableSaysInEveryState)
{
    for (std::string const& flags : AllAbortFlags()) {
        Rule const& rule = RuleFor(GetParam().name, flags);
        SCOPED_TRACE(GetParam().name + (" in ok/paused/sent/requested/enabled " + flags));
        SetFlags(flags);
        EXPECT_EQ(GetParam().run(), rule.result);
        EXPECT_EQ(CurrentFlags(), After(flags, rule.then));
    }
}

// The table cannot see an operation that does nothing more than once.
TEST_P(TQUserAbortOperation, MayFollowEveryOtherOperation)
{
    for (AbortOperation const& first : AbortOperations()) {
        for (std::string const& flags : AllAbortFlags()) {
            SCOPED_TRACE(first.name + (", then " + (GetParam().name + (" from " + flags))));
            SetFlags(flags);
            first.run();
            std::string const between = After(flags, RuleFor(first.name, flags).then);
            Rule const& rule = RuleFor(GetParam().name, between);
            EXPECT_EQ(GetParam().run(), rule.result);
            EXPECT_EQ(CurrentFlags(), After(between, rule.then));
        }
    }
}

TEST_F(TQUserAbortTest, SendThrowsAUserAbortThatNoStandardHandlerTakes)
{
    SetFlags("00000");
    std::string handler = "none";
    try {
        try {
            TQUserAbort::Send();
        } catch (std::exception const&) {
            handler = "std::exception";
        }
    } catch (TQUserAbort const&) {
        handler = "TQUserAbort";
    }
    EXPECT_EQ(handler, "TQUserAbort");
}

TEST_F(TQUserAbortTest, SendThrowsOnceUntilAReset)
{
    SetFlags("00000");
    EXPECT_THROW(TQUserAbort::Send(), TQUserAbort);
    EXPECT_NO_THROW(TQUserAbort::Send());
    EXPECT_NO_THROW(TQUserAbort::Send());
    TQUserAbort::UserAbortReset();
    EXPECT_THROW(TQUserAbort::Send(), TQUserAbort);
}

TEST_F(TQUserAbortTest, SendWaitsForTheEndOfAPause)
{
    SetFlags("00000");
    TQUserAbort::UserAbortPause();
    EXPECT_NO_THROW(TQUserAbort::Send());
    EXPECT_FALSE(TQUserAbort::UserAbortSent());
    TQUserAbort::UserAbortResume();
    EXPECT_THROW(TQUserAbort::Send(), TQUserAbort);
    EXPECT_TRUE(TQUserAbort::UserAbortSent());
}

TEST_F(TQUserAbortTest, RequestWhileDisabledWithdrawsTheStandingRequest)
{
    TQUserAbort::EnableUserAbort(true);
    EXPECT_TRUE(TQUserAbort::RequestUserAbort());
    EXPECT_FALSE(TQUserAbort::RequestUserAbort());
    EXPECT_TRUE(TQUserAbort::UserAbortRequested());
    TQUserAbort::EnableUserAbort(false);
    EXPECT_TRUE(TQUserAbort::UserAbortRequested());
    EXPECT_FALSE(TQUserAbort::RequestUserAbort());
    EXPECT_FALSE(TQUserAbort::UserAbortRequested());
}

TEST_F(TQUserAbortTest, RequestAfterSendLeavesTheRequestAsItWas)
{
    for (bool const requested : {false, true}) {
        SCOPED_TRACE(requested);
        TQUserAbort::EnableUserAbort(true);
        if (requested)
            TQUserAbort::RequestUserAbort();
        EXPECT_THROW(TQUserAbort::Send(), TQUserAbort);
        EXPECT_FALSE(TQUserAbort::RequestUserAbort());
        EXPECT_EQ(TQUserAbort::UserAbortRequested(), requested);
    }
}
