#pragma once

#include <unistd.h>

#include <cerrno>
#include <system_error>

/// Permissions bind this process while it lives, also when root runs the test.
class CUnprivileged
{
public:
    CUnprivileged()
    {
        if (m_Previous == 0 && seteuid(nobody) != 0)
            throw std::system_error(errno, std::generic_category(), "seteuid");
    }
    CUnprivileged(CUnprivileged const&) = delete;
    CUnprivileged& operator=(CUnprivileged const&) = delete;
    ~CUnprivileged() { static_cast<void>(seteuid(m_Previous) != 0); }

private:
    static constexpr uid_t nobody = 65534;
    uid_t const m_Previous = geteuid();
};
