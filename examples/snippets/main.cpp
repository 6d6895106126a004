// What the pages in docs/tasks and the comments of the public headers show. Every line of theirs
// stands here, and a test runs this program and compares them.

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/CQtSignaler.h>
#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/FolderResolution.h>
#include <BaseUtilities/StringUtilities.h>
#include <BaseUtilities/TQUserAbort.h>
#include <BaseUtilities/TqCopyFile.h>
#include <BaseUtilities/UIHelperBase.h>
#include <BaseUtilities/oss_system.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

enum class gui::EAbortPromptState : int { Hidden, Shown };
enum class EUIMode : int { Default, Modal };

inline constexpr TEST_STATUS TEST_STATUS_PASSED = TEST_STATUS(1);
inline constexpr TEST_STATUS TEST_STATUS_FAILED = TEST_STATUS(2);

namespace
{
CSafeString Greeting(basic_sv_wrapper<char> const& name)
{
    CSafeString text("Hello, ");
    text += name;
    return text;
}

void TextInAndOut()
{
    std::string const name = "operator";
    std::cout << Greeting(name).get() << '\n'; // any kind of text goes in
    std::cout << Greeting("world").size() << '\n';
    CSafeString const joined = StringJoin({"a", "b"}, ", ");
    std::cout << joined.get() << '\n';
}

void ThrowAndCatch(CSafeString const& folder, int count)
{
    try {
        DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "%s holds %d files.", folder, count);
    } catch (CTestSuiteException const&) {
        // the more special type first
    } catch (TQException const& error) {
        std::cout << error.what() << ", status " << error.GetStatus() << '\n';
    }
    CSafeString const name("suite");
    int const done = 1, all = 2;
    CFormattedString const line("%s: %d of %d", name.get(), done, all);
    std::cout << line.get() << '\n';
}

bool AskTheOperator()
{
    bool proceed = false;
    if (auto* const signaler = UIHelperBase::m_UISignaler)
        emit signaler->BooleanChoice(EUIMode::Modal, 0, "Go on?", &proceed, "Yes", "No",
                                     gui::EAbortPromptState::Hidden, "");
    return proceed;
}

void RunStep()
{
    while (TQUserAbort::IsPaused() && !TQUserAbort::UserAbortRequested())
        std::cout << "paused\n";
    if (TQUserAbort::UserAbortRequested())
        TQUserAbort::Send(); // throws TQUserAbort, which no handler for failures takes
}

void PauseAndAbort()
{
    TQUserAbort::EnableUserAbort(true); // whoever starts the suite
    TQUserAbort::RequestUserAbort();    // the operator's thread
    try {
        RunStep();
    } catch (TQUserAbort const&) {
        std::cout << "left by an abort\n";
    }
    TQUserAbort::EnableUserAbort(true);    // whoever starts the suite
    TQUserAbort::RequestUserAbort();       // the operator's thread
    if (TQUserAbort::UserAbortRequested()) // the test's thread, where it may leave
        TQUserAbort::Send();               // throws TQUserAbort
}

void CopyAFile(CSafeString const& source, CSafeString const& folder)
{
    if (auto const copy = TqCopyFile(source, folder, ECopyFailType::Report))
        std::cout << copy->to_path().filename().native() << '\n';
    CSafeString const sure = *TqCopyFile(source, folder, ECopyFailType::Throw);
    std::cout << sure.empty() << '\n';
}

void RunACommand(CSafeString const& folder)
{
    if (!oss_system("test", "-f 'a file'", folder))
        DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "No file in %s.", folder);
}

void FindAFolder()
{
    CSafeString const work = GetWorkFilesFolderPathName();
    CSafeString const report = AppendToPath(work, "report.txt");
    std::cout << report.to_path().filename().native() << '\n';
    if (CheckEnvVar("TORQEL_VERBOSE"))
        std::cout << GetAppInstallPathName("torqel").get() << '\n';
}

void AddAFrontEnd(CQtSignaler& signaler)
{
    UIHelperBase::QtSignaler(signaler); // before the test's thread starts
    QObject::connect(&signaler, &CQtSignaler::BooleanChoice, &signaler,
                     [](EUIMode, std::uint32_t, sv_wrapper const& text, bool* answer) {
                         std::cout << CSafeString(text).get() << '\n';
                         *answer = true;
                     }); // between threads: Qt::BlockingQueuedConnection
}

/// A folder of its own with one file in it, gone at the end.
class CFolder
{
public:
    CFolder()
    {
        char name[] = "/tmp/snippets-XXXXXX";
        m_Path = mkdtemp(name);
        std::filesystem::create_directory(m_Path / "to");
        std::ofstream(m_Path / "a file") << "text\n";
    }
    CFolder(CFolder const&) = delete;
    CFolder& operator=(CFolder const&) = delete;
    ~CFolder() { std::filesystem::remove_all(m_Path); }

    CSafeString Path(char const* name = "") const { return {(m_Path / name).native()}; }

private:
    std::filesystem::path m_Path;
};
} // namespace

int main()
try {
    CFolder const folder;
    TextInAndOut();
    ThrowAndCatch(folder.Path(), TEST_STATUS_PASSED + TEST_STATUS_FAILED);
    CopyAFile(folder.Path("a file"), folder.Path("to"));
    RunACommand(folder.Path());
    FindAFolder();
    CQtSignaler signaler;
    AddAFrontEnd(signaler);
    if (!AskTheOperator())
        return 1;
    PauseAndAbort();
    return 2;
} catch (TQUserAbort const&) {
    return 0;
}
