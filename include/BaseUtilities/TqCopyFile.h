#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/Export.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <optional>

/// What TqCopyFile does about a failure. Every value but Throw means Report.
enum class ECopyFailType : int {
    Report = 0, ///< return an empty result
    Throw = 1   ///< throw TQRunTimeException with TEST_STATUS_ERROR
};

/// Copies one regular file to a destination file, which it replaces, or into a
/// destination folder, under the source's file name. Paths are UTF-8, relative
/// ones to the current folder. Links are followed; a folder is never copied.
///
/// Returns the path of the file that now exists. Copying a file onto itself
/// touches nothing and returns `destination`. On failure it throws
/// TQRunTimeException with a message that says which end is at fault and why, or
/// returns an empty result, as `failType` says; with Report only std::bad_alloc
/// leaves, and std::logic_error for a null view with a length.
///
/// Nothing is rolled back: a destination already written stays as it is.
/// Deliberate: a new destination needs a parent in its path, so a bare file
/// name is refused as "does not exist"; write "./name".
/// Deliberate: within the message of a failed check, what is said of each end is
/// preceded by two spaces for each CFormattedString::m_sIndentLevel; the message
/// of a failed copy has a full stop before the second path and a line break.
///
/// Threads: any number at once. Changes by others between the checks, the copy
/// and the verification are not guarded against.
BASEUTILITIES_EXPORT std::optional<CSafeString>
TqCopyFile(basic_sv_wrapper<char> const& source, basic_sv_wrapper<char> const& destination,
           ECopyFailType failType);
