#pragma once

#include <BaseUtilities/Export.h>
#include <BaseUtilities/basic_sv_wrapper.h>

/// Runs a command line with the system's shell, waits, and tells whether it
/// exited with status 0. The line is `command`, and a blank and `arguments`
/// when those are not empty. Text is passed on as it is, up to a NUL.
///
/// Deliberate: nothing is quoted. Quote what the shell must not read: put an
/// argument between single quotes and write each single quote in it as '\''.
///
/// It runs in `workingFolder` if that is a folder, otherwise (also when empty or
/// missing, silently) in the current one, which is restored in every outcome.
/// Throws std::filesystem::filesystem_error when the current folder cannot be
/// told, entered or restored, std::bad_alloc, and std::logic_error for a null
/// view with a length.
///
/// While SIGCHLD is ignored, the system reports every command as failed (-1,
/// so false): leave it at its default or handle it.
///
/// Threads: one at a time in the whole process, and the others see the changed
/// current folder while it runs: give them absolute paths.
BASEUTILITIES_EXPORT bool oss_system(basic_sv_wrapper<char> const& command,
                                     basic_sv_wrapper<char> const& arguments,
                                     basic_sv_wrapper<char> const& workingFolder);
