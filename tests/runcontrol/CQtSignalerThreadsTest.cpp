#include "Application.h"
#include "Requests.h"
#include "Threads.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QSemaphore>

#include <atomic>
#include <csignal>
#include <functional>

namespace
{
// Tells when an event has been posted to its thread, and delivers none by itself.
class CPostCounter final : public QAbstractEventDispatcher
{
public:
    explicit CPostCounter(QSemaphore& posted) : m_Posted(posted) {}

    void wakeUp() override { m_Posted.release(); }

    bool processEvents(QEventLoop::ProcessEventsFlags) override { return false; }
    void registerSocketNotifier(QSocketNotifier*) override {}
    void unregisterSocketNotifier(QSocketNotifier*) override {}
    void registerTimer(int, qint64, Qt::TimerType, QObject*) override {}
    bool unregisterTimer(int) override { return false; }
    bool unregisterTimers(QObject*) override { return false; }
    QList<TimerInfo> registeredTimers(QObject*) const override { return {}; }
    int remainingTime(int) override { return -1; }
    void interrupt() override {}

private:
    QSemaphore& m_Posted;
};

// A thread with a receiver of its own that goes on only when a request has been posted to it.
class CWaitedForThread : public QThread
{
public:
    using Connect = std::function<void(COperator&)>;
    using Treat = std::function<void(COperator*)>;

    // `treat` gets the receiver once a request waits for it, and deletes it.
    CWaitedForThread(Connect connect, Treat treat)
        : m_Connect(std::move(connect)),
          m_Treat(std::move(treat))
    {
        setEventDispatcher(new CPostCounter(m_Posted));
        start();
        m_Ready.acquire();
    }
    ~CWaitedForThread() override { wait(); }

private:
    void run() override
    {
        auto* const receiver = new COperator;
        m_Connect(*receiver);
        while (m_Posted.tryAcquire())
            ;
        m_Ready.release();
        m_Posted.acquire();
        m_Treat(receiver);
    }

    Connect const m_Connect;
    Treat const m_Treat;
    QSemaphore m_Posted;
    QSemaphore m_Ready;
};

class CQtSignalerWaiting : public testing::TestWithParam<int>
{
protected:
    RequestRow const& Row() const { return RequestRows()[static_cast<std::size_t>(GetParam())]; }

    void Connect(COperator& receiver)
    {
        Row().connectOperator(m_Signaler, receiver, Qt::BlockingQueuedConnection);
    }

    CApplication const m_Application;
    CQtSignaler m_Signaler;
};

INSTANTIATE_TEST_SUITE_P(All, CQtSignalerWaiting, testing::Range(0, 13), [](auto const& row) {
    return std::string(RequestRows()[static_cast<std::size_t>(row.param)].name);
});
} // namespace

TEST_P(CQtSignalerWaiting, EndsUnansweredWhenTheReceiverIsDeleted)
{
    std::atomic<bool> asked{true};
    CWaitedForThread const interface([this](COperator& receiver) { Connect(receiver); },
                                     [&asked](COperator* receiver) {
                                         asked = !receiver->Requests().empty();
                                         delete receiver;
                                     });
    EXPECT_EQ(Row().emitIt(m_Signaler), Row().unanswered);
    EXPECT_FALSE(asked);
}

// The receiver's thread catches what the slot threw; the emitter never hears of it.
TEST_P(CQtSignalerWaiting, EndsUnansweredWhenTheReceiverThrows)
{
    std::atomic<bool> caught{false};
    std::string answer;
    {
        CWaitedForThread const interface(
            [this](COperator& receiver) {
                auto const relay = new CQtSignaler;
                relay->setParent(&receiver);
                QObject::connect(&m_Signaler, SignalerMethod(Row().index), relay,
                                 SignalerMethod(Row().index), Qt::BlockingQueuedConnection);
                Row().connectThrower(*relay);
            },
            [&caught](COperator* receiver) {
                try {
                    QCoreApplication::sendPostedEvents();
                } catch (RefusedByOperator const&) {
                    caught = true;
                }
                delete receiver;
            });
        EXPECT_NO_THROW(answer = Row().emitIt(m_Signaler));
    }
    EXPECT_EQ(answer, Row().unanswered);
    EXPECT_TRUE(caught);
}

// Nobody catches in the receiver's thread: Qt ends the process, and nothing reaches the emitter.
TEST(CQtSignalerDeathTest, EndsTheProcessWhenABlockingReceiversExceptionIsNotCaught)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const ask = [] {
        CApplication const application;
        CQtSignaler signaler;
        QObject receiver;
        CEventThread thread;
        receiver.moveToThread(thread.get());
        QObject::connect(
            &signaler, &CQtSignaler::RefreshDone, &receiver, [] { throw RefusedByOperator(); },
            Qt::BlockingQueuedConnection);
        try {
            Q_EMIT signaler.RefreshDone();
        } catch (...) {
            std::_Exit(3);
        }
        thread.get()->wait(); // the emitter goes on until the thread's end takes it along
        std::_Exit(4);
    };
    EXPECT_EXIT(ask(), testing::KilledBySignal(SIGABRT), "");
}

TEST(CQtSignaler, AnswersEveryRequestOfAThreadInItsOrder)
{
    CApplication const application;
    CQtSignaler signaler;
    COperator receiver;
    CEventThread interface;
    receiver.moveToThread(interface.get());
    for (RequestRow const& row : RequestRows())
        if (row.index != 11) // the same connection as the one before
            row.connectOperator(signaler, receiver, Qt::BlockingQueuedConnection);
    std::vector<std::string> expected;
    RunOnNewThread([&] {
        for (int round = 0; round < 20; ++round)
            for (RequestRow const& row : RequestRows()) {
                EXPECT_EQ(row.emitIt(signaler), row.answer);
                expected.push_back(row.request);
            }
    });
    EXPECT_EQ(receiver.Requests(), expected);
}

TEST(CQtSignaler, AnswersEachOfSeveralThreadsItself)
{
    CApplication const application;
    CQtSignaler signaler;
    QObject receiver;
    CEventThread interface;
    receiver.moveToThread(interface.get());
    QObject::connect(
        &signaler, &CQtSignaler::PickDirectory, &receiver,
        [](sv_wrapper const& text, sv_wrapper const&, sv_wrapper const&) {
            return CSafeString(text) + "!";
        },
        Qt::BlockingQueuedConnection);
    RunOnThreads(4, [&](unsigned thread) {
        for (int round = 0; round < 50; ++round) {
            std::string const text = std::to_string(thread) + "/" + std::to_string(round);
            EXPECT_EQ(Text(signaler.PickDirectory(text, "", "")), "'" + text + "!'");
        }
    });
}
