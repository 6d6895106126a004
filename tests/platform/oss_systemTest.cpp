#include <BaseUtilities/oss_system.h>

#include <BaseUtilities/CSafeString.h>

#include "Allocations.h"
#include "Privileges.h"
#include "ScopedCurrentPath.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
/// Puts back how a signal is handled.
class CScopedSignal
{
public:
    CScopedSignal(int number, void (*handler)(int))
        : m_Number(number),
          m_Before(std::signal(number, handler))
    {
    }
    CScopedSignal(CScopedSignal const&) = delete;
    CScopedSignal& operator=(CScopedSignal const&) = delete;
    ~CScopedSignal() { std::signal(m_Number, m_Before); }

private:
    int m_Number;
    void (*m_Before)(int);
};

/// Runs in a current folder of the test's own, below which its files are.
class OssSystem : public testing::Test
{
protected:
    std::string MakeFolder(std::string const& name)
    {
        fs::create_directories(m_Folder / name);
        return fs::canonical(m_Folder / name).native();
    }

    /// The command line that the shell was started with, as the kernel keeps it.
    std::string LineOf(std::string const& command, std::string const& arguments)
    {
        EXPECT_TRUE(oss_system(command, arguments, ""));
        std::string line = ReadFile(m_Folder / "line");
        EXPECT_EQ(line.back(), '\0');
        line.pop_back();
        return line.substr(line.rfind('\0') + 1);
    }

    /// A script that writes each of its arguments, and a NUL behind it, to a file.
    std::string PrintingScript()
    {
        std::string const script = m_Folder / "print";
        WriteFile(script, "#!/bin/sh\nexec >'" + m_Folder / "arguments"
                              + "'\n[ $# -eq 0 ] || printf '%s\\0' \"$@\"\n");
        fs::permissions(script, fs::perms::owner_all);
        return script;
    }

    /// What the script was given.
    std::vector<std::string> Arguments()
    {
        std::vector<std::string> result;
        std::string const all = ReadFile(m_Folder / "arguments");
        for (std::size_t start = 0; start < all.size();) {
            std::size_t const end = all.find('\0', start);
            result.push_back(all.substr(start, end - start));
            start = end + 1;
        }
        return result;
    }

    /// Calls with a working folder that cannot be used; the error that leaves it.
    std::error_code ErrorFor(std::string const& workingFolder)
    {
        try {
            oss_system("touch", m_Folder / "ran", workingFolder);
        } catch (fs::filesystem_error const& error) {
            return error.code();
        }
        return {};
    }

    void ExpectUntouched()
    {
        EXPECT_EQ(fs::current_path(), m_Start);
        EXPECT_FALSE(fs::exists(m_Folder / "ran"));
    }

    /// Where a command finds itself.
    std::string FolderOfCommand(std::string const& workingFolder)
    {
        EXPECT_TRUE(oss_system("pwd -P >", m_Folder / "where", workingFolder));
        std::string where = ReadFile(m_Folder / "where");
        where.pop_back();
        return where;
    }

    CTemporaryFolder m_Folder;
    std::string m_Start = MakeFolder("start");
    CScopedCurrentPath m_Current{m_Start};
};

struct SStatusRow
{
    char const* m_Name;
    char const* m_Command;
    bool m_Succeeds;
};

class OssSystemStatus : public testing::TestWithParam<SStatusRow>
{
};
} // namespace

TEST_P(OssSystemStatus, TellsSuccess)
{
    fs::path const before = fs::current_path();
    EXPECT_EQ(oss_system(GetParam().m_Command, "", "/"), GetParam().m_Succeeds);
    EXPECT_EQ(fs::current_path(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, OssSystemStatus,
    testing::Values(SStatusRow{"ExitZero", "exit 0", true}, SStatusRow{"ExitOne", "exit 1", false},
                    SStatusRow{"ExitTwo", "exit 2", false},
                    SStatusRow{"ExitThree", "exit 3", false},
                    SStatusRow{"Exit127", "exit 127", false},
                    SStatusRow{"Exit128", "exit 128", false},
                    SStatusRow{"Exit255", "exit 255", false}, SStatusRow{"True", "true", true},
                    SStatusRow{"False", "false", false}, SStatusRow{"NoCommand", "", true},
                    SStatusRow{"BlankCommand", "  ", true},
                    SStatusRow{"MissingCommand", "/nonexistent/command 2>/dev/null", false},
                    SStatusRow{"EndedBySignal", "kill -9 $$", false},
                    SStatusRow{"LastCommandOfAListDecides", "false; true", true},
                    SStatusRow{"NegatedFailure", "! false", true}),
    [](auto const& row) { return std::string(row.param.m_Name); });

TEST_F(OssSystem, WritesNothingItselfWhenTheCommandFails)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(oss_system("exit", "3", ""));
    EXPECT_FALSE(oss_system("/nonexistent/command", "2>/dev/null", ""));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// While SIGCHLD is ignored no exit status can be had, and `system` gives -1.
TEST_F(OssSystem, ReportsFailureWhileChildSignalsAreIgnored)
{
    CScopedSignal const ignored(SIGCHLD, SIG_IGN);
    EXPECT_FALSE(oss_system("touch", m_Folder / "ran", MakeFolder("there")));
    EXPECT_TRUE(fs::exists(m_Folder / "ran"));
    EXPECT_EQ(fs::current_path(), m_Start);
}

namespace
{
std::string const KeepLine = "cat /proc/$$/cmdline > ../line && true";
} // namespace

TEST_F(OssSystem, LineIsTheCommandAloneWithoutArguments)
{
    EXPECT_EQ(LineOf(KeepLine, ""), KeepLine);
}

TEST_F(OssSystem, LineIsTheCommandOneBlankAndTheArguments)
{
    EXPECT_EQ(LineOf(KeepLine, "a b"), KeepLine + " a b");
}

TEST_F(OssSystem, LineKeepsEveryBlankQuoteAndBackslashAsItIs)
{
    std::string const arguments = "  'a  b' \\\" \"$HOME\"  *  \t";
    EXPECT_EQ(LineOf("  " + KeepLine + "  ", arguments), "  " + KeepLine + "   " + arguments);
}

TEST_F(OssSystem, LineStartsWithTheBlankWithoutACommand)
{
    EXPECT_EQ(LineOf("", KeepLine), " " + KeepLine);
}

TEST_F(OssSystem, LineMayBeLong)
{
    std::string const arguments(50000, 'x');
    EXPECT_EQ(LineOf(KeepLine, arguments), KeepLine + " " + arguments);
}

TEST_F(OssSystem, ViewsAreReadOnlyAsFarAsTheyReach)
{
    std::string const script = PrintingScript() + "er";
    EXPECT_TRUE(oss_system(basic_sv_wrapper<char>(script.data(), script.size() - 2),
                           basic_sv_wrapper<char>("abc", 2), basic_sv_wrapper<char>("/x", 1)));
    EXPECT_THAT(Arguments(), ElementsAre("ab"));
}

TEST_F(OssSystem, TextIsPassedOnUpToANul)
{
    EXPECT_TRUE(oss_system(PrintingScript(), basic_sv_wrapper<char>("a\0b"), ""));
    EXPECT_THAT(Arguments(), ElementsAre("a"));
}

TEST_F(OssSystem, CommandWithoutArgumentsGetsNone)
{
    EXPECT_TRUE(oss_system(PrintingScript(), "", ""));
    EXPECT_THAT(Arguments(), IsEmpty());
}

TEST_F(OssSystem, UnsetViewsCountAsEmpty)
{
    EXPECT_TRUE(oss_system(PrintingScript(), basic_sv_wrapper<char>(), basic_sv_wrapper<char>()));
    EXPECT_THAT(Arguments(), IsEmpty());
}

TEST_F(OssSystem, ArgumentsAreTakenApartByTheShell)
{
    EXPECT_TRUE(oss_system(PrintingScript(), "a b  'c d' \"e f\" g\\ h", ""));
    EXPECT_THAT(Arguments(), ElementsAre("a", "b", "c d", "e f", "g h"));
}

// Deliberate in the library: the caller quotes.
TEST_F(OssSystem, PathWithABlankIsTwoWordsUnlessQuoted)
{
    std::string const folder = MakeFolder("a folder");
    WriteFile(folder + "/tool", "#!/bin/sh\n");
    fs::permissions(folder + "/tool", fs::perms::owner_all);
    EXPECT_FALSE(oss_system(folder + "/tool", "2>/dev/null", ""));
    EXPECT_TRUE(oss_system("'" + folder + "/tool'", "", ""));
}

namespace
{
/// How a caller quotes one argument, as the header tells.
std::string Quoted(std::string const& argument)
{
    std::string result = "'";
    for (char const character : argument) {
        if (character == '\'')
            result += "'\\''";
        else
            result += character;
    }
    return result + "'";
}
} // namespace

TEST_F(OssSystem, QuotedArgumentsReachTheCommandUnchanged)
{
    std::string const script = PrintingScript();
    for (std::string const& argument : {"plain"s,
                                        ""s,
                                        " "s,
                                        "two words"s,
                                        "it's"s,
                                        "'"s,
                                        "''"s,
                                        "\""s,
                                        "\\"s,
                                        "a\\'b"s,
                                        "$HOME `id` $(id)"s,
                                        "*"s,
                                        "~"s,
                                        "-n"s,
                                        "a;b&c|d>e<f"s,
                                        "#"s,
                                        "line\nend"s,
                                        "\t"s,
                                        "%s"s,
                                        "\xC3\xA4\xE2\x82\xAC"s,
                                        "\xFF"s,
                                        "!x"s}) {
        SCOPED_TRACE(argument);
        EXPECT_TRUE(oss_system(script, Quoted(argument) + " " + Quoted("next"), ""));
        EXPECT_THAT(Arguments(), ElementsAre(argument, "next"));
    }
}

TEST_F(OssSystem, RunsInTheWorkingFolderAndComesBack)
{
    std::string const there = MakeFolder("there");
    EXPECT_EQ(FolderOfCommand(there), there);
    EXPECT_EQ(fs::current_path(), m_Start);
}

TEST_F(OssSystem, RunsInEveryKindOfFolder)
{
    std::string const there = MakeFolder("start/a folder \xC3\xA4 'x'");
    fs::create_directory_symlink(there, m_Folder / "link");
    for (std::string const& folder : {there, there + "/", m_Folder / "link", m_Folder / "link/",
                                      there + "/../" + there.substr(there.rfind('/') + 1),
                                      "a folder \xC3\xA4 'x'"s, "./a folder \xC3\xA4 'x'"s}) {
        SCOPED_TRACE(folder);
        EXPECT_EQ(FolderOfCommand(folder), there);
        EXPECT_EQ(fs::current_path(), m_Start);
    }
    EXPECT_EQ(FolderOfCommand("/"), "/");
    EXPECT_EQ(FolderOfCommand(".."), fs::canonical(m_Folder.Path()));
    EXPECT_EQ(FolderOfCommand("."), m_Start);
    EXPECT_EQ(fs::current_path(), m_Start);
}

// Deliberate in the library: silently.
TEST_F(OssSystem, RunsInTheCurrentFolderWhereTheWorkingFolderIsNone)
{
    WriteFile(m_Folder / "file", "");
    ASSERT_EQ(mkfifo((m_Folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("nowhere", m_Folder / "dangling");
    fs::create_symlink("file", m_Folder / "linkToFile");
    for (std::string const& folder :
         {""s, m_Folder / "missing", m_Folder / "missing/below", m_Folder / "file",
          m_Folder / "file/below", m_Folder / "pipe", m_Folder / "dangling",
          m_Folder / "linkToFile", "/dev/null"s, " "s, "~"s}) {
        SCOPED_TRACE(folder);
        EXPECT_EQ(FolderOfCommand(folder), m_Start);
        EXPECT_EQ(fs::current_path(), m_Start);
    }
}

TEST_F(OssSystem, GivesTheResultOfTheCommandAlsoWhereTheWorkingFolderIsMissing)
{
    EXPECT_TRUE(oss_system("exit", "0", m_Folder / "missing"));
    EXPECT_FALSE(oss_system("exit", "3", m_Folder / "missing"));
}

TEST_F(OssSystem, ComesBackWhenTheCommandFails)
{
    std::string const there = MakeFolder("there");
    EXPECT_FALSE(oss_system("exit", "3", there));
    EXPECT_EQ(fs::current_path(), m_Start);
    EXPECT_FALSE(oss_system("/nonexistent/command", "2>/dev/null", there));
    EXPECT_EQ(fs::current_path(), m_Start);
}

TEST_F(OssSystem, ComesBackWhenTheCommandChangesTheFolderOrDeletesIt)
{
    std::string const there = MakeFolder("there");
    EXPECT_TRUE(oss_system("cd /", "", there));
    EXPECT_EQ(fs::current_path(), m_Start);
    EXPECT_TRUE(oss_system("rmdir", Quoted(there), there));
    EXPECT_EQ(fs::current_path(), m_Start);
}

TEST_F(OssSystem, ReportsAFolderThatRefusesToBeEntered)
{
    std::string const locked = MakeFolder("locked");
    fs::permissions(m_Folder.Path(),
                    fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_exec);
    fs::permissions(locked, fs::perms::none);
    CUnprivilegedFileAccess const unprivileged;
    ASSERT_TRUE(fs::is_directory(locked));
    EXPECT_EQ(ErrorFor(locked), std::errc::permission_denied);
    EXPECT_EQ(fs::current_path(), m_Start);
}

TEST_F(OssSystem, ReportsAFolderThatCannotBeLookedAt)
{
    std::string const locked = MakeFolder("locked");
    MakeFolder("locked/below");
    fs::permissions(locked, fs::perms::none);
    {
        CUnprivilegedFileAccess const unprivileged;
        EXPECT_EQ(ErrorFor(locked + "/below"), std::errc::permission_denied);
    }
    ExpectUntouched();
}

TEST_F(OssSystem, ReportsANameThatIsTooLong)
{
    EXPECT_EQ(ErrorFor(std::string(300, 'x')), std::errc::filename_too_long);
    EXPECT_EQ(ErrorFor(std::string(5000, '/')), std::errc::filename_too_long);
    ExpectUntouched();
}

TEST_F(OssSystem, ReportsLinksThatLeadInACircle)
{
    fs::create_symlink("circle", m_Folder / "circle");
    EXPECT_EQ(ErrorFor(m_Folder / "circle"), std::errc::too_many_symbolic_link_levels);
    ExpectUntouched();
}

TEST_F(OssSystem, ReportsACurrentFolderThatIsGoneAndRunsNothing)
{
    fs::remove(m_Start);
    EXPECT_EQ(ErrorFor("/"), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(fs::exists(m_Folder / "ran"));
}

TEST_F(OssSystem, ReportsARememberedFolderThatTheCommandDeleted)
{
    try {
        oss_system("rmdir", Quoted(m_Start), "/");
        ADD_FAILURE() << "nothing was thrown";
    } catch (fs::filesystem_error const& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    }
    EXPECT_FALSE(fs::exists(m_Start));
}

namespace
{
/// Long, so that building the line allocates after the folder is changed.
std::string const LongCommand = "true " + std::string(200, 'x');
std::string const LongArguments(200, 'y');
} // namespace

TEST_F(OssSystem, ComesBackAfterEveryFailedAllocation)
{
    std::string const there = MakeFolder("there");
    CAllocationCounter const during;
    int const failures = FailEachAllocation([&] { oss_system(LongCommand, LongArguments, there); },
                                            [&] { EXPECT_EQ(fs::current_path(), m_Start); });
    EXPECT_GT(failures, 8); // three copies of two blocks, the remembered path, the line
    EXPECT_EQ(fs::current_path(), m_Start);
    EXPECT_EQ(during.Live(), 0);
}

TEST_F(OssSystem, ComesBackWhereTheSystemItselfIsOutOfMemory)
{
    if (!CanFailMalloc())
        GTEST_SKIP() << "the sanitizer owns malloc";
    std::string const there = MakeFolder("there");
    bool happened = true;
    for (unsigned long number = 1; happened; ++number) {
        {
            CAllocationFailure const failure(number, EAllocator::Malloc);
            try {
                EXPECT_TRUE(oss_system(LongCommand, LongArguments, there) || failure.Happened());
            } catch (std::bad_alloc const&) {
            } catch (fs::filesystem_error const&) {
            }
            happened = failure.Happened();
        }
        ASSERT_EQ(fs::current_path(), m_Start) << number;
    }
}

TEST_F(OssSystem, ReportsTheFirstFailureWhenComingBackFailsToo)
{
    fs::permissions(m_Start, fs::perms::none);
    CUnprivilegedFileAccess const unprivileged;
    int const failures = FailEachAllocation(
        [] {
            try {
                oss_system(LongCommand, LongArguments, "/");
            } catch (fs::filesystem_error const&) { // where no allocation failed
            }
        },
        [] {});
    EXPECT_GT(failures, 8);
}

TEST_F(OssSystem, ReportsARememberedFolderThatRefusesToBeEntered)
{
    fs::permissions(m_Start, fs::perms::none);
    CUnprivilegedFileAccess const unprivileged;
    try {
        oss_system("true", "", "/");
        ADD_FAILURE() << "nothing was thrown";
    } catch (fs::filesystem_error const& error) {
        EXPECT_EQ(error.code(), std::errc::permission_denied);
    }
}

TEST_F(OssSystem, RefusesNullViewsWithALengthAndRunsNothing)
{
    basic_sv_wrapper<char> const null(nullptr, 3);
    std::string const ran = m_Folder / "ran";
    for (auto const &call :
         {+[](std::string const&, basic_sv_wrapper<char> const&view) { oss_system(view, "x", ""); },
          +[](std::string const&file, basic_sv_wrapper<char> const&view) {
              oss_system("touch " + file + ";:", view, "");
          },
          +[](std::string const&file, basic_sv_wrapper<char> const&view) {
              oss_system("touch", file, view);
          }}) {
        try {
            call(ran, null);
            ADD_FAILURE() << "nothing was thrown";
        } catch (std::logic_error const& error) {
            EXPECT_STREQ(error.what(), "basic_string: construction from null is not valid");
        }
        ExpectUntouched();
    }
}
