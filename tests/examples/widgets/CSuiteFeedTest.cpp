#include <CSuiteFeed.h>

#include "CRecordingObserver.h"
#include "Threads.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

TEST(CSuiteFeed, KeepsReportsBackUntilTheyAreDelivered)
{
    CRecordingObserver target;
    CSuiteFeed feed(target);
    feed.FilesFound(3);
    EXPECT_THAT(target.m_Events, IsEmpty());
    feed.Deliver();
    EXPECT_THAT(target.m_Events, ElementsAre("found 3"));
    feed.Deliver();
    EXPECT_THAT(target.m_Events, ElementsAre("found 3"));
}

TEST(CSuiteFeed, DeliversEveryKindOfReportInOrder)
{
    CRecordingObserver target;
    CSuiteFeed feed(target);
    CSuitePlan plan;
    plan.m_CaseCount = 1;
    CCaseOutcome outcome;
    outcome.m_Detail = "because";
    CSuiteSummary summary;
    summary.m_Passed = 1;
    RunOnNewThread([&] {
        feed.FilesFound(1);
        feed.SuiteStarted(plan);
        feed.CaseStarted({ECaseGroup::Files, "a"});
        feed.CaseFinished({ECaseGroup::Files, "a"}, outcome);
        feed.SuitePaused();
        feed.SuiteResumed();
        feed.SuiteFinished(summary);
    });
    feed.Deliver();
    EXPECT_THAT(target.m_Events, ElementsAre("found 1", "started", "case a", "done a", "paused",
                                             "resumed", "finished"));
    EXPECT_EQ(target.m_Plan.m_CaseCount, 1u);
    EXPECT_EQ(target.m_Cases.front().m_Detail, "because");
    EXPECT_EQ(target.m_Summary.m_Passed, 1u);
}

TEST(CSuiteFeed, LeavesToTheNextDeliveryWhatIsReportedDuringOne)
{
    CRecordingObserver target;
    CSuiteFeed feed(target);
    target.m_OnFilesFound = [&] { feed.SuitePaused(); };
    feed.FilesFound(1);
    feed.Deliver();
    EXPECT_THAT(target.m_Events, ElementsAre("found 1"));
    feed.Deliver();
    EXPECT_THAT(target.m_Events, ElementsAre("found 1", "paused"));
}

TEST(CSuiteFeed, KnowsTheWorkFolderBetweenStartAndEnd)
{
    CRecordingObserver target;
    CSuiteFeed feed(target);
    EXPECT_EQ(feed.WorkFolder(), "");
    CSuitePlan plan;
    plan.m_WorkFolder = "/work";
    feed.SuiteStarted(plan);
    EXPECT_EQ(feed.WorkFolder(), "/work");
    feed.SuiteFinished(CSuiteSummary());
    EXPECT_EQ(feed.WorkFolder(), "");
}

TEST(CSuiteFeed, CarriesReportsFromAnotherThreadWhileTheyAreDelivered)
{
    constexpr std::size_t count = 2000;
    CRecordingObserver target;
    CSuiteFeed feed(target);
    std::thread suite([&] {
        for (std::size_t index = 0; index < count; ++index)
            feed.FilesFound(index);
    });
    while (target.m_Events.size() < count)
        feed.Deliver();
    suite.join();
    EXPECT_EQ(target.m_Events.front(), "found 0");
    EXPECT_EQ(target.m_Events.back(), "found 1999");
}
