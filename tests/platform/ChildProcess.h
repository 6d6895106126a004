#pragma once

#include <filesystem>
#include <functional>
#include <string>

/// Runs `operation` in a process of its own, which may give up rights or set
/// limits for good, and returns the text that it returned. What it threw, or
/// what killed the process, comes back as text, too.
std::string InChildProcess(std::function<std::string()> const& operation);

/// For use in a child: a user without rights of its own, where the caller is
/// root; others have none to give up.
void BecomeOrdinaryUser();

/// For use in a child: mounts an empty file system of that size over `folder`,
/// which no other process sees. False where the system does not permit it.
bool MountSmallFileSystem(std::filesystem::path const& folder, unsigned long size);
