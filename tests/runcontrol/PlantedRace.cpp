// A data race on purpose, between two plain threads beside a Qt delivery to a third:
// ThreadSanitizer must report it in spite of what it is told to leave out.

#include "Application.h"

#include <BaseUtilities/CQtSignaler.h>

#include <QThread>

#include <atomic>
#include <thread>

int main()
{
    CApplication const application;
    CQtSignaler signaler;
    QObject receiver;
    QThread interface;
    interface.start();
    receiver.moveToThread(&interface);
    QObject::connect(
        &signaler, &CQtSignaler::RefreshDone, &receiver, [] {}, Qt::BlockingQueuedConnection);
    Q_EMIT signaler.RefreshDone();

    std::atomic<bool> set{false};
    std::thread writer([&] {
        signaler.SetRefreshCompleted();
        set.store(true, std::memory_order_relaxed); // orders nothing
    });
    while (!set.load(std::memory_order_relaxed))
        std::this_thread::yield();
    bool const completed = signaler.RefreshCompleted();
    writer.join();
    interface.quit();
    interface.wait();
    return completed ? 0 : 1;
}
