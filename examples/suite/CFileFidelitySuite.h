#pragma once

#include "CCheckpoint.h"
#include "CopyOperation.h"
#include "ISuiteObserver.h"

#include <filesystem>

struct CSuiteOptions
{
    /// The folder whose files are checked; this one exists on every Debian machine.
    std::filesystem::path m_Folder = "/usr/share/common-licenses";
    /// Where the work folder is made; empty means the user's folder for work
    /// files, or the system's temporary folder where the user has no documents.
    std::filesystem::path m_WorkParent;
    /// Whether the operator is asked what to check, what to do about a failure
    /// and where to save the report.
    bool m_Asks = false;
    /// What is examined.
    CopyOperation m_Copy = TqCopyFile;
};

/// The compliance suite "file fidelity": every file below a folder keeps its
/// name through the text conversions and its bytes through file copy, and file
/// copy refuses what it must, with the right words.
///
/// Writes into a work folder of its own alone, and removes that in every
/// outcome. A case that throws gets the verdict that the exception carries.
class CFileFidelitySuite
{
public:
    explicit CFileFidelitySuite(CSuiteOptions options);

    /// Runs on the calling thread and leaves early, with the verdict aborted,
    /// when TQUserAbort asks for it at a checkpoint. Throws TQRunTimeException
    /// with TEST_STATUS_NO_FOLDER or TEST_STATUS_NO_WORK_FOLDER, and what the
    /// observer throws.
    CSuiteSummary Run(ISuiteObserver& observer, CCheckpoint& checkpoint) const;

private:
    CSuiteOptions m_Options;
};
