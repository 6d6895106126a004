#include "ExternalCompare.h"

#include <BaseUtilities/oss_system.h>

CSafeString ShellQuoted(basic_sv_wrapper<char> const& argument)
{
    CSafeString quoted("'");
    for (char const character : argument) {
        if (character == '\'')
            quoted += "'\\''";
        else
            quoted += character;
    }
    return quoted + '\'';
}

bool ComparesEqual(std::filesystem::path const& one, std::filesystem::path const& other)
{
    // An operator's Ctrl-C must neither look like a difference nor get lost: this process ignores
    // it while a command runs, so the shell passes it on as a request to end.
    CSafeString const files = ShellQuoted(one.native()) + ' ' + ShellQuoted(other.native());
    return oss_system("trap 'kill -TERM $PPID' INT QUIT; (trap '' INT QUIT; exec cmp",
                      "-s -- " + files + ')', "");
}
