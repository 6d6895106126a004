#pragma once

#include <filesystem>
#include <system_error>

/// Puts back the current folder of the process, which it may also change.
class CScopedCurrentPath
{
public:
    CScopedCurrentPath() : m_Before(std::filesystem::current_path()) {}
    explicit CScopedCurrentPath(std::filesystem::path const& folder) : CScopedCurrentPath()
    {
        std::filesystem::current_path(folder);
    }
    CScopedCurrentPath(CScopedCurrentPath const&) = delete;
    CScopedCurrentPath& operator=(CScopedCurrentPath const&) = delete;
    ~CScopedCurrentPath()
    {
        std::error_code ignored; // nothing to be done about it in a destructor
        std::filesystem::current_path(m_Before, ignored);
    }

private:
    std::filesystem::path m_Before;
};
