#include "CChildProcess.h"
#include "CHeldCompare.h"
#include "ScopedCurrentPath.h"
#include "TemporaryFolder.h"

#include <TextLayout.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <cstring>

namespace fs = std::filesystem;
using testing::AllOf;
using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace
{
// Enough output to fill every pipe and terminal that nobody reads.
constexpr int manyFiles = 3000;

std::string const timeStamp = "....-..-.. ..:..:.. [A-Z+0-9-]+";
std::string const runHead =
    "\\{[0-9A-F-]{36}\\}\nBegun " + timeStamp + "\nBaseUtilities " PROJECT_VERSION " on [^\n]+";

// What stands in `text` between the first `before` and the next `after`.
std::string Between(std::string const& text, std::string const& before, std::string const& after)
{
    std::size_t const start = text.find(before) + before.size();
    return text.substr(start, text.find(after, start) - start);
}

std::string Replaced(std::string text, std::string const& what, std::string const& by)
{
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
    return text;
}

// The program on a folder of its own, with a temporary folder of its own.
class CConsoleProgram : public testing::Test
{
protected:
    CConsoleProgram()
    {
        WriteFile(m_Files / "a", "first");
        WriteFile(m_Files / "b", std::string(2048, 'b'));
        m_Launch.m_Command = {CONSOLE_PROGRAM, m_Files.Path().native()};
        m_Launch.m_Variables = {{"TMPDIR", m_Temporary.Path().native()},
                                {"HOME", m_Temporary.Path().native()}, // without a documents folder
                                {"TERM", "xterm"},
                                {"NO_COLOR", ""},
                                {"LC_ALL", "C.UTF-8"}};
    }
    ~CConsoleProgram() override
    {
        EXPECT_TRUE(fs::is_empty(m_Temporary.Path())) << "the work folder is left behind";
    }

    void AddManyFiles()
    {
        for (int number = 0; number < manyFiles; ++number)
            WriteFile(m_Files / ("many" + std::to_string(number)), "");
    }
    int Run()
    {
        CChildProcess program(m_Launch);
        m_Output = program.ReadAll();
        return program.Wait();
    }
    int RunOnTerminal()
    {
        m_Launch.m_Output = CLaunch::EOutput::Terminal;
        return Run();
    }
    // The lines and bars that went to a terminal, without colours.
    std::vector<std::string> Rows() const
    {
        std::vector<std::string> rows(1);
        bool escape = false;
        for (char const byte : m_Output) {
            if (byte == '\r' || byte == '\n')
                rows.emplace_back();
            else if (byte == '\x1b')
                escape = true;
            else if (!escape)
                rows.back() += byte;
            escape = escape && byte != 'm';
        }
        return rows;
    }
    bool HasEscapes() const { return m_Output.find('\x1b') != std::string::npos; }
    // A carriage return that no line feed follows.
    bool HasBar() const
    {
        return std::adjacent_find(m_Output.begin(), m_Output.end(),
                                  [](char first, char second) {
                                      return first == '\r' && second != '\n' && second != '\r';
                                  })
               != m_Output.end();
    }

    CTemporaryFolder const m_Files;
    CTemporaryFolder const m_Temporary;
    CLaunch m_Launch;
    std::string m_Output;
};
} // namespace

TEST_F(CConsoleProgram, WritesPlainLinesIntoAPipe)
{
    EXPECT_EQ(Run(), 0);
    std::string const work = Between(m_Output, "\nWorking in ", "\n");
    EXPECT_THAT(work, StartsWith(m_Temporary / "torqel-file-fidelity-"));
    std::string const time = Between(m_Output, "KiB in ", ".\nEnded ");
    EXPECT_THAT(time, EndsWith(" s"));
    std::string const run = Between(m_Output, "\nRun ", "\nWorking in ");
    EXPECT_THAT(run, MatchesRegex(runHead));
    std::string const ended = Between(m_Output, "\nEnded ", "\nPASSED");
    EXPECT_THAT(ended, MatchesRegex(timeStamp + "\\."));
    std::string text = Replaced(Replaced(m_Output, work, "W"), time, "T s");
    text = Replaced(Replaced(text, run, "R"), ended, "E");
    EXPECT_EQ(
        text,
        "File fidelity of " + m_Files.Path().native()
            + "\nRun R\nWorking in W\n"
              "\nFiles, copied and compared\n"
              "  PASS  a"
            + std::string(68, ' ') + "5 B\n  PASS  b" + std::string(64, ' ')
            + "2.0 KiB\n"
              "\nCopies that must be refused\n"
              "  PASS  missing source\n"
              "        Unable to copy file 'Cannot copy from source: W/refused/missing does not "
              "exist.' to ''.\n"
              "  PASS  folder as source\n"
              "        Unable to copy file 'Cannot copy from source: W/refused/folder is a "
              "directory.' to ''.\n"
              "  PASS  named pipe as source\n"
              "        Unable to copy file 'Cannot copy from source: W/refused/pipe is not a "
              "standard file type.' to ''.\n"
              "  PASS  destination in a missing folder\n"
              "        Unable to copy file '' to 'Cannot copy to destination: "
              "W/refused/missing/copy does not exist.'.\n"
              "  PASS  named pipe as destination\n"
              "        Unable to copy file '' to 'Cannot copy to destination: W/refused/pipe is "
              "not "
              "a regular file.'.\n"
              "  PASS  both ends at once\n"
              "        Unable to copy file 'Cannot copy from source: W/refused/missing does not "
              "exist.' to 'Cannot copy to destination: W/refused/missing/copy does not exist.'.\n"
              "  PASS  link to itself as source\n"
              "        Unable to copy file 'W/refused/loop' to .':\n"
              "           status = 40 (Too many levels of symbolic links)\n"
              "  PASS  link to itself as destination\n"
              "        Unable to copy file 'W/refused/loop' to .':\n"
              "           status = 40 (Too many levels of symbolic links)\n"
              "\n10 cases: 10 pass, 0 fail, 0 skip.\n"
              "Compared 2.0 KiB in T s.\n"
              "Ended E\n"
              "PASSED\n");
}

TEST_F(CConsoleProgram, ExitsWith1AfterAFailure)
{
    WriteFile(m_Files / "caf\xE9", "");
    EXPECT_EQ(Run(), 1);
    EXPECT_THAT(m_Output, HasSubstr("  FAIL  caf\\xE9\n        the name does not survive: "
                                    "UTF-8 to UTF-16 and back\n"));
    EXPECT_THAT(m_Output, HasSubstr("\nWhat failed\n  caf\\xE9\n"));
    EXPECT_THAT(m_Output, EndsWith("\nFAILED\n"));
}

TEST_F(CConsoleProgram, ExitsWith2AfterAnInterrupt)
{
    AddManyFiles();
    for (int const number : {SIGTERM, SIGHUP}) {
        SCOPED_TRACE(strsignal(number));
        CChildProcess program(m_Launch);
        ASSERT_TRUE(program.ReadUntil("PASS"));
        program.Signal(number);
        EXPECT_THAT(program.ReadAll(), EndsWith("\nABORTED\n"));
        EXPECT_THAT(program.ReadAll(), HasSubstr(" remain.\n"));
        EXPECT_EQ(program.Wait(), 2);
    }
}

TEST_F(CConsoleProgram, ExitsWith2AfterCtrlC)
{
    AddManyFiles();
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    CChildProcess program(m_Launch);
    ASSERT_TRUE(program.ReadUntil("PASS"));
    program.Type("\x03");
    EXPECT_THAT(program.ReadAll(), HasSubstr("ABORTED"));
    EXPECT_EQ(program.Wait(), 2);
}

TEST_F(CConsoleProgram, PausesResumesAndAbortsByKeysAndLeavesTheTerminalAsItWas)
{
    AddManyFiles();
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    CChildProcess program(m_Launch);
    ASSERT_TRUE(program.ReadUntil("PASS"));
    EXPECT_FALSE(program.TerminalIsOrdinary());
    program.Type("\x1b[Ap"); // an arrow key first, which means nothing
    ASSERT_TRUE(program.ReadUntil("Paused"));
    program.Type("h");
    ASSERT_TRUE(program.ReadUntil("Keys: p pauses"));
    program.Type("ra"); // typed ahead
    EXPECT_THAT(program.ReadAll(), HasSubstr("ABORTED"));
    EXPECT_EQ(program.Wait(), 2);
    EXPECT_TRUE(program.TerminalIsOrdinary());
}

TEST_F(CConsoleProgram, LeavesTheTerminalAsItWasHoweverItEnds)
{
    struct CRow
    {
        char const* m_Name;
        char const* m_Keys;
        int m_Signal;
        int m_Ending;
    };
    m_Launch.m_Command.emplace_back("--ask");
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    for (CRow const& row :
         {CRow{"Ctrl-C", "\x03", 0, 2}, CRow{"Ctrl-backslash", "\x1c", 0, -SIGQUIT},
          CRow{"interrupted", "", SIGINT, 2}, CRow{"terminated", "", SIGTERM, 2},
          CRow{"hung up", "", SIGHUP, 2}, CRow{"quit", "", SIGQUIT, -SIGQUIT},
          CRow{"aborted", "", SIGABRT, -SIGABRT}, CRow{"an alarm", "", SIGALRM, -SIGALRM},
          CRow{"a signal of the user's", "", SIGUSR1, -SIGUSR1},
          CRow{"input and output", "", SIGIO, -SIGIO}, CRow{"power", "", SIGPWR, -SIGPWR},
          CRow{"stack fault", "", SIGSTKFLT, -SIGSTKFLT},
          CRow{"the first of real time", "", SIGRTMIN, -SIGRTMIN},
          CRow{"the last of real time", "", SIGRTMAX, -SIGRTMAX}}) {
        SCOPED_TRACE(row.m_Name);
        CChildProcess program(m_Launch);
        ASSERT_TRUE(program.ReadUntil("\r  > "));
        EXPECT_FALSE(program.TerminalIsOrdinary());
        program.Type(row.m_Keys);
        if (row.m_Signal != 0)
            program.Signal(row.m_Signal);
        program.ReadAll();
        EXPECT_EQ(program.Wait(), row.m_Ending);
        EXPECT_TRUE(program.TerminalIsOrdinary());
    }
}

TEST_F(CConsoleProgram, LeavesTheTerminalAsItWasWhenToldTwiceToEnd)
{
    AddManyFiles();
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    CChildProcess program(m_Launch);
    ASSERT_TRUE(program.ReadUntil("PASS"));
    program.Type("\x03\x03");
    program.ReadAll();
    EXPECT_EQ(program.Wait(), -SIGINT);
    EXPECT_TRUE(program.TerminalIsOrdinary());
}

TEST_F(CConsoleProgram, LosesNoInterruptWhileACommandRuns)
{
    CHeldCompare const compare;
    m_Launch.m_Variables["PATH"] = compare.SearchPath();
    CChildProcess program(m_Launch);
    ASSERT_TRUE(program.ReadUntil("Comparing"));
    program.Signal(SIGINT);
    ASSERT_TRUE(program.ReadUntil("Ending after the case at hand."));
    compare.LetGo();
    EXPECT_THAT(program.ReadAll(), HasSubstr("\nABORTED\n"));
    EXPECT_EQ(program.Wait(), 2);
}

TEST_F(CConsoleProgram, IsStoppedByCtrlZAndComesBackWithItsKeys)
{
    AddManyFiles();
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    m_Launch.m_UnderShell = true;
    for (bool const asks : {false, true}) {
        SCOPED_TRACE(asks ? "in a question" : "between questions");
        if (asks)
            m_Launch.m_Command.emplace_back("--ask");
        CChildProcess program(m_Launch);
        ASSERT_TRUE(program.ReadUntil(asks ? "\r  > " : "PASS"));
        program.Type("\x1a");
        program.AwaitStop();
        EXPECT_TRUE(program.TerminalIsOrdinary());
        program.Signal(SIGCONT);
        program.AwaitKeys();
        program.Type(asks ? "\x18" : "a");
        EXPECT_THAT(program.ReadAll(), HasSubstr("ABORTED"));
        EXPECT_EQ(program.Wait(), 2);
        EXPECT_TRUE(program.TerminalIsOrdinary());
    }
}

TEST_F(CConsoleProgram, GoesOnAfterCtrlZWhereNoShellCouldContinueIt)
{
    AddManyFiles();
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    CChildProcess program(m_Launch);
    ASSERT_TRUE(program.ReadUntil("PASS"));
    program.Type("\x1a");
    program.Type("a");
    EXPECT_THAT(program.ReadAll(), HasSubstr("ABORTED"));
    EXPECT_EQ(program.Wait(), 2);
}

TEST_F(CConsoleProgram, EndsWhenItsTerminalGoesAway)
{
    AddManyFiles();
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    for (bool const asks : {false, true}) {
        SCOPED_TRACE(asks);
        if (asks)
            m_Launch.m_Command.emplace_back("--ask");
        for (int const ignored : {0, SIGHUP}) {
            SCOPED_TRACE(ignored);
            m_Launch.m_IgnoredSignal = ignored;
            CChildProcess program(m_Launch);
            ASSERT_TRUE(program.ReadUntil(asks ? "\r  > " : "PASS"));
            program.CloseOutput();
            EXPECT_THAT(program.Wait(), AnyOf(2, 74));
        }
    }
}

// As with nohup, whose output goes to a file.
TEST_F(CConsoleProgram, ResumesWhenTheTerminalOfAPausedRunGoesAway)
{
    CTemporaryFolder const output;
    CHeldCompare const compare;
    WriteFile(output / "text", "");
    m_Launch.m_Variables["PATH"] = compare.SearchPath();
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    m_Launch.m_OutputFile = output / "text";
    m_Launch.m_IgnoredSignal = SIGHUP;
    CChildProcess program(m_Launch);
    auto const written = [&] { return ReadFile(output / "text"); };
    program.Await("a case", [&] { return testing::Value(written(), HasSubstr("Comparing")); });
    program.Type("ph"); // a pause shows after the case, the help at once
    program.Await("the keys",
                  [&] { return testing::Value(written(), HasSubstr("Keys: p pauses")); });
    compare.LetGo();
    program.Await("the pause", [&] { return testing::Value(written(), HasSubstr("\nPaused.\n")); });
    program.CloseOutput();
    compare.LetGo();
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(written(), AllOf(HasSubstr("\nResumed.\n"), EndsWith("\nPASSED\n")));
}

TEST_F(CConsoleProgram, AsksFromBeginningToEnd)
{
    for (char const* folder : {"one", "three", "two"}) {
        fs::create_directory(m_Files / folder);
        WriteFile(m_Files / folder + "/inside", folder);
    }
    WriteFile(m_Files / "b\xE9", "");
    m_Launch.m_Command.emplace_back("--ask");
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    CTemporaryFolder const reports;
    CChildProcess program(m_Launch);
    struct CStep
    {
        char const* m_Text;
        std::string m_Keys;
    };
    for (CStep const& step :
         {CStep{"Which folders?", "2-3\r"}, CStep{"How many files at most?", "4\r"},
          CStep{"Continue? b\\xE9 failed", "y"},
          CStep{"Save the report", reports / "saved.txt" + "\r"}}) {
        SCOPED_TRACE(step.m_Text);
        ASSERT_TRUE(program.ReadNext(step.m_Text));
        ASSERT_TRUE(program.ReadNext("\r  > "));
        program.Type(step.m_Keys);
    }
    m_Output = program.ReadAll();
    EXPECT_EQ(program.Wait(), 1);
    EXPECT_TRUE(program.TerminalIsOrdinary());
    EXPECT_THAT(m_Output, HasSubstr("three/inside"));
    EXPECT_THAT(m_Output, Not(AnyOf(HasSubstr("one/inside"), HasSubstr("two/inside"))));
    EXPECT_THAT(ReadFile(reports / "saved.txt"), HasSubstr("\nPASS  three/inside\n"));
}

TEST_F(CConsoleProgram, OffersTheHomeFolderForTheReportWhereThereAreNoDocuments)
{
    m_Launch.m_Command.emplace_back("--ask");
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    m_Launch.m_Columns = 500;
    CChildProcess program(m_Launch);
    ASSERT_TRUE(program.ReadNext("\r  > "));
    program.Type("\r");
    ASSERT_TRUE(program.ReadNext("A path, or a name in " + m_Temporary.Path().native() + "; "));
    ASSERT_TRUE(program.ReadNext("\r  > "));
    program.Type("\x1b");
    program.ReadAll();
    EXPECT_EQ(program.Wait(), 0);
}

TEST_F(CConsoleProgram, StopsAtAFailureWhenTheOperatorSaysSo)
{
    WriteFile(m_Files / "b\xE9", "");
    m_Launch.m_Command.emplace_back("--ask");
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    CChildProcess program(m_Launch);
    for (char const* text : {"How many", "Continue?", "Save the report"}) {
        ASSERT_TRUE(program.ReadNext(text));
        ASSERT_TRUE(program.ReadNext("\r  > "));
        program.Type("\x1b");
    }
    EXPECT_THAT(program.ReadAll(), HasSubstr(" remain"));
    EXPECT_EQ(program.Wait(), 1);
}

TEST_F(CConsoleProgram, AbortsFromAQuestion)
{
    m_Launch.m_Command.emplace_back("--ask");
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    for (auto const& [keys, number] : {std::pair("\x18", 0), std::pair("\x03", 0),
                                       std::pair("", SIGTERM), std::pair("", SIGINT)}) {
        CChildProcess program(m_Launch);
        ASSERT_TRUE(program.ReadUntil("\r  > "));
        program.Type(keys);
        if (number != 0)
            program.Signal(number);
        EXPECT_THAT(program.ReadAll(), HasSubstr("ABORTED"));
        EXPECT_EQ(program.Wait(), 2);
        EXPECT_TRUE(program.TerminalIsOrdinary());
    }
}

TEST_F(CConsoleProgram, AsksNobodyThroughAPipeAndSaysSo)
{
    m_Launch.m_Command.emplace_back("--ask");
    EXPECT_EQ(Run(), 0);
    EXPECT_THAT(m_Output, HasSubstr("? How many files at most?\n"));
    EXPECT_THAT(m_Output, HasSubstr("\n  Nobody can answer here: Check all\n"));
    EXPECT_THAT(m_Output, HasSubstr("\n  Nobody can answer here: Cancel\n"));
    EXPECT_THAT(m_Output, EndsWith("\nPASSED\n"));
}

TEST_F(CConsoleProgram, EndsAtOnceAtTheSecondInterrupt)
{
    AddManyFiles();
    CChildProcess program(m_Launch);
    ASSERT_TRUE(program.ReadUntil("PASS"));
    program.AwaitFullPipe(81);
    // Two signals, for two of the same might be delivered as one.
    program.Signal(SIGHUP);
    program.Signal(SIGTERM);
    EXPECT_THAT(program.Wait(), AnyOf(-SIGHUP, -SIGTERM));
}

TEST_F(CConsoleProgram, KeepsIgnoringAnInterruptThatItsCallerHasItIgnore)
{
    AddManyFiles();
    m_Launch.m_IgnoredSignal = SIGHUP;
    CChildProcess program(m_Launch);
    ASSERT_TRUE(program.ReadUntil("PASS"));
    program.Signal(SIGHUP);
    EXPECT_THAT(program.ReadAll(), EndsWith("\nPASSED\n"));
    EXPECT_EQ(program.Wait(), 0);
}

TEST_F(CConsoleProgram, ExitsWith64AfterArgumentsThatMeanNothing)
{
    m_Launch.m_Command.emplace_back("--fast");
    EXPECT_EQ(Run(), 64);
    EXPECT_EQ(m_Output, "torqel-console: There is no option --fast.\nTry torqel-console --help.\n");
}

TEST_F(CConsoleProgram, ExitsWith66WithoutAFolder)
{
    m_Launch.m_Command.back() = m_Files / "a";
    EXPECT_EQ(Run(), 66);
    EXPECT_EQ(m_Output,
              "torqel-console: '" + (m_Files / "a") + "' is not a folder (Not a directory).\n");
}

// Nothing can be found from a current folder that is gone.
TEST_F(CConsoleProgram, ExitsWith70AndLeavesTheTerminalAsItWasAfterAnException)
{
    m_Launch.m_Command = {"/bin/sh", "-c",
                          "mkdir gone && cd gone && rmdir ../gone && exec \"$0\" .",
                          CONSOLE_PROGRAM};
    CScopedCurrentPath const current(m_Files.Path());
    for (CLaunch::EOutput const output : {CLaunch::EOutput::Pipe, CLaunch::EOutput::Terminal}) {
        m_Launch.m_Output = output;
        CChildProcess program(m_Launch);
        EXPECT_THAT(program.ReadAll(), StartsWith("torqel-console: "));
        EXPECT_EQ(program.Wait(), 70);
        EXPECT_EQ(program.TerminalIsOrdinary(), output == CLaunch::EOutput::Terminal);
    }
}

TEST_F(CConsoleProgram, ExitsWith73WithoutATemporaryFolder)
{
    m_Launch.m_Variables["TMPDIR"] = m_Files / "none";
    EXPECT_EQ(Run(), 73);
    EXPECT_THAT(m_Output, StartsWith("torqel-console: There is no temporary folder to work in ("));
}

TEST_F(CConsoleProgram, ExitsWith74WhenItsOutputIsFull)
{
    m_Launch.m_OutputFile = "/dev/full";
    EXPECT_EQ(Run(), 74);
    EXPECT_EQ(m_Output, "torqel-console: Standard output takes no more.\n");

    m_Launch.m_Command.emplace_back("--help");
    EXPECT_EQ(Run(), 74);
}

TEST_F(CConsoleProgram, ExitsWith74WhenItsReaderWentAway)
{
    AddManyFiles();
    CChildProcess program(m_Launch);
    ASSERT_TRUE(program.ReadUntil("PASS"));
    program.CloseOutput();
    EXPECT_EQ(program.Wait(), 74);
}

TEST_F(CConsoleProgram, ListsItsOptionsAndExitCodesOnRequest)
{
    m_Launch.m_Command.emplace_back("--help");
    EXPECT_EQ(Run(), 0);
    EXPECT_THAT(m_Output, StartsWith("Usage: torqel-console [OPTION]... [FOLDER]\n"));
    for (char const* part : {"--ask", "--quiet", "--no-colour", "--plain", "--help", "--version",
                             "NO_COLOR", "/usr/share/common-licenses", "\n   0 ", "\n   1 ",
                             "\n   2 ", "\n  64 ", "\n  66 ", "\n  70 ", "\n  73 ", "\n  74 "})
        EXPECT_THAT(m_Output, HasSubstr(part));
    for (std::string const& row : Rows())
        EXPECT_LE(DisplayWidth(row), 80u) << row;
}

TEST_F(CConsoleProgram, NamesItsVersionOnRequest)
{
    m_Launch.m_Command.emplace_back("--version");
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(m_Output, "torqel-console " PROJECT_VERSION "\n");
}

TEST_F(CConsoleProgram, ShowsColoursAndABarOnATerminal)
{
    EXPECT_EQ(RunOnTerminal(), 0);
    EXPECT_THAT(m_Output, HasSubstr("\x1b[32mPASS\x1b[0m"));
    EXPECT_THAT(m_Output, HasSubstr("\r░░░░"));
    EXPECT_THAT(m_Output, HasSubstr("█████░░"));
    EXPECT_THAT(m_Output, EndsWith("\x1b[32mPASSED\x1b[0m\r\n"));
}

TEST_F(CConsoleProgram, DrawsTheBarInAsciiWithoutAUtf8Locale)
{
    m_Launch.m_Variables["LC_ALL"] = "C";
    EXPECT_EQ(RunOnTerminal(), 0);
    EXPECT_THAT(m_Output, HasSubstr("\r----"));
    EXPECT_THAT(m_Output, Not(HasSubstr("░")));
}

TEST_F(CConsoleProgram, UsesNoEscapeSequenceAgainstTheUsersWish)
{
    m_Launch.m_Variables["NO_COLOR"] = "1";
    EXPECT_EQ(RunOnTerminal(), 0);
    EXPECT_FALSE(HasEscapes()) << "NO_COLOR";
    EXPECT_TRUE(HasBar()) << "NO_COLOR";

    m_Launch.m_Variables["NO_COLOR"] = "";
    m_Launch.m_Command.emplace_back("--no-colour");
    EXPECT_EQ(RunOnTerminal(), 0);
    EXPECT_FALSE(HasEscapes()) << "--no-colour";
    EXPECT_TRUE(HasBar()) << "--no-colour";
}

TEST_F(CConsoleProgram, WritesPlainLinesOnATerminalThatCanDoNoMore)
{
    m_Launch.m_Variables["TERM"] = "dumb";
    EXPECT_EQ(RunOnTerminal(), 0);
    EXPECT_FALSE(HasEscapes() || HasBar()) << "TERM=dumb";

    m_Launch.m_Variables["TERM"] = "xterm";
    m_Launch.m_Command.emplace_back("--plain");
    EXPECT_EQ(RunOnTerminal(), 0);
    EXPECT_FALSE(HasEscapes() || HasBar()) << "--plain";
}

TEST_F(CConsoleProgram, KeepsWithinTheWindow)
{
    WriteFile(m_Files / (std::string(120, 'n') + "ame"), "");
    for (int const columns : {20, 40, 80, 200}) {
        SCOPED_TRACE(columns);
        m_Launch.m_Columns = static_cast<unsigned short>(columns);
        EXPECT_EQ(RunOnTerminal(), 0);
        for (std::string const& row : Rows())
            EXPECT_LE(static_cast<int>(DisplayWidth(row)), columns) << row;
    }
}

TEST_F(CConsoleProgram, FollowsTheWindowsWidth)
{
    AddManyFiles();
    m_Launch.m_Output = CLaunch::EOutput::Terminal;
    m_Launch.m_Columns = 80;
    CChildProcess program(m_Launch);
    ASSERT_TRUE(program.ReadUntil("PASS"));
    program.Resize(40);
    m_Output = program.ReadAll();
    EXPECT_EQ(program.Wait(), 0);

    std::vector<std::string> const rows = Rows();
    EXPECT_GT(std::count_if(rows.begin(), rows.end(),
                            [](std::string const& row) { return DisplayWidth(row) > 40; }),
              0);
    // The terminal holds back some rows from before; none of them is among the last.
    for (auto row = rows.end() - 100; row != rows.end(); ++row)
        EXPECT_LE(DisplayWidth(*row), 40u) << *row;
}
