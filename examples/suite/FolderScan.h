#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

struct CFoundEntry
{
    std::filesystem::path m_Path;
    /// The path below the folder searched.
    std::string m_Name;
    /// Why there is nothing to copy; empty for a file.
    std::string m_SkipReason;
    /// Where a link leads; empty for everything else.
    std::string m_LinkTarget;
};

/// Every entry below `folder` in the order of the names, folders themselves only
/// where there is nothing in them to be had. Links are followed to files, never
/// to folders. `onFolder` is called before each folder with the count so far;
/// what it throws ends the search.
std::vector<CFoundEntry> ScanFolder(std::filesystem::path const& folder,
                                    std::function<void(unsigned long)> const& onFolder);
