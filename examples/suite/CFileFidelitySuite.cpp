#include "CFileFidelitySuite.h"

#include "CFileCheck.h"
#include "COperator.h"
#include "CReport.h"
#include "CWorkFolder.h"
#include "FolderScan.h"
#include "Refusals.h"
#include "RunRecord.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/FolderResolution.h>
#include <BaseUtilities/TQUserAbort.h>

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

namespace fs = std::filesystem;

namespace
{
using Clock = std::chrono::steady_clock;

// Ends the cases early, at the operator's word.
class CStopped
{
};

// The folder at the top in which an entry stands, if it stands in one.
std::optional<CSafeString> TopFolder(CFoundEntry const& entry)
{
    std::size_t const slash = entry.m_Name.find('/');
    if (slash == std::string::npos)
        return std::nullopt;
    return CSafeString(entry.m_Name.substr(0, slash));
}

// One run of the suite.
class CRun
{
public:
    CRun(CSuiteOptions const& options, ISuiteObserver& observer, CCheckpoint& checkpoint)
        : m_Options(options),
          m_Observer(observer),
          m_Checkpoint(checkpoint),
          m_Operator(options.m_Asks),
          m_Folder(fs::absolute(options.m_Folder).lexically_normal())
    {
    }
    CSuiteSummary Execute();

private:
    void RunCases();
    std::vector<CFoundEntry> FindFiles();
    void KeepChosen(std::vector<CFoundEntry>& entries);
    void KeepChosenFolders(std::vector<CFoundEntry>& entries);
    void MakeWorkFolder();
    void RemoveWorkFolder();
    template <class Check>
    void RunCase(CCase const& next, Check check);
    void Count(CCaseOutcome const& outcome);
    bool StopsAfter(CCase const& finished, CCaseOutcome const& outcome);
    void OfferReport();

    CSuiteOptions const& m_Options;
    ISuiteObserver& m_Observer;
    CCheckpoint& m_Checkpoint;
    COperator const m_Operator;
    fs::path const m_Folder;
    Clock::time_point m_Start = Clock::now();
    std::optional<CWorkFolder> m_WorkFolder;
    CReport m_Report;
    bool m_FailureAccepted = false;
    CSuiteSummary m_Summary;
};

CSuiteSummary CRun::Execute()
{
    bool aborted = false;
    try {
        RunCases();
    } catch (CStopped const&) { // with the failure that the operator stopped at
    } catch (TQUserAbort const&) {
        aborted = true;
    }
    RemoveWorkFolder();

    if (aborted)
        m_Summary.m_Verdict = TEST_STATUS_ABORTED;
    else if (m_Summary.m_Failed > 0 || !m_Summary.m_Problem.empty())
        m_Summary.m_Verdict = TEST_STATUS_FAILED;
    m_Summary.m_Duration = Clock::now() - m_Start;
    m_Summary.m_Finished = TimeStamp();
    m_Report.End(m_Summary);
    if (!aborted)
        OfferReport();
    m_Observer.SuiteFinished(m_Summary);
    return m_Summary;
}

void CRun::RunCases()
{
    // Before there is a work folder, lest that be found, too.
    std::vector<CFoundEntry> entries = FindFiles();
    KeepChosen(entries);
    MakeWorkFolder();
    fs::path const& workFolder = m_WorkFolder->Path();
    fs::path const copies = AppendToPath(workFolder, "copies").to_path();
    fs::path const refused = AppendToPath(workFolder, "refused").to_path();
    fs::create_directory(copies);
    fs::create_directory(refused);
    std::vector<CRefusal> const refusals = PrepareRefusals(refused);

    m_Summary.m_CaseCount = entries.size() + refusals.size();
    CSuitePlan const plan = {MakeRunRecord(), CSafeString(m_Folder.native()),
                             CSafeString(workFolder.native()), m_Summary.m_CaseCount};
    m_Report.Begin(plan);
    m_Observer.SuiteStarted(plan);

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
    std::error_code error;
    if (!fs::is_directory(m_Folder, error))
        DoThrow<TQRunTimeException>(
            TEST_STATUS_NO_FOLDER, "'%s' is not a folder (%s).", m_Folder.native(),
            (error ? error : std::make_error_code(std::errc::not_a_directory)).message());
    return ScanFolder(m_Folder, [this](unsigned long count) {
        m_Observer.FilesFound(count);
        m_Checkpoint.Pass(m_Observer);
    });
}

void CRun::KeepChosen(std::vector<CFoundEntry>& entries)
{
    KeepChosenFolders(entries);
    m_Checkpoint.Pass(m_Observer);
    entries.resize(m_Operator.ChooseLimit(entries.size()));
    m_Checkpoint.Pass(m_Observer);
}

// Files that stand in the folder itself are always checked.
void CRun::KeepChosenFolders(std::vector<CFoundEntry>& entries)
{
    std::vector<CSafeString> folders;
    for (CFoundEntry const& entry : entries) {
        std::optional<CSafeString> const folder = TopFolder(entry);
        if (folder && std::find(folders.begin(), folders.end(), *folder) == folders.end())
            folders.push_back(*folder);
    }
    std::set<CSafeString> kept;
    for (std::size_t const index : m_Operator.ChooseFolders(folders))
        kept.insert(folders[index]);
    auto const isLeftOut = [&kept](CFoundEntry const& entry) {
        std::optional<CSafeString> const folder = TopFolder(entry);
        return folder && kept.count(*folder) == 0;
    };
    entries.erase(std::remove_if(entries.begin(), entries.end(), isLeftOut), entries.end());
}

void CRun::MakeWorkFolder()
{
    fs::path parent = m_Options.m_WorkParent;
    std::error_code error;
    if (parent.empty())
        parent = GetWorkFilesFolderPathName().to_path();
    if (parent.is_relative() && m_Options.m_WorkParent.empty()) // no documents folder
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
    m_Report.Add(next, outcome);
    m_Observer.CaseFinished(next, outcome);
    m_Operator.UpdateResults();
    if (StopsAfter(next, outcome))
        throw CStopped();
}

// The operator is asked about the first failure alone.
bool CRun::StopsAfter(CCase const& finished, CCaseOutcome const& outcome)
{
    bool const failed =
        outcome.m_Verdict != TEST_STATUS_PASSED && outcome.m_Verdict != TEST_STATUS_SKIPPED;
    if (!failed || m_FailureAccepted)
        return false;
    m_FailureAccepted = m_Operator.ContinuesAfter(
        CFormattedString("%s failed: %s", finished.m_Name, outcome.m_Detail));
    m_Checkpoint.Pass(m_Observer); // who chose to abort gets that verdict
    return !m_FailureAccepted;
}

void CRun::OfferReport()
{
    CSafeString folder = GetStandardDirName(QStandardPaths::DocumentsLocation);
    if (folder.empty())
        folder = GetStandardDirName(QStandardPaths::HomeLocation);
    std::optional<CSafeString> const file =
        m_Operator.ChooseReportFile(folder, "file-fidelity.txt");
    if (!file)
        return;
    try {
        m_Report.Save(*file);
    } catch (TQRunTimeException const& error) {
        m_Operator.TellProblem(error.what());
    }
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
