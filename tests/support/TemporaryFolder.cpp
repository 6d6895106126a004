#include "TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <system_error>

namespace fs = std::filesystem;

CTemporaryFolder::CTemporaryFolder()
{
    std::string pattern = (fs::temp_directory_path() / "BaseUtilities-XXXXXX").native();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "mkdtemp");
    m_Path = pattern;
}

CTemporaryFolder::~CTemporaryFolder()
{
    std::error_code ignored; // a test that made its folder unreadable must still end
    fs::permissions(m_Path, fs::perms::owner_all, ignored);
    fs::remove_all(m_Path, ignored);
}

void WriteFile(fs::path const& file, std::string const& contents)
{
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.exceptions(std::ios::badbit | std::ios::failbit);
    stream.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    stream.close();
}

std::string ReadFile(fs::path const& file)
{
    std::ifstream const stream(file, std::ios::binary);
    if (!stream)
        throw std::system_error(errno, std::generic_category(), file.native());
    std::ostringstream contents; // iterators of the stream buffer make g++ warn in sanitizer builds
    contents << stream.rdbuf();
    return contents.str();
}
