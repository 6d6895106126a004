#pragma once

#include <ISuiteObserver.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

struct CRecordedCase
{
    ECaseGroup m_Group;
    std::string m_Name;
    TEST_STATUS m_Verdict;
    std::string m_Detail;
    std::uintmax_t m_Bytes;
};

/// Keeps what a suite reports, for reading after its end. The functions, where
/// set, are called on the suite's thread.
class CRecordingObserver final : public ISuiteObserver
{
public:
    void FilesFound(unsigned long count) override
    {
        m_Events.push_back("found " + std::to_string(count));
        Call(m_OnFilesFound);
    }
    void SuiteStarted(CSuitePlan const& plan) override
    {
        m_Plan = plan;
        m_Events.emplace_back("started");
        Call(m_OnStarted);
    }
    void CaseStarted(CCase const& started) override
    {
        m_Events.push_back(std::string("case ") + started.m_Name.get());
    }
    void CaseFinished(CCase const& finished, CCaseOutcome const& outcome) override
    {
        m_Events.push_back(std::string("done ") + finished.m_Name.get());
        m_Cases.push_back({finished.m_Group, finished.m_Name.get(), outcome.m_Verdict,
                           outcome.m_Detail.get(), outcome.m_Bytes});
        Call(m_OnCaseFinished);
    }
    void SuitePaused() override
    {
        m_Events.emplace_back("paused");
        Call(m_OnPaused);
    }
    void SuiteResumed() override { m_Events.emplace_back("resumed"); }
    void SuiteFinished(CSuiteSummary const& summary) override
    {
        m_Summary = summary;
        m_Events.emplace_back("finished");
        Call(m_OnFinished);
    }

    /// The cases of files alone.
    std::vector<CRecordedCase> Files() const
    {
        std::vector<CRecordedCase> files;
        for (CRecordedCase const& recorded : m_Cases)
            if (recorded.m_Group == ECaseGroup::Files)
                files.push_back(recorded);
        return files;
    }

    std::vector<std::string> m_Events;
    std::vector<CRecordedCase> m_Cases;
    CSuitePlan m_Plan;
    CSuiteSummary m_Summary;

    std::function<void()> m_OnFilesFound;
    std::function<void()> m_OnStarted;
    std::function<void()> m_OnCaseFinished;
    std::function<void()> m_OnPaused;
    std::function<void()> m_OnFinished;

private:
    static void Call(std::function<void()> const& function)
    {
        if (function)
            function();
    }
};
