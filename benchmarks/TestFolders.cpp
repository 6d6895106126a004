#include "TestFolders.h"

#include "Samples.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <system_error>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

CFolder::CFolder(std::filesystem::path const& parent)
{
    std::string pattern = (parent / "BaseUtilities-benchmark-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), pattern);
    m_Path = pattern;
}

CFolder::~CFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
}

void WriteFile(std::string const& file, std::uintmax_t size)
{
    std::string const block = MakeText(1024UL * 1024);
    std::ofstream stream(file, std::ios::binary);
    while (size != 0) {
        auto const part = std::min<std::uintmax_t>(size, block.size());
        stream.write(block.data(), static_cast<std::streamsize>(part));
        size -= part;
    }
}

int RunProgram(char const* program, char const* first, char const* second, char const* third)
{
    char* const arguments[] = {const_cast<char*>(program), const_cast<char*>(first),
                               const_cast<char*>(second), const_cast<char*>(third), nullptr};
    pid_t child = 0;
    if (posix_spawnp(&child, program, nullptr, nullptr, arguments, environ) != 0)
        return -1;
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}
