#include "RequestDialogs.h"

#include "CMessageText.h"
#include "Text.h"

#include <BaseUtilities/StringUtilities.h>

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <climits>

namespace
{
// An ampersand is part of the text, no mark of a key.
QString ButtonText(QString text)
{
    return text.replace('&', "&&");
}

QLabel* Secondary(QString const& text)
{
    auto* const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}
} // namespace

CRequestDialog::CRequestDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout,
                               ERequestIcon icon)
    : QDialog(parent),
      m_Otherwise(texts.m_Reject),
      m_Body(new QVBoxLayout),
      m_Countdown(Secondary(QString())),
      m_CountdownBar(new QProgressBar),
      m_Buttons(new QDialogButtonBox),
      m_Timer(new QTimer(this))
{
    setWindowTitle(tr("Torqel"));
    auto* const layout = new QVBoxLayout(this);
    int const em = fontMetrics().height();
    layout->setContentsMargins(em, em, em, em);
    layout->setSpacing(em * 3 / 4);
    layout->addLayout(BuildHead(texts.m_Text, icon), 1);
    layout->addWidget(m_CountdownBar);
    layout->addWidget(m_Countdown);
    layout->addWidget(m_Buttons);

    AddButtons(texts);
    StartCountdown(timeout);
}

QBoxLayout* CRequestDialog::BuildHead(QString const& text, ERequestIcon icon)
{
    auto* const picture = new QLabel;
    int const size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    picture->setPixmap(RequestIcon(icon).pixmap(QSize(size, size), devicePixelRatioF()));
    m_Body->addWidget(new CMessageText(text));

    auto* const head = new QHBoxLayout;
    head->setSpacing(fontMetrics().height());
    head->addWidget(picture, 0, Qt::AlignTop);
    head->addLayout(m_Body, 1);
    return head;
}

void CRequestDialog::AddButtons(CRequestTexts const& texts)
{
    if (!texts.m_Accept.isEmpty()) {
        QPushButton* const button =
            m_Buttons->addButton(ButtonText(texts.m_Accept), QDialogButtonBox::AcceptRole);
        button->setDefault(true);
        button->setFocus(); // what has more to ask takes it over
        connect(button, &QPushButton::clicked, this, [this] { AcceptRequest(); });
    }
    if (!texts.m_Reject.isEmpty())
        connect(m_Buttons->addButton(ButtonText(texts.m_Reject), QDialogButtonBox::RejectRole),
                &QPushButton::clicked, this, &QDialog::reject);
    if (!texts.m_Abort.isEmpty())
        connect(m_Buttons->addButton(ButtonText(texts.m_Abort), QDialogButtonBox::ResetRole),
                &QPushButton::clicked, this, [this] {
                    m_Reply = EReply::AbortSuite;
                    done(QDialog::Rejected);
                });
}

void CRequestDialog::AddToBody(QWidget* widget)
{
    m_Body->addWidget(widget);
}

void CRequestDialog::SetAcceptable(bool acceptable)
{
    for (QAbstractButton* const button : m_Buttons->buttons())
        if (m_Buttons->buttonRole(button) == QDialogButtonBox::AcceptRole)
            button->setEnabled(acceptable);
}

void CRequestDialog::AcceptRequest()
{
    m_Reply = EReply::Accepted;
    accept();
}

void CRequestDialog::StartCountdown(std::uint32_t seconds)
{
    m_Countdown->setObjectName("countdown");
    m_Countdown->setVisible(seconds > 0);
    m_CountdownBar->setVisible(seconds > 0);
    m_CountdownBar->setTextVisible(false);
    m_CountdownBar->setFixedHeight(fontMetrics().height() / 3);
    m_CountdownBar->setMaximum(static_cast<int>(std::min<std::uint32_t>(seconds, INT_MAX)));
    if (seconds == 0)
        return;
    m_SecondsLeft = seconds;
    ShowCountdown();
    connect(m_Timer, &QTimer::timeout, this, [this] { CountDown(); });
    m_Timer->start(std::chrono::seconds(1));
}

void CRequestDialog::CountDown()
{
    --m_SecondsLeft;
    ShowCountdown();
    if (m_SecondsLeft > 0)
        return;
    m_Timer->stop();
    m_Reply = EReply::TimedOut;
    done(QDialog::Rejected);
}

void CRequestDialog::ShowCountdown()
{
    QString const seconds = ToQString(PluralNoun(m_SecondsLeft, "second", ""));
    QString const what = m_Otherwise.isEmpty() ? tr("Closes by itself")
                                               : tr("Without an answer: \"%1\"").arg(m_Otherwise);
    m_Countdown->setText(tr("%1 in %2 %3.").arg(what, QString::number(m_SecondsLeft), seconds));
    m_CountdownBar->setValue(static_cast<int>(std::min<std::uint32_t>(m_SecondsLeft, INT_MAX)));
}

namespace
{
QString BaseText(int base)
{
    switch (base) {
    case 8:
        return CIntegerDialog::tr(", in octal digits");
    case 16:
        return CIntegerDialog::tr(", in hexadecimal digits");
    default:
        return {};
    }
}

QString RangeText(CIntegerDialog::CRange const& range)
{
    return CIntegerDialog::tr("From %1 to %2%3.")
        .arg(QString::number(range.m_Min, range.m_Base).toUpper(),
             QString::number(range.m_Max, range.m_Base).toUpper(), BaseText(range.m_Base));
}
} // namespace

CIntegerDialog::CIntegerDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout,
                               QString const& additionalText, CRange range)
    : CRequestDialog(parent, texts, timeout),
      m_Range(range),
      m_Edit(new QLineEdit)
{
    m_Edit->setAccessibleName(texts.m_Text);
    AddToBody(Secondary(tr("%1 %2").arg(additionalText, RangeText(range)).trimmed()));
    AddToBody(m_Edit);
    connect(m_Edit, &QLineEdit::textChanged, this, [this](QString const& text) { Read(text); });
    SetAcceptable(false);
    m_Edit->setFocus();
}

void CIntegerDialog::SetValue(std::uintptr_t value)
{
    m_Edit->setText(QString::number(value, m_Range.m_Base).toUpper());
    m_Edit->selectAll();
}

void CIntegerDialog::Read(QString const& text)
{
    bool isNumber = false;
    m_Value = text.trimmed().toULongLong(&isNumber, m_Range.m_Base);
    SetAcceptable(isNumber && m_Value >= m_Range.m_Min && m_Value <= m_Range.m_Max);
}

CItemsDialog::CItemsDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout,
                           QStringList const& items, EChoice choice)
    : CRequestDialog(parent, texts, timeout),
      m_Choice(choice),
      m_List(new QListWidget)
{
    m_List->addItems(items);
    m_List->setSizeAdjustPolicy(QListWidget::AdjustToContents);
    m_List->setAlternatingRowColors(true);
    m_List->setAccessibleName(texts.m_Text);
    if (choice == EChoice::Several) {
        for (int row = 0; row < m_List->count(); ++row)
            m_List->item(row)->setCheckState(Qt::Checked);
    } else if (!items.isEmpty()) {
        m_List->setCurrentRow(0);
    }
    connect(m_List, &QListWidget::itemChanged, this, [this] { OnChanged(); });
    connect(m_List, &QListWidget::itemSelectionChanged, this, [this] { OnChanged(); });
    if (choice == EChoice::One)
        connect(m_List, &QListWidget::itemDoubleClicked, this, [this] { AcceptRequest(); });
    AddToBody(m_List);
    m_List->setFocus();
    OnChanged();
}

std::vector<std::int32_t> CItemsDialog::Chosen() const
{
    std::vector<std::int32_t> chosen;
    for (int row = 0; row < m_List->count(); ++row) {
        QListWidgetItem const* const item = m_List->item(row);
        if (m_Choice == EChoice::Several ? item->checkState() == Qt::Checked : item->isSelected())
            chosen.push_back(row);
    }
    return chosen;
}

void CItemsDialog::OnChanged()
{
    SetAcceptable(m_Choice == EChoice::Several || !Chosen().empty());
}

namespace
{
CRequestTexts WithCloseButton(CRequestTexts texts, bool closable)
{
    if (!closable)
        texts.m_Accept.clear();
    return texts;
}
} // namespace

CInfoDialog::CInfoDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout,
                         ERequestIcon icon, bool closable)
    : CRequestDialog(parent, WithCloseButton(texts, closable), timeout, icon),
      m_Closable(closable)
{
}

void CInfoDialog::reject()
{
    if (m_Closable)
        CRequestDialog::reject();
}
