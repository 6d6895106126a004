#pragma once

#include "Icons.h"

#include <EReply.h>

#include <QDialog>

#include <cstdint>
#include <vector>

class QBoxLayout;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QTimer;

struct CRequestTexts
{
    QString m_Text;
    // No such button when empty.
    QString m_Accept;
    QString m_Reject;
    QString m_Abort;
};

/// A request with its buttons and a countdown to the time-out, in seconds; 0
/// means no time-out.
class CRequestDialog : public QDialog
{
public:
    CRequestDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout,
                   ERequestIcon icon = ERequestIcon::Question);

    /// Rejected as long as there is none.
    EReply Reply() const { return m_Reply; }

protected:
    /// Adds what the request is about, above the countdown.
    void AddToBody(QWidget* widget);
    void SetAcceptable(bool acceptable);
    void AcceptRequest();

private:
    QBoxLayout* BuildHead(QString const& text, ERequestIcon icon);
    void AddButtons(CRequestTexts const& texts);
    void StartCountdown(std::uint32_t seconds);
    void CountDown();
    void ShowCountdown();

    QString m_Otherwise; // what the time-out means
    QBoxLayout* m_Body;
    QLabel* m_Countdown;
    QProgressBar* m_CountdownBar;
    QDialogButtonBox* m_Buttons;
    QTimer* m_Timer;
    std::uint32_t m_SecondsLeft = 0;
    EReply m_Reply = EReply::Rejected;
};

/// An unsigned number in base 8, 10 or 16, within bounds.
class CIntegerDialog : public CRequestDialog
{
public:
    struct CRange
    {
        int m_Base;
        std::uintptr_t m_Min;
        std::uintptr_t m_Max;
    };

    CIntegerDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout,
                   QString const& additionalText, CRange range);
    void SetValue(std::uintptr_t value);
    /// What is entered; meaningful once accepted.
    std::uintptr_t Value() const { return m_Value; }

private:
    void Read(QString const& text);

    CRange m_Range;
    QLineEdit* m_Edit;
    std::uintptr_t m_Value = 0;
};

enum class EChoice { One, Several };

/// One or several of a list of items.
class CItemsDialog : public CRequestDialog
{
public:
    CItemsDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout,
                 QStringList const& items, EChoice choice);
    std::vector<std::int32_t> Chosen() const;

private:
    void OnChanged();

    EChoice m_Choice;
    QListWidget* m_List;
};

/// Something to be read. One that the operator may not close waits for its
/// time-out, or for the suite to close it.
class CInfoDialog : public CRequestDialog
{
public:
    CInfoDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout,
                ERequestIcon icon, bool closable);
    /// For the operator alone: QDialog::done closes it anyway.
    void reject() override;

private:
    bool m_Closable;
};
