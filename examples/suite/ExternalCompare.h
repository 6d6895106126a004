#pragma once

#include <BaseUtilities/CSafeString.h>

#include <filesystem>

/// An argument between single quotes, so that the shell reads it as it stands.
CSafeString ShellQuoted(basic_sv_wrapper<char> const& argument);

/// Whether the system's own `cmp` finds the files equal. Paths are absolute.
///
/// Threads: one at a time in the process.
bool ComparesEqual(std::filesystem::path const& one, std::filesystem::path const& other);
