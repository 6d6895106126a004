#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/TQException.h>

#include "Threads.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

namespace
{
constexpr unsigned Threads = 8;
constexpr unsigned Messages = 1000000; // of each thread

/// Whether the text is "thread <index>, message <number>".
bool IsOwnMessage(char const* text, unsigned index, unsigned number)
{
    char expected[64];
    std::snprintf(expected, sizeof expected, "thread %u, message %u", index, number);
    return std::strcmp(text, expected) == 0;
}

/// Whether one message thrown and caught arrives as it was sent.
bool ArrivesWhole(unsigned index, unsigned number)
{
    try {
        DoThrow<TQRunTimeException>(TEST_STATUS(number), "thread %u, message %u", index, number);
    } catch (TQRunTimeException const& caught) {
        return caught.GetStatus() == number && IsOwnMessage(caught.what(), index, number);
    }
}
} // namespace

TEST(ThrowingThreads, EightThreadsThrowAndCatchAMillionMessagesEach)
{
    unsigned wrong[Threads] = {};
    CBarrier barrier(Threads);
    RunOnThreads(Threads, [&](unsigned index) {
        unsigned failures = 0;
        barrier.Wait();
        for (unsigned number = 0; number < Messages; ++number)
            failures += ArrivesWhole(index, number) ? 0u : 1u;
        wrong[index] = failures;
    });
    for (unsigned const failures : wrong)
        EXPECT_EQ(failures, 0u);
}
