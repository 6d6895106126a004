#pragma once

#include <BaseUtilities/CSafeString.h>

#include <string>
#include <vector>

/// What each adapter makes of the text, all of them in one source: as written to
/// a stream, shown by GoogleTest and by QDebug, made a QString and back, and, where
/// there is fmt, as written by it.
std::vector<std::string> WrittenByEachAdapter(CSafeString const& text);

/// Whether both hashes of the text, the standard library's and Qt's, are those of its copy.
bool HashesAreThoseOfACopy(CSafeString const& text);
