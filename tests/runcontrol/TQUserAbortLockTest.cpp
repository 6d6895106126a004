#include <BaseUtilities/TQUserAbort.h>

#include "AbortFlags.h"
#include "MutexCalls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <set>
#include <string>
#include <system_error>
#include <typeinfo>
#include <vector>

#include <pthread.h>

namespace
{
/// The one mutex that an operation takes.
template <class Operation>
void const* LockOf(Operation operation)
{
    CMutexCalls const during;
    operation();
    return during.Calls().empty() ? nullptr : during.Calls().front().second;
}

/// Calls as text: "+E" takes the enable lock, "-S" releases the state lock, and
/// R is the request lock. Calls of other mutexes, those of the system, are left out.
class CLockNames
{
public:
    std::string Spell(std::vector<MutexCall> const& calls) const
    {
        std::string text;
        for (auto const& [what, mutex] : calls)
            if (char const name = Name(mutex); name != 0)
                text += std::string(text.empty() ? "" : " ") + what + name;
        return text;
    }

    void const* const m_Enable = LockOf([] { TQUserAbort::UserAbortEnabled(); });
    void const* const m_State = LockOf([] { TQUserAbort::UserAbortSent(); });
    void const* const m_Request = LockOf([] { TQUserAbort::UserAbortRequested(); });

private:
    char Name(void const* mutex) const
    {
        return mutex == m_Enable ? 'E' : mutex == m_State ? 'S' : mutex == m_Request ? 'R' : '\0';
    }
};

struct LockRow
{
    std::string operation;
    std::string calls;
    bool onceSent = false; // a row of its own for the states in which the abort was sent
};

LockRow const lockRows[] = {
    {"UserAbortReset", "+S +R -R -S"},
    {"UserAbortSent", "+S -S"},
    {"Send", "+S -S"},
    {"SetUserAbortOk", ""},
    {"IsUserAbortOk", ""},
    {"UserAbortEnabled", "+E -E"},
    {"EnableUserAbort(true)", "+E +S +R -R -S -E"},
    {"EnableUserAbort(false)", "+E -E"},
    {"RequestUserAbort", "+S -S +E +R -R -E"},
    {"RequestUserAbort", "+S -S", true},
    {"UserAbortRequested", "+R -R"},
    {"UserAbortPause", "+S -S"},
    {"UserAbortResume", "+S -S"},
    {"IsPaused", "+S -S"},
};

std::string ExpectedCalls(std::string const& operation, std::string const& flags)
{
    std::string calls = "no row";
    for (LockRow const& row : lockRows)
        if (row.operation == operation && (!row.onceSent || flags[2] == '1'))
            calls = row.calls;
    return calls;
}

std::ptrdiff_t Count(std::string const& calls, char what)
{
    return std::count(calls.begin(), calls.end(), what);
}

/// Runs the operation with its lock `number` failing. False when it takes fewer locks.
bool FailsAtLock(AbortOperation const& operation, CLockNames const& names, unsigned number,
                 int error)
{
    std::string const before = CurrentFlags();
    CMutexCalls during;
    during.FailLock(number, error);
    try {
        operation.run();
        EXPECT_FALSE(during.Failed()) << "no exception";
    } catch (std::system_error const& failure) {
        EXPECT_EQ(typeid(failure), typeid(std::system_error));
        EXPECT_EQ(failure.code(), std::error_code(error, std::generic_category()));
        EXPECT_EQ(failure.what(), std::generic_category().message(error));
        EXPECT_EQ(CurrentFlags(), before);
        EXPECT_TRUE(during.Failed());
    }
    std::string const calls = names.Spell(during.Calls());
    EXPECT_EQ(Count(calls, '+'), Count(calls, '-')) << "a lock is still held: " << calls;
    return during.Failed();
}

class TQUserAbortLocks : public testing::TestWithParam<AbortOperation>
{
protected:
    void SetUp() override
    {
        if (!CanInterceptMutexes())
            GTEST_SKIP() << "the sanitizer in this program intercepts the mutex calls itself";
    }

private:
    CRestoreAbortFlags const m_Restore;
};

INSTANTIATE_TEST_SUITE_P(, TQUserAbortLocks, testing::ValuesIn(AbortOperations()),
                         [](auto const& row) { return std::string(row.param.testName); });
} // namespace

TEST_P(TQUserAbortLocks, AreTakenAndReleasedInTheFixedOrder)
{
    CLockNames const names;
    for (std::string const& flags : AllAbortFlags()) {
        SCOPED_TRACE(flags);
        SetFlags(flags);
        CMutexCalls const during;
        GetParam().run(); // Send throws in some of the states
        // Were a lock still held, the next state would wait for ever.
        ASSERT_EQ(names.Spell(during.Calls()), ExpectedCalls(GetParam().name, flags));
    }
}

TEST_P(TQUserAbortLocks, FailureChangesNoFlagAndKeepsNoLock)
{
    CLockNames const names;
    for (std::string const& flags : AllAbortFlags()) {
        std::ptrdiff_t const locks = Count(ExpectedCalls(GetParam().name, flags), '+');
        for (int const error : {EAGAIN, EINVAL, EDEADLK}) {
            for (unsigned number = 1; number <= 4; ++number) {
                SCOPED_TRACE(flags + ", lock " + std::to_string(number));
                SetFlags(flags);
                EXPECT_EQ(FailsAtLock(GetParam(), names, number, error), number <= locks);
                ASSERT_FALSE(HasFailure()); // what follows would wait for ever
            }
        }
    }
}

TEST_P(TQUserAbortLocks, OperationsFollowAFailureAsIfItHadNotBeen)
{
    CLockNames const names;
    for (unsigned number = 1; number <= 3; ++number) {
        SetFlags("00011");
        FailsAtLock(GetParam(), names, number, EAGAIN);
        ASSERT_FALSE(HasFailure());
        EXPECT_TRUE(TQUserAbort::EnableUserAbort(true)); // takes all three locks
        EXPECT_EQ(CurrentFlags(), "00001");
        EXPECT_TRUE(TQUserAbort::RequestUserAbort());
        EXPECT_THROW(TQUserAbort::Send(), TQUserAbort);
    }
}

TEST(TQUserAbortLock, IsOneOfThreePlainMutexes)
{
    if (!CanInterceptMutexes())
        GTEST_SKIP() << "the sanitizer in this program intercepts the mutex calls itself";
    CLockNames const names;
    std::set<void const*> const locks{names.m_Enable, names.m_State, names.m_Request};
    EXPECT_EQ(locks.size(), 3u);
    for (void const* const lock : locks) {
        ASSERT_NE(lock, nullptr);
        auto* const mutex = static_cast<pthread_mutex_t*>(const_cast<void*>(lock));
        ASSERT_EQ(pthread_mutex_trylock(mutex), 0);
        // A recursive mutex would let its owner in again.
        EXPECT_EQ(pthread_mutex_trylock(mutex), EBUSY);
        pthread_mutex_unlock(mutex);
    }
}
