// The window of the suite "file fidelity".

#include "CMainWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <chrono>
#include <csignal>

namespace
{
enum class EExitCode : int { Passed = 0, Failed = 1, Aborted = 2 };

EExitCode ExitCodeOf(TEST_STATUS verdict)
{
    switch (static_cast<std::uint32_t>(verdict)) {
    case TEST_STATUS_PASSED:
        return EExitCode::Passed;
    case TEST_STATUS_ABORTED:
        return EExitCode::Aborted;
    default:
        return EExitCode::Failed;
    }
}

std::sig_atomic_t volatile interrupted = 0;

extern "C" void OnInterrupt(int /*number*/)
{
    interrupted = 1;
}

// Ctrl-C in the terminal, or the end of the session, closes the window as the
// operator would, so that nothing is left behind.
void CloseWhenInterrupted(CMainWindow& window)
{
    struct sigaction action = {};
    action.sa_handler = OnInterrupt;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (int const number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction previous = {};
        sigaction(number, nullptr, &previous);
        if (previous.sa_handler != SIG_IGN) // as nohup wants it
            sigaction(number, &action, nullptr);
    }
    auto* const watch = new QTimer(&window);
    QObject::connect(watch, &QTimer::timeout, &window, [&window] {
        if (interrupted != 0) {
            interrupted = 0;
            window.close();
        }
    });
    watch->start(std::chrono::milliseconds(50));
}
} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("torqel-window");
    QApplication::setApplicationVersion(TORQEL_WINDOW_VERSION);

    CSuiteOptions options;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Checks that every file below FOLDER keeps its name through text conversions and its\n"
        "bytes through file copy, and that file copy refuses what it must.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("FOLDER", "the folder to check", "[FOLDER]");
    parser.process(application);
    if (parser.positionalArguments().size() > 1)
        parser.showHelp(64);
    if (!parser.positionalArguments().isEmpty())
        options.m_Folder = parser.positionalArguments().front().toStdString();

    CMainWindow window(options);
    // The last window closed would not do: this one is hidden before its suite has ended.
    QApplication::setQuitOnLastWindowClosed(false);
    window.OnClosed([] { QApplication::exit(); });
    CloseWhenInterrupted(window);
    window.show();
    QTimer::singleShot(0, &window, [&window] { window.StartSuite(); });
    QApplication::exec();
    return static_cast<int>(ExitCodeOf(window.Verdict()));
}
