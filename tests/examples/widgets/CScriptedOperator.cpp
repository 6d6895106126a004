#include "CScriptedOperator.h"

#include <gtest/gtest.h>

#include <QCloseEvent>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <chrono>

namespace
{
constexpr std::chrono::seconds longestWait(60);
} // namespace

CHangGuard::CHangGuard(char const* work)
{
    QObject::connect(&m_Timer, &QTimer::timeout,
                     [work] { qFatal("%s hangs after a minute", work); });
    m_Timer.start(longestWait);
}

CScriptedOperator::CScriptedOperator()
{
    qApp->installEventFilter(this);
}

CScriptedOperator::~CScriptedOperator()
{
    EXPECT_TRUE(m_Acts.empty()) << m_Acts.size() << " dialogues never appeared";
}

CScriptedOperator& CScriptedOperator::Then(Act act)
{
    m_Acts.push_back(std::move(act));
    return *this;
}

// Later, when the dialogue's own loop runs.
bool CScriptedOperator::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show)
        if (auto* const dialog = qobject_cast<QDialog*>(watched))
            QTimer::singleShot(0, dialog, [this, dialog] { MeetDialog(*dialog); });
    return false;
}

void CScriptedOperator::MeetDialog(QDialog& dialog)
{
    ++m_Seen;
    if (m_Acts.empty()) {
        if (m_Always)
            return m_Always(dialog);
        ADD_FAILURE() << "an unexpected dialogue: " << dialog.windowTitle().toStdString();
        return dialog.done(QDialog::Rejected);
    }
    Act const act = std::move(m_Acts.front());
    m_Acts.pop_front();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    act(dialog);
}

QAbstractButton* FindButton(QWidget& window, QString const& text)
{
    for (QAbstractButton* const button : window.findChildren<QAbstractButton*>())
        if (button->isVisible() && button->text().remove('&') == text)
            return button;
    ADD_FAILURE() << "no button " << text.toStdString();
    return nullptr;
}

void ClickButton(QWidget& window, QString const& text)
{
    if (QAbstractButton* const button = FindButton(window, text))
        QTest::mouseClick(button, Qt::LeftButton);
}

void PressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QWidget* const focus = window.focusWidget();
    QTest::keyClick(focus != nullptr ? focus : &window, key, modifiers);
}

void TypeText(QWidget& window, QString const& text)
{
    ASSERT_NE(window.focusWidget(), nullptr);
    QTest::keyClicks(window.focusWidget(), text);
}

// As Qt treats the manager's wish, which it refuses behind a modal dialogue.
void CloseByManager(QWidget& window)
{
    EXPECT_EQ(QGuiApplication::modalWindow(), nullptr);
    window.close();
}

void LetTimePass(QDialog& dialog)
{
    auto* const timer = dialog.findChild<QTimer*>();
    ASSERT_NE(timer, nullptr);
    ASSERT_TRUE(timer->isActive()) << "no time-out";
    timer->start(0);
}

bool WaitUntil(std::function<bool()> const& condition)
{
    return QTest::qWaitFor(condition,
                           static_cast<int>(std::chrono::milliseconds(longestWait).count()));
}
