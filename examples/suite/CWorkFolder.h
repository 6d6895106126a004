#pragma once

#include <filesystem>
#include <system_error>

/// A new, private folder, removed with all it holds.
class CWorkFolder
{
public:
    /// Makes the folder in `parent`. Throws TQRunTimeException with
    /// TEST_STATUS_NO_WORK_FOLDER.
    explicit CWorkFolder(std::filesystem::path const& parent);
    CWorkFolder(CWorkFolder const&) = delete;
    CWorkFolder& operator=(CWorkFolder const&) = delete;
    /// Removes what Remove has not. Failures go unnoticed.
    ~CWorkFolder();

    std::filesystem::path const& Path() const { return m_Path; }
    std::error_code Remove();

private:
    std::filesystem::path m_Path; // empty once removed
};
