#include "ConsoleOptions.h"

#include <string_view>

namespace
{
bool ApplySwitch(CConsoleOptions& options, std::string_view argument)
{
    if (argument == "--help" || argument == "-h")
        options.m_Help = true;
    else if (argument == "--version")
        options.m_Version = true;
    else if (argument == "--ask" || argument == "-a")
        options.m_Suite.m_Asks = true;
    else if (argument == "--quiet" || argument == "-q")
        options.m_Quiet = true;
    else if (argument == "--no-colour" || argument == "--no-color")
        options.m_Colour = false;
    else if (argument == "--plain")
        options.m_Plain = true;
    else
        return false;
    return true;
}
} // namespace

CConsoleOptions ParseOptions(int argc, char const* const* argv)
{
    CConsoleOptions options;
    bool switches = true;
    bool folder = false;
    for (int index = 1; index < argc; ++index) {
        std::string_view const argument = argv[index];
        if (switches && argument == "--") {
            switches = false;
        } else if (switches && argument.size() > 1 && argument.front() == '-') {
            if (!ApplySwitch(options, argument))
                throw CUsageError("There is no option " + std::string(argument) + ".");
        } else {
            if (folder)
                throw CUsageError("Only one folder can be checked at a time.");
            if (argument.empty())
                throw CUsageError("The folder's name is empty.");
            options.m_Suite.m_Folder = argument;
            folder = true;
        }
    }
    return options;
}

std::string HelpText()
{
    return "Usage: torqel-console [OPTION]... [FOLDER]\n"
           "\n"
           "Checks that every file below FOLDER ("
           + CSuiteOptions().m_Folder.native()
           + ")\n"
             "keeps its name through text conversions and its bytes through file copy, and\n"
             "that file copy refuses what it must. Nothing is written outside of a temporary\n"
             "work folder, which is removed at the end, but for the report that --ask saves.\n"
             "\n"
             "  -a, --ask      ask which folders and how many files to check, whether to go on\n"
             "                 after a failure, and where to save the report\n"
             "  -q, --quiet    list only what did not pass\n"
             "  --no-colour    no colours; the same as a NO_COLOR that is set and not empty\n"
             "  --plain        neither colours nor progress bar, as when not on a terminal\n"
             "  -h, --help     show this text\n"
             "  --version      show the version\n"
             "\n"
             "Keys on a terminal: p pauses, r resumes, a or q aborts after the case at hand,\n"
             "h lists the keys. Ctrl-C aborts after the case at hand, a second Ctrl-C at once.\n"
             "\n"
             "In a question: Enter accepts, Esc rejects, Ctrl-X aborts the suite where that is\n"
             "offered. In a line the arrow keys, Home and End move, Ctrl-U clears, and Up\n"
             "brings the proposal to be edited. Questions that nobody answers in time, or that\n"
             "nobody can answer because there is no terminal, are rejected.\n"
             "\n"
             "SIGINT, SIGTERM and SIGHUP abort after the case at hand, the second one at once,\n"
             "also while the system's cmp runs.\n"
             "\n"
             "Exit codes:\n"
             "   0  passed\n"
             "   1  failed\n"
             "   2  aborted before the last case, whatever the verdicts until then\n"
             "  64  arguments that mean nothing\n"
             "  66  FOLDER is not a folder\n"
             "  70  the suite broke down\n"
             "  73  no work folder can be made\n"
             "  74  standard output takes no more\n";
}
