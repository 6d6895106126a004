// The console front end of the suite "file fidelity".

#include "CConsoleReport.h"
#include "CInterruptWatch.h"
#include "ConsoleOptions.h"
#include "ExitCode.h"
#include "TextLayout.h"

#include <BaseUtilities/TQException.h>

#include <csignal>
#include <exception>
#include <filesystem>
#include <iostream>

namespace
{
EExitCode ExitCodeOf(TEST_STATUS status)
{
    switch (static_cast<std::uint32_t>(status)) {
    case TEST_STATUS_PASSED:
        return EExitCode::Passed;
    case TEST_STATUS_FAILED:
        return EExitCode::Failed;
    case TEST_STATUS_ABORTED:
        return EExitCode::Aborted;
    case TEST_STATUS_NO_FOLDER:
        return EExitCode::NoFolder;
    case TEST_STATUS_NO_WORK_FOLDER:
        return EExitCode::NoWorkFolder;
    default:
        return EExitCode::BrokenDown;
    }
}

CTerminal TerminalFor(CConsoleOptions const& options)
{
    CTerminal terminal = CTerminal::OfStandardOutput();
    terminal.m_Live = terminal.m_Live && !options.m_Plain;
    terminal.m_Colour = terminal.m_Colour && options.m_Colour && !options.m_Plain;
    return terminal;
}

// Again when the suite, which may still be at work there, has added a file meanwhile.
void RemoveAtOnce(std::string const& workFolder)
{
    std::error_code error;
    if (workFolder.empty())
        return;
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::filesystem::remove_all(workFolder, error);
        if (!error)
            return;
    }
}

EExitCode RunSuite(CConsoleOptions const& options)
{
    CConsoleReport report(std::cout, TerminalFor(options), options.m_Quiet);
    CSuiteRunner runner(options.m_Suite, report);
    CInterruptWatch const watch(
        [&] {
            if (runner.RequestAbort())
                report.AbortRequested();
        },
        [&] { RemoveAtOnce(report.WorkFolder()); });

    while (!runner.WaitFor(std::chrono::milliseconds(50)))
        report.Tick();
    return ExitCodeOf(runner.Wait().m_Verdict);
}

EExitCode Show(std::string const& text)
{
    std::cout << text << std::flush;
    return std::cout ? EExitCode::Passed : EExitCode::OutputFailed;
}

EExitCode Complain(EExitCode code, char const* message)
{
    std::cerr << "torqel-console: " << Printable(message) << '\n';
    return code;
}

EExitCode Run(int argc, char const* const* argv)
{
    try {
        CConsoleOptions const options = ParseOptions(argc, argv);
        if (options.m_Help)
            return Show(HelpText());
        if (options.m_Version)
            return Show("torqel-console " TORQEL_CONSOLE_VERSION "\n");
        return RunSuite(options);
    } catch (CUsageError const& error) {
        Complain(EExitCode::Usage, error.what());
        std::cerr << "Try torqel-console --help.\n";
        return EExitCode::Usage;
    } catch (TQException const& error) {
        return Complain(ExitCodeOf(error.GetStatus()), error.what());
    } catch (std::ios_base::failure const&) {
        return Complain(EExitCode::OutputFailed, "Standard output takes no more.");
    } catch (std::exception const& error) {
        return Complain(EExitCode::BrokenDown, error.what());
    }
}
} // namespace

int main(int argc, char* argv[])
{
    // A reader that went away is a failed write, not a death that leaves the work folder.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    return static_cast<int>(Run(argc, argv));
}
