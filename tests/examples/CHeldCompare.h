#pragma once

#include "TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

/// A command `cmp` that writes "Comparing" and waits until it is let go, at the
/// latest with this object: a case of the suite that lasts as long as the test wants.
class CHeldCompare
{
public:
    CHeldCompare()
    {
        std::string const gate = m_Folder / "gate";
        WriteFile(m_Folder / "cmp",
                  "#!/bin/sh\nexec 3<" + gate + "\necho Comparing\nread line <&3\n");
        std::filesystem::permissions(m_Folder / "cmp", std::filesystem::perms::owner_all);
        // Open for both, so that neither this process nor the command waits for the other's end.
        if (mkfifo(gate.c_str(), 0600) == 0)
            m_Gate = open(gate.c_str(), O_RDWR | O_CLOEXEC);
        if (m_Gate < 0)
            throw std::system_error(errno, std::generic_category(), gate);
    }
    CHeldCompare(CHeldCompare const&) = delete;
    CHeldCompare& operator=(CHeldCompare const&) = delete;
    ~CHeldCompare() { close(m_Gate); }

    /// The value of PATH with which a program runs this command.
    std::string SearchPath() const { return m_Folder.Path().native() + ":/usr/bin:/bin"; }
    void LetGo() const
    {
        std::string const line = "go on\n";
        if (write(m_Gate, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
            throw std::system_error(errno, std::generic_category(), "the gate");
    }

private:
    CTemporaryFolder const m_Folder;
    int m_Gate = -1;
};
