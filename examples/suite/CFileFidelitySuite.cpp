#include "CFileFidelitySuite.h"

#include "CFileCheck.h"
#include "CWorkFolder.h"
#include "FolderScan.h"
#include "Refusals.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/TQUserAbort.h>

#include <optional>
#include <utility>

namespace fs = std::filesystem;

namespace
{
using Clock = std::chrono::steady_clock;

// One run of the suite.
class CRun
{
public:
    CRun(CSuiteOptions const& options, ISuiteObserver& observer, CCheckpoint& checkpoint)
        : m_Options(options),
          m_Observer(observer),
          m_Checkpoint(checkpoint)
    {
    }
    CSuiteSummary Execute();

private:
    void RunCases();
    std::vector<CFoundEntry> FindFiles();
    void MakeWorkFolder();
    void RemoveWorkFolder();
    template <class Check>
    void RunCase(CCase const& next, Check check);
    void Count(CCaseOutcome const& outcome);

    CSuiteOptions const& m_Options;
    ISuiteObserver& m_Observer;
    CCheckpoint& m_Checkpoint;
    Clock::time_point m_Start = Clock::now();
    std::optional<CWorkFolder> m_WorkFolder;
    CSuiteSummary m_Summary;
};

CSuiteSummary CRun::Execute()
{
    bool aborted = false;
    try {
        RunCases();
    } catch (TQUserAbort const&) {
        aborted = true;
    }
    RemoveWorkFolder();

    if (aborted)
        m_Summary.m_Verdict = TEST_STATUS_ABORTED;
    else if (m_Summary.m_Failed > 0 || !m_Summary.m_Problem.empty())
        m_Summary.m_Verdict = TEST_STATUS_FAILED;
    m_Summary.m_Duration = Clock::now() - m_Start;
    m_Observer.SuiteFinished(m_Summary);
    return m_Summary;
}

void CRun::RunCases()
{
    // Before there is a work folder, lest that be found, too.
    std::vector<CFoundEntry> const entries = FindFiles();
    MakeWorkFolder();
    fs::path const& workFolder = m_WorkFolder->Path();
    fs::path const copies = workFolder / "copies";
    fs::path const refused = workFolder / "refused";
    fs::create_directory(copies);
    fs::create_directory(refused);
    std::vector<CRefusal> const refusals = PrepareRefusals(refused);

    m_Summary.m_CaseCount = entries.size() + refusals.size();
    m_Observer.SuiteStarted({CSafeString(m_Options.m_Folder.native()),
                             CSafeString(workFolder.native()), m_Summary.m_CaseCount});

    CFileCheck fileCheck(copies, m_Options.m_Copy);
    for (CFoundEntry const& entry : entries)
        RunCase({ECaseGroup::Files, CSafeString(entry.m_Name)},
                [&] { return fileCheck.Check(entry); });
    for (CRefusal const& refusal : refusals)
        RunCase({ECaseGroup::Refusals, refusal.m_Name},
                [&] { return CheckRefusal(refusal, m_Options.m_Copy); });
}

std::vector<CFoundEntry> CRun::FindFiles()
{
    fs::path const& folder = m_Options.m_Folder;
    std::error_code error;
    if (!fs::is_directory(folder, error))
        DoThrow<TQRunTimeException>(
            TEST_STATUS_NO_FOLDER, "'%s' is not a folder (%s).", folder.native(),
            (error ? error : std::make_error_code(std::errc::not_a_directory)).message());
    return ScanFolder(folder, [this](unsigned long count) {
        m_Observer.FilesFound(count);
        m_Checkpoint.Pass(m_Observer);
    });
}

void CRun::MakeWorkFolder()
{
    fs::path parent = m_Options.m_WorkParent;
    std::error_code error;
    if (parent.empty())
        parent = fs::temp_directory_path(error);
    if (error)
        DoThrow<TQRunTimeException>(TEST_STATUS_NO_WORK_FOLDER,
                                    "There is no temporary folder to work in (%s).",
                                    error.message());
    m_WorkFolder.emplace(parent);
}

void CRun::RemoveWorkFolder()
{
    if (!m_WorkFolder)
        return;
    std::string const path = m_WorkFolder->Path().native();
    if (std::error_code const error = m_WorkFolder->Remove())
        m_Summary.m_Problem =
            CFormattedString("The work folder %s is left behind (%s).", path, error.message());
}

template <class Check>
void CRun::RunCase(CCase const& next, Check check)
{
    m_Checkpoint.Pass(m_Observer);
    m_Observer.CaseStarted(next);
    CCaseOutcome outcome;
    try {
        outcome = check();
    } catch (TQException const& error) {
        outcome = {error.GetStatus(), error.what(), 0};
    } catch (std::exception const& error) {
        outcome = {TEST_STATUS_ERROR, error.what(), 0};
    }
    Count(outcome);
    m_Observer.CaseFinished(next, outcome);
}

void CRun::Count(CCaseOutcome const& outcome)
{
    m_Summary.m_Bytes += outcome.m_Bytes;
    if (outcome.m_Verdict == TEST_STATUS_PASSED)
        ++m_Summary.m_Passed;
    else if (outcome.m_Verdict == TEST_STATUS_SKIPPED)
        ++m_Summary.m_Skipped;
    else
        ++m_Summary.m_Failed;
}
} // namespace

CFileFidelitySuite::CFileFidelitySuite(CSuiteOptions options) : m_Options(std::move(options)) {}

CSuiteSummary CFileFidelitySuite::Run(ISuiteObserver& observer, CCheckpoint& checkpoint) const
{
    return CRun(m_Options, observer, checkpoint).Execute();
}
