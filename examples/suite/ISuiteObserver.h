#pragma once

#include "Verdicts.h"

#include <BaseUtilities/CSafeString.h>

#include <chrono>
#include <cstdint>

enum class ECaseGroup {
    Files,   ///< a file of the folder, copied and compared
    Refusals ///< a copy that cannot be made, and the message that says so
};

/// What identifies a run.
struct CRunRecord
{
    CSafeString m_Identifier;
    CSafeString m_Started;
    CSafeString m_LibraryVersion;
    CSafeString m_SystemVersion;
};

struct CSuitePlan
{
    CRunRecord m_Run;
    CSafeString m_Folder;
    CSafeString m_WorkFolder;
    unsigned long m_CaseCount = 0;
};

struct CCase
{
    ECaseGroup m_Group = ECaseGroup::Files;
    /// Raw bytes of a file's name, which may hold anything but NUL.
    CSafeString m_Name;
};

struct CCaseOutcome
{
    TEST_STATUS m_Verdict = TEST_STATUS_ERROR;
    /// Why it was not passed; what else is worth knowing where it was.
    CSafeString m_Detail;
    /// Bytes of the source that were found again in the copy.
    std::uintmax_t m_Bytes = 0;
};

struct CSuiteSummary
{
    /// Passed, failed or aborted.
    TEST_STATUS m_Verdict = TEST_STATUS_PASSED;
    unsigned long m_CaseCount = 0;
    unsigned long m_Passed = 0;
    /// Failures, and cases whose check broke down.
    unsigned long m_Failed = 0;
    unsigned long m_Skipped = 0;
    std::uintmax_t m_Bytes = 0;
    std::chrono::nanoseconds m_Duration{0};
    /// When the suite ended.
    CSafeString m_Finished;
    /// What went wrong outside of any case; such a suite has failed.
    CSafeString m_Problem;

    unsigned long NotRun() const { return m_CaseCount - m_Passed - m_Failed - m_Skipped; }
};

/// What a front end learns of a running suite.
///
/// Threads: every call comes from the suite's thread, in the order
/// FilesFound*, SuiteStarted, (CaseStarted, CaseFinished)*, SuiteFinished, with
/// SuitePaused and SuiteResumed in pairs anywhere before the last. The suite
/// holds no lock meanwhile and waits for the call to return, so an observer may
/// as well ask the operator something. What an observer throws ends the suite.
class ISuiteObserver
{
public:
    ISuiteObserver() = default;
    ISuiteObserver(ISuiteObserver const&) = delete;
    ISuiteObserver& operator=(ISuiteObserver const&) = delete;
    virtual ~ISuiteObserver();

    /// The search for files goes on; once for each folder.
    virtual void FilesFound(unsigned long count) = 0;
    /// Not called when the suite is aborted during the search.
    virtual void SuiteStarted(CSuitePlan const& plan) = 0;
    virtual void CaseStarted(CCase const& started) = 0;
    virtual void CaseFinished(CCase const& finished, CCaseOutcome const& outcome) = 0;
    virtual void SuitePaused() = 0;
    virtual void SuiteResumed() = 0;
    /// Always, unless an exception ends the suite. The work folder is gone.
    virtual void SuiteFinished(CSuiteSummary const& summary) = 0;
};
