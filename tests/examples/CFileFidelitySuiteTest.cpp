#include <CFileFidelitySuite.h>

#include "CAbortSwitch.h"
#include "CRecordingObserver.h"
#include "CUnprivileged.h"
#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <UIChoices.h>

#include <BaseUtilities/CQtSignaler.h>
#include <BaseUtilities/TQException.h>
#include <BaseUtilities/UIHelperBase.h>

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <map>
#include <stdexcept>

namespace fs = std::filesystem;
using testing::ElementsAre;

namespace
{
constexpr unsigned long refusals = 8;

// What there is in a folder, with times and contents.
std::map<std::string, std::string> Snapshot(fs::path const& folder)
{
    std::map<std::string, std::string> entries;
    for (fs::directory_entry const& entry : fs::recursive_directory_iterator(folder))
        entries[entry.path().native()] =
            std::to_string(entry.last_write_time().time_since_epoch().count())
            + (entry.is_regular_file() ? ReadFile(entry.path()) : "");
    return entries;
}

// A folder of three files, and one to work in.
class CFileFidelitySuiteTest : public testing::Test
{
protected:
    CFileFidelitySuiteTest()
    {
        fs::create_directory(m_Files.Path() / "sub");
        WriteFile(m_Files / "a", "first");
        WriteFile(m_Files / "sub/b", "second");
        WriteFile(m_Files / "z", "");
        m_Options.m_Folder = m_Files.Path();
        m_Options.m_WorkParent = m_Work.Path();
    }

    CSuiteSummary Run()
    {
        CSuiteSummary const summary = CFileFidelitySuite(m_Options).Run(m_Observer, m_Checkpoint);
        EXPECT_TRUE(fs::is_empty(m_Work.Path())) << "the work folder is left behind";
        return summary;
    }
    // Calls `action` once, when that many cases are done.
    void After(std::size_t cases, std::function<void()> const& action)
    {
        m_Observer.m_OnCaseFinished = [this, cases, action] {
            if (m_Observer.m_Cases.size() == cases)
                action();
        };
    }

    CTemporaryFolder const m_Files;
    CTemporaryFolder const m_Work;
    CAbortSwitch const m_Switch;
    CSuiteOptions m_Options;
    CRecordingObserver m_Observer;
    CCheckpoint m_Checkpoint;
};
} // namespace

TEST_F(CFileFidelitySuiteTest, PassesFilesAndRefusalsAndCountsThem)
{
    CSuiteSummary const summary = Run();
    EXPECT_EQ(summary.m_Verdict, TEST_STATUS_PASSED);
    EXPECT_EQ(summary.m_CaseCount, 3 + refusals);
    EXPECT_EQ(summary.m_Passed, 3 + refusals);
    EXPECT_EQ(summary.m_Failed, 0u);
    EXPECT_EQ(summary.m_Skipped, 0u);
    EXPECT_EQ(summary.NotRun(), 0u);
    EXPECT_EQ(summary.m_Bytes, 11u);
    EXPECT_STREQ(summary.m_Problem.get(), "");
    EXPECT_GT(summary.m_Duration.count(), 0);
}

TEST_F(CFileFidelitySuiteTest, ReportsInTheOrderPromised)
{
    Run();
    auto const& events = m_Observer.m_Events;
    ASSERT_EQ(events.size(), 2 + 1 + 2 * (3 + refusals) + 1);
    EXPECT_THAT(std::vector<std::string>(events.begin(), events.begin() + 9),
                ElementsAre("found 0", "found 1", "started", "case a", "done a", "case sub/b",
                            "done sub/b", "case z", "done z"));
    EXPECT_EQ(events.back(), "finished");
    EXPECT_EQ(std::string(m_Observer.m_Plan.m_Folder.get()), m_Files.Path().native());
    EXPECT_EQ(m_Observer.m_Plan.m_CaseCount, 3 + refusals);
}

TEST_F(CFileFidelitySuiteTest, WorksInAFolderOfItsOwnThatIsGoneAtTheEnd)
{
    bool existed = false;
    bool existsAtEnd = true;
    fs::path workFolder;
    m_Observer.m_OnStarted = [&] {
        workFolder = m_Observer.m_Plan.m_WorkFolder.to_path();
        existed = fs::is_directory(workFolder);
    };
    m_Observer.m_OnFinished = [&] { existsAtEnd = fs::exists(workFolder); };
    Run();
    EXPECT_TRUE(existed);
    EXPECT_EQ(workFolder.parent_path(), m_Work.Path());
    EXPECT_FALSE(existsAtEnd);
}

TEST_F(CFileFidelitySuiteTest, TouchesNothingOutsideTheWorkFolder)
{
    fs::create_symlink("a", m_Files.Path() / "link");
    auto const before = Snapshot(m_Files.Path());
    Run();
    EXPECT_EQ(Snapshot(m_Files.Path()), before);
}

TEST_F(CFileFidelitySuiteTest, ChecksAFolderThatHoldsItsOwnWorkFolder)
{
    m_Options.m_WorkParent = m_Files.Path();
    auto const before = Snapshot(m_Files.Path());
    EXPECT_EQ(Run().m_CaseCount, 3 + refusals);
    EXPECT_EQ(Snapshot(m_Files.Path()).size(), before.size());
}

TEST_F(CFileFidelitySuiteTest, PassesAnEmptyFolderWithOneCaseSkipped)
{
    CTemporaryFolder const empty;
    m_Options.m_Folder = empty.Path();
    CSuiteSummary const summary = Run();
    EXPECT_EQ(summary.m_Verdict, TEST_STATUS_PASSED);
    EXPECT_EQ(summary.m_Skipped, 1u);
    EXPECT_EQ(m_Observer.m_Cases.front().m_Detail, "an empty folder");
}

TEST_F(CFileFidelitySuiteTest, FailsWhenOneCopyIsCorrupted)
{
    m_Options.m_Copy = [](auto const& source, auto const& destination, ECopyFailType failType) {
        auto const copy = TqCopyFile(source, destination, failType);
        if (copy && copy->to_path().filename() == "b")
            WriteFile(copy->to_path(), "secOnd");
        return copy;
    };
    CSuiteSummary const summary = Run();
    EXPECT_EQ(summary.m_Verdict, TEST_STATUS_FAILED);
    EXPECT_EQ(summary.m_Failed, 1u);
    EXPECT_EQ(summary.m_Passed, 2 + refusals);
    CRecordedCase const& failed = m_Observer.m_Cases.at(1);
    EXPECT_EQ(failed.m_Verdict, TEST_STATUS_FAILED);
    EXPECT_EQ(failed.m_Detail, "the copy differs from the file at byte 3");
}

TEST_F(CFileFidelitySuiteTest, GivesACaseThatThrowsTheStatusOfTheException)
{
    m_Options.m_Copy = [](auto const&, auto const&, ECopyFailType) -> std::optional<CSafeString> {
        throw TQAppException("out of order", TEST_STATUS(77));
    };
    CSuiteSummary const summary = Run();
    EXPECT_EQ(summary.m_Failed, 3 + refusals);
    for (CRecordedCase const& recorded : m_Observer.m_Cases) {
        EXPECT_EQ(recorded.m_Verdict, TEST_STATUS(77));
        EXPECT_EQ(recorded.m_Detail, "out of order");
    }
}

TEST_F(CFileFidelitySuiteTest, GivesACaseThatThrowsAnythingElseTheStatusError)
{
    m_Options.m_Copy = [](auto const&, auto const&, ECopyFailType) -> std::optional<CSafeString> {
        throw std::domain_error("out of range");
    };
    EXPECT_EQ(Run().m_Verdict, TEST_STATUS_FAILED);
    EXPECT_EQ(m_Observer.m_Cases.front().m_Verdict, TEST_STATUS_ERROR);
    EXPECT_EQ(m_Observer.m_Cases.front().m_Detail, "out of range");
}

TEST_F(CFileFidelitySuiteTest, SkipsAFileThatVanishesAfterTheSearch)
{
    m_Observer.m_OnStarted = [this] { fs::remove(m_Files.Path() / "a"); };
    CSuiteSummary const summary = Run();
    EXPECT_EQ(summary.m_Verdict, TEST_STATUS_PASSED);
    EXPECT_EQ(summary.m_Skipped, 1u);
    EXPECT_EQ(m_Observer.m_Cases.front().m_Detail, "vanished before its turn");
}

TEST_F(CFileFidelitySuiteTest, EndsBeforeTheNextCaseOnceAnAbortIsRequested)
{
    After(2, [] { TQUserAbort::RequestUserAbort(); });
    CSuiteSummary const summary = Run();
    EXPECT_EQ(summary.m_Verdict, TEST_STATUS_ABORTED);
    EXPECT_EQ(m_Observer.m_Cases.size(), 2u);
    EXPECT_EQ(summary.m_Passed, 2u);
    EXPECT_EQ(summary.NotRun(), 1 + refusals);
    EXPECT_EQ(m_Observer.m_Events.back(), "finished");
    EXPECT_TRUE(TQUserAbort::UserAbortSent());
}

TEST_F(CFileFidelitySuiteTest, EndsDuringTheSearchOnceAnAbortIsRequested)
{
    m_Observer.m_OnFilesFound = [] { TQUserAbort::RequestUserAbort(); };
    CSuiteSummary const summary = Run();
    EXPECT_EQ(summary.m_Verdict, TEST_STATUS_ABORTED);
    EXPECT_EQ(summary.m_CaseCount, 0u);
    EXPECT_THAT(m_Observer.m_Events, ElementsAre("found 0", "finished"));
}

TEST_F(CFileFidelitySuiteTest, PassesWhenTheAbortComesAfterTheLastCase)
{
    After(3 + refusals, [] { TQUserAbort::RequestUserAbort(); });
    EXPECT_EQ(Run().m_Verdict, TEST_STATUS_PASSED);
}

TEST_F(CFileFidelitySuiteTest, AbortedStaysAbortedWhateverFailedBefore)
{
    m_Options.m_Copy = [](auto const&, auto const&, ECopyFailType) -> std::optional<CSafeString> {
        throw TQRunTimeException("broken");
    };
    After(1, [] { TQUserAbort::RequestUserAbort(); });
    CSuiteSummary const summary = Run();
    EXPECT_EQ(summary.m_Verdict, TEST_STATUS_ABORTED);
    EXPECT_EQ(summary.m_Failed, 1u);
}

TEST_F(CFileFidelitySuiteTest, LeavesWithWhatTheObserverThrows)
{
    After(2, [] { throw std::domain_error("no more"); });
    EXPECT_THROW(Run(), std::domain_error);
    EXPECT_TRUE(fs::is_empty(m_Work.Path()));
    EXPECT_EQ(m_Observer.m_Cases.size(), 2u);
}

TEST_F(CFileFidelitySuiteTest, RefusesWhatIsNotAFolder)
{
    struct CRow
    {
        char const* m_Name;
        char const* m_Reason;
    };
    for (CRow const& row : {CRow{"a", "Not a directory"}, CRow{"none", "No such file or directory"},
                            CRow{"a/b", "Not a directory"}}) {
        SCOPED_TRACE(row.m_Name);
        m_Options.m_Folder = m_Files.Path() / row.m_Name;
        try {
            Run();
            ADD_FAILURE() << "no exception";
        } catch (TQRunTimeException const& error) {
            EXPECT_EQ(error.GetStatus(), TEST_STATUS_NO_FOLDER);
            EXPECT_EQ(error.what(), "'" + m_Options.m_Folder.native() + "' is not a folder ("
                                        + row.m_Reason + ").");
        }
    }
}

TEST_F(CFileFidelitySuiteTest, RefusesToWorkWhereNoFolderCanBeMade)
{
    WriteFile(m_Work / "none", "a file");
    m_Options.m_WorkParent = m_Work.Path() / "none";
    try {
        Run();
        ADD_FAILURE() << "no exception";
    } catch (TQRunTimeException const& error) {
        EXPECT_EQ(error.GetStatus(), TEST_STATUS_NO_WORK_FOLDER);
        EXPECT_EQ(error.what(), "Unable to make a work folder in '"
                                    + m_Options.m_WorkParent.native() + "' (Not a directory).");
    }
}

TEST_F(CFileFidelitySuiteTest, FailsWhenTheWorkFolderCannotBeRemoved)
{
    fs::permissions(m_Files.Path(), fs::perms(0755));
    fs::permissions(m_Work.Path(), fs::perms(0777));
    CSuiteSummary summary;
    {
        CUnprivileged const unprivileged;
        std::string workFolder;
        m_Observer.m_OnStarted = [&] {
            workFolder = m_Observer.m_Plan.m_WorkFolder.get();
            // Its entries can go, the folder itself can not.
            ASSERT_EQ(chmod(workFolder.c_str(), 0500), 0);
        };
        summary = CFileFidelitySuite(m_Options).Run(m_Observer, m_Checkpoint);
        EXPECT_EQ(chmod(workFolder.c_str(), 0700), 0);
        EXPECT_EQ(std::string(summary.m_Problem.get()),
                  "The work folder " + workFolder + " is left behind (Permission denied).");
    }
    EXPECT_EQ(summary.m_Failed, 0u);
    EXPECT_EQ(summary.m_Verdict, TEST_STATUS_FAILED);
}

TEST_F(CFileFidelitySuiteTest, MakesMissingParentsOfTheWorkFolderAndRemovesThem)
{
    m_Options.m_WorkParent = m_Work.Path() / "made" / "for it";
    EXPECT_EQ(Run().m_Verdict, TEST_STATUS_PASSED);
}

TEST_F(CFileFidelitySuiteTest, WorksInTheUsersFolderForWorkFiles)
{
    CTemporaryFolder const home;
    fs::create_directory(home.Path() / "Documents");
    CScopedEnvironment const variable("HOME", home.Path().native());
    CScopedEnvironment const configuration("XDG_CONFIG_HOME", home / "none");
    m_Options.m_WorkParent.clear();
    Run();
    EXPECT_THAT(m_Observer.m_Plan.m_WorkFolder.get(),
                testing::StartsWith(home / "Documents/Quillon Test Suite/Work Files/"));
    EXPECT_TRUE(fs::is_empty(home.Path() / "Documents"));
}

TEST_F(CFileFidelitySuiteTest, ChecksTheFoldersAndAsManyFilesAsTheOperatorChose)
{
    fs::create_directory(m_Files.Path() / "left out");
    WriteFile(m_Files / "left out/c", "third");
    CQtSignaler signaler;
    UIHelperBase::QtSignaler(signaler);
    QObject::connect(&signaler, &CQtSignaler::SelectMultipleItems, &signaler,
                     [](EUIMode, std::uint32_t, sv_wrapper const&, std::vector<CSafeString> const&,
                        std::vector<std::int32_t>** answer) {
                         *answer = new std::vector<std::int32_t>{1}; // "sub"
                     });
    QObject::connect(&signaler, &CQtSignaler::GetInteger, &signaler,
                     [](EUIMode, std::uint32_t, sv_wrapper const&, sv_wrapper const&,
                        std::uintptr_t* answer) { *answer = 2; });
    m_Options.m_Asks = true;
    Run();
    UIHelperBase::m_UISignaler = nullptr;
    ASSERT_EQ(m_Observer.Files().size(), 2u);
    EXPECT_EQ(m_Observer.Files()[0].m_Name, "a");
    EXPECT_EQ(m_Observer.Files()[1].m_Name, "sub/b");
}

TEST_F(CFileFidelitySuiteTest, StopsAtAFailureWhenTheOperatorSaysSoAndSavesTheReport)
{
    CTemporaryFolder const reports;
    CQtSignaler signaler;
    UIHelperBase::QtSignaler(signaler);
    QObject::connect(
        &signaler, &CQtSignaler::BooleanChoice, &signaler,
        [](EUIMode, std::uint32_t, sv_wrapper const&, bool* answer) { *answer = false; });
    QObject::connect(
        &signaler, &CQtSignaler::PickSingleFile, &signaler,
        [&]() -> std::optional<CSafeString> { return CSafeString((reports / "report").c_str()); });
    m_Options.m_Asks = true;
    m_Options.m_Copy = [](auto const&, auto const&, ECopyFailType) -> std::optional<CSafeString> {
        return std::nullopt;
    };
    CSuiteSummary const summary = Run();
    UIHelperBase::m_UISignaler = nullptr;
    EXPECT_EQ(summary.m_Verdict, TEST_STATUS_FAILED);
    EXPECT_EQ(summary.m_Failed, 1u);
    EXPECT_EQ(summary.NotRun(), 2 + refusals);
    std::string const report = ReadFile(reports / "report");
    EXPECT_THAT(report, testing::HasSubstr("\nFAIL  a\n"));
    EXPECT_THAT(report, testing::HasSubstr("\n11 cases: 0 pass, 1 fails, 0 skip, 10 remain.\n"));
}
