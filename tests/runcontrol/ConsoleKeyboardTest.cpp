#include "PseudoTerminal.h"
#include "TemporaryFolder.h"
#include "TerminalCalls.h"

#include <BaseUtilities/ConsoleKeyboard.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>
#include <thread>
#include <type_traits>
#include <vector>

#include <fcntl.h>
#include <pthread.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
tcflag_t const keyModes = ICANON | ECHO;

termios WithoutKeyModes(termios attributes)
{
    attributes.c_lflag &= ~keyModes;
    return attributes;
}

// Whether it came to hold; only a failing test waits for the end of the time allowed.
bool ComesToHold(std::function<bool()> const& condition)
{
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        sched_yield();
    }
    return true;
}

class ConsoleKeyboard : public testing::Test
{
protected:
    // Calls on another thread, so that a call that never ends fails the test, too. Meanwhile
    // `during` runs.
    template <class Result>
    Result CallWhile(Result (*call)(), std::function<void(std::atomic<bool> const&)> const& during)
    {
        std::atomic<bool> ended{false};
        Result result{};
        std::thread caller([&] {
            result = call();
            ended = true;
        });
        during(ended);
        if (!ComesToHold([&] { return ended.load(); })) {
            ADD_FAILURE() << "the call never ended";
            m_Terminal.HangUp();
        }
        caller.join();
        return result;
    }

    // `during` runs once the terminal's modes show that the read has begun.
    int ReadWhile(std::function<void()> const& during)
    {
        return CallWhile(&oss_getch, [&](std::atomic<bool> const& ended) {
            EXPECT_TRUE(ComesToHold(
                [&] { return ended || (m_Terminal.Attributes().c_lflag & keyModes) == 0; }));
            EXPECT_FALSE(ended) << "nobody has typed yet";
            during();
        });
    }

    int Read()
    {
        return CallWhile(&oss_getch, [](std::atomic<bool> const&) {});
    }

    std::optional<int> Query()
    {
        return CallWhile(&oss_query_getch, [](std::atomic<bool> const&) {});
    }

    int ReadTyped(std::string const& keys)
    {
        return ReadWhile([&] { m_Terminal.Type(keys); });
    }

    CPseudoTerminal m_Terminal;
    CStandardInput m_Input{m_Terminal.Slave()};
};

class ConsoleKeyboardCalls : public ConsoleKeyboard
{
protected:
    using Calls = std::vector<std::string>;

    void SetUp() override
    {
        if (!CanInterceptTerminalCalls())
            GTEST_SKIP() << "the sanitizer's runtime is in the program and goes first";
    }

    template <auto Function>
    Calls CallsOf()
    {
        Calls (*const call)() = [] {
            CTerminalCalls const during;
            Function();
            return during.Get();
        };
        return CallWhile(call, [](std::atomic<bool> const&) {});
    }

    std::string const m_Change = "0 set now " + Text(WithoutKeyModes(m_Terminal.Attributes()));
    std::string const m_Restore = "0 set now " + Text(m_Terminal.Attributes());
};
} // namespace

TEST_F(ConsoleKeyboard, ReturnsAKeyWithoutEnter)
{
    EXPECT_EQ(ReadTyped("k"), 'k');
}

TEST_F(ConsoleKeyboard, ReturnsEachKindOfByteAsItIs)
{
    termios attributes = m_Terminal.Attributes();
    attributes.c_iflag = 0; // the terminal itself translates nothing
    m_Terminal.SetAttributes(attributes);
    m_Input.SetUnbuffered();
    for (int const byte : {0x00, 0x04, 0x0a, 0x0d, 0x1b, 0x20, 0x7f, 0x80, 0xe4, 0xff}) {
        SCOPED_TRACE(byte);
        EXPECT_EQ(ReadTyped(std::string(1, static_cast<char>(byte))), byte);
    }
}

TEST_F(ConsoleKeyboard, SwitchesOnlyEchoAndLineModeOffDuringTheRead)
{
    std::string const expected = Text(WithoutKeyModes(m_Terminal.Attributes()));
    ReadWhile([&] {
        EXPECT_EQ(Text(m_Terminal.Attributes()), expected);
        m_Terminal.Type("k");
    });
}

TEST_F(ConsoleKeyboard, EchoesNothingOfTheKey)
{
    ReadTyped("k");
    EXPECT_EQ(m_Terminal.Echoed(), "");
    m_Terminal.TypeAndWaitForEcho("e"); // as before, when it is not read
}

TEST_F(ConsoleKeyboard, RestoresEveryAttributeAfterTheRead)
{
    ASSERT_EQ(m_Terminal.Attributes().c_lflag & keyModes, keyModes);
    std::string const before = Text(m_Terminal.Attributes());
    ReadTyped("k");
    EXPECT_EQ(Text(m_Terminal.Attributes()), before);
}

// What is restored is what was there, not a usual state.
TEST_F(ConsoleKeyboard, RestoresUnusualAttributesAfterTheRead)
{
    termios unusual = m_Terminal.Attributes();
    unusual.c_iflag ^= IXANY | ICRNL;
    unusual.c_oflag ^= ONLCR;
    unusual.c_cflag ^= HUPCL;
    unusual.c_lflag ^= ECHO | ECHOK | NOFLSH; // echo is already off
    unusual.c_cc[VINTR] = 7;
    unusual.c_cc[VMIN] = 1;
    unusual.c_cc[VTIME] = 9;
    cfsetospeed(&unusual, B9600);
    m_Terminal.SetAttributes(unusual);
    std::string const before = Text(m_Terminal.Attributes());
    std::string const expected = Text(WithoutKeyModes(m_Terminal.Attributes()));
    ReadWhile([&] {
        EXPECT_EQ(Text(m_Terminal.Attributes()), expected);
        m_Terminal.Type("k");
    });
    EXPECT_EQ(Text(m_Terminal.Attributes()), before);
}

// A terminal told to wait for nothing has no key, and so the stream is at its end.
TEST_F(ConsoleKeyboard, LeavesTheLeastCountAtZero)
{
    termios attributes = m_Terminal.Attributes();
    attributes.c_cc[VMIN] = 0;
    attributes.c_cc[VTIME] = 0;
    m_Terminal.SetAttributes(attributes);
    std::string const before = Text(m_Terminal.Attributes());
    EXPECT_EQ(Read(), EOF);
    EXPECT_EQ(Text(m_Terminal.Attributes()), before);
}

TEST_F(ConsoleKeyboard, WaitsForAsManyKeysAsTheTerminalIsToldTo)
{
    termios attributes = m_Terminal.Attributes();
    attributes.c_cc[VMIN] = 2;
    attributes.c_cc[VTIME] = 0;
    m_Terminal.SetAttributes(attributes);
    EXPECT_EQ(ReadWhile([&] {
                  m_Terminal.Type("a");
                  EXPECT_EQ(Text(m_Terminal.Attributes()), Text(WithoutKeyModes(attributes)));
                  m_Terminal.Type("b");
              }),
              'a');
}

TEST_F(ConsoleKeyboardCalls, KeepChangeAndRestoreTheAttributesAtOnceForARead)
{
    m_Terminal.TypeAndWaitForEcho("k");
    EXPECT_EQ(CallsOf<&oss_getch>(), (Calls{"0 get", m_Change, m_Restore}));
}

TEST_F(ConsoleKeyboardCalls, AskForTheCountBetweenTheChangesForAQuery)
{
    EXPECT_EQ(CallsOf<&oss_query_getch>(), (Calls{"0 get", m_Change, "0 count 0", m_Restore}));
}

// The read within the query keeps, changes and restores once more.
TEST_F(ConsoleKeyboardCalls, AreThoseOfAReadWithinThoseOfAQueryThatFindsAKey)
{
    m_Terminal.TypeAndWaitForEcho("k");
    EXPECT_EQ(CallsOf<&oss_query_getch>(),
              (Calls{"0 get", m_Change, "0 count 0", "0 get", m_Change, m_Change, m_Restore}));
}

TEST_F(ConsoleKeyboard, ReturnsKeysTypedAheadOneByOne)
{
    m_Terminal.TypeAndWaitForEcho("abc");
    EXPECT_EQ(Read(), 'a');
    EXPECT_EQ(Read(), 'b');
    EXPECT_EQ(Read(), 'c');
}

TEST_F(ConsoleKeyboard, ReturnsTheEndOfInputWhenTheOperatorHangsUp)
{
    EXPECT_EQ(ReadWhile([&] { m_Terminal.HangUp(); }), EOF);
}

TEST_F(ConsoleKeyboard, FindsNoKeyAndReturnsAtOnce)
{
    std::string const before = Text(m_Terminal.Attributes());
    EXPECT_EQ(Query(), std::nullopt);
    EXPECT_EQ(Text(m_Terminal.Attributes()), before);
}

TEST_F(ConsoleKeyboard, FindsNoKeyWhenTheOperatorHasHungUp)
{
    m_Terminal.HangUp();
    EXPECT_EQ(Query(), std::nullopt);
}

TEST_F(ConsoleKeyboard, FindsATypedKeyWithoutEnter)
{
    std::string const before = Text(m_Terminal.Attributes());
    m_Terminal.TypeAndWaitForEcho("k");
    EXPECT_EQ(Query(), 'k');
    EXPECT_EQ(Text(m_Terminal.Attributes()), before);
    EXPECT_EQ(Query(), std::nullopt);
}

TEST_F(ConsoleKeyboard, RestoresUnusualAttributesAfterAQuery)
{
    termios unusual = m_Terminal.Attributes();
    unusual.c_iflag ^= IXANY;
    unusual.c_lflag ^= ECHOK;
    unusual.c_cc[VTIME] = 9;
    m_Terminal.SetAttributes(unusual);
    std::string const before = Text(m_Terminal.Attributes());
    EXPECT_EQ(Query(), std::nullopt);
    EXPECT_EQ(Text(m_Terminal.Attributes()), before);
    m_Terminal.TypeAndWaitForEcho("k");
    EXPECT_EQ(Query(), 'k');
    EXPECT_EQ(Text(m_Terminal.Attributes()), before);
}

TEST_F(ConsoleKeyboard, LeavesAnEchoThatWasOffOff)
{
    termios attributes = m_Terminal.Attributes();
    attributes.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    m_Terminal.SetAttributes(attributes);
    EXPECT_EQ(Query(), std::nullopt);
    EXPECT_EQ(m_Terminal.Attributes().c_lflag, attributes.c_lflag);
}

// The documented hazard: the first read takes all that waits into the stream's buffer.
TEST_F(ConsoleKeyboard, HidesTypedAheadKeysFromTheQueryInTheBufferOfTheStream)
{
    m_Terminal.TypeAndWaitForEcho("ab");
    EXPECT_EQ(Query(), 'a');
    EXPECT_EQ(Query(), std::nullopt);
    EXPECT_EQ(Read(), 'b');
}

TEST_F(ConsoleKeyboard, FindsTypedAheadKeysWhenTheStreamIsUnbuffered)
{
    m_Input.SetUnbuffered();
    m_Terminal.TypeAndWaitForEcho("abc");
    EXPECT_EQ(Query(), 'a');
    EXPECT_EQ(Query(), 'b');
    EXPECT_EQ(Read(), 'c');
    EXPECT_EQ(Query(), std::nullopt);
}

// The other documented hazard: nothing restores the terminal when a signal ends the process.
TEST(ConsoleKeyboardSignal, LeavesTheTerminalChangedWhenASignalEndsTheRead)
{
    CPseudoTerminal terminal;
    termios const before = terminal.Attributes();
    pid_t const child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        dup2(terminal.Slave(), STDIN_FILENO);
        oss_getch();
        _exit(0);
    }
    EXPECT_TRUE(ComesToHold([&] { return (terminal.Attributes().c_lflag & keyModes) == 0; }));
    kill(child, SIGTERM);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(Text(terminal.Attributes()), Text(WithoutKeyModes(before)));
}

// A handler installed to interrupt system calls; the former one comes back at the end.
namespace
{
class CInterruptingHandler
{
public:
    CInterruptingHandler()
    {
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        sigaction(SIGUSR1, &action, &m_Former);
    }
    CInterruptingHandler(CInterruptingHandler const&) = delete;
    CInterruptingHandler& operator=(CInterruptingHandler const&) = delete;
    ~CInterruptingHandler() { sigaction(SIGUSR1, &m_Former, nullptr); }

private:
    struct sigaction m_Former = {};
};
} // namespace

TEST_F(ConsoleKeyboard, EndsAnInterruptedReadAndRestoresEveryAttribute)
{
    CInterruptingHandler const handler;
    std::string const before = Text(m_Terminal.Attributes());
    std::atomic<bool> ended{false};
    int key = -2;
    std::thread reader([&] {
        key = oss_getch();
        ended = true;
    });
    pthread_t const id = reader.native_handle();
    // One signal may come before the read waits; the next ones then do not.
    bool const interrupted =
        ComesToHold([&] { return ended || (pthread_kill(id, SIGUSR1), false); });
    if (!interrupted)
        m_Terminal.HangUp();
    reader.join();
    EXPECT_TRUE(interrupted);
    EXPECT_EQ(key, EOF);
    EXPECT_EQ(Text(m_Terminal.Attributes()), before);
}

// Where standard input is no terminal, it is a plain stream.
TEST(ConsoleKeyboardWithoutTerminal, ReadsAPipeToItsEnd)
{
    CPipe pipe;
    CStandardInput const input(pipe.m_Read.get());
    ASSERT_EQ(write(pipe.m_Write.get(), "a\n\xff", 3), 3);
    pipe.m_Write.Close();
    EXPECT_EQ(oss_getch(), 'a');
    EXPECT_EQ(oss_getch(), '\n');
    EXPECT_EQ(oss_getch(), 0xff);
    EXPECT_EQ(oss_getch(), EOF);
}

TEST(ConsoleKeyboardWithoutTerminal, FindsWhatWaitsInAPipe)
{
    CPipe pipe;
    CStandardInput input(pipe.m_Read.get());
    input.SetUnbuffered();
    EXPECT_EQ(oss_query_getch(), std::nullopt);
    ASSERT_EQ(write(pipe.m_Write.get(), "ab", 2), 2);
    EXPECT_EQ(oss_query_getch(), 'a');
    EXPECT_EQ(oss_query_getch(), 'b');
    EXPECT_EQ(oss_query_getch(), std::nullopt);
    pipe.m_Write.Close();
    EXPECT_EQ(oss_query_getch(), std::nullopt);
}

TEST(ConsoleKeyboardWithoutTerminal, ReadsAFileToItsEnd)
{
    CTemporaryFolder const folder;
    WriteFile(folder / "keys", "ab");
    CDescriptor const file(open((folder / "keys").c_str(), O_RDONLY | O_CLOEXEC));
    CStandardInput input(file.get());
    input.SetUnbuffered();
    EXPECT_EQ(oss_query_getch(), 'a');
    EXPECT_EQ(oss_getch(), 'b');
    EXPECT_EQ(oss_query_getch(), std::nullopt);
    EXPECT_EQ(oss_getch(), EOF);
}

// The count cannot be asked for there: the call fails and leaves it at 0.
TEST(ConsoleKeyboardWithoutTerminal, FindsNothingWhereTheCountIsRefused)
{
    CDescriptor const device(open("/dev/zero", O_RDONLY | O_CLOEXEC));
    CStandardInput const input(device.get());
    EXPECT_EQ(oss_query_getch(), std::nullopt);
    EXPECT_EQ(oss_getch(), 0);
}

TEST(ConsoleKeyboardWithoutTerminal, FindsNothingAndTheEndAtAClosedDescriptor)
{
    CStandardInput const input(CStandardInput::closed);
    EXPECT_EQ(oss_query_getch(), std::nullopt);
    EXPECT_EQ(oss_getch(), EOF);
}

TEST(ConsoleKeyboardFunctions, HaveResultsOfTheirExactTypes)
{
    static_assert(std::is_same_v<decltype(oss_getch()), int>);
    static_assert(std::is_same_v<decltype(oss_query_getch()), std::optional<int>>);
    static_assert(std::is_same_v<decltype(&oss_set_current_code_page), void (*)(unsigned int)>);
}

TEST(CodePage, IsAlwaysThatOfUtf8)
{
    static_assert(std::is_same_v<decltype(oss_get_current_code_page()), unsigned int>);
    static_assert(std::is_same_v<decltype(oss_utf8_code_page_number()), unsigned int>);
    EXPECT_EQ(oss_get_current_code_page(), 0u);
    EXPECT_EQ(oss_utf8_code_page_number(), 0u);
}

TEST(CodePage, IsNotChangedBySettingIt)
{
    for (unsigned int const page : {65001u, 437u, 0u, 4294967295u}) {
        SCOPED_TRACE(page);
        oss_set_current_code_page(page);
        EXPECT_EQ(oss_get_current_code_page(), oss_utf8_code_page_number());
        EXPECT_EQ(oss_get_current_code_page(), 0u);
    }
}
