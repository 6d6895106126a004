#pragma once

#include <ctime>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

/// Reads a file from its start, in blocks. Never waits for a writer.
///
/// Threads: one at a time.
class CFileReader
{
public:
    /// What tells one state of a file from another.
    struct CStamp
    {
        std::uintmax_t m_Size = 0;
        std::timespec m_Changed{};

        bool operator==(CStamp const& other) const;
    };

    /// Throws std::system_error when the file cannot be opened.
    explicit CFileReader(std::filesystem::path const& file);
    CFileReader(CFileReader const&) = delete;
    CFileReader& operator=(CFileReader const&) = delete;
    ~CFileReader();

    bool IsRegular() const;
    CStamp Stamp() const;
    /// Fills `block` or, at the file's end, shortens it. Throws std::system_error.
    void Read(std::vector<char>& block);

private:
    int m_Descriptor;
    std::uintmax_t m_Position = 0;
};
