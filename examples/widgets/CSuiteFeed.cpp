#include "CSuiteFeed.h"

#include <utility>

void CSuiteFeed::FilesFound(unsigned long count)
{
    Add([this, count] { m_Target.FilesFound(count); });
}

void CSuiteFeed::SuiteStarted(CSuitePlan const& plan)
{
    SetWorkFolder(plan.m_WorkFolder);
    Add([this, plan] { m_Target.SuiteStarted(plan); });
}

void CSuiteFeed::CaseStarted(CCase const& started)
{
    Add([this, started] { m_Target.CaseStarted(started); });
}

void CSuiteFeed::CaseFinished(CCase const& finished, CCaseOutcome const& outcome)
{
    Add([this, finished, outcome] { m_Target.CaseFinished(finished, outcome); });
}

void CSuiteFeed::SuitePaused()
{
    Add([this] { m_Target.SuitePaused(); });
}

void CSuiteFeed::SuiteResumed()
{
    Add([this] { m_Target.SuiteResumed(); });
}

void CSuiteFeed::SuiteFinished(CSuiteSummary const& summary)
{
    SetWorkFolder("");
    Add([this, summary] { m_Target.SuiteFinished(summary); });
}

void CSuiteFeed::Deliver()
{
    std::vector<Report> reports;
    {
        std::lock_guard<std::mutex> const lock(m_Lock);
        reports.swap(m_Reports);
    }
    for (Report const& report : reports)
        report();
}

CSafeString CSuiteFeed::WorkFolder() const
{
    std::lock_guard<std::mutex> const lock(m_Lock);
    return m_WorkFolder;
}

void CSuiteFeed::Add(Report report)
{
    std::lock_guard<std::mutex> const lock(m_Lock);
    m_Reports.push_back(std::move(report));
}

void CSuiteFeed::SetWorkFolder(CSafeString const& folder)
{
    std::lock_guard<std::mutex> const lock(m_Lock);
    m_WorkFolder = folder;
}
