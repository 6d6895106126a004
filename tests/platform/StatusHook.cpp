#include "StatusHook.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>

namespace
{
thread_local CStatusHook::Hook installed;

int CallHook(char const* path)
{
    // Out of the way while it runs, for it may query files itself.
    CStatusHook::Hook const hook = std::exchange(installed, nullptr);
    int const error = hook(path);
    installed = hook;
    return error;
}
} // namespace

CStatusHook::CStatusHook(Hook hook)
{
    installed = std::move(hook);
}

CStatusHook::~CStatusHook()
{
    installed = nullptr;
}

extern "C" int stat(char const* path, struct stat* status) noexcept
{
    if (installed)
        if (int const error = CallHook(path)) {
            errno = error;
            return -1;
        }
    return fstatat(AT_FDCWD, path, status, 0);
}
