// The window of the suite "file fidelity".

#include "CMainWindow.h"

#include <CInterruptWatch.h>
#include <CWorkFolder.h>
#include <ExitCode.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>

namespace
{
// Byte for byte as characters, for a folder's name need not be UTF-8.
QStringList Arguments(int argc, char const* const* argv)
{
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments.append(QString::fromLatin1(argv[index]));
    return arguments;
}

[[noreturn]] void Refuse(QString const& problem)
{
    std::cerr << "torqel-window: " << problem.toLatin1().constData()
              << "\nTry torqel-window --help.\n";
    std::exit(static_cast<int>(EExitCode::Usage));
}

// What the arguments ask for. Ends the program where that is a text, or nothing that makes sense.
CSuiteOptions ParseOptions(int argc, char const* const* argv)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Checks that every file below FOLDER keeps its name through text conversions and its\n"
        "bytes through file copy, and that file copy refuses what it must.\n\n"
        "Exit codes: 0 passed, 1 failed, 2 aborted, 64 arguments that mean nothing,\n"
        "66 FOLDER is not a folder, 70 the suite broke down, 73 no work folder can be made.");
    QCommandLineOption const help({"h", "help"}, "show this text");
    QCommandLineOption const version({"v", "version"}, "show the version");
    parser.addOptions({help, version});
    parser.addPositionalArgument("FOLDER", "the folder to check", "[FOLDER]");
    if (!parser.parse(Arguments(argc, argv)))
        Refuse(parser.errorText());
    QStringList const folders = parser.positionalArguments();
    if (folders.size() > 1)
        Refuse("Only one folder can be checked at a time.");
    if (folders.contains(""))
        Refuse("The folder's name is empty.");
    if (parser.isSet(help))
        parser.showHelp();
    if (parser.isSet(version))
        parser.showVersion();
    CSuiteOptions options;
    if (!folders.isEmpty())
        options.m_Folder = folders.front().toLatin1().toStdString();
    return options;
}

// Texts need no display.
bool AsksForText(int argc, char const* const* argv)
{
    constexpr std::string_view texts[] = {"-h", "--help", "-v", "--version"};
    return std::any_of(argv + 1, argv + argc, [&](std::string_view argument) {
        return std::find(std::begin(texts), std::end(texts), argument) != std::end(texts);
    });
}

int Run(int argc, char** argv)
{
    CHeldInterrupts const held; // before Qt starts threads
    QApplication const application(argc, argv);
    CMainWindow window(ParseOptions(argc, argv));
    // Ctrl-C in the terminal, or the end of the session, closes the window as the operator would.
    CInterruptWatch const watch(
        held,
        [&window] {
            QMetaObject::invokeMethod(
                &window, [&window] { window.close(); }, Qt::QueuedConnection);
        },
        [&window] { CWorkFolder::RemoveAtOnce(window.WorkFolder().to_path()); });
    // The last window closed would not do: this one is hidden before its suite has ended.
    QApplication::setQuitOnLastWindowClosed(false);
    window.OnClosed([] { QApplication::exit(); });
    window.show();
    QTimer::singleShot(0, &window, [&window] { window.StartSuite(); });
    QApplication::exec();
    return static_cast<int>(ExitCodeOf(window.Verdict()));
}
} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setApplicationName("torqel-window");
    QCoreApplication::setApplicationVersion(TORQEL_WINDOW_VERSION);
    if (AsksForText(argc, argv)) {
        QCoreApplication const application(argc, argv);
        ParseOptions(argc, argv);
    }
    try {
        return Run(argc, argv);
    } catch (std::exception const& error) {
        std::cerr << "torqel-window: " << error.what() << '\n';
        return static_cast<int>(EExitCode::BrokenDown);
    }
}
