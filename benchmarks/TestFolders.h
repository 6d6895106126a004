#pragma once

#include <filesystem>
#include <string>

/// A folder of its own below `parent`, removed with everything in it.
class CFolder
{
public:
    explicit CFolder(std::filesystem::path const& parent);
    CFolder(CFolder const&) = delete;
    CFolder& operator=(CFolder const&) = delete;
    ~CFolder();

    std::string File(std::string const& name) const { return (m_Path / name).string(); }

private:
    std::filesystem::path m_Path;
};

/// The shared-memory folder, and the one for temporary files that outlive a boot.
inline char const* const MemoryFolder = "/dev/shm";
inline char const* const DiskFolder = "/var/tmp";

/// A file of `size` bytes of text.
void WriteFile(std::string const& file, std::uintmax_t size);

/// Starts a program without a shell and waits for it; its exit status.
int RunProgram(char const* program, char const* first = nullptr, char const* second = nullptr,
               char const* third = nullptr);
