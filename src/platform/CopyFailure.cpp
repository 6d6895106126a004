#include "CopyFailure.h"

#include <BaseUtilities/DoThrow.h>

#include <string>

namespace fs = std::filesystem;

void ThrowNotACopy(fs::path const& file, fs::file_type type)
{
    char const* const name = file.c_str();
    switch (type) {
    case fs::file_type::not_found:
        DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "Destination file %s does not exist.", name);
    case fs::file_type::directory:
        DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "Destination file %s is a directory.", name);
    case fs::file_type::symlink:
        // Deliberate: two blanks after "link.".
        DoThrow<TQRunTimeException>(TEST_STATUS_ERROR,
                                    "Destination file %s is a symbolic link.  TQ does not support "
                                    "symbolic links at this time.",
                                    name);
    case fs::file_type::none:
        DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "Couldn't obtain file status for %s.", name);
    default:
        DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "Unexpected file type for %s: %d", name,
                                    type);
    }
}

void ThrowCopyError(fs::filesystem_error const& error)
{
    std::string const reason = error.code().message();
    // Deliberate: the stray full stop before the second quote, and the line break.
    DoThrow<TQRunTimeException>(
        TEST_STATUS_ERROR, "Unable to copy file '%s' to .%s':\n   status = %d (%s)",
        error.path1().string(), error.path2().string(), error.code().value(), reason.c_str());
}
