// The window of the suite "file fidelity".

#include "CMainWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

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
    if (!parser.positionalArguments().isEmpty())
        options.m_Folder = parser.positionalArguments().front().toStdString();

    CMainWindow window(options);
    window.show();
    QTimer::singleShot(0, &window, [&window] { window.StartSuite(); });
    QApplication::exec();
    return static_cast<int>(ExitCodeOf(window.Verdict()));
}
