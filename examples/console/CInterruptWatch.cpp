#include "CInterruptWatch.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace
{
constexpr std::array<int, 3> watched = {SIGINT, SIGTERM, SIGHUP};

// Read end and write end. A signal handler reaches nothing but statics.
std::array<int, 2> interruptPipe = {-1, -1};
std::array<struct sigaction, watched.size()> previousActions;

extern "C" void OnSignal(int number)
{
    int const savedError = errno;
    auto const byte = static_cast<unsigned char>(number);
    // A full pipe holds more interrupts than anybody acts on.
    [[maybe_unused]] ssize_t const written = write(interruptPipe[1], &byte, 1);
    errno = savedError;
}

// The signal read, or 0 once the watch is to end.
int NextSignal()
{
    unsigned char byte = 0;
    while (read(interruptPipe[0], &byte, 1) < 0 && errno == EINTR) {
    }
    return byte;
}

// A signal that the caller has this process ignore, as nohup does, stays ignored.
void Install(int number, struct sigaction const& action, struct sigaction& previous)
{
    sigaction(number, nullptr, &previous);
    if (previous.sa_handler != SIG_IGN)
        sigaction(number, &action, nullptr);
}

void InstallHandlers()
{
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t index = 0; index < watched.size(); ++index)
        Install(watched[index], action, previousActions[index]);
}

void RestoreHandlers()
{
    for (std::size_t index = 0; index < watched.size(); ++index)
        sigaction(watched[index], &previousActions[index], nullptr);
}
} // namespace

CInterruptWatch::CInterruptWatch(std::function<void()> onFirst, std::function<void()> onSecond)
    : m_OnFirst(std::move(onFirst)),
      m_OnSecond(std::move(onSecond))
{
    if (pipe2(interruptPipe.data(), O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe2");
    fcntl(interruptPipe[1], F_SETFL, O_NONBLOCK); // the handler must never wait
    m_Thread = std::thread([this] { Listen(); });
    InstallHandlers();
}

CInterruptWatch::~CInterruptWatch()
{
    RestoreHandlers();
    close(interruptPipe[1]); // ends Listen
    m_Thread.join();
    close(interruptPipe[0]);
}

void CInterruptWatch::EndBy(int number)
{
    static_cast<void>(std::signal(number, SIG_DFL));
    kill(getpid(), number);
    for (;;)
        pause();
}

void CInterruptWatch::Listen()
{
    if (NextSignal() == 0)
        return;
    m_OnFirst();
    if (int const number = NextSignal(); number != 0) {
        m_OnSecond();
        EndBy(number);
    }
}
