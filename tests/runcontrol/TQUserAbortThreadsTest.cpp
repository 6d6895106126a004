#include <BaseUtilities/TQUserAbort.h>

#include "AbortFlags.h"
#include "Threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
constexpr unsigned Threads = 8;
constexpr int Rounds = 2000;
constexpr int Operations = 50000; // of each thread

class TQUserAbortThreads : public testing::Test
{
    CRestoreAbortFlags const m_Restore;
};

/// Lets all threads run `operation` at once, round after round, and returns how
/// often it said `answer` in each. `prepare` sets the scene before each round.
template <class Prepare, class Operation>
std::vector<int> AnswersPerRound(Prepare prepare, Operation operation, std::string const& answer)
{
    std::vector<std::atomic<int>> counts(Rounds);
    CBarrier barrier(Threads);
    RunOnThreads(Threads, [&](unsigned index) {
        for (std::atomic<int>& count : counts) {
            if (index == 0)
                prepare();
            barrier.Wait();
            if (operation() == answer)
                ++count;
            barrier.Wait();
        }
    });
    return std::vector<int>(counts.begin(), counts.end());
}

AbortOperation Operation(std::string const& name)
{
    for (AbortOperation const& operation : AbortOperations())
        if (operation.name == name)
            return operation;
    throw std::invalid_argument(name);
}
} // namespace

TEST_F(TQUserAbortThreads, ExactlyOneIsSentTheAbort)
{
    auto const thrown =
        AnswersPerRound([] { TQUserAbort::UserAbortReset(); }, Operation("Send").run, "thrown");
    EXPECT_EQ(thrown, std::vector<int>(Rounds, 1));
}

TEST_F(TQUserAbortThreads, NoneIsSentTheAbortWhilePaused)
{
    auto const quiet = AnswersPerRound(
        [] {
            TQUserAbort::UserAbortReset();
            TQUserAbort::UserAbortPause();
        },
        Operation("Send").run, "");
    EXPECT_EQ(quiet, std::vector<int>(Rounds, static_cast<int>(Threads)));
}

TEST_F(TQUserAbortThreads, ExactlyOneTurnsTheRequestOn)
{
    auto const turnedOn = AnswersPerRound([] { TQUserAbort::EnableUserAbort(true); },
                                          Operation("RequestUserAbort").run, "true");
    EXPECT_EQ(turnedOn, std::vector<int>(Rounds, 1));
}

// Also shows that no order of operations lets the locks wait for each other.
TEST_F(TQUserAbortThreads, AllOperationsAtOnceThrowNoOftenerThanResetsAllow)
{
    SetFlags("00000");
    std::atomic<long> thrown{0};
    std::atomic<long> resets{0};
    std::vector<AbortOperation> const operations = AbortOperations();
    CBarrier barrier(Threads);
    RunOnThreads(Threads, [&](unsigned index) {
        std::minstd_rand random(index + 1);
        barrier.Wait();
        for (int i = 0; i < Operations; ++i) {
            AbortOperation const& operation = operations[random() % operations.size()];
            std::string const name = operation.name;
            if (name == "UserAbortReset" || name == "EnableUserAbort(true)")
                ++resets;
            if (operation.run() == "thrown")
                ++thrown;
        }
    });
    EXPECT_GT(thrown, 0);
    EXPECT_LE(thrown, resets + 1);

    // Nothing is left locked or half changed.
    EXPECT_TRUE(TQUserAbort::EnableUserAbort(true));
    EXPECT_EQ(CurrentFlags(), "00001");
    EXPECT_TRUE(TQUserAbort::RequestUserAbort());
    EXPECT_EQ(CurrentFlags(), "00011");
}
