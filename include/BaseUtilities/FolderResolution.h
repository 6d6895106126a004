#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/Export.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <QStandardPaths>

#include <filesystem>
#include <type_traits>
#include <utility>

// Where the application's folders are. Paths are UTF-8 with native separators;
// they are joined as std::filesystem::path joins them, so an absolute name
// replaces what stands before it. Nothing is created, checked or cached: every
// call asks the system anew. A null view with a length throws std::logic_error;
// otherwise only std::bad_alloc leaves.
//
// Threads: any number at once, unless another changes the environment.

/// Whether an environment switch is on: its value, read as `strtoumax` reads a
/// number in base 0 (0x for hexadecimal, 0 for octal; blanks, a sign and
/// trailing text are accepted), is not 0. Off when the name is empty, the
/// variable unset or empty, or the value a word such as "yes".
///
/// Threads: not while another calls `setenv` or the like, which moves the text
/// under `getenv`; read your switches before you start threads.
BASEUTILITIES_EXPORT bool CheckEnvVar(basic_sv_wrapper<char> const& name);

/// The first existing folder of the location, without a trailing separator
/// (but for the root); empty when there is none.
BASEUTILITIES_EXPORT CSafeString GetStandardDirName(QStandardPaths::StandardLocation location);

/// The applications folder joined with `name`.
BASEUTILITIES_EXPORT CSafeString GetAppInstallPathName(basic_sv_wrapper<char> const& name);

/// `base` joined with `name`.
BASEUTILITIES_EXPORT CSafeString AppendToPath(std::filesystem::path const& base,
                                              basic_sv_wrapper<char> const& name);
BASEUTILITIES_EXPORT CSafeString AppendToPath(basic_sv_wrapper<char> const& base,
                                              basic_sv_wrapper<char> const& name);
/// For text that would convert to either kind of base.
template <class Text,
          std::enable_if_t<std::is_convertible_v<Text&&, basic_sv_wrapper<char>>, int> = 0>
CSafeString AppendToPath(Text&& base, basic_sv_wrapper<char> const& name)
{
    basic_sv_wrapper<char> const view = std::forward<Text>(base);
    return AppendToPath(view, name);
}

/// "Quillon Test Suite" below the documents folder; relative where there is none.
BASEUTILITIES_EXPORT CSafeString GetQuillonDocsPathName();

/// "Work Files" below the suite's documents.
BASEUTILITIES_EXPORT CSafeString GetWorkFilesFolderPathName();

/// "Downloaded Quillon Vendor File" below the suite's documents.
/// Deliberate: "File", in the singular.
BASEUTILITIES_EXPORT CSafeString GetQuillonJsonFolderPathName();

/// The folder of data shared between applications; empty where there is none.
BASEUTILITIES_EXPORT CSafeString GetProgramDataParentFolder();

// Named conversion points: the places to call where a path enters or leaves
// the system's own form. On this platform they return the same text, wide text
// as UTF-8; do not rely on that, and do not convert a path by other means.
BASEUTILITIES_EXPORT CSafeString MakeLongPath(basic_sv_wrapper<char> const& path);
BASEUTILITIES_EXPORT CSafeString MakeLongPath(basic_sv_wrapper<wchar_t> path);
BASEUTILITIES_EXPORT CSafeString MakeShortPath(basic_sv_wrapper<char> const& path);
BASEUTILITIES_EXPORT CSafeString MakeShortPath(basic_sv_wrapper<wchar_t> path);
