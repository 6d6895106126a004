// The window is closed at any moment, and the suite's thread ends with it.

#include "CWindowTest.h"

#include <QElapsedTimer>
#include <QTimer>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>

namespace fs = std::filesystem;

namespace
{
constexpr int closings = 100;
constexpr std::chrono::milliseconds longestEnd(2000);

enum class EMoment { Idle, Running, Asking, Paused };
constexpr EMoment moments[] = {EMoment::Idle, EMoment::Running, EMoment::Asking, EMoment::Paused};

char const* NameOf(EMoment moment)
{
    constexpr char const* names[] = {"idle", "running", "asking", "paused"};
    return names[static_cast<int>(moment)];
}

// A failed run is repeated with the seed that it printed.
unsigned Seed()
{
    char const* const given = std::getenv("WINDOW_CLOSING_SEED");
    return given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10))
                            : std::random_device()();
}

class CWindowClosingTest : public CWindowTest
{
protected:
    CWindowClosingTest()
    {
        for (int file = 0; file < 40; ++file)
            WriteFile(m_Files / ("one/more" + std::to_string(file)), "Contents");
        Spoil("two/c.txt");
        m_Operator.Always([this](QDialog& dialog) { Meet(dialog); });
    }

    /// A moment from now on at which to close the window.
    void CloseSoon()
    {
        std::uniform_int_distribution<int> delay(0, 20);
        QTimer::singleShot(delay(m_Random), &Window(), [this] {
            m_SinceClosing.start();
            CloseByManager(Window());
        });
    }

    /// Every question is rejected but one, during which the window is closed.
    void Meet(QDialog& dialog)
    {
        if (m_QuestionsToReject-- != 0)
            return dialog.reject();
        CloseSoon();
    }

    void BringAbout(EMoment moment)
    {
        std::uniform_int_distribution<int> question(0, 3); // folders, limit, failure, report
        m_QuestionsToReject = moment == EMoment::Asking ? question(m_Random) : -1;
        if (moment != EMoment::Idle)
            Window().StartSuite();
        if (moment == EMoment::Paused)
            AwaitPause();
        if (moment != EMoment::Asking)
            CloseSoon();
    }

    void AwaitPause()
    {
        QAbstractButton const* const resume = FindButton(Window(), "Resume");
        ClickButton(Window(), "Pause");
        ASSERT_TRUE(WaitUntil([&] { return resume->isEnabled(); }));
    }

    std::mt19937 m_Random;
    QElapsedTimer m_SinceClosing;
    int m_QuestionsToReject = 0;
};
} // namespace

TEST_F(CWindowClosingTest, EndsWithinTwoSecondsAtAHundredRandomMoments)
{
    unsigned const seed = Seed();
    std::cout << "WINDOW_CLOSING_SEED=" << seed << '\n';
    m_Random.seed(seed);
    for (int round = 0; round < closings; ++round) {
        EMoment const moment = moments[round % 4];
        SCOPED_TRACE(std::string("closing ") + std::to_string(round) + ", " + NameOf(moment));
        m_SinceClosing.invalidate();
        BringAbout(moment);
        ASSERT_TRUE(WaitUntil([this] {
            return m_SinceClosing.isValid() && !Window().isVisible() && !Window().IsRunning();
        }));
        EXPECT_LT(m_SinceClosing.elapsed(), longestEnd.count());
        m_Window.reset();
        EXPECT_TRUE(fs::is_empty(m_Work.Path())) << "something is left behind";
    }
}

TEST_F(CWindowClosingTest, AsksNothingMoreOnceTheWindowIsClosed)
{
    m_QuestionsToReject = 0;
    Window().StartSuite();
    ASSERT_TRUE(WaitUntil([this] { return m_SinceClosing.isValid() && !Window().IsRunning(); }));
    EXPECT_EQ(m_Operator.Seen(), 1);
    EXPECT_EQ(Window().Verdict(), TEST_STATUS_ABORTED);
}
