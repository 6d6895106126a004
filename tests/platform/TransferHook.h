#pragma once

#include <functional>

/// While it lives, the calling thread's next transfer from file to file within
/// the system, as std::filesystem makes it in this program and in the library
/// alike, does something first. It stands before the system's `sendfile` and
/// `copy_file_range`.
class CTransferHook
{
public:
    explicit CTransferHook(std::function<void()> hook);
    CTransferHook(CTransferHook const&) = delete;
    CTransferHook& operator=(CTransferHook const&) = delete;
    ~CTransferHook();

    /// Whether there was a transfer.
    bool Happened() const;
};
