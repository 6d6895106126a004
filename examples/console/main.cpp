// The console front end of the suite "file fidelity".

#include "CConsoleDialogues.h"
#include "CConsoleReport.h"
#include "CKeyboard.h"
#include "ConsoleOptions.h"
#include "TextLayout.h"

#include <CInterruptWatch.h>
#include <CWorkFolder.h>
#include <ExitCode.h>

#include <BaseUtilities/TQException.h>
#include <BaseUtilities/UIHelperBase.h>

#include <csignal>
#include <exception>
#include <iostream>

namespace
{
CTerminal TerminalFor(CConsoleOptions const& options)
{
    CTerminal terminal = CTerminal::OfStandardOutput();
    terminal.m_Live = terminal.m_Live && !options.m_Plain;
    terminal.m_Colour = terminal.m_Colour && options.m_Colour && !options.m_Plain;
    return terminal;
}

// The signaler through which the suite asks.
class CRegisteredSignaler
{
public:
    explicit CRegisteredSignaler(CConsoleDialogues& dialogues)
    {
        dialogues.ConnectTo(m_Signaler);
        UIHelperBase::QtSignaler(m_Signaler);
    }
    CRegisteredSignaler(CRegisteredSignaler const&) = delete;
    CRegisteredSignaler& operator=(CRegisteredSignaler const&) = delete;
    ~CRegisteredSignaler() { UIHelperBase::m_UISignaler = nullptr; }

private:
    CQtSignaler m_Signaler;
};

// A running suite, the keys that steer it and the dialogues that answer it.
class CConsoleRun
{
public:
    explicit CConsoleRun(CConsoleOptions const& options);
    EExitCode Execute();

private:
    void HandleKeys();
    void HandleKey(int key);
    void Interrupt();
    void Abort();
    void PrepareToEndAtOnce();

    CHeldInterrupts const m_Held; // before the first thread starts
    CConsoleReport m_Report;
    CKeyboard m_Keyboard;
    CPrompter m_Prompter;
    CConsoleDialogues m_Dialogues;
    CRegisteredSignaler const m_Signaler;
    bool m_Interrupted = false;
    CSuiteRunner m_Runner; // last: it may ask at once
};

CConsoleRun::CConsoleRun(CConsoleOptions const& options)
    : m_Report(std::cout, TerminalFor(options), options.m_Quiet),
      m_Prompter(std::cout, TerminalFor(options), m_Report, m_Keyboard,
                 [this](int key) { HandleKey(key); }),
      m_Dialogues(m_Prompter, m_Report),
      m_Signaler(m_Dialogues),
      m_Runner(options.m_Suite, m_Report)
{
}

EExitCode CConsoleRun::Execute()
{
    CInterruptWatch const watch(
        m_Held, [this] { Abort(); }, [this] { PrepareToEndAtOnce(); });
    while (!m_Runner.WaitFor(std::chrono::milliseconds(50))) {
        m_Report.Tick();
        HandleKeys();
    }
    return ExitCodeOf(m_Runner.Wait().m_Verdict);
}

void CConsoleRun::HandleKeys()
{
    std::unique_lock<std::mutex> const turn(m_Keyboard.Turn(), std::try_to_lock);
    if (!turn) // a question has the keys
        return;
    while (std::optional<int> const key = m_Keyboard.Poll())
        HandleKey(*key);
}

// In the turn of whoever has read the key.
void CConsoleRun::HandleKey(int key)
{
    constexpr int ctrlC = 3;
    constexpr int ctrlZ = 26;
    constexpr int ctrlBackslash = 28;

    switch (key) {
    case 'p':
        m_Runner.Pause();
        break;
    case 'r':
    case CKeyboard::EndOfInput: // nobody else could
        m_Runner.Resume();
        break;
    case 'a':
    case 'q':
        Abort();
        break;
    case 'h':
    case '?':
        m_Report.ShowKeys();
        break;
    case ctrlC:
        Interrupt();
        break;
    case ctrlZ:
        m_Keyboard.Suspend();
        break;
    case ctrlBackslash:
        PrepareToEndAtOnce();
        CInterruptWatch::EndBy(SIGQUIT); // does not return
    default:
        break;
    }
}

void CConsoleRun::Interrupt()
{
    if (m_Interrupted) {
        PrepareToEndAtOnce();
        CInterruptWatch::EndBy(SIGINT);
    }
    m_Interrupted = true;
    Abort();
}

void CConsoleRun::Abort()
{
    if (m_Runner.RequestAbort())
        m_Report.AbortRequested();
}

void CConsoleRun::PrepareToEndAtOnce()
{
    CWorkFolder::RemoveAtOnce(m_Report.WorkFolder());
    m_Keyboard.Restore();
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
        return CConsoleRun(options).Execute();
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
