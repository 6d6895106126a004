#pragma once

#include <cstdlib>
#include <optional>
#include <string>

/// Sets or removes one environment variable and puts back what was there before.
class CScopedEnvironment
{
public:
    /// No `value` removes the variable.
    CScopedEnvironment(std::string const& name, std::optional<std::string> const& value)
        : m_Name(name)
    {
        if (char const* const before = std::getenv(name.c_str()))
            m_Before = before;
        Set(value);
    }
    CScopedEnvironment(CScopedEnvironment const&) = delete;
    CScopedEnvironment& operator=(CScopedEnvironment const&) = delete;
    ~CScopedEnvironment() { Set(m_Before); }

    /// Another value for the same variable; the one before the object still comes back.
    void Set(std::optional<std::string> const& value)
    {
        if (value)
            setenv(m_Name.c_str(), value->c_str(), 1);
        else
            unsetenv(m_Name.c_str());
    }

private:
    std::string m_Name;
    std::optional<std::string> m_Before;
};
