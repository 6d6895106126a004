#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/TQException.h>

#include "Threads.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <typeinfo>
#include <vector>

namespace
{
constexpr unsigned Threads = 8;
constexpr unsigned Messages = 1000000; // of each thread

constexpr unsigned ManyThreads = 64;
constexpr unsigned MessagesInAll = 1000000;

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

/// Whether a message of that class, with text of `length` bytes within it, arrives whole.
template <class Exception>
bool ArrivesWhole(unsigned index, unsigned number, unsigned length)
{
    std::string const filling(length, static_cast<char>('A' + (index + number) % 26));
    try {
        DoThrow<Exception>(TEST_STATUS(number), "<%u|%s|%lu>", index, filling, 1ul * number);
    } catch (TQException const& caught) {
        std::string const expected =
            "<" + std::to_string(index) + "|" + filling + "|" + std::to_string(number) + ">";
        return typeid(caught) == typeid(Exception) && caught.what() == expected
               && caught.GetStatus() == TEST_STATUS(number);
    }
}

/// The classes take turns, and so do lengths on either side of where the buffers grow.
bool NextArrivesWhole(unsigned index, unsigned number)
{
    constexpr unsigned lengths[] = {0, 15, 16, 500, 1000, 1023, 1024, 2100, 3};
    unsigned const length = lengths[(index + number) % 9];
    switch (number % 6) {
    case 0:
        return ArrivesWhole<TQException>(index, number, length);
    case 1:
        return ArrivesWhole<TQAppException>(index, number, length);
    case 2:
        return ArrivesWhole<TQDOMDocException>(index, number, length);
    case 3:
        return ArrivesWhole<TQParseTreeException>(index, number, length);
    case 4:
        return ArrivesWhole<CTestSuiteException>(index, number, length);
    default:
        return ArrivesWhole<TQRunTimeException>(index, number, length);
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

TEST(ThrowingThreads, SixtyFourThreadsThrowAndCatchAMillionMessagesOfEveryClassInAll)
{
    std::vector<unsigned> whole(ManyThreads, 0);
    CBarrier barrier(ManyThreads);
    RunOnThreads(ManyThreads, [&](unsigned index) {
        unsigned arrived = 0;
        barrier.Wait();
        for (unsigned number = 0; number < MessagesInAll / ManyThreads; ++number)
            arrived += NextArrivesWhole(index, number) ? 1u : 0u;
        whole[index] = arrived;
    });
    EXPECT_EQ(whole, std::vector<unsigned>(ManyThreads, MessagesInAll / ManyThreads));
}
