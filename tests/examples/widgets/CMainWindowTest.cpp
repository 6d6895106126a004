#include "CWindowTest.h"

#include <CElidedLabel.h>
#include <CResultsTree.h>

#include <BaseUtilities/UIHelperBase.h>

#include <gmock/gmock.h>

#include <QAccessible>
#include <QFileDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::StartsWith;

namespace
{
class CMainWindowTest : public CWindowTest
{
protected:
    std::string State()
    {
        for (auto const* const label : FindParts<CElidedLabel>(Window()))
            if (label->accessibleName() == "State")
                return label->WholeText().toStdString();
        return "no state";
    }
    std::string Log() { return Window().findChild<QPlainTextEdit*>()->toPlainText().toStdString(); }
    QTreeWidget& Results() { return *FindParts<CResultsTree>(Window()).front(); }
    QString Progress() { return Window().findChild<QProgressBar*>()->text(); }

    std::vector<std::string> Files()
    {
        std::vector<std::string> names;
        if (QTreeWidgetItem const* const group = Results().topLevelItem(0))
            for (int row = 0; row < group->childCount(); ++row)
                names.push_back(group->child(row)->text(0).toStdString());
        return names;
    }

    /// Brings the window before its dialogues. QWindow::isActive would take them for it.
    bool Activate()
    {
        Window().activateWindow();
        return WaitUntil([this] { return QApplication::activeWindow() == &Window(); });
    }

    /// The commands that can be given now.
    std::vector<std::string> Commands()
    {
        std::vector<std::string> names;
        for (QAction const* const action : Window().findChild<QToolBar*>()->actions())
            if (!action->isSeparator() && action->isEnabled())
                names.push_back(action->text().toStdString());
        return names;
    }

    CScriptedOperator::Act Save(std::string const& file)
    {
        return [file](QDialog& dialog) {
            auto* const edit = dialog.findChild<QLineEdit*>("fileNameEdit");
            edit->selectAll();
            QTest::keyClicks(edit, QString::fromStdString(file));
            QTest::keyClick(edit, Qt::Key_Return);
        };
    }
};

// A command by its button or by its keys.
struct CHand
{
    char const* m_Name;
    void (*m_Pause)(QWidget&);
    void (*m_Resume)(QWidget&);
    void (*m_Abort)(QWidget&);
};

constexpr CHand hands[] = {
    {"ByMouse", [](QWidget& window) { ClickButton(window, "Pause"); },
     [](QWidget& window) { ClickButton(window, "Resume"); },
     [](QWidget& window) { ClickButton(window, "Abort"); }},
    {"ByKeys", [](QWidget& window) { PressKey(window, Qt::Key_P, Qt::ControlModifier); },
     [](QWidget& window) { PressKey(window, Qt::Key_R, Qt::ControlModifier); },
     [](QWidget& window) {
         PressKey(window, Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
     }}};

class CCommandTest : public CMainWindowTest, public testing::WithParamInterface<CHand>
{
protected:
    CCommandTest() { m_Operator.Always(Reject); }

    /// Starts the suite and pauses it during its first case.
    void StartAndPause()
    {
        AtFirstCopy([this] {
            ASSERT_TRUE(Activate());
            GetParam().m_Pause(Window());
        });
        Window().StartSuite();
        ASSERT_TRUE(WaitUntil([this] { return State() == "Paused"; }));
    }
};
} // namespace

TEST_F(CMainWindowTest, RunsFromTheFirstQuestionToTheReport)
{
    m_Operator
        .Then([](QDialog& folders) {
            PressKey(folders, Qt::Key_Down);
            PressKey(folders, Qt::Key_Space); // without "two"
            PressKey(folders, Qt::Key_Return);
        })
        .Then([](QDialog& limit) {
            EXPECT_EQ(limit.findChild<QLineEdit*>()->text(), "3");
            TypeText(limit, "2");
            ClickButton(limit, "Start");
        })
        .Then(Save(m_Home / "report.txt"));
    Run();

    EXPECT_THAT(Files(), ElementsAre("one/a.txt", "one/b.txt"));
    EXPECT_EQ(Results().topLevelItem(1)->childCount(), 8);
    EXPECT_THAT(State(), StartsWith("Passed. 10 cases: 10 pass, 0 fail, 0 skip."));
    EXPECT_EQ(Progress(), "10 of 10");
    EXPECT_EQ(Window().Verdict(), TEST_STATUS_PASSED);
    EXPECT_THAT(ReadFile(m_Home / "report.txt"), HasSubstr("PASS  one/b.txt\n"));
    EXPECT_TRUE(fs::is_empty(m_Work.Path()));
}

TEST_F(CMainWindowTest, KeepsALogOfTheRun)
{
    m_Operator.Always(Reject);
    Run();
    std::string const log = Log();
    std::size_t position = 0;
    for (std::string const& text :
         {std::string("Run {"), std::string("BaseUtilities " PROJECT_VERSION " on "),
          "Working in " + m_Work.Path().native(), std::string("12 cases: "),
          std::string("Passed, ended ")}) {
        std::size_t const found = log.find(text, position);
        EXPECT_NE(found, std::string::npos) << text << " is not behind " << log.substr(0, position);
        position = std::min(found, log.size());
    }
}

TEST_F(CMainWindowTest, FillsWhileTheSuiteRuns)
{
    m_Operator.Always(Reject);
    AtCopyOf("one/b.txt", [this] {
        EXPECT_TRUE(WaitUntil([this] { return State() == "one/b.txt"; }));
        EXPECT_THAT(Files(), ElementsAre("one/a.txt"));
        EXPECT_EQ(Progress(), "1 of 12");
    });
    Run();
    EXPECT_EQ(Files().size(), 4u);
}

TEST_F(CMainWindowTest, OffersToPauseAndToAbortWhileTheSuiteRuns)
{
    m_Operator.Always(Reject);
    AtFirstCopy([this] { EXPECT_THAT(Commands(), ElementsAre("Pause", "Abort")); });
    Run();
    EXPECT_THAT(Commands(), ElementsAre("Folder", "Start"));
}

TEST_F(CMainWindowTest, AsksWhetherToGoOnAfterTheFirstFailure)
{
    struct CRow
    {
        char const* m_Button;
        std::size_t m_Files;
    };
    Spoil("one/b.txt");
    for (CRow const& row : {CRow{"Continue", 4}, CRow{"Stop here", 2}}) {
        SCOPED_TRACE(row.m_Button);
        m_Operator.Then(Reject).Then(Reject).Then(
            [&](QDialog& dialog) { ClickButton(dialog, row.m_Button); });
        m_Operator.Then(Reject);
        Run();
        EXPECT_EQ(Files().size(), row.m_Files);
        EXPECT_EQ(Window().Verdict(), TEST_STATUS_FAILED);
        EXPECT_THAT(State(), StartsWith("Failed. "));
    }
}

TEST_F(CMainWindowTest, AbortsFromWithinAQuestion)
{
    m_Operator.Then([](QDialog& dialog) { ClickButton(dialog, "Abort the suite"); });
    Run();
    EXPECT_EQ(Window().Verdict(), TEST_STATUS_ABORTED);
    EXPECT_THAT(State(), StartsWith("Aborted. "));
}

TEST_F(CMainWindowTest, SaysThatItWaitsForAnAnswer)
{
    m_Operator.Then([this](QDialog& dialog) {
        EXPECT_TRUE(WaitUntil([this] { return State() == "Waiting for your answer"; }));
        dialog.reject();
    });
    m_Operator.Always(Reject);
    Run();
}

TEST_F(CMainWindowTest, OffersTheHomeFolderForTheReportWhereThereAreNoDocuments)
{
    m_Operator.Then(Reject).Then(Reject).Then([this](QDialog& dialog) {
        auto const* const picker = qobject_cast<QFileDialog*>(&dialog);
        ASSERT_NE(picker, nullptr);
        EXPECT_EQ(picker->directory().path().toStdString(), m_Home.Path().native());
        EXPECT_EQ(picker->windowTitle(), "Save the report");
        dialog.reject();
    });
    Run();
}

TEST_F(CMainWindowTest, TellsWhyTheReportCannotBeSaved)
{
    m_Operator.Then(Reject).Then(Reject).Then(Save(m_Home / "report.txt"));
    m_Operator.Then([](QDialog& dialog) { ClickButton(dialog, "Close"); });
    AtFirstCopy([this] { fs::create_symlink("none/file", m_Home.Path() / "report.txt"); });
    Run();
}

TEST_F(CMainWindowTest, ShowsWhyTheSuiteCannotRun)
{
    m_Options.m_Folder = m_Files.Path() / "none";
    Run();
    std::string const problem =
        "'" + (m_Files / "none") + "' is not a folder (No such file or directory).";
    EXPECT_EQ(State(), problem);
    EXPECT_THAT(Log(), HasSubstr(problem));
    EXPECT_EQ(Window().Verdict(), TEST_STATUS_NO_FOLDER);
    EXPECT_THAT(Commands(), ElementsAre("Folder", "Start"));
}

TEST_F(CMainWindowTest, ChecksAFolderWithoutFiles)
{
    fs::create_directory(m_Files.Path() / "empty");
    m_Options.m_Folder = m_Files.Path() / "empty";
    m_Operator.Always(Reject);
    Run();
    EXPECT_EQ(Window().Verdict(), TEST_STATUS_PASSED);
    ASSERT_EQ(Files().size(), 1u);
    EXPECT_EQ(Results().topLevelItem(0)->child(0)->text(CResultsTree::DetailColumn),
              "an empty folder");
}

TEST_F(CMainWindowTest, RunsAgainFromAClearedWindow)
{
    m_Operator.Always(Reject);
    Run();
    Run();
    EXPECT_EQ(Results().topLevelItemCount(), 2);
    EXPECT_EQ(Files().size(), 4u);
    EXPECT_EQ(Progress(), "12 of 12");
}

TEST_F(CMainWindowTest, StartsAtF5)
{
    m_Operator.Always(Reject);
    ASSERT_TRUE(Activate());
    EXPECT_THAT(Commands(), ElementsAre("Folder", "Start"));
    PressKey(Window(), Qt::Key_F5);
    EXPECT_TRUE(Window().IsRunning());
    EXPECT_TRUE(WaitUntil([this] { return !Window().IsRunning(); }));
}

TEST_F(CMainWindowTest, ChecksTheFolderThatIsChosen)
{
    m_Operator.Then(Save(m_Files / "two"));
    ClickButton(Window(), "Folder");
    EXPECT_EQ(State(), "Ready");
    m_Operator.Always(Reject);
    Run();
    EXPECT_THAT(Files(), ElementsAre("c.txt"));
}

TEST_F(CMainWindowTest, OffersNoSecondPickerOfFolders)
{
    m_Operator.Then([this](QDialog& picker) {
        EXPECT_TRUE(Commands().empty());
        ClickButton(Window(), "Folder");
        Window().StartSuite();
        EXPECT_FALSE(Window().IsRunning());
        picker.reject();
    });
    ClickButton(Window(), "Folder");
    EXPECT_EQ(m_Operator.Seen(), 1);
    EXPECT_THAT(Commands(), ElementsAre("Folder", "Start"));
}

TEST_F(CMainWindowTest, NamesEverythingForThoseWhoCannotSeeIt)
{
    std::vector<std::string> names;
    for (QWidget* const widget : Window().findChildren<QWidget*>()) {
        QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(widget);
        if (interface != nullptr)
            names.push_back(interface->text(QAccessible::Name).toStdString());
    }
    EXPECT_THAT(names, IsSupersetOf({"Folder", "Start", "Pause", "Resume", "Abort", "Results",
                                     "Log", "Progress", "State", "Passed", "Failed", "Skipped"}));
    EXPECT_THAT(FindButton(Window(), "Pause")->toolTip().toStdString(), HasSubstr("Ctrl+P"));
}

TEST_F(CMainWindowTest, ReachesEverythingByTheTabKey)
{
    ASSERT_TRUE(Activate());
    std::vector<std::string> reached;
    for (int step = 0; step < 8; ++step) {
        reached.push_back(Window().focusWidget()->accessibleName().toStdString());
        PressKey(Window(), Qt::Key_Tab);
    }
    EXPECT_EQ(reached.front(), "Results");
    EXPECT_THAT(reached, IsSupersetOf({"Log", "Folder", "Start", "Results"}));
}

TEST_F(CMainWindowTest, FitsASmallScreen)
{
    EXPECT_LE(Window().minimumSizeHint().width(), 480);
    EXPECT_LE(Window().minimumSizeHint().height(), 400);
}

TEST_F(CMainWindowTest, TellsWhenItIsClosedAndItsSuiteHasEnded)
{
    m_Operator.Always([this](QDialog&) { CloseByManager(Window()); });
    int closed = 0;
    Window().OnClosed([&] {
        ++closed;
        EXPECT_FALSE(Window().IsRunning());
    });
    Run();
    EXPECT_FALSE(Window().isVisible());
    EXPECT_EQ(closed, 1);
}

TEST_F(CMainWindowTest, ClosesItsPickerOfFoldersWithItself)
{
    m_Operator.Then([this](QDialog& picker) {
        CloseByManager(Window());
        EXPECT_FALSE(picker.isVisible());
        picker.reject();
    });
    ClickButton(Window(), "Folder");
    EXPECT_FALSE(Window().isVisible());
}

TEST_F(CMainWindowTest, ClosesWhatItsPickerAsksByItself)
{
    m_Operator.Then(Save("missing")).Then([this](QDialog& box) {
        EXPECT_EQ(qobject_cast<QFileDialog*>(&box), nullptr);
        CloseByManager(Window());
        EXPECT_FALSE(box.isVisible());
    });
    ClickButton(Window(), "Folder");
    EXPECT_FALSE(Window().isVisible());
}

// No checkpoint comes any more between the last case and the report.
TEST_F(CMainWindowTest, AsksForNoReportWhenItIsClosedDuringTheLastCase)
{
    m_Operator.Then(Reject).Then(Reject);
    m_Options.m_Copy = [this](auto const& from, auto const& to, ECopyFailType type) {
        if (std::string(to.data(), to.size()).find("/refused/loop") != std::string::npos)
            CallIn(*m_Window, [this] { CloseByManager(*m_Window); });
        return TqCopyFile(from, to, type);
    };
    Run();
    EXPECT_EQ(m_Operator.Seen(), 2);
}

TEST_F(CMainWindowTest, LeavesNoSignalerBehind)
{
    Window();
    EXPECT_NE(UIHelperBase::m_UISignaler, nullptr);
    m_Window.reset();
    EXPECT_EQ(UIHelperBase::m_UISignaler, nullptr);
}

TEST_F(CMainWindowTest, DestructionEndsASuiteThatIsStillRunning)
{
    Window().StartSuite();
    m_Window.reset();
    EXPECT_TRUE(fs::is_empty(m_Work.Path()));
    EXPECT_FALSE(TQUserAbort::UserAbortEnabled());
}

TEST_P(CCommandTest, PausesAndResumes)
{
    StartAndPause();
    EXPECT_EQ(Files().size(), 1u);
    EXPECT_THAT(Commands(), ElementsAre("Resume", "Abort"));
    GetParam().m_Resume(Window());
    ASSERT_TRUE(WaitUntil([this] { return !Window().IsRunning(); }));
    EXPECT_EQ(Files().size(), 4u);
    EXPECT_EQ(Window().Verdict(), TEST_STATUS_PASSED);
    EXPECT_THAT(Log(), HasSubstr("Paused.\nResumed.\n"));
}

TEST_P(CCommandTest, AbortsWhilePaused)
{
    StartAndPause();
    GetParam().m_Abort(Window());
    ASSERT_TRUE(WaitUntil([this] { return !Window().IsRunning(); }));
    EXPECT_EQ(Files().size(), 1u);
    EXPECT_EQ(Window().Verdict(), TEST_STATUS_ABORTED);
    EXPECT_THAT(State(), StartsWith("Aborted. 12 cases: 1 passes, 0 fail, 0 skip, 11 remain."));
}

TEST_P(CCommandTest, AbortsAfterTheCaseAtHand)
{
    AtFirstCopy([this] {
        ASSERT_TRUE(Activate());
        GetParam().m_Abort(Window());
        EXPECT_TRUE(Commands().empty());
    });
    Run();
    EXPECT_EQ(Files().size(), 1u);
    EXPECT_EQ(Window().Verdict(), TEST_STATUS_ABORTED);
}

TEST_P(CCommandTest, AbortsWhileAQuestionIsOpenAndClosesIt)
{
    m_Operator.Then([this](QDialog&) {
        ASSERT_TRUE(Activate());
        GetParam().m_Abort(Window());
    });
    m_Operator.Always([](QDialog& dialog) {
        ADD_FAILURE() << "one more question";
        dialog.reject();
    });
    Run();
    EXPECT_EQ(Window().Verdict(), TEST_STATUS_ABORTED);
}

INSTANTIATE_TEST_SUITE_P(Operator, CCommandTest, testing::ValuesIn(hands),
                         [](auto const& row) { return std::string(row.param.m_Name); });
