#pragma once

#include <string>
#include <vector>

/// The five flags of TQUserAbort as five characters '0' or '1', in the order
/// ok, paused, sent, requested, enabled. Read and set past the locks: only
/// while no other thread uses them.
std::string CurrentFlags();
void SetFlags(std::string const& flags);

/// All 32 combinations.
std::vector<std::string> AllAbortFlags();

/// Puts the flags back as they were.
class CRestoreAbortFlags
{
public:
    CRestoreAbortFlags() : m_Before(CurrentFlags()) {}
    CRestoreAbortFlags(CRestoreAbortFlags const&) = delete;
    CRestoreAbortFlags& operator=(CRestoreAbortFlags const&) = delete;
    ~CRestoreAbortFlags() { SetFlags(m_Before); }

private:
    std::string const m_Before;
};

/// One operation of TQUserAbort, every argument of EnableUserAbort its own.
struct AbortOperation
{
    char const* name;
    char const* testName;
    /// Runs it: "" for no result, "true" or "false", "thrown" for a TQUserAbort.
    std::string (*run)();
};

std::vector<AbortOperation> AbortOperations();
