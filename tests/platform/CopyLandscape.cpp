#include "CopyLandscape.h"

#include <BaseUtilities/TQException.h>

#include <cerrno>
#include <system_error>
#include <typeinfo>

#include <sys/stat.h>

namespace fs = std::filesystem;

namespace
{
void MakeNode(std::string const& path, mode_t type)
{
    if (mknod(path.c_str(), type | 0600, 0) != 0)
        throw std::system_error(errno, std::generic_category(), path);
}

std::string Describe(fs::path const& entry)
{
    struct stat status;
    if (lstat(entry.c_str(), &status) != 0)
        throw std::system_error(errno, std::generic_category(), entry.native());
    std::string text = std::to_string(status.st_mode) + ' ' + std::to_string(status.st_ino) + ' '
                       + std::to_string(status.st_mtim.tv_sec) + '.'
                       + std::to_string(status.st_mtim.tv_nsec);
    if (S_ISREG(status.st_mode))
        text += ' ' + ReadFile(entry);
    return text;
}
} // namespace

CCopyLandscape::CCopyLandscape()
{
    for (char const* const folder : {"folder", "holder", "holder/from", "pipes"})
        fs::create_directory(*this / folder);
    WriteFile(*this / "from", "contents");
    WriteFile(*this / "old", "what was there");
    WriteFile(*this / "folder/inner", "inner");
    fs::create_hard_link(*this / "from", *this / "twin");
    MakeNode(*this / "pipe", S_IFIFO);
    MakeNode(*this / "pipes/from", S_IFIFO);
    MakeNode(*this / "socket", S_IFSOCK);
    for (auto const& [link, target] :
         std::map<std::string, std::string>{{"loop", "loop"},
                                            {"to-from", "from"},
                                            {"to-folder", "folder"},
                                            {"to-pipe", "pipe"},
                                            {"dangling", "missing"},
                                            {"astray", "missing/there"}})
        fs::create_symlink(target, *this / link);
}

std::string CCopyLandscape::Fill(std::string text) const
{
    for (std::size_t at = 0; (at = text.find('@', at)) != std::string::npos;)
        text.replace(at, 1, Path().native());
    return text;
}

std::map<std::string, std::string> CCopyLandscape::Snapshot() const
{
    std::map<std::string, std::string> all{{".", Describe(Path())}};
    for (fs::directory_entry const& entry : fs::recursive_directory_iterator(Path()))
        all[entry.path().native()] = Describe(entry.path());
    return all;
}

std::string Copy(std::string const& source, std::string const& destination, ECopyFailType failType)
{
    try {
        std::optional<CSafeString> const copied = TqCopyFile(source, destination, failType);
        return copied ? std::string("returned ") + copied->get() : "returned nothing";
    } catch (std::exception const& error) {
        if (typeid(error) != typeid(TQRunTimeException))
            return std::string("threw ") + typeid(error).name() + ": " + error.what();
        TEST_STATUS const status = static_cast<TQRunTimeException const&>(error).GetStatus();
        return "threw TQRunTimeException " + std::to_string(status) + ": " + error.what();
    }
}

std::string Copy(std::string const& source, std::string const& destination)
{
    return Copy(source, destination, ECopyFailType::Throw);
}

std::string Threw(std::string const& what)
{
    return "threw TQRunTimeException 1073741824: " + what; // 0x40000000
}
