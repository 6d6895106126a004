#include "CMainWindow.h"

#include "CResultsTree.h"
#include "CRunHeader.h"
#include "Text.h"
#include "VerdictLook.h"

#include <CWorkFolder.h>
#include <ExitCode.h>
#include <RunRecord.h>
#include <SuiteTexts.h>

#include <BaseUtilities/TQException.h>
#include <BaseUtilities/UIHelperBase.h>

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace
{
constexpr std::chrono::milliseconds pollPeriod(30);
constexpr std::chrono::milliseconds patience(1500);
} // namespace

CMainWindow::CMainWindow(CSuiteOptions options)
    : m_Options(std::move(options)),
      m_Bridge(*this, [this] { Abort(); }),
      m_Feed(*this)
{
    setWindowTitle(tr("File fidelity"));
    setWindowIcon(ProgramIcon());
    BuildCommands();
    BuildViews();
    ShowFolder();
    UpdateCommands();

    m_Options.m_Asks = true;
    m_Bridge.ConnectTo(m_Signaler);
    m_Bridge.OnUpdateResults([this] { m_Feed.Deliver(); });
    UIHelperBase::QtSignaler(m_Signaler);
    connect(&m_PollTimer, &QTimer::timeout, this, [this] { Poll(); });
    m_Deadline.setSingleShot(true);
    connect(&m_Deadline, &QTimer::timeout, this, [this] { EndAtOnce(); });
}

// The suite's thread may wait for this one, so that the window cannot simply wait for it.
CMainWindow::~CMainWindow()
{
    m_Bridge.Close();
    if (IsRunning())
        FinishInTime();
    while (IsRunning())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    UIHelperBase::m_UISignaler = nullptr;
}

QAction* CMainWindow::AddCommand(QToolBar& toolBar, QString const& name, QString const& tip,
                                 QKeySequence const& shortcut, ECommandIcon icon,
                                 void (CMainWindow::*command)())
{
    QAction* const action = toolBar.addAction(CommandIcon(icon, palette()), name);
    action->setShortcut(shortcut);
    action->setToolTip(tr("%1 (%2)").arg(tip, shortcut.toString(QKeySequence::NativeText)));
    QWidget* const button = toolBar.widgetForAction(action);
    button->setAccessibleName(name);
    button->setAccessibleDescription(tip);
    button->setFocusPolicy(Qt::TabFocus);
    connect(action, &QAction::triggered, this, command);
    return action;
}

void CMainWindow::BuildCommands()
{
    auto* const bar = addToolBar(tr("Suite"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu); // it would offer to hide the bar
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_Folder = AddCommand(*bar, tr("Folder"), tr("Choose the folder to check"), QKeySequence::Open,
                          ECommandIcon::Folder, &CMainWindow::ChooseFolder);
    bar->addSeparator();
    m_Start = AddCommand(*bar, tr("Start"), tr("Start the suite"), QKeySequence(tr("F5")),
                         ECommandIcon::Start, &CMainWindow::StartSuite);
    m_Pause = AddCommand(*bar, tr("Pause"), tr("Pause after the case at hand"),
                         QKeySequence(tr("Ctrl+P")), ECommandIcon::Pause, &CMainWindow::Pause);
    m_Resume = AddCommand(*bar, tr("Resume"), tr("Resume the paused suite"),
                          QKeySequence(tr("Ctrl+R")), ECommandIcon::Resume, &CMainWindow::Resume);
    m_Abort =
        AddCommand(*bar, tr("Abort"), tr("Abort after the case at hand"),
                   QKeySequence(tr("Ctrl+Shift+A")), ECommandIcon::Abort, &CMainWindow::Abort);
}

void CMainWindow::BuildViews()
{
    m_Header = new CRunHeader;
    m_Results = new CResultsTree;
    m_Log = new QPlainTextEdit;
    m_Log->setAccessibleName(tr("Log"));
    m_Log->setReadOnly(true);
    m_Log->setTabChangesFocus(true);
    m_Log->setFrameShape(QFrame::NoFrame);
    m_Log->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_Log->setPlaceholderText(tr("The log of the run."));

    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(m_Results);
    splitter->addWidget(m_Log);
    splitter->setChildrenCollapsible(false);
    int const line = fontMetrics().lineSpacing();
    splitter->setSizes({line * 24, line * 7});
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 0);

    auto* const central = new QWidget;
    auto* const layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_Header);
    layout->addWidget(splitter, 1);
    setCentralWidget(central);
    resize(line * 64, line * 44);
    m_Results->setFocus();
}

void CMainWindow::StartSuite()
{
    if (IsRunning() || m_Choosing)
        return;
    m_Results->RemoveAll();
    ShowFolder();
    m_Asking = false;
    m_Paused = false;
    m_Aborting = false;
    m_Runner = std::make_unique<CSuiteRunner>(m_Options, m_Feed);
    m_PollTimer.start(pollPeriod);
    UpdateCommands();
}

// Through the signaler, like every other request.
void CMainWindow::ChooseFolder()
{
    CSafeString const current(m_Options.m_Folder.native());
    m_Choosing = true;
    UpdateCommands();
    std::optional<CSafeString> const folder =
        emit m_Signaler.PickDirectory("Folder to check", current, "");
    m_Choosing = false;
    UpdateCommands();
    if (!folder)
        return;
    m_Options.m_Folder = folder->to_path();
    m_Results->RemoveAll();
    ShowFolder();
}

void CMainWindow::ShowFolder()
{
    std::filesystem::path const folder =
        std::filesystem::absolute(m_Options.m_Folder).lexically_normal();
    m_Header->Reset(ToQString(folder.native()));
    m_Header->SetState(tr("Ready"));
}

void CMainWindow::Pause()
{
    if (m_Runner)
        m_Runner->Pause();
}

void CMainWindow::Resume()
{
    if (m_Runner)
        m_Runner->Resume();
}

// An open question would hold the abort up.
void CMainWindow::Abort()
{
    if (!m_Runner || !m_Runner->RequestAbort())
        return;
    m_Aborting = true;
    Log(tr("Ending after the case at hand."));
    UpdateCommands();
    m_Bridge.RejectOpen();
}

void CMainWindow::Poll()
{
    // Reports that wait are older than an open question, and newer than its answer.
    bool const asking = m_Bridge.IsAsking();
    if (m_Asking && !asking)
        m_Header->SetState(tr("Working"));
    m_Feed.Deliver();
    if (asking && !m_Asking)
        m_Header->SetState(tr("Waiting for your answer"));
    m_Asking = asking;
    if (m_Runner && m_Runner->WaitFor(std::chrono::milliseconds(0)))
        EndRun();
}

void CMainWindow::EndRun()
{
    m_PollTimer.stop();
    std::unique_ptr<CSuiteRunner> const ended = std::move(m_Runner);
    m_Feed.Deliver();
    try {
        m_Verdict = ended->Wait().m_Verdict;
    } catch (TQException const& error) {
        ShowBreakDown(error.GetStatus(), error.what());
    } catch (std::exception const& error) {
        ShowBreakDown(TEST_STATUS_ERROR, error.what());
    }
    UpdateCommands();
    if (m_Deadline.isActive()) {
        m_Deadline.stop();
        close();
    }
}

void CMainWindow::ShowBreakDown(TEST_STATUS status, char const* problem)
{
    m_Verdict = status;
    m_Header->SetProblem(ToQString(problem));
    Log(ToQString(problem));
}

void CMainWindow::FinishInTime()
{
    if (!m_Deadline.isActive())
        m_Deadline.start(patience);
    Abort();
}

// The case at hand takes too long for somebody who closed the window.
void CMainWindow::EndAtOnce()
{
    CWorkFolder::RemoveAtOnce(WorkFolder().to_path());
    std::cerr << QCoreApplication::applicationName().toStdString()
              << ": The window is closed and the case at hand does not end: it is cut short.\n";
    std::_Exit(static_cast<int>(EExitCode::Aborted));
}

void CMainWindow::closeEvent(QCloseEvent* event)
{
    m_Bridge.Close();
    if (!IsRunning()) {
        event->accept();
        if (m_OnClosed)
            m_OnClosed();
        return;
    }
    // The suite's thread may wait for this one: the loop goes on until it has ended.
    event->ignore();
    hide();
    FinishInTime();
}

void CMainWindow::UpdateCommands()
{
    bool const running = IsRunning();
    m_Folder->setEnabled(!running && !m_Choosing);
    m_Start->setEnabled(!running && !m_Choosing);
    m_Pause->setEnabled(running && !m_Paused && !m_Aborting);
    m_Resume->setEnabled(running && m_Paused && !m_Aborting);
    m_Abort->setEnabled(running && !m_Aborting);
}

void CMainWindow::Log(QString const& line)
{
    m_Log->appendPlainText(line);
}

void CMainWindow::FilesFound(unsigned long count)
{
    m_Header->SetState(tr("Looking for files: %1").arg(count));
}

void CMainWindow::SuiteStarted(CSuitePlan const& plan)
{
    CRunRecord const& run = plan.m_Run;
    Log(ToQString("Run " + run.m_Identifier + ", begun " + run.m_Started));
    Log(ToQString("BaseUtilities " + run.m_LibraryVersion + " on " + run.m_SystemVersion));
    Log(ToQString("Working in " + plan.m_WorkFolder));
    m_Header->SetCaseCount(plan.m_CaseCount);
}

void CMainWindow::CaseStarted(CCase const& started)
{
    m_Header->SetState(ToQString(started.m_Name));
}

void CMainWindow::CaseFinished(CCase const& finished, CCaseOutcome const& outcome)
{
    m_Results->Add(finished, outcome);
    m_Header->Count(outcome.m_Verdict);
}

void CMainWindow::SuitePaused()
{
    m_Paused = true;
    m_Header->SetState(tr("Paused"));
    Log(tr("Paused."));
    UpdateCommands();
}

void CMainWindow::SuiteResumed()
{
    m_Paused = false;
    Log(tr("Resumed."));
    UpdateCommands();
}

void CMainWindow::SuiteFinished(CSuiteSummary const& summary)
{
    QString const verdict = VerdictName(summary.m_Verdict);
    QString const counts = ToQString(CountsText(summary));
    m_Header->SetVerdict(summary.m_Verdict, tr("%1. %2").arg(verdict, counts));
    Log(counts);
    if (!summary.m_Problem.empty())
        Log(ToQString(summary.m_Problem));
    Log(tr("%1, ended %2").arg(verdict, ToQString(summary.m_Finished)));
}
