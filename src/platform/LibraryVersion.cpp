#include <BaseUtilities/LibraryVersion.h>

// The numbers come from the project's version in the build system.

int GetVersionMajor()
{
    return BASEUTILITIES_VERSION_MAJOR;
}

int GetVersionMinor()
{
    return BASEUTILITIES_VERSION_MINOR;
}

int GetVersionPatch()
{
    return BASEUTILITIES_VERSION_PATCH;
}

int GetVersionTweak()
{
    return BASEUTILITIES_VERSION_TWEAK;
}
