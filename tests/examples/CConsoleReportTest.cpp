#include <CConsoleReport.h>

#include <gmock/gmock.h>

#include <ios>
#include <sstream>

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace
{
CTerminal Live()
{
    CTerminal terminal;
    terminal.m_Live = true;
    return terminal;
}

CTerminal Coloured()
{
    CTerminal terminal = Live();
    terminal.m_Colour = true;
    return terminal;
}

// A report whose text can be read.
class CShown
{
public:
    explicit CShown(CTerminal terminal = {}, bool quiet = false)
        : m_Report(m_Stream, terminal, quiet)
    {
    }
    CConsoleReport& Report() { return m_Report; }
    // What was shown since the last call.
    std::string Take()
    {
        std::string const text = m_Stream.str();
        m_Stream.str("");
        return text;
    }
    void Start(unsigned long cases)
    {
        m_Report.SuiteStarted({CRunRecord(), "/folder", "/work", cases});
        Take();
    }

private:
    std::ostringstream m_Stream;
    CConsoleReport m_Report;
};

CSuiteSummary Summary(TEST_STATUS verdict)
{
    CSuiteSummary summary;
    summary.m_Verdict = verdict;
    summary.m_CaseCount = 10;
    summary.m_Passed = 4;
    summary.m_Failed = 3;
    summary.m_Skipped = 2;
    summary.m_Bytes = 2048;
    summary.m_Duration = std::chrono::milliseconds(1234);
    summary.m_Finished = "at dusk";
    return summary;
}
} // namespace

TEST(ConsoleReport, BeginsWithTheFoldersTheRunAndTheVersions)
{
    CShown shown;
    CRunRecord const run = {"{1}", "at noon", "5.0", "Linux 6"};
    shown.Report().SuiteStarted({run, "/folder", "/work", 1});
    EXPECT_EQ(shown.Take(), "File fidelity of /folder\nRun {1}\nBegun at noon\n"
                            "BaseUtilities 5.0 on Linux 6\nWorking in /work\n");
}

TEST(ConsoleReport, WritesALineForEachPassedFileUnderOneHead)
{
    CShown shown;
    shown.Start(2);
    shown.Report().CaseFinished({ECaseGroup::Files, "a"}, {TEST_STATUS_PASSED, "", 5});
    shown.Report().CaseFinished({ECaseGroup::Files, "b"}, {TEST_STATUS_PASSED, "link to a", 5});
    EXPECT_EQ(shown.Take(), "\nFiles, copied and compared\n"
                            "  PASS  a"
                                + std::string(68, ' ')
                                + "5 B\n"
                                  "  PASS  b (link to a)"
                                + std::string(56, ' ') + "5 B\n");
}

TEST(ConsoleReport, ShowsTheWholeMessageOfARefusal)
{
    CShown shown;
    shown.Start(1);
    std::string const message = std::string(90, 'm') + ":\n   status = 40";
    shown.Report().CaseFinished({ECaseGroup::Refusals, "loop"},
                                {TEST_STATUS_PASSED, CSafeString(message), 0});
    EXPECT_EQ(shown.Take(), "\nCopies that must be refused\n  PASS  loop\n        "
                                + std::string(90, 'm') + ":\n           status = 40\n");
}

TEST(ConsoleReport, NamesSkippedAndFailedFilesWithTheReason)
{
    CShown shown;
    shown.Start(3);
    shown.Report().CaseFinished({ECaseGroup::Files, "a"}, {TEST_STATUS_SKIPPED, "a socket", 0});
    shown.Report().CaseFinished({ECaseGroup::Files, "b"}, {TEST_STATUS_FAILED, "differs", 0});
    shown.Report().CaseFinished({ECaseGroup::Files, "c"}, {TEST_STATUS_ERROR, "broke", 0});
    EXPECT_EQ(shown.Take(), "\nFiles, copied and compared\n"
                            "  SKIP  a\n        a socket\n"
                            "  FAIL  b\n        differs\n"
                            "  FAIL  c\n        broke\n");
}

TEST(ConsoleReport, QuietListsOnlyWhatDidNotPass)
{
    CShown shown({}, true);
    shown.Start(2);
    shown.Report().CaseFinished({ECaseGroup::Files, "a"}, {TEST_STATUS_PASSED, "", 5});
    EXPECT_EQ(shown.Take(), "");
    shown.Report().CaseFinished({ECaseGroup::Files, "b"}, {TEST_STATUS_FAILED, "differs", 0});
    EXPECT_THAT(shown.Take(), HasSubstr("  FAIL  b\n"));
}

TEST(ConsoleReport, EndsWithCountsAndVerdict)
{
    struct CRow
    {
        TEST_STATUS m_Verdict;
        char const* m_Text;
    };
    for (CRow const& row : {CRow{TEST_STATUS_PASSED, "PASSED"}, CRow{TEST_STATUS_FAILED, "FAILED"},
                            CRow{TEST_STATUS_ABORTED, "ABORTED"}}) {
        SCOPED_TRACE(row.m_Text);
        CShown shown;
        shown.Start(10);
        shown.Report().SuiteFinished(Summary(row.m_Verdict));
        EXPECT_EQ(shown.Take(), "\n10 cases: 4 pass, 3 fail, 2 skip, 1 remains.\n"
                                "Compared 2.0 KiB in 1.23 s.\nEnded at dusk.\n"
                                    + std::string(row.m_Text) + "\n");
    }
}

TEST(ConsoleReport, EndsWithTheProblemOutsideOfAnyCase)
{
    CShown shown;
    shown.Start(10);
    CSuiteSummary summary = Summary(TEST_STATUS_FAILED);
    summary.m_Problem = "The work folder /work is left behind.";
    shown.Report().SuiteFinished(summary);
    EXPECT_THAT(shown.Take(), HasSubstr("\nThe work folder /work is left behind.\nFAILED\n"));
}

TEST(ConsoleReport, ListsAtMostTwentyFailuresAgainAtTheEnd)
{
    CShown shown;
    shown.Start(22);
    for (int index = 1; index <= 22; ++index)
        shown.Report().CaseFinished({ECaseGroup::Files, CSafeString::to_string(index)},
                                    {TEST_STATUS_FAILED, "differs", 0});
    shown.Take();
    shown.Report().SuiteFinished(Summary(TEST_STATUS_FAILED));
    std::string const text = shown.Take();
    EXPECT_THAT(text, HasSubstr("\nWhat failed\n  1\n  2\n"));
    EXPECT_THAT(text, HasSubstr("\n  20\n  and 2 more\n"));
}

TEST(ConsoleReport, LetsNoNameCommandTheTerminal)
{
    CShown shown(Coloured());
    shown.Start(1);
    shown.Report().CaseStarted({ECaseGroup::Files, "\x1b[2J"});
    shown.Report().CaseFinished({ECaseGroup::Files, "\x1b[2J"}, {TEST_STATUS_FAILED, "\x1b[2J", 0});
    shown.Report().SuiteFinished(Summary(TEST_STATUS_FAILED));
    EXPECT_THAT(shown.Take(), Not(HasSubstr("\x1b[2J")));
}

TEST(ConsoleReport, ColoursOnlyWhereTheyAreWanted)
{
    for (CTerminal const terminal : {CTerminal(), Live(), Coloured()}) {
        SCOPED_TRACE(terminal.m_Colour);
        CShown shown(terminal);
        shown.Report().SuiteStarted({CRunRecord(), "/folder", "/work", 1});
        shown.Report().CaseFinished({ECaseGroup::Files, "a"}, {TEST_STATUS_PASSED, "", 5});
        shown.Report().SuiteFinished(Summary(TEST_STATUS_PASSED));
        std::string const text = shown.Take();
        EXPECT_EQ(text.find('\x1b') != std::string::npos, terminal.m_Colour);
        EXPECT_EQ(text.find("\x1b[32mPASS\x1b[0m") != std::string::npos, terminal.m_Colour);
    }
}

TEST(ConsoleReport, DrawsABarThatGrowsWithTheCases)
{
    CShown shown(Live());
    shown.Start(2);
    shown.Report().CaseStarted({ECaseGroup::Files, "a"});
    EXPECT_EQ(shown.Take(), "\r" + std::string(30, '-') + " 0/2  a\r");
    shown.Report().CaseFinished({ECaseGroup::Files, "a"}, {TEST_STATUS_PASSED, "", 5});
    EXPECT_THAT(shown.Take(),
                HasSubstr("\r" + std::string(15, '#') + std::string(15, '-') + " 1/2"));
}

TEST(ConsoleReport, DrawsTheBarWithBlocksWhereTheLocaleHasThem)
{
    CTerminal terminal = Live();
    terminal.m_Utf8 = true;
    CShown shown(terminal);
    shown.Start(2);
    shown.Report().CaseStarted({ECaseGroup::Files, "a"});
    EXPECT_THAT(shown.Take(), HasSubstr("\r░░░"));
}

TEST(ConsoleReport, RemovesTheBarBeforeALineAndAtTheEnd)
{
    CShown shown(Live());
    shown.Start(1);
    shown.Report().CaseStarted({ECaseGroup::Files, "a"});
    std::string const bar(37, ' ');
    shown.Take();
    shown.Report().CaseFinished({ECaseGroup::Files, "a"}, {TEST_STATUS_PASSED, "", 5});
    EXPECT_EQ(shown.Take().substr(0, 40), '\r' + bar + "\r\n");
    shown.Report().SuiteFinished(Summary(TEST_STATUS_PASSED));
    EXPECT_EQ(shown.Take().substr(0, 40), '\r' + bar + "\r\n");
}

TEST(ConsoleReport, DrawsNoBarOffATerminal)
{
    CShown shown;
    shown.Report().FilesFound(7);
    shown.Start(1);
    shown.Report().CaseStarted({ECaseGroup::Files, "a"});
    shown.Report().Tick();
    EXPECT_EQ(shown.Take(), "");
}

TEST(ConsoleReport, ShowsThePause)
{
    CShown plain;
    plain.Start(1);
    plain.Report().SuitePaused();
    plain.Report().SuiteResumed();
    EXPECT_EQ(plain.Take(), "Paused.\nResumed.\n");

    CShown live(Live());
    live.Start(1);
    live.Report().SuitePaused();
    EXPECT_EQ(live.Take(), "\r" + std::string(30, '-') + " 0/1  Paused\r");
}

TEST(ConsoleReport, SaysOnceThatAnAbortIsUnderWay)
{
    CShown shown;
    shown.Start(1);
    shown.Report().AbortRequested();
    shown.Report().Tick();
    EXPECT_EQ(shown.Take(), "Ending after the case at hand. Ctrl-C again ends at once.\n");
    shown.Report().Tick();
    EXPECT_EQ(shown.Take(), "");
}

TEST(ConsoleReport, WritesNothingBelowTheEnd)
{
    CShown shown(Live());
    shown.Start(1);
    shown.Report().SuiteFinished(Summary(TEST_STATUS_ABORTED));
    shown.Take();
    shown.Report().AbortRequested();
    shown.Report().Tick();
    shown.Report().ShowKeys();
    EXPECT_EQ(shown.Take(), "");
}

TEST(ConsoleReport, LeavesTheTerminalToAQuestionAndDrawsTheBarAgainAfterwards)
{
    CShown shown(Live());
    shown.Start(1);
    shown.Report().CaseStarted({ECaseGroup::Files, "a"});
    shown.Take();
    EXPECT_FALSE(shown.Report().Hold());
    EXPECT_EQ(shown.Take(), '\r' + std::string(37, ' ') + '\r');
    shown.Report().AbortRequested();
    shown.Report().Tick();
    EXPECT_EQ(shown.Take(), "");
    shown.Report().Release();
    EXPECT_EQ(shown.Take(), '\r' + std::string(30, '-') + " 0/1  a\r");
    shown.Report().Tick();
    EXPECT_THAT(shown.Take(), HasSubstr("Ending after the case at hand."));
}

TEST(ConsoleReport, WritesNoSecondBlankLineAfterAQuestion)
{
    CShown shown;
    shown.Start(1);
    shown.Report().Hold();
    shown.Report().Release();
    EXPECT_TRUE(shown.Report().Hold()) << "for the next question";
    shown.Report().Release();
    shown.Report().CaseFinished({ECaseGroup::Refusals, "a"}, {TEST_STATUS_PASSED, "", 0});
    EXPECT_THAT(shown.Take(), StartsWith("Copies that must be refused\n"));
    EXPECT_FALSE(shown.Report().Hold());
}

TEST(ConsoleReport, KnowsTheWorkFolderWhileThereIsOne)
{
    CShown shown;
    EXPECT_EQ(shown.Report().WorkFolder(), "");
    shown.Report().SuiteStarted({CRunRecord(), "/folder", "/work", 1});
    EXPECT_EQ(shown.Report().WorkFolder(), "/work");
    shown.Report().SuiteFinished(Summary(TEST_STATUS_PASSED));
    EXPECT_EQ(shown.Report().WorkFolder(), "");
}

TEST(ConsoleReport, ThrowsWhenTheStreamTakesNoMore)
{
    std::ostringstream stream;
    CConsoleReport report(stream, {}, false);
    stream.setstate(std::ios::badbit);
    EXPECT_THROW(report.SuiteStarted({CRunRecord(), "/folder", "/work", 1}),
                 std::ios_base::failure);
}
