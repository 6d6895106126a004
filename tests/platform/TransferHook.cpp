#include "TransferHook.h"

#include <utility>

#include <sys/sendfile.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{
thread_local std::function<void()> installed;
thread_local bool happened = false;

void CallHook()
{
    if (std::function<void()> const hook = std::exchange(installed, nullptr)) {
        happened = true;
        hook();
    }
}
} // namespace

CTransferHook::CTransferHook(std::function<void()> hook)
{
    installed = std::move(hook);
    happened = false;
}

CTransferHook::~CTransferHook()
{
    installed = nullptr;
}

bool CTransferHook::Happened() const
{
    return happened;
}

extern "C" ssize_t sendfile(int to, int from, off_t* offset, size_t count) noexcept
{
    CallHook();
    return syscall(SYS_sendfile, to, from, offset, count);
}

extern "C" ssize_t copy_file_range(int from, off64_t* fromOffset, int to, off64_t* toOffset,
                                   size_t count, unsigned int flags)
{
    CallHook();
    return syscall(SYS_copy_file_range, from, fromOffset, to, toOffset, count, flags);
}
