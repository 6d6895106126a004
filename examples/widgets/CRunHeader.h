#pragma once

#include <Verdicts.h>

#include <QWidget>

class CElidedLabel;
class QHBoxLayout;
class QLabel;
class QProgressBar;

/// What a run is about and how it stands: the folder, what happens right now,
/// how far the cases have come, and how many had which verdict.
class CRunHeader : public QWidget
{
public:
    CRunHeader();

    /// Everything as before a run of the suite on `folder`.
    void Reset(QString const& folder);
    void SetState(QString const& state);
    void SetProblem(QString const& problem);
    void SetVerdict(TEST_STATUS verdict, QString const& text);
    void SetCaseCount(unsigned long count);
    /// One more case has ended.
    void Count(TEST_STATUS verdict);

private:
    struct CCounter
    {
        QLabel* m_Label = nullptr;
        unsigned long m_Count = 0;
    };

    void AddCounter(QHBoxLayout& layout, CCounter& counter, TEST_STATUS verdict,
                    QString const& name);
    CCounter& CounterOf(TEST_STATUS verdict);
    void ShowState(QString const& state, QColor const& color);

    CElidedLabel* m_Title;
    CElidedLabel* m_Path;
    CElidedLabel* m_State;
    QProgressBar* m_Progress;
    CCounter m_Passed;
    CCounter m_Failed;
    CCounter m_Skipped;
};
