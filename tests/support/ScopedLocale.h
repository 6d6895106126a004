#pragma once

#include <clocale>
#include <locale>
#include <string>

/// Sets the C library's locale and puts back the one before.
class CScopedLocale
{
public:
    /// Where the system has no locale of that name, nothing is changed.
    explicit CScopedLocale(std::string const& name)
        : m_Before(std::setlocale(LC_ALL, nullptr)),
          m_IsSet(std::setlocale(LC_ALL, name.c_str()) != nullptr)
    {
    }
    CScopedLocale(CScopedLocale const&) = delete;
    CScopedLocale& operator=(CScopedLocale const&) = delete;
    ~CScopedLocale() { std::setlocale(LC_ALL, m_Before.c_str()); }

    bool IsSet() const { return m_IsSet; }

private:
    std::string m_Before;
    bool m_IsSet;
};

/// Sets the global C++ locale and puts back the one before.
class CScopedGlobalLocale
{
public:
    explicit CScopedGlobalLocale(std::locale const& locale) : m_Before(std::locale::global(locale))
    {
    }
    CScopedGlobalLocale(CScopedGlobalLocale const&) = delete;
    CScopedGlobalLocale& operator=(CScopedGlobalLocale const&) = delete;
    ~CScopedGlobalLocale() { std::locale::global(m_Before); }

private:
    std::locale m_Before;
};
