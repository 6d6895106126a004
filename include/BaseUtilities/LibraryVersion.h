#pragma once

#include <BaseUtilities/Export.h>

// The library's own version, under plain names that `dlsym` finds.
//
// Threads: any number at once.
extern "C" {
BASEUTILITIES_EXPORT int GetVersionMajor();
BASEUTILITIES_EXPORT int GetVersionMinor();
BASEUTILITIES_EXPORT int GetVersionPatch();
BASEUTILITIES_EXPORT int GetVersionTweak();
}
