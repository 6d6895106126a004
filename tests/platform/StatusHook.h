#pragma once

#include <filesystem>
#include <functional>

#include <sys/stat.h>

/// While it lives, the calling thread's std::filesystem::status of one path, in
/// this program and in the library alike, does something first. It stands
/// before the system's `stat`.
class CStatusHook
{
public:
    /// Called before each query with the path; what it does, the query sees. A
    /// result other than 0 makes the query fail with that errno.
    using Hook = std::function<int(std::filesystem::path const&)>;

    explicit CStatusHook(Hook hook);
    CStatusHook(CStatusHook const&) = delete;
    CStatusHook& operator=(CStatusHook const&) = delete;
    ~CStatusHook();
};
