#pragma once

#include <string>

#include <termios.h>

/// A descriptor that is closed with its owner.
class CDescriptor
{
public:
    CDescriptor() = default;
    explicit CDescriptor(int descriptor) : m_Descriptor(descriptor) {}
    CDescriptor(CDescriptor const&) = delete;
    CDescriptor& operator=(CDescriptor const&) = delete;
    ~CDescriptor() { Close(); }

    int get() const { return m_Descriptor; }
    void Set(int descriptor);
    void Close();

private:
    int m_Descriptor = -1;
};

/// Both ends of a pipe.
struct CPipe
{
    CPipe();
    CDescriptor m_Read;
    CDescriptor m_Write;
};

/// A terminal whose keyboard and screen are the test's: characters typed reach
/// readers of Slave(), and what the terminal echoes comes back.
class CPseudoTerminal
{
public:
    CPseudoTerminal();

    int Slave() const { return m_Slave.get(); }
    termios Attributes() const;
    void SetAttributes(termios const& attributes);

    /// Returns at once; the terminal may take the keys in later.
    void Type(std::string const& keys);
    /// Returns when the terminal, which must echo, has taken the keys in.
    void TypeAndWaitForEcho(std::string const& keys);
    /// What the terminal has echoed and nobody has read yet.
    std::string Echoed() const;
    /// The operator hangs up: readers get the end of input.
    void HangUp() { m_Master.Close(); }

private:
    CDescriptor m_Master;
    CDescriptor m_Slave;
};

/// Every field of the attributes as text, in which `==` compares them all.
std::string Text(termios const& attributes);

/// Puts another descriptor, or none, in the place of standard input, with a
/// fresh stream; puts the former back at its end.
class CStandardInput
{
public:
    static constexpr int closed = -1;

    explicit CStandardInput(int descriptor);
    CStandardInput(CStandardInput const&) = delete;
    CStandardInput& operator=(CStandardInput const&) = delete;
    ~CStandardInput();

    /// As an application does that polls for keys.
    void SetUnbuffered();

private:
    CDescriptor m_Former;
};
