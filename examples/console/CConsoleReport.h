#pragma once

#include "Terminal.h"

#include <ISuiteObserver.h>

#include <atomic>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

/// Tells an operator at a console about a running suite: a line for each case
/// and, on a live terminal, a progress bar below them.
///
/// Threads: any number at once; the suite's thread reports while another calls
/// Tick. A stream that takes no more makes any call throw std::ios_base::failure.
class CConsoleReport final : public ISuiteObserver
{
public:
    CConsoleReport(std::ostream& stream, CTerminal terminal, bool quiet);

    void FilesFound(unsigned long count) override;
    void SuiteStarted(CSuitePlan const& plan) override;
    void CaseStarted(CCase const& started) override;
    void CaseFinished(CCase const& finished, CCaseOutcome const& outcome) override;
    void SuitePaused() override;
    void SuiteResumed() override;
    /// Writes the end; Tick and ShowKeys write nothing below it.
    void SuiteFinished(CSuiteSummary const& summary) override;

    /// Brings what is shown up to date; to be called now and then.
    void Tick();
    /// Tells which keys there are.
    void ShowKeys();
    /// Leaves the terminal to a question: no bar and no notice until Release.
    /// True when a blank line stands above, as at the end of the last question.
    bool Hold();
    /// To be called after a blank line.
    void Release();
    /// Has the next Tick say that the suite is about to end early. Never waits
    /// for the stream.
    void AbortRequested() { m_AbortRequested = true; }
    /// Where the suite works now; empty before its start and after its end.
    /// Never waits for the stream.
    std::string WorkFolder() const;

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::lock_guard<std::mutex>;

    void SetWorkFolder(std::string const& folder);

    // All of these are called under m_Lock.
    void WriteAbortNotice();
    void WriteGroupHead(ECaseGroup group);
    void WriteCase(CCase const& finished, CCaseOutcome const& outcome);
    void WriteCounts(CSuiteSummary const& summary);
    void WriteFailures();
    void WriteLine(std::string const& line);
    void WriteText(EColour colour, std::string const& text, std::size_t indent = 0);
    void ShowBar();
    void ShowBarIfDue();
    void ClearBar();
    void Flush();
    std::string BarText(std::size_t width) const;
    std::string Bar(std::size_t cells) const;
    std::string VerdictText(TEST_STATUS verdict) const;

    std::ostream& m_Stream;
    CTerminal const m_Terminal;
    bool const m_Quiet;

    std::atomic<bool> m_AbortRequested = false;
    mutable std::mutex m_WorkFolderLock;
    std::string m_WorkFolder;

    std::mutex m_Lock; // of all below and of the stream; taken before the other one
    bool m_Held = false;
    bool m_BlankAbove = false; // left by a question
    bool m_AbortNotice = false;
    bool m_Finished = false;
    unsigned long m_CaseCount = 0;
    unsigned long m_Done = 0;
    unsigned long m_Failed = 0;
    std::string m_Activity; // what the bar names
    bool m_Paused = false;
    bool m_FilesHead = false;
    bool m_RefusalsHead = false;
    std::vector<std::string> m_Failures;
    std::size_t m_BarWidth = 0; // columns that the bar covers now
    Clock::time_point m_BarShown;
};
