#include <CSuiteRunner.h>

#include "CAbortSwitch.h"
#include "CRecordingObserver.h"
#include "TemporaryFolder.h"

#include <BaseUtilities/TQException.h>

#include <gmock/gmock.h>

#include <future>
#include <memory>

namespace fs = std::filesystem;
using testing::ElementsAre;
using std::chrono_literals::operator""ms;

namespace
{
// A suite over two files, which pauses itself after the first.
class CSuiteRunnerTest : public testing::Test
{
protected:
    CSuiteRunnerTest()
    {
        WriteFile(m_Files / "a", "first");
        WriteFile(m_Files / "b", "second");
        m_Options.m_Folder = m_Files.Path();
        m_Options.m_WorkParent = m_Work.Path();
        m_Observer.m_OnCaseFinished = [this] {
            if (m_Observer.m_Cases.size() == 1)
                TQUserAbort::UserAbortPause();
        };
        m_Observer.m_OnPaused = [this] { m_Paused.set_value(); };
    }

    void Start() { m_Runner = std::make_unique<CSuiteRunner>(m_Options, m_Observer); }
    void StartAndAwaitPause()
    {
        Start();
        m_Paused.get_future().wait();
    }
    std::vector<std::string> EventsFromFirstCase() const
    {
        auto const& events = m_Observer.m_Events;
        return {std::find(events.begin(), events.end(), "done a"), events.end()};
    }

    CTemporaryFolder const m_Files;
    CTemporaryFolder const m_Work;
    CAbortSwitch const m_Switch;
    CSuiteOptions m_Options;
    CRecordingObserver m_Observer;
    std::promise<void> m_Paused;
    std::unique_ptr<CSuiteRunner> m_Runner;
};
} // namespace

TEST_F(CSuiteRunnerTest, RunsTheSuiteOnAThreadOfItsOwn)
{
    std::thread::id thread;
    m_Observer.m_OnCaseFinished = [&] { thread = std::this_thread::get_id(); };
    Start();
    EXPECT_EQ(m_Runner->Wait().m_Verdict, TEST_STATUS_PASSED);
    EXPECT_NE(thread, std::thread::id());
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(CSuiteRunnerTest, RunsNoCaseWhilePaused)
{
    StartAndAwaitPause();
    EXPECT_FALSE(m_Runner->WaitFor(0ms));
    m_Runner->Resume();
    EXPECT_EQ(m_Runner->Wait().m_Verdict, TEST_STATUS_PASSED);

    auto const events = EventsFromFirstCase();
    ASSERT_GE(events.size(), 4u);
    EXPECT_THAT(std::vector<std::string>(events.begin(), events.begin() + 4),
                ElementsAre("done a", "paused", "resumed", "case b"));
}

TEST_F(CSuiteRunnerTest, PauseHoldsTheSuiteAtItsNextCase)
{
    // From the suite's own thread, the one moment when it surely has not ended.
    m_Observer.m_OnCaseFinished = [this] {
        if (m_Observer.m_Cases.size() == 2)
            m_Runner->Pause();
    };
    std::promise<void> ready;
    m_Observer.m_OnFilesFound = [&] { ready.get_future().wait(); };
    Start();
    ready.set_value(); // m_Runner is set
    m_Paused.get_future().wait();
    EXPECT_TRUE(TQUserAbort::IsPaused());
    m_Runner->Resume();
    EXPECT_EQ(m_Runner->Wait().m_Verdict, TEST_STATUS_PASSED);
    EXPECT_FALSE(TQUserAbort::IsPaused());
}

TEST_F(CSuiteRunnerTest, NoticesAResumeThatPassedItBy)
{
    StartAndAwaitPause();
    TQUserAbort::UserAbortResume();
    EXPECT_EQ(m_Runner->Wait().m_Verdict, TEST_STATUS_PASSED);
}

TEST_F(CSuiteRunnerTest, RequestAbortEndsAPausedSuite)
{
    StartAndAwaitPause();
    EXPECT_TRUE(m_Runner->RequestAbort());
    EXPECT_EQ(m_Runner->Wait().m_Verdict, TEST_STATUS_ABORTED);
    EXPECT_THAT(EventsFromFirstCase(), ElementsAre("done a", "paused", "resumed", "finished"));
    EXPECT_TRUE(fs::is_empty(m_Work.Path()));
}

TEST_F(CSuiteRunnerTest, AStandingRequestWaitsForTheResume)
{
    StartAndAwaitPause();
    TQUserAbort::RequestUserAbort();
    EXPECT_FALSE(m_Runner->WaitFor(0ms));
    m_Runner->Resume();
    EXPECT_EQ(m_Runner->Wait().m_Verdict, TEST_STATUS_ABORTED);
}

TEST_F(CSuiteRunnerTest, ASecondRequestIsNone)
{
    StartAndAwaitPause();
    TQUserAbort::RequestUserAbort();
    EXPECT_FALSE(m_Runner->RequestAbort());
    m_Runner->Wait();
    EXPECT_FALSE(m_Runner->RequestAbort()) << "sent already";
}

TEST_F(CSuiteRunnerTest, ArmsTheAbortSwitchWhileItLives)
{
    TQUserAbort::EnableUserAbort(false);
    Start();
    EXPECT_TRUE(TQUserAbort::UserAbortEnabled());
    m_Runner.reset();
    EXPECT_FALSE(TQUserAbort::UserAbortEnabled());
}

TEST_F(CSuiteRunnerTest, DestructionAbortsASuiteThatIsStillRunning)
{
    StartAndAwaitPause();
    m_Runner.reset();
    EXPECT_EQ(m_Observer.m_Summary.m_Verdict, TEST_STATUS_ABORTED);
    EXPECT_EQ(m_Observer.m_Cases.size(), 1u);
    EXPECT_TRUE(fs::is_empty(m_Work.Path()));
}

TEST_F(CSuiteRunnerTest, WaitThrowsWhatTheSuiteThrew)
{
    m_Options.m_Folder = m_Files.Path() / "none";
    Start();
    try {
        m_Runner->Wait();
        ADD_FAILURE() << "no exception";
    } catch (TQRunTimeException const& error) {
        EXPECT_EQ(error.GetStatus(), TEST_STATUS_NO_FOLDER);
    }
}

TEST_F(CSuiteRunnerTest, RunsAgainAfterAnAbort)
{
    StartAndAwaitPause();
    m_Runner->RequestAbort();
    m_Runner->Wait();
    m_Runner.reset();

    CRecordingObserver second;
    CSuiteRunner runner(m_Options, second);
    EXPECT_EQ(runner.Wait().m_Verdict, TEST_STATUS_PASSED);
}
