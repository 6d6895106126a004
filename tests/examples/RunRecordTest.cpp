#include <RunRecord.h>

#include <ExternalCompare.h>
#include <SuiteTexts.h>
#include <Terminal.h>
#include <VerdictFormat.h>

#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <unistd.h>

#include <csignal>
#include <string>

using testing::MatchesRegex;

TEST(RunRecord, IdentifiesEveryRunAnew)
{
    CRunRecord const one = MakeRunRecord();
    EXPECT_THAT(one.m_Identifier.get(),
                MatchesRegex("\\{[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                             "[0-9A-F]{12}\\}"));
    EXPECT_NE(one.m_Identifier, MakeRunRecord().m_Identifier);
    EXPECT_EQ(one.m_LibraryVersion, PROJECT_VERSION);
    EXPECT_FALSE(one.m_SystemVersion.empty());
    EXPECT_THAT(one.m_Started.get(), MatchesRegex("....-..-.. ..:..:.. .*"));
}

TEST(RunRecord, CountsWithTheWordsThatFit)
{
    struct CRow
    {
        unsigned long m_Cases, m_Passed, m_Failed, m_Skipped;
        char const* m_Text;
    };
    for (CRow const& row : {CRow{1, 1, 0, 0, "1 case: 1 passes, 0 fail, 0 skip."},
                            CRow{3, 1, 1, 1, "3 cases: 1 passes, 1 fails, 1 skips."},
                            CRow{9, 2, 3, 2, "9 cases: 2 pass, 3 fail, 2 skip, 2 remain."},
                            CRow{1, 0, 0, 0, "1 case: 0 pass, 0 fail, 0 skip, 1 remains."}}) {
        CSuiteSummary summary;
        summary.m_CaseCount = row.m_Cases;
        summary.m_Passed = row.m_Passed;
        summary.m_Failed = row.m_Failed;
        summary.m_Skipped = row.m_Skipped;
        EXPECT_STREQ(CountsText(summary).get(), row.m_Text);
    }
}

TEST(SuiteTexts, NameEveryVerdictAndMarkItInCapitals)
{
    struct CRow
    {
        TEST_STATUS m_Verdict;
        char const* m_Name;
        char const* m_Mark;
    };
    for (CRow const& row :
         {CRow{TEST_STATUS_PASSED, "Passed", "PASS"}, CRow{TEST_STATUS_SKIPPED, "Skipped", "SKIP"},
          CRow{TEST_STATUS_ABORTED, "Aborted", "ABORT"}, CRow{TEST_STATUS_FAILED, "Failed", "FAIL"},
          CRow{TEST_STATUS_ERROR, "Failed", "FAIL"}}) {
        EXPECT_STREQ(VerdictName(row.m_Verdict), row.m_Name);
        EXPECT_STREQ(VerdictMark(row.m_Verdict), row.m_Mark);
    }
}

TEST(SuiteTexts, SayWhetherTheSuiteSuggestsToEnd)
{
    EXPECT_STREQ(AbortQuestion(false), "Abort the suite?");
    EXPECT_STREQ(AbortQuestion(true), "The suite suggests to end here. Abort it?");
}

TEST(VerdictFormat, BecomesTheNearestColourOfATerminal)
{
    EXPECT_EQ(TerminalCodes(VerdictFormat(TEST_STATUS_PASSED)), "\x1b[32m");
    EXPECT_EQ(TerminalCodes(VerdictFormat(TEST_STATUS_SKIPPED)), "\x1b[33m");
    EXPECT_EQ(TerminalCodes(VerdictFormat(TEST_STATUS_FAILED)), "\x1b[31m\x1b[1m");
    EXPECT_EQ(TerminalCodes(CFormatInfo()), "");
}

TEST(ExternalCompare, QuotesWhatTheShellMustNotRead)
{
    EXPECT_STREQ(ShellQuoted("plain").get(), "'plain'");
    EXPECT_STREQ(ShellQuoted("it's $HOME").get(), "'it'\\''s $HOME'");
}

// One that is stopped before it has begun would hold the whole program.
TEST(ExternalCompare, KeepsCtrlZFromACommandThatHasNotBegun)
{
    CTemporaryFolder const folder;
    std::string const status =
        "/proc/" + std::to_string(getpid()) + "/task/" + std::to_string(gettid()) + "/status";
    WriteFile(folder / "cmp",
              "#!/bin/sh\ngrep SigBlk " + status + " >" + (folder / "blocked") + "\n");
    std::filesystem::permissions(folder / "cmp", std::filesystem::perms::owner_all);
    CScopedEnvironment const path("PATH", folder.Path().native() + ":/usr/bin:/bin");
    EXPECT_TRUE(ComparesEqual(folder / "one", folder / "other"));
    std::string const line = ReadFile(folder / "blocked");
    unsigned long long const blocked = std::stoull(line.substr(line.find(':') + 1), nullptr, 16);
    EXPECT_NE(blocked & (1ULL << (SIGTSTP - 1)), 0u) << line;
}

TEST(ExternalCompare, TellsEqualFilesFromOthersWhateverTheirNames)
{
    CTemporaryFolder const folder;
    for (std::string const name : {"plain", "with blank", "it's", "$HOME", "-s", "line\nbreak"}) {
        SCOPED_TRACE(name);
        WriteFile(folder / name, "contents");
        WriteFile(folder / "equal", "contents");
        WriteFile(folder / "other", "contentz");
        EXPECT_TRUE(ComparesEqual(folder / name, folder / "equal"));
        EXPECT_FALSE(ComparesEqual(folder / name, folder / "other"));
        EXPECT_FALSE(ComparesEqual(folder / name, folder / "missing"));
    }
}
