#pragma once

#include "CRequestBridge.h"
#include "CSuiteFeed.h"
#include "Icons.h"

#include <CSuiteRunner.h>

#include <QMainWindow>
#include <QTimer>

#include <functional>
#include <memory>

class CResultsTree;
class CRunHeader;
class QAction;
class QPlainTextEdit;
class QToolBar;

/// The window of the suite "file fidelity": results that fill while it runs,
/// progress, a log, and the operator's pause, resume and abort.
///
/// Closing it ends the suite after the case at hand, whatever the suite waits
/// for, and then the program; a case that does not end in time is cut short
/// with the process, which says so on standard error.
class CMainWindow final : public QMainWindow, private ISuiteObserver
{
public:
    explicit CMainWindow(CSuiteOptions options);
    ~CMainWindow() override;

    /// Called once the window is closed and its suite has ended.
    void OnClosed(std::function<void()> closed) { m_OnClosed = std::move(closed); }
    void StartSuite();
    bool IsRunning() const { return m_Runner != nullptr; }
    /// The verdict of the last suite that ended, or the status of what it ended
    /// by; aborted before any has.
    TEST_STATUS Verdict() const { return m_Verdict; }
    /// Where the suite works now; empty before its start and after its end. For any thread.
    CSafeString WorkFolder() const { return m_Feed.WorkFolder(); }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void FilesFound(unsigned long count) override;
    void SuiteStarted(CSuitePlan const& plan) override;
    void CaseStarted(CCase const& started) override;
    void CaseFinished(CCase const& finished, CCaseOutcome const& outcome) override;
    void SuitePaused() override;
    void SuiteResumed() override;
    void SuiteFinished(CSuiteSummary const& summary) override;

    QAction* AddCommand(QToolBar& toolBar, QString const& name, QString const& tip,
                        QKeySequence const& shortcut, ECommandIcon icon,
                        void (CMainWindow::*command)());
    void BuildCommands();
    void BuildViews();

    void ChooseFolder();
    void ShowFolder();
    void Pause();
    void Resume();
    void Abort();
    void Poll();
    void EndRun();
    void ShowBreakDown(TEST_STATUS status, char const* problem);
    void FinishInTime();
    void EndAtOnce();
    void UpdateCommands();
    void Log(QString const& line);

    CSuiteOptions m_Options;
    CQtSignaler m_Signaler;
    CRequestBridge m_Bridge;
    CSuiteFeed m_Feed;
    std::function<void()> m_OnClosed;
    std::unique_ptr<CSuiteRunner> m_Runner;
    QTimer m_PollTimer;
    QTimer m_Deadline;       // of a suite that is to end with the window
    bool m_Choosing = false; // the folder
    bool m_Asking = false;
    bool m_Paused = false;
    bool m_Aborting = false;
    TEST_STATUS m_Verdict = TEST_STATUS_ABORTED;

    QAction* m_Folder = nullptr;
    QAction* m_Start = nullptr;
    QAction* m_Pause = nullptr;
    QAction* m_Resume = nullptr;
    QAction* m_Abort = nullptr;
    CRunHeader* m_Header = nullptr;
    CResultsTree* m_Results = nullptr;
    QPlainTextEdit* m_Log = nullptr;
};
