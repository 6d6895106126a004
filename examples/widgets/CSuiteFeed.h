#pragma once

#include <ISuiteObserver.h>

#include <functional>
#include <mutex>
#include <vector>

/// Carries what the suite reports to the interface's thread, which takes it in
/// batches: the suite never waits for the window to paint.
///
/// Threads: the observer's functions on the suite's, Deliver on the interface's.
class CSuiteFeed final : public ISuiteObserver
{
public:
    /// `target` gets every report, in order, from within Deliver.
    explicit CSuiteFeed(ISuiteObserver& target) : m_Target(target) {}

    void FilesFound(unsigned long count) override;
    void SuiteStarted(CSuitePlan const& plan) override;
    void CaseStarted(CCase const& started) override;
    void CaseFinished(CCase const& finished, CCaseOutcome const& outcome) override;
    void SuitePaused() override;
    void SuiteResumed() override;
    void SuiteFinished(CSuiteSummary const& summary) override;

    void Deliver();
    /// Where the suite works now; empty before its start and after its end.
    CSafeString WorkFolder() const;

private:
    using Report = std::function<void()>;
    void Add(Report report);
    void SetWorkFolder(CSafeString const& folder);

    ISuiteObserver& m_Target;
    mutable std::mutex m_Lock; // of all below
    std::vector<Report> m_Reports;
    CSafeString m_WorkFolder;
};
