// A window whose suite never gets beyond its first copy, closed by its operator, who then says so.

#include <CMainWindow.h>

#include <QApplication>

#include <condition_variable>
#include <iostream>
#include <mutex>

namespace
{
[[noreturn]] void WaitForever()
{
    std::mutex lock;
    std::condition_variable never;
    std::unique_lock<std::mutex> held(lock);
    for (;;)
        never.wait(held);
}
} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    CMainWindow* closed = nullptr;
    CSuiteOptions options;
    options.m_Folder = argv[1];
    options.m_WorkParent = argv[2];
    options.m_Copy = [&](auto const&, auto const&, ECopyFailType) -> std::optional<CSafeString> {
        QMetaObject::invokeMethod(
            closed,
            [closed] {
                closed->close();
                std::cout << "closed" << std::endl;
            },
            Qt::QueuedConnection);
        WaitForever();
    };
    CMainWindow window(options);
    closed = &window;
    window.show();
    window.StartSuite();
    return QApplication::exec();
}
