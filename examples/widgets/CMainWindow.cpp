#include "CMainWindow.h"

#include "Text.h"

#include <RunRecord.h>
#include <VerdictFormat.h>

#include <BaseUtilities/TQException.h>
#include <BaseUtilities/UIHelperBase.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <cstdlib>
#include <filesystem>

namespace
{
constexpr std::chrono::milliseconds pollPeriod(30);
constexpr std::chrono::milliseconds patience(1500);

enum EColumn { NameColumn, VerdictColumn, SizeColumn, DetailColumn };

QString VerdictName(TEST_STATUS verdict)
{
    switch (static_cast<std::uint32_t>(verdict)) {
    case TEST_STATUS_PASSED:
        return CMainWindow::tr("Passed");
    case TEST_STATUS_SKIPPED:
        return CMainWindow::tr("Skipped");
    case TEST_STATUS_ABORTED:
        return CMainWindow::tr("Aborted");
    default:
        return CMainWindow::tr("Failed");
    }
}

// The colour of the format, lightened where the palette is dark.
QBrush BrushFor(CFormatInfo const& format, QPalette const& palette)
{
    TQColor const& color = format.m_Color;
    QColor const painted(static_cast<int>(color.m_Red), static_cast<int>(color.m_Green),
                         static_cast<int>(color.m_Blue));
    bool const dark = palette.base().color().lightness() < 128;
    return dark ? painted.lighter(180) : painted;
}
} // namespace

CMainWindow::CMainWindow(CSuiteOptions options)
    : m_Options(std::move(options)),
      m_Bridge(*this, [this] { Abort(); }),
      m_Feed(*this)
{
    setWindowTitle(tr("File fidelity"));
    resize(900, 620);
    BuildCommands();
    BuildViews();
    UpdateCommands();

    m_Options.m_Asks = true;
    m_Bridge.ConnectTo(m_Signaler);
    m_Bridge.OnUpdateResults([this] { m_Feed.Deliver(); });
    UIHelperBase::QtSignaler(m_Signaler);
    connect(&m_PollTimer, &QTimer::timeout, this, [this] { Poll(); });
    m_Deadline.setSingleShot(true);
    connect(&m_Deadline, &QTimer::timeout, this, [this] { EndAtOnce(); });
}

CMainWindow::~CMainWindow()
{
    m_Bridge.Close();
    UIHelperBase::m_UISignaler = nullptr;
}

QAction* CMainWindow::AddCommand(QString const& name, QString const& tip,
                                 QKeySequence const& shortcut, int icon,
                                 void (CMainWindow::*command)())
{
    auto* const toolBar = findChild<QToolBar*>();
    QIcon const picture = style()->standardIcon(static_cast<QStyle::StandardPixmap>(icon));
    QAction* const action = toolBar->addAction(picture, name);
    action->setShortcut(shortcut);
    action->setToolTip(tr("%1 (%2)").arg(tip, shortcut.toString(QKeySequence::NativeText)));
    toolBar->widgetForAction(action)->setAccessibleName(tip);
    connect(action, &QAction::triggered, this, command);
    return action;
}

void CMainWindow::BuildCommands()
{
    auto* const toolBar = addToolBar(tr("Suite"));
    toolBar->setMovable(false);
    toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_Start = AddCommand(tr("Start"), tr("Start the suite"), QKeySequence(tr("Ctrl+S")),
                         QStyle::SP_MediaPlay, &CMainWindow::StartSuite);
    m_Pause = AddCommand(tr("Pause"), tr("Pause after the case at hand"),
                         QKeySequence(tr("Ctrl+P")), QStyle::SP_MediaPause, &CMainWindow::Pause);
    m_Resume = AddCommand(tr("Resume"), tr("Resume the paused suite"), QKeySequence(tr("Ctrl+R")),
                          QStyle::SP_MediaSeekForward, &CMainWindow::Resume);
    m_Abort =
        AddCommand(tr("Abort"), tr("Abort after the case at hand"),
                   QKeySequence(tr("Ctrl+Shift+A")), QStyle::SP_MediaStop, &CMainWindow::Abort);
}

void CMainWindow::BuildViews()
{
    m_Results = new QTreeWidget;
    m_Results->setAccessibleName(tr("Results"));
    m_Results->setHeaderLabels({tr("Case"), tr("Verdict"), tr("Size"), tr("Detail")});
    m_Results->setAlternatingRowColors(true);
    m_Results->setUniformRowHeights(true);
    m_Results->header()->resizeSection(NameColumn, 330);
    m_Results->headerItem()->setTextAlignment(SizeColumn, Qt::AlignRight);

    m_Log = new QPlainTextEdit;
    m_Log->setAccessibleName(tr("Log"));
    m_Log->setReadOnly(true);
    m_Progress = new QProgressBar;
    m_Progress->setAccessibleName(tr("Progress"));
    m_Progress->setFormat(tr("%v of %m"));
    m_Progress->setValue(0);

    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(m_Results);
    splitter->addWidget(m_Log);
    splitter->setStretchFactor(0, 4);
    splitter->setStretchFactor(1, 1);
    auto* const central = new QWidget;
    auto* const layout = new QVBoxLayout(central);
    layout->addWidget(splitter, 1);
    layout->addWidget(m_Progress);
    setCentralWidget(central);

    m_State = new QLabel(tr("Ready to check %1").arg(ToQString(m_Options.m_Folder.native())));
    statusBar()->addWidget(m_State, 1);
}

void CMainWindow::StartSuite()
{
    if (IsRunning())
        return;
    m_Results->clear();
    m_Groups[0] = m_Groups[1] = nullptr;
    m_Progress->reset();
    m_Paused = false;
    m_Aborting = false;
    m_Runner = std::make_unique<CSuiteRunner>(m_Options, m_Feed);
    m_PollTimer.start(pollPeriod);
    UpdateCommands();
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

void CMainWindow::Abort()
{
    if (!m_Runner || !m_Runner->RequestAbort())
        return;
    m_Aborting = true;
    Log(tr("Ending after the case at hand."));
    UpdateCommands();
}

void CMainWindow::Poll()
{
    m_Feed.Deliver();
    if (m_Runner && m_Runner->WaitFor(std::chrono::milliseconds(0)))
        EndRun();
}

void CMainWindow::EndRun()
{
    m_PollTimer.stop();
    std::unique_ptr<CSuiteRunner> const ended = std::move(m_Runner);
    try {
        m_Verdict = ended->Wait().m_Verdict;
    } catch (std::exception const& error) {
        m_Verdict = TEST_STATUS_ERROR;
        m_State->setText(ToQString(error.what()));
        Log(ToQString(error.what()));
    }
    m_Feed.Deliver();
    UpdateCommands();
    if (m_Deadline.isActive()) {
        m_Deadline.stop();
        close();
    }
}

// The case at hand takes too long for somebody who closed the window.
void CMainWindow::EndAtOnce()
{
    std::error_code ignored;
    if (CSafeString const folder = m_Feed.WorkFolder(); !folder.empty())
        std::filesystem::remove_all(folder.to_path(), ignored);
    std::_Exit(2);
}

void CMainWindow::closeEvent(QCloseEvent* event)
{
    m_Bridge.Close();
    if (!IsRunning()) {
        event->accept();
        return;
    }
    // The suite's thread may wait for this one: the loop goes on until it has ended.
    event->ignore();
    hide();
    if (!m_Deadline.isActive())
        m_Deadline.start(patience);
    Abort();
}

void CMainWindow::UpdateCommands()
{
    bool const running = IsRunning();
    m_Start->setEnabled(!running);
    m_Pause->setEnabled(running && !m_Paused && !m_Aborting);
    m_Resume->setEnabled(running && m_Paused && !m_Aborting);
    m_Abort->setEnabled(running && !m_Aborting);
}

void CMainWindow::Log(QString const& line)
{
    m_Log->appendPlainText(line);
}

QTreeWidgetItem* CMainWindow::GroupItem(ECaseGroup group)
{
    QTreeWidgetItem*& item = m_Groups[static_cast<int>(group)];
    if (item == nullptr) {
        item = new QTreeWidgetItem(m_Results);
        item->setText(NameColumn, group == ECaseGroup::Files ? tr("Files, copied and compared")
                                                             : tr("Copies that must be refused"));
        item->setFirstColumnSpanned(true);
        item->setExpanded(true);
    }
    return item;
}

void CMainWindow::FilesFound(unsigned long count)
{
    m_State->setText(tr("Looking for files: %1").arg(count));
}

void CMainWindow::SuiteStarted(CSuitePlan const& plan)
{
    CRunRecord const& run = plan.m_Run;
    Log(ToQString("Run " + run.m_Identifier + ", begun " + run.m_Started));
    Log(ToQString("BaseUtilities " + run.m_LibraryVersion + " on " + run.m_SystemVersion));
    Log(ToQString("Working in " + plan.m_WorkFolder));
    m_Progress->setRange(0, static_cast<int>(plan.m_CaseCount));
    m_Progress->setValue(0);
}

void CMainWindow::CaseStarted(CCase const& started)
{
    m_State->setText(ToQString(started.m_Name));
}

void CMainWindow::CaseFinished(CCase const& finished, CCaseOutcome const& outcome)
{
    CFormatInfo const format = VerdictFormat(outcome.m_Verdict);
    auto* const item = new QTreeWidgetItem(GroupItem(finished.m_Group));
    item->setText(NameColumn, ToQString(finished.m_Name));
    item->setText(VerdictColumn, VerdictName(outcome.m_Verdict));
    item->setForeground(VerdictColumn, BrushFor(format, palette()));
    if (outcome.m_Bytes > 0)
        item->setText(SizeColumn,
                      QLocale::c().formattedDataSize(static_cast<qint64>(outcome.m_Bytes), 1));
    item->setTextAlignment(SizeColumn, Qt::AlignRight | Qt::AlignVCenter);
    item->setText(DetailColumn, ToQString(outcome.m_Detail).simplified());
    item->setToolTip(DetailColumn, ToQString(outcome.m_Detail));
    QFont font = item->font(VerdictColumn);
    font.setWeight(static_cast<QFont::Weight>(format.m_Weight));
    item->setFont(VerdictColumn, font);
    m_Results->scrollToItem(item);
    m_Progress->setValue(m_Progress->value() + 1);
}

void CMainWindow::SuitePaused()
{
    m_Paused = true;
    m_State->setText(tr("Paused"));
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
    QString const counts = ToQString(CountsText(summary));
    m_State->setText(tr("%1. %2").arg(VerdictName(summary.m_Verdict), counts));
    Log(counts);
    if (!summary.m_Problem.empty())
        Log(ToQString(summary.m_Problem));
    Log(tr("%1, ended %2").arg(VerdictName(summary.m_Verdict), ToQString(summary.m_Finished)));
}
