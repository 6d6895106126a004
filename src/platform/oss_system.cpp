#include <BaseUtilities/oss_system.h>

#include "PathText.h"

#include <cstdlib>
#include <system_error>

namespace fs = std::filesystem;

namespace
{
bool Run(CSafeString const& command, CSafeString const& arguments, fs::path const& workingFolder)
{
    if (fs::is_directory(fs::status(workingFolder)))
        fs::current_path(workingFolder);
    CSafeString line(command);
    if (!arguments.empty()) {
        line += ' ';
        line += arguments;
    }
    return std::system(line.get()) == 0;
}
} // namespace

bool oss_system(basic_sv_wrapper<char> const& command, basic_sv_wrapper<char> const& arguments,
                basic_sv_wrapper<char> const& workingFolder)
{
    CSafeString const ownCommand(command);
    CSafeString const ownArguments(arguments);
    CSafeString const ownFolder(workingFolder);

    fs::path const saved = fs::current_path();
    bool succeeded = false;
    try {
        succeeded = Run(ownCommand, ownArguments, ownFolder.to_path());
    } catch (...) {
        std::error_code ignored; // the first failure is the one to report
        fs::current_path(saved, ignored);
        throw;
    }
    fs::current_path(saved);
    return succeeded;
}
