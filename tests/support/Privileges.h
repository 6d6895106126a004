#pragma once

#include <sys/fsuid.h>
#include <unistd.h>

/// Lets the calling thread meet file permissions as a user without privileges
/// does, also where the tests run as root.
class CUnprivilegedFileAccess
{
public:
    CUnprivilegedFileAccess() { setfsuid(geteuid() == 0 ? Nobody : geteuid()); }
    CUnprivilegedFileAccess(CUnprivilegedFileAccess const&) = delete;
    CUnprivilegedFileAccess& operator=(CUnprivilegedFileAccess const&) = delete;
    ~CUnprivilegedFileAccess() { setfsuid(geteuid()); }

private:
    static constexpr uid_t Nobody = 65534;
};
