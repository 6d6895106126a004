#include "PathChecks.h"

#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
fs::file_type TypeOf(fs::path const& path)
{
    std::error_code ignored; // a path that cannot be looked at is none
    return fs::status(path, ignored).type();
}

std::string NotThere(fs::path const& path)
{
    return "There is no " + path.native() + ".";
}
} // namespace

std::string WhyNoFolder(fs::path const& path)
{
    fs::file_type const type = TypeOf(path);
    if (type == fs::file_type::directory)
        return "";
    bool const exists = type != fs::file_type::not_found && type != fs::file_type::none;
    return exists ? path.native() + " is not a folder." : NotThere(path);
}

std::string WhyNoFileToRead(fs::path const& path)
{
    switch (TypeOf(path)) {
    case fs::file_type::regular:
        return eaccess(path.c_str(), R_OK) == 0 ? "" : path.native() + " cannot be read.";
    case fs::file_type::not_found:
    case fs::file_type::none:
        return NotThere(path);
    default:
        return path.native() + " is not a file.";
    }
}

std::string WhyNoFileToWrite(fs::path const& path)
{
    if (std::string problem = WhyNoFolder(path.parent_path()); !problem.empty())
        return problem;
    fs::file_type const type = TypeOf(path);
    bool const exists = type != fs::file_type::not_found && type != fs::file_type::none;
    if (exists && type != fs::file_type::regular)
        return path.native() + " is not a file.";
    return eaccess(exists ? path.c_str() : path.parent_path().c_str(), W_OK) == 0
               ? ""
               : path.native() + " cannot be written.";
}
