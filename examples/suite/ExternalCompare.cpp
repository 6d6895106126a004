#include "ExternalCompare.h"

#include <BaseUtilities/oss_system.h>

#include <chrono>
#include <csignal>
#include <thread>

namespace
{
bool InterruptWaits()
{
    sigset_t pending;
    return sigpending(&pending) == 0
           && (sigismember(&pending, SIGINT) == 1 || sigismember(&pending, SIGQUIT) == 1);
}

// While a command runs, the process ignores SIGINT and SIGQUIT. That would discard one that has
// come and waits for the thread that is to take it.
void LetInterruptsBeTaken()
{
    using Clock = std::chrono::steady_clock;
    auto const end = Clock::now() + std::chrono::seconds(1); // nobody need ever take it
    while (InterruptWaits() && Clock::now() < end)
        std::this_thread::yield();
}

// Has Ctrl-Z wait until the command has begun. One that is stopped before holds this thread, so
// that this process does not stop whole, and its shell waits for that. The shell of a command that
// has begun takes the signal at once.
class CStopAfterStart
{
public:
    CStopAfterStart() : m_Former()
    {
        sigset_t stop;
        sigemptyset(&stop);
        sigaddset(&stop, SIGTSTP);
        pthread_sigmask(SIG_BLOCK, &stop, &m_Former);
    }
    CStopAfterStart(CStopAfterStart const&) = delete;
    CStopAfterStart& operator=(CStopAfterStart const&) = delete;
    ~CStopAfterStart() { pthread_sigmask(SIG_SETMASK, &m_Former, nullptr); }

private:
    sigset_t m_Former;
};

bool Succeeds(CSafeString const& arguments)
{
    LetInterruptsBeTaken();
    CStopAfterStart const stopAfterStart;
    return oss_system("cmp", arguments, "");
}
} // namespace

CSafeString ShellQuoted(basic_sv_wrapper<char> const& argument)
{
    CSafeString quoted("'");
    for (char const character : argument) {
        if (character == '\'')
            quoted += "'\\''";
        else
            quoted += character;
    }
    return quoted + '\'';
}

bool ComparesEqual(std::filesystem::path const& one, std::filesystem::path const& other)
{
    CSafeString const files = ShellQuoted(one.native()) + ' ' + ShellQuoted(other.native());
    // An interrupted command says nothing about the files, so a failure is asked about twice.
    CSafeString const arguments = "-s -- " + files;
    bool const equal = Succeeds(arguments);
    return equal || Succeeds(arguments);
}
