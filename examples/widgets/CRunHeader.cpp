#include "CRunHeader.h"

#include "CElidedLabel.h"
#include "VerdictLook.h"

#include <QDir>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace
{
QFont Scaled(QFont font, double factor)
{
    font.setPointSizeF(font.pointSizeF() * factor);
    return font;
}
} // namespace

CRunHeader::CRunHeader()
    : m_Title(new CElidedLabel),
      m_Path(new CElidedLabel),
      m_State(new CElidedLabel),
      m_Progress(new QProgressBar)
{
    m_Title->setFont(Scaled(font(), 1.5));
    m_Path->setForegroundRole(QPalette::PlaceholderText);
    m_Path->setAccessibleName(tr("Folder"));
    m_State->setAccessibleName(tr("State"));
    m_Progress->setAccessibleName(tr("Progress"));
    m_Progress->setFormat(tr("%v of %m"));

    auto* const counters = new QHBoxLayout;
    counters->setSpacing(fontMetrics().height() / 3);
    AddCounter(*counters, m_Passed, TEST_STATUS_PASSED, tr("Passed"));
    AddCounter(*counters, m_Failed, TEST_STATUS_FAILED, tr("Failed"));
    AddCounter(*counters, m_Skipped, TEST_STATUS_SKIPPED, tr("Skipped"));
    auto* const head = new QHBoxLayout;
    head->addWidget(m_Title, 1);
    head->addLayout(counters);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(m_Path);
    layout->addWidget(m_Progress);
    layout->addWidget(m_State);
}

void CRunHeader::AddCounter(QHBoxLayout& layout, CCounter& counter, TEST_STATUS verdict,
                            QString const& name)
{
    int const size = fontMetrics().height();
    auto* const dot = new QLabel;
    dot->setPixmap(
        VerdictDot(verdict, palette(), size).pixmap(QSize(size, size), devicePixelRatioF()));
    counter.m_Label = new QLabel("0");
    counter.m_Label->setAccessibleName(name);
    QFont bold = Scaled(font(), 1.2);
    bold.setBold(true);
    counter.m_Label->setFont(bold);
    auto* const text = new QLabel(name.toLower());
    layout.addSpacing(size);
    layout.addWidget(dot);
    layout.addWidget(counter.m_Label);
    layout.addWidget(text);
}

void CRunHeader::Reset(QString const& folder)
{
    QString const name = QDir(folder).dirName();
    m_Title->SetText(name.isEmpty() ? folder : name);
    m_Path->SetText(folder);
    for (CCounter* const counter : {&m_Passed, &m_Failed, &m_Skipped}) {
        counter->m_Count = 0;
        counter->m_Label->setText("0");
    }
    m_Progress->setRange(0, 1);
    m_Progress->reset();
}

void CRunHeader::SetState(QString const& state)
{
    ShowState(state, palette().color(QPalette::WindowText));
}

void CRunHeader::SetProblem(QString const& problem)
{
    SetVerdict(TEST_STATUS_FAILED, problem);
}

void CRunHeader::SetVerdict(TEST_STATUS verdict, QString const& text)
{
    ShowState(text, VerdictColor(verdict, palette()));
}

void CRunHeader::SetCaseCount(unsigned long count)
{
    m_Progress->setRange(0, static_cast<int>(count));
    m_Progress->setValue(0);
}

void CRunHeader::Count(TEST_STATUS verdict)
{
    CCounter& counter = CounterOf(verdict);
    counter.m_Label->setText(QString::number(++counter.m_Count));
    m_Progress->setValue(m_Progress->value() + 1);
}

CRunHeader::CCounter& CRunHeader::CounterOf(TEST_STATUS verdict)
{
    if (verdict == TEST_STATUS_PASSED)
        return m_Passed;
    return verdict == TEST_STATUS_SKIPPED ? m_Skipped : m_Failed;
}

void CRunHeader::ShowState(QString const& state, QColor const& color)
{
    QPalette colors = m_State->palette();
    colors.setColor(QPalette::WindowText, color);
    m_State->setPalette(colors);
    m_State->SetText(state);
}
