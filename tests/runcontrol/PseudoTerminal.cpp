#include "PseudoTerminal.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <stdio_ext.h>
#include <unistd.h>

namespace
{
int Checked(int result, char const* call)
{
    if (result == -1)
        throw std::system_error(errno, std::generic_category(), call);
    return result;
}

// Far beyond what a healthy machine needs; only a failing test waits so long.
int const deadlineMilliseconds = 60000;

char buffer[BUFSIZ];

// Nothing of one input, nor its end, is left in the stream for the next.
void ResetStandardInput()
{
    __fpurge(stdin);
    std::clearerr(stdin);
    std::setvbuf(stdin, buffer, _IOFBF, sizeof buffer);
}
} // namespace

void CDescriptor::Set(int descriptor)
{
    Close();
    m_Descriptor = descriptor;
}

void CDescriptor::Close()
{
    if (m_Descriptor != -1)
        close(m_Descriptor);
    m_Descriptor = -1;
}

CPipe::CPipe()
{
    std::array<int, 2> ends{};
    Checked(pipe2(ends.data(), O_CLOEXEC), "pipe2");
    m_Read.Set(ends[0]);
    m_Write.Set(ends[1]);
}

CPseudoTerminal::CPseudoTerminal()
{
    int master = -1, slave = -1;
    Checked(openpty(&master, &slave, nullptr, nullptr, nullptr), "openpty");
    m_Master.Set(master);
    m_Slave.Set(slave);
}

termios CPseudoTerminal::Attributes() const
{
    termios attributes{};
    Checked(tcgetattr(m_Slave.get(), &attributes), "tcgetattr");
    return attributes;
}

void CPseudoTerminal::SetAttributes(termios const& attributes)
{
    Checked(tcsetattr(m_Slave.get(), TCSANOW, &attributes), "tcsetattr");
}

void CPseudoTerminal::Type(std::string const& keys)
{
    if (write(m_Master.get(), keys.data(), keys.size()) != static_cast<ssize_t>(keys.size()))
        throw std::system_error(errno, std::generic_category(), "write");
}

void CPseudoTerminal::TypeAndWaitForEcho(std::string const& keys)
{
    Type(keys);
    for (std::string echoed; echoed.size() < keys.size(); echoed += Echoed()) {
        pollfd ready{m_Master.get(), POLLIN, 0};
        if (Checked(poll(&ready, 1, deadlineMilliseconds), "poll") == 0)
            throw std::runtime_error("the terminal echoed nothing");
    }
}

std::string CPseudoTerminal::Echoed() const
{
    std::array<char, 256> echoed{};
    pollfd ready{m_Master.get(), POLLIN, 0};
    if (poll(&ready, 1, 0) <= 0)
        return "";
    ssize_t const count =
        Checked(static_cast<int>(read(m_Master.get(), echoed.data(), echoed.size())), "read");
    return std::string(echoed.data(), static_cast<std::size_t>(count));
}

std::string Text(termios const& attributes)
{
    std::ostringstream text;
    text << std::hex << "i " << attributes.c_iflag << " o " << attributes.c_oflag << " c "
         << attributes.c_cflag << " l " << attributes.c_lflag << " line "
         << static_cast<int>(attributes.c_line) << " speeds " << cfgetispeed(&attributes) << ' '
         << cfgetospeed(&attributes) << " keys";
    for (cc_t const key : attributes.c_cc)
        text << ' ' << static_cast<int>(key);
    return text.str();
}

CStandardInput::CStandardInput(int descriptor) : m_Former(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3))
{
    if (descriptor == closed)
        close(STDIN_FILENO);
    else
        Checked(dup2(descriptor, STDIN_FILENO), "dup2");
    ResetStandardInput();
}

CStandardInput::~CStandardInput()
{
    ResetStandardInput();
    if (m_Former.get() == -1)
        close(STDIN_FILENO);
    else
        dup2(m_Former.get(), STDIN_FILENO);
}

void CStandardInput::SetUnbuffered()
{
    std::setvbuf(stdin, nullptr, _IONBF, 0);
}
