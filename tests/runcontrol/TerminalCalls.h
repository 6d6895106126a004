#pragma once

#include <string>
#include <vector>

/// False where the calls of the library cannot be intercepted.
bool CanInterceptTerminalCalls();

/// Records the calling thread's calls for the terminal, those inside the library
/// included, while it lives; one at a time in each thread.
class CTerminalCalls
{
public:
    CTerminalCalls();
    CTerminalCalls(CTerminalCalls const&) = delete;
    CTerminalCalls& operator=(CTerminalCalls const&) = delete;
    ~CTerminalCalls();

    /// In order, each beginning with its descriptor: "get" for tcgetattr, "set"
    /// with the time and the attributes for tcsetattr, "count" with what the
    /// count was before for ioctl with FIONREAD.
    std::vector<std::string> const& Get() const;
};
