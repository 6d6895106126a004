#pragma once

#include <filesystem>
#include <system_error>
#include <vector>

/// A new, private folder, removed with all it holds, and with the parents that
/// had to be made for it.
class CWorkFolder
{
public:
    /// Makes the folder in `parent`, and that where it is missing. Throws TQRunTimeException with
    /// TEST_STATUS_NO_WORK_FOLDER.
    explicit CWorkFolder(std::filesystem::path const& parent);
    CWorkFolder(CWorkFolder const&) = delete;
    CWorkFolder& operator=(CWorkFolder const&) = delete;
    /// Removes what Remove has not. Failures go unnoticed.
    ~CWorkFolder();

    std::filesystem::path const& Path() const { return m_Path; }
    std::error_code Remove();
    /// Removes a folder of a process that is about to end while its suite may be
    /// at work there; does nothing without a folder.
    static void RemoveAtOnce(std::filesystem::path const& folder);

private:
    void MakeParents(std::filesystem::path const& parent);
    void RemoveParents();

    std::filesystem::path m_Path;                        // empty once removed
    std::vector<std::filesystem::path> m_CreatedParents; // outermost first
};
