#pragma once

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QPushButton>
#include <QTimer>

#include <deque>
#include <functional>
#include <thread>
#include <vector>

/// Sits before the screen and does with each dialogue, as it appears, the next
/// of what it was told. A dialogue that it was told nothing about is a failure
/// of the test, and is rejected.
class CScriptedOperator : public QObject
{
public:
    using Act = std::function<void(QDialog&)>;

    CScriptedOperator();
    ~CScriptedOperator() override;

    CScriptedOperator& Then(Act act);
    /// From now on every dialogue is left alone, or given to `act`.
    void Always(Act act) { m_Always = std::move(act); }
    int Seen() const { return m_Seen; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void MeetDialog(QDialog& dialog);

    std::deque<Act> m_Acts;
    Act m_Always;
    int m_Seen = 0;
};

/// What operators do.
void ClickButton(QWidget& window, QString const& text);
void PressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void TypeText(QWidget& window, QString const& text);
/// By the window manager's button.
void CloseByManager(QWidget& window);
/// Counts the dialogue's seconds down at once.
void LetTimePass(QDialog& dialog);

/// The button of that text, whatever its mnemonic; a failure when there is none.
QAbstractButton* FindButton(QWidget& window, QString const& text);

/// The parts of that very class, which need not have a meta-object of its own.
template <class Part>
std::vector<Part*> FindParts(QWidget const& window)
{
    std::vector<Part*> parts;
    for (QWidget* const widget : window.findChildren<QWidget*>())
        if (auto* const part = dynamic_cast<Part*>(widget))
            parts.push_back(part);
    return parts;
}

/// Waits, with events going on, for as long as a hung test may take.
bool WaitUntil(std::function<bool()> const& condition);

/// Ends the process when this object outlives the longest time that a test may
/// take: a thread that hangs can be joined by nobody.
class CHangGuard
{
public:
    explicit CHangGuard(char const* work);

private:
    QTimer m_Timer;
};

/// Does `work` on a thread of its own while this one serves events.
template <class Work>
void RunBesideEvents(Work const& work)
{
    CHangGuard const guard("the work beside the events");
    QEventLoop loop;
    std::thread thread([&] {
        work();
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    thread.join();
}
