#include "CInterruptWatch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace
{
int Checked(int descriptor, char const* what)
{
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return descriptor;
}

bool IsIgnored(int number)
{
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}
} // namespace

// A signal that is ignored, as SIGINT is while a command runs, is lost only where it is not
// blocked.
CHeldInterrupts::CHeldInterrupts() : m_Signals(), m_Former()
{
    sigemptyset(&m_Signals);
    for (int const number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
        if (!IsIgnored(number))
            sigaddset(&m_Signals, number);
    pthread_sigmask(SIG_BLOCK, &m_Signals, &m_Former);
}

CHeldInterrupts::~CHeldInterrupts()
{
    pthread_sigmask(SIG_SETMASK, &m_Former, nullptr);
}

CInterruptWatch::CInterruptWatch(CHeldInterrupts const& held, std::function<void()> onFirst,
                                 std::function<void()> onLast)
    : m_OnFirst(std::move(onFirst)),
      m_OnLast(std::move(onLast)),
      m_Signals(Checked(signalfd(-1, &held.Signals(), SFD_CLOEXEC), "signalfd")),
      m_Ending(Checked(eventfd(0, EFD_CLOEXEC), "eventfd")),
      m_Thread([this] { Listen(); })
{
}

CInterruptWatch::~CInterruptWatch()
{
    eventfd_write(m_Ending, 1);
    m_Thread.join();
    close(m_Ending);
    close(m_Signals);
}

// Again and again: a command that starts or ends meanwhile changes what the signal does.
void CInterruptWatch::EndBy(int number)
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, number);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    for (;;) {
        static_cast<void>(std::signal(number, SIG_DFL));
        kill(getpid(), number);
    }
}

// The signal that came, or 0 once the watch is to end.
int CInterruptWatch::NextSignal() const
{
    std::array<pollfd, 2> inputs = {pollfd{m_Signals, POLLIN, 0}, pollfd{m_Ending, POLLIN, 0}};
    while (poll(inputs.data(), inputs.size(), -1) < 0 && errno == EINTR) {
    }
    signalfd_siginfo signal = {};
    bool const came = (inputs[0].revents & POLLIN) != 0
                      && read(m_Signals, &signal, sizeof signal) == sizeof signal;
    return came ? static_cast<int>(signal.ssi_signo) : 0;
}

void CInterruptWatch::Listen()
{
    int number = NextSignal();
    if (number != 0 && number != SIGQUIT) {
        m_OnFirst();
        number = NextSignal();
    }
    if (number == 0)
        return;
    m_OnLast();
    EndBy(number);
}
