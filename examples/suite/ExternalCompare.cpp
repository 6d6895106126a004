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
    CSafeString const files = ShellQuoted(one.native()) + ' ' + ShellQuoted(other.native());
    // An interrupted command says nothing about the files, so a failure is asked about twice.
    CSafeString const arguments = "-s -- " + files;
    return oss_system("cmp", arguments, "") || oss_system("cmp", arguments, "");
}
