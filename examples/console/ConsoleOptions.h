#pragma once

#include <CSuiteRunner.h>

#include <stdexcept>
#include <string>

struct CConsoleOptions
{
    CSuiteOptions m_Suite;
    bool m_Help = false;
    bool m_Version = false;
    /// Lists only what did not pass.
    bool m_Quiet = false;
    bool m_Colour = true;
    /// Lines alone: neither colour nor progress bar.
    bool m_Plain = false;
};

/// Arguments that mean nothing; what() says which.
class CUsageError : public std::runtime_error
{
    using runtime_error::runtime_error;
};

/// Throws CUsageError.
CConsoleOptions ParseOptions(int argc, char const* const* argv);

std::string HelpText();
