#pragma once

#include <filesystem>
#include <string>

/// A new, empty folder of the test's own, removed with all it holds.
class CTemporaryFolder
{
public:
    CTemporaryFolder();
    CTemporaryFolder(CTemporaryFolder const&) = delete;
    CTemporaryFolder& operator=(CTemporaryFolder const&) = delete;
    ~CTemporaryFolder();

    std::filesystem::path const& Path() const { return m_Path; }
    /// The path of an entry of that name, as text.
    std::string operator/(std::string const& name) const { return (m_Path / name).native(); }

private:
    std::filesystem::path m_Path;
};

/// Writes, replacing, and reads a whole file.
void WriteFile(std::filesystem::path const& file, std::string const& contents);
std::string ReadFile(std::filesystem::path const& file);
