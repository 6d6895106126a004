#include "TerminalCalls.h"

#include "PseudoTerminal.h"

#include <cstdarg>
#include <utility>

#include <dlfcn.h>
#include <sys/ioctl.h>

// A program that carries its sanitizer's runtime in itself has the calls
// intercepted there already; a runtime in a shared library lets us go first.
#if defined(__clang__) && defined(__has_feature)
#if __has_feature(thread_sanitizer) || __has_feature(address_sanitizer)
#define TERMINAL_CALLS_INTERCEPT 0
#endif
#endif
#ifndef TERMINAL_CALLS_INTERCEPT
#define TERMINAL_CALLS_INTERCEPT 1
#endif

namespace
{
// Null while nothing is recorded.
thread_local std::vector<std::string>* recording = nullptr;
} // namespace

bool CanInterceptTerminalCalls()
{
    return TERMINAL_CALLS_INTERCEPT != 0;
}

CTerminalCalls::CTerminalCalls()
{
    recording = new std::vector<std::string>;
}

CTerminalCalls::~CTerminalCalls()
{
    delete std::exchange(recording, nullptr);
}

std::vector<std::string> const& CTerminalCalls::Get() const
{
    return *recording;
}

#if TERMINAL_CALLS_INTERCEPT
namespace
{
void Record(int descriptor, std::string const& call)
{
    if (recording != nullptr)
        recording->push_back(std::to_string(descriptor) + " " + call);
}

template <class Function>
Function* Next(char const* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

char const* Time(int actions)
{
    return actions == TCSANOW ? "now " : actions == TCSADRAIN ? "drained " : "flushed ";
}
} // namespace

extern "C" {
int tcgetattr(int descriptor, termios* attributes) noexcept
{
    static auto* const next = Next<int(int, termios*)>("tcgetattr");
    Record(descriptor, "get");
    return next(descriptor, attributes);
}

int tcsetattr(int descriptor, int actions, termios const* attributes) noexcept
{
    static auto* const next = Next<int(int, int, termios const*)>("tcsetattr");
    if (recording != nullptr)
        Record(descriptor, std::string("set ") + Time(actions) + Text(*attributes));
    return next(descriptor, actions, attributes);
}

int ioctl(int descriptor, unsigned long request, ...) noexcept
{
    static auto* const next = Next<int(int, unsigned long, ...)>("ioctl");
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (recording != nullptr && request == FIONREAD)
        Record(descriptor, "count " + std::to_string(*static_cast<int*>(argument)));
    return next(descriptor, request, argument);
}
}
#endif
