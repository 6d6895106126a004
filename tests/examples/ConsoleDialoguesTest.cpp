#include "CChildProcess.h"
#include "ScopedCurrentPath.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <csignal>

using testing::AnyOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

namespace
{
constexpr char const* escape = "\x1b";
constexpr char const* ctrlC = "\x03";
constexpr char const* ctrlX = "\x18";
constexpr char const* ctrlZ = "\x1a";

// One request at a terminal, in a folder of its own.
class CConsoleDialogue : public testing::Test
{
protected:
    CConsoleDialogue()
    {
        m_Launch.m_Variables = {{"TERM", "xterm"},
                                {"NO_COLOR", ""},
                                {"LC_ALL", "C.UTF-8"},
                                {"HOME", m_Folder.Path().native()}};
        m_Launch.m_Output = CLaunch::EOutput::Terminal;
    }
    CLaunch const& Launch(std::string const& request, std::string const& timeout = "0")
    {
        m_Launch.m_Command = {ASKING_PROGRAM, request, timeout};
        return m_Launch;
    }
    // What comes back for keys that are typed once the question waits for them.
    std::string Answer(std::string const& request, std::string const& keys)
    {
        CChildProcess program(Launch(request));
        EXPECT_TRUE(program.ReadUntil("\r  > "));
        program.Type(keys);
        return AnswerOf(program);
    }
    std::string AnswerOf(CChildProcess& program)
    {
        m_Output = program.ReadAll();
        m_Exit = program.Wait();
        EXPECT_TRUE(program.TerminalIsOrdinary());
        std::size_t const start = m_Output.find("Answer: ");
        if (start == std::string::npos)
            return "none:\n" + m_Output;
        return m_Output.substr(start + 8, m_Output.find(".\r\n", start) - start - 8);
    }

    CTemporaryFolder const m_Folder;
    CScopedCurrentPath const m_CurrentPath{m_Folder.Path()};
    CLaunch m_Launch;
    std::string m_Output;
    int m_Exit = -1;
};

struct CRow
{
    char const* m_Name;
    char const* m_Request;
    std::string m_Keys;
    char const* m_Answer;
};

class CConsoleDialogueRows : public CConsoleDialogue, public testing::WithParamInterface<CRow>
{
};
} // namespace

TEST_P(CConsoleDialogueRows, AnswersAsTheKeysSay)
{
    EXPECT_EQ(Answer(GetParam().m_Request, GetParam().m_Keys), GetParam().m_Answer) << m_Output;
    EXPECT_EQ(m_Exit, 0);
}

INSTANTIATE_TEST_SUITE_P(
    All, CConsoleDialogueRows,
    testing::Values(
        CRow{"YesByLetter", "choice", "y", "yes"}, CRow{"YesByEnter", "choice", "\r", "yes"},
        CRow{"NoByLetter", "choice", "n", "no"}, CRow{"NoByEscape", "choice", escape, "no"},
        CRow{"NoByEndOfInput", "choice", "\x04", "no"},
        CRow{"ArrowKeysChooseNothing", "choice", "\x1b[A\x1bOB\x1b[1;5Cxy", "yes"},
        CRow{"AltLettersChooseNothing", "choice", "\x1bny", "yes"},
        CRow{"NoAbortUnlessOffered", "choice without abort", "\x18y", "yes"},
        CRow{"Abort", "abort", "y", "abort"}, CRow{"AbortRejected", "abort", escape, "go on"},
        CRow{"AbortSuggested", "suggestion", "y", "abort"},
        CRow{"NumberProposed", "number", "\r", "20"}, CRow{"NumberTyped", "number", "31\r", "31"},
        CRow{"NumberRejected", "number", "9\x1b", "20"},
        CRow{"NumberCorrected", "number",
             "32\r\x7f\x7f"
             "7\r\x7f"
             "8\r",
             "8"},
        CRow{"NumberNotProposed", "number without proposal", "\r9\r", "9"},
        CRow{"NumberProposedAndEdited", "number",
             "\x1b[A\x7f"
             "1\r",
             "21"},
        CRow{"NumberEditedInTheMiddle", "number", "3\x1b[D1\r", "13"},
        CRow{"Hexadecimal", "hexadecimal", "1f\r", "31"},
        CRow{"HexadecimalProposed", "hexadecimal", "\r", "20"}, CRow{"Octal", "octal", "10\r", "8"},
        CRow{"FirstItem", "item", "\r", "0"}, CRow{"LastItem", "item", "3\r", "2"},
        CRow{"ItemCorrected", "item",
             "4\r\x7f"
             "2\r",
             "1"},
        CRow{"ItemRejected", "item", escape, "-1"}, CRow{"AllItems", "items", "\r", "chosen 0 1 2"},
        CRow{"SomeItems", "items", "1,3\r", "chosen 0 2"},
        CRow{"NoItems", "items", "none\r", "chosen"},
        CRow{"ItemsCorrected", "items",
             "5\r\x15"
             "2-3\r",
             "chosen 1 2"},
        CRow{"ItemsRejected", "items", escape, "nothing"},
        CRow{"Information", "information", "\r", "read"},
        CRow{"InformationEscaped", "information", escape, "read"},
        CRow{"Warning", "warning", "\r", "read"}, CRow{"Error", "error", "\r", "read"},
        CRow{"FileRejected", "file", escape, "nothing"},
        CRow{"FolderRejected", "folder", escape, "nothing"},
        CRow{"FilesRejected", "files", escape, "nothing"}),
    [](auto const& row) { return row.param.m_Name; });

TEST_F(CConsoleDialogue, SaysWhatANumberMayBe)
{
    Answer("number", "7\r\x15\r");
    EXPECT_THAT(m_Output, HasSubstr("  A number from 8 to 31; nothing means 20.\r\n"));
    EXPECT_THAT(m_Output, HasSubstr("A number from 8 to 31, please."));
    Answer("hexadecimal", "\r");
    EXPECT_THAT(m_Output, HasSubstr("  A number from 8 to 1F, hexadecimal; nothing means 14.\r\n"));
    Answer("octal", "\r");
    EXPECT_THAT(m_Output, HasSubstr("  A number from 10 to 37, octal; nothing means 24.\r\n"));
}

TEST_F(CConsoleDialogue, LetsNoItemCommandTheTerminal)
{
    Answer("item", "\r");
    EXPECT_THAT(m_Output, HasSubstr("   2  two\\x1B[2J\r\n"));
}

TEST_F(CConsoleDialogue, ShowsTheWaysOutAndWhichWasTaken)
{
    Answer("choice", "n");
    EXPECT_THAT(m_Output, HasSubstr("? \x1b[1mIs it?\x1b[0m\r\n"));
    EXPECT_THAT(m_Output, HasSubstr("[y] It is   [n] It is not   [Ctrl-X] Abort all"));
    EXPECT_THAT(m_Output, HasSubstr("  > It is not\r\n"));
    Answer("choice without abort", "y");
    EXPECT_THAT(m_Output, Not(HasSubstr("Abort all")));
    EXPECT_THAT(m_Output, HasSubstr("  > It is\r\n"));
    Answer("number", "9\r");
    EXPECT_THAT(m_Output, HasSubstr("[Enter] Take   [Esc] Leave   [Ctrl-X] Abort all"));
    EXPECT_THAT(m_Output, HasSubstr("  > 9\r\n"));
}

TEST_F(CConsoleDialogue, ShowsTheEmphasis)
{
    Answer("information", "\r");
    EXPECT_THAT(m_Output, HasSubstr("i \x1b[1mSo it is."));
    Answer("warning", "\r");
    EXPECT_THAT(m_Output, HasSubstr("! \x1b[33mSo it is."));
    Answer("error", "\r");
    EXPECT_THAT(m_Output, HasSubstr("! \x1b[31;1mSo it is."));
}

TEST_F(CConsoleDialogue, WaitsForNobodyBesideAModelessNote)
{
    CChildProcess program(Launch("note"));
    EXPECT_EQ(AnswerOf(program), "read");
    EXPECT_THAT(m_Output, HasSubstr("So it is."));
    EXPECT_THAT(m_Output, Not(HasSubstr("  > ")));
}

TEST_F(CConsoleDialogue, CountsDownAndRejectsWhenTheTimeIsOut)
{
    struct CTimedOut
    {
        char const* m_Request;
        char const* m_Answer;
        char const* m_Outcome;
    };
    for (CTimedOut const& row :
         {CTimedOut{"choice", "no", "It is not"}, CTimedOut{"number", "20", "Leave"},
          CTimedOut{"item", "-1", "Leave"}, CTimedOut{"items", "nothing", "Leave"},
          CTimedOut{"information", "read", "Close"}, CTimedOut{"bar", "read", "going on"}}) {
        SCOPED_TRACE(row.m_Request);
        CChildProcess program(Launch(row.m_Request, "2"));
        EXPECT_EQ(AnswerOf(program), row.m_Answer);
        EXPECT_LT(m_Output.find("2 s left"), m_Output.find("1 s left"));
        EXPECT_THAT(m_Output,
                    HasSubstr("  > No answer in 2 s: " + std::string(row.m_Outcome) + "\r\n"));
    }
}

TEST_F(CConsoleDialogue, CountsDownNothingWithoutATimeOut)
{
    Answer("choice", "y");
    EXPECT_THAT(m_Output, Not(HasSubstr(" left")));
}

TEST_F(CConsoleDialogue, AbortsTheSuiteWhereThatIsOffered)
{
    for (char const* request : {"choice", "number", "item", "items"}) {
        SCOPED_TRACE(request);
        Answer(request, ctrlX);
        EXPECT_EQ(m_Exit, 2);
        EXPECT_THAT(m_Output, HasSubstr("  > Abort all\r\n"));
    }
    EXPECT_EQ(Answer("choice", ctrlX), "no");
    EXPECT_EQ(Answer("number", std::string("9") + ctrlX), "20");
}

TEST_F(CConsoleDialogue, EndsEveryQuestionWithTheSuite)
{
    for (char const* request : {"choice without abort", "number", "items", "bar", "file"}) {
        SCOPED_TRACE(request);
        Answer(request, ctrlC);
        EXPECT_EQ(m_Exit, 2);
        EXPECT_THAT(m_Output, HasSubstr("  > Closed\r\n"));
    }
}

TEST_F(CConsoleDialogue, MayNotBeClosedByTheOperatorWhereThatIsNotOffered)
{
    CChildProcess program(Launch("bar", "3"));
    ASSERT_TRUE(program.ReadUntil("\r  > "));
    program.Type("\r\x1b");
    EXPECT_EQ(AnswerOf(program), "read");
    EXPECT_THAT(m_Output, HasSubstr("No answer in 3 s"));
}

TEST_F(CConsoleDialogue, IsClosedBySomebodyElse)
{
    for (char const* request : {"closed", "all closed"}) {
        SCOPED_TRACE(request);
        CChildProcess program(Launch(request));
        EXPECT_EQ(AnswerOf(program), "no");
    }
}

TEST_F(CConsoleDialogue, TakesNoKeyThatWasTypedBefore)
{
    CChildProcess program(Launch("typed ahead"));
    ASSERT_TRUE(program.ReadUntil("Ready."));
    program.Type("y");
    ASSERT_TRUE(program.ReadUntil("\r  > "));
    program.Type("n");
    EXPECT_EQ(AnswerOf(program), "no");
    EXPECT_THAT(m_Output, HasSubstr("<121>")); // the suite's
}

TEST_F(CConsoleDialogue, AsksOnATerminalThatCanDoNoMore)
{
    m_Launch.m_Variables["TERM"] = "dumb";
    CChildProcess program(Launch("choice", "60"));
    ASSERT_TRUE(program.ReadUntil("60 s left"));
    program.Type("y");
    EXPECT_EQ(AnswerOf(program), "yes");
    EXPECT_THAT(m_Output, Not(HasSubstr("\x1b")));
}

TEST_F(CConsoleDialogue, ComesBackAfterASuspension)
{
    m_Launch.m_UnderShell = true;
    CChildProcess program(Launch("number"));
    ASSERT_TRUE(program.ReadUntil("\r  > "));
    program.Type(std::string("1") + ctrlZ);
    program.AwaitStop();
    EXPECT_TRUE(program.TerminalIsOrdinary());
    program.Signal(SIGCONT);
    program.AwaitKeys();
    program.Type("2\r");
    EXPECT_EQ(AnswerOf(program), "12");
}

TEST_F(CConsoleDialogue, LeavesASignalToTheProgramThatHandlesIt)
{
    CChildProcess program(Launch("choice"));
    ASSERT_TRUE(program.ReadUntil("\r  > "));
    program.Signal(SIGUSR2);
    ASSERT_TRUE(program.ReadUntil("Handled."));
    program.Type("y");
    EXPECT_EQ(AnswerOf(program), "yes");
}

TEST_F(CConsoleDialogue, KeepsAsMuchOfALongLineAsTheWindowHolds)
{
    m_Launch.m_Columns = 30;
    CChildProcess program(Launch("number"));
    ASSERT_TRUE(program.ReadUntil("\r  > "));
    program.Type(std::string(60, '0') + "19");
    ASSERT_TRUE(program.ReadUntil("\r  > …" + std::string(21, '0') + "19"));
    program.Type("\r");
    EXPECT_EQ(AnswerOf(program), "19");
}

TEST_F(CConsoleDialogue, SavesWhereTheOperatorSays)
{
    std::string const folder = m_Folder.Path().native();
    EXPECT_EQ(Answer("file", "\r"), folder + "/proposed");
    EXPECT_EQ(Answer("file", "none/x\r\x15"
                             "caf\xC3\xA9\r"),
              folder + "/caf\xC3\xA9");
    EXPECT_THAT(m_Output, HasSubstr("There is no "));
    EXPECT_EQ(Answer("file", "~/x\r"), folder + "/x");
    EXPECT_EQ(Answer("file", "\x1b[A.txt\r"), folder + "/proposed.txt");
}

TEST_F(CConsoleDialogue, ReplacesAFileOnlyWhenToldTwice)
{
    WriteFile(m_Folder / "proposed", "");
    EXPECT_EQ(Answer("file", "\rother\r"), m_Folder / "other");
    // Wrapped wherever the folder's length puts it.
    EXPECT_THAT(m_Output, ContainsRegex("exists;.*Enter.*again.*replaces.*it\\."));
    EXPECT_EQ(Answer("file", "\r\r"), m_Folder / "proposed");
}

TEST_F(CConsoleDialogue, PicksAFolderThatExists)
{
    std::filesystem::create_directory(m_Folder / "sub");
    EXPECT_EQ(Answer("folder", "\r"), m_Folder.Path().native());
    EXPECT_EQ(Answer("folder", "sub/\r"), m_Folder / "sub");
    EXPECT_EQ(Answer("folder", "no\r\x1b"), "nothing");
    EXPECT_THAT(m_Output, HasSubstr("There is no "));
}

TEST_F(CConsoleDialogue, PicksFilesUntilThereAreNoMore)
{
    WriteFile(m_Folder / "a", "");
    WriteFile(m_Folder / "b", "");
    CChildProcess program(Launch("files"));
    ASSERT_TRUE(program.ReadNext("\r  > "));
    program.Type("none\r\x15"
                 "a\r");
    ASSERT_TRUE(program.ReadNext("There is no "));
    ASSERT_TRUE(program.ReadNext("? \x1b[1mAnother file?"));
    ASSERT_TRUE(program.ReadNext("\r  > "));
    program.Type("b\r");
    ASSERT_TRUE(program.ReadNext("? \x1b[1mAnother file?"));
    ASSERT_TRUE(program.ReadNext("\r  > "));
    program.Type(escape);
    EXPECT_EQ(AnswerOf(program), "picked " + (m_Folder / "a") + " " + (m_Folder / "b"));
    EXPECT_THAT(m_Output, HasSubstr("  > No more\r\n"));
}

TEST_F(CConsoleDialogue, OnlyRefreshesWhereNothingIsAsked)
{
    CChildProcess program(Launch("refresh"));
    EXPECT_EQ(AnswerOf(program), "refreshed");
    EXPECT_THAT(m_Output, Not(HasSubstr("  > ")));
}

TEST_F(CConsoleDialogue, IsRejectedPlainlyWhereNobodyCanAnswer)
{
    m_Launch.m_Output = CLaunch::EOutput::Pipe;
    for (auto const& [request, answer] :
         {std::pair("choice", "no"), std::pair("number", "20"), std::pair("item", "-1"),
          std::pair("items", "nothing"), std::pair("information", "read"), std::pair("bar", "read"),
          std::pair("file", "nothing"), std::pair("folder", "nothing"),
          std::pair("files", "nothing"), std::pair("abort", "go on")}) {
        SCOPED_TRACE(request);
        CChildProcess program(Launch(request));
        std::string const text = program.ReadAll();
        EXPECT_THAT(text, HasSubstr("Answer: " + std::string(answer) + ".\n"));
        EXPECT_THAT(text, HasSubstr("  Nobody can answer here: "));
        EXPECT_THAT(text, Not(AnyOf(HasSubstr("\r"), HasSubstr("[Ctrl-X]"))));
        EXPECT_EQ(program.Wait(), 0);
    }
}

TEST_F(CConsoleDialogue, LeavesTheTerminalAsItWasAfterAnUnexpectedEnd)
{
    for (char const* request : {"exception", "abnormal end"}) {
        SCOPED_TRACE(request);
        CChildProcess program(Launch(request));
        program.ReadAll();
        EXPECT_EQ(program.Wait(), -SIGABRT);
        EXPECT_TRUE(program.TerminalIsOrdinary());
    }
}
