#include "RequestDialogs.h"

#include "Text.h"

#include <BaseUtilities/StringUtilities.h>

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>

CRequestDialog::CRequestDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout)
    : QDialog(parent),
      m_Icon(new QLabel),
      m_Body(new QVBoxLayout),
      m_Countdown(new QLabel),
      m_Buttons(new QDialogButtonBox),
      m_Timer(new QTimer(this))
{
    setWindowTitle(tr("Torqel"));
    setMinimumWidth(420);
    auto* const text = new QLabel(texts.m_Text);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_Icon->hide();

    auto* const head = new QHBoxLayout;
    head->addWidget(m_Icon, 0, Qt::AlignTop);
    head->addWidget(text, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addLayout(head);
    layout->addLayout(m_Body);
    layout->addWidget(m_Countdown);
    layout->addWidget(m_Buttons);

    AddButtons(texts);
    StartCountdown(timeout);
}

void CRequestDialog::AddButtons(CRequestTexts const& texts)
{
    QPushButton* const acceptButton =
        m_Buttons->addButton(texts.m_Accept, QDialogButtonBox::AcceptRole);
    acceptButton->setDefault(true);
    connect(acceptButton, &QPushButton::clicked, this, [this] {
        m_Reply = EReply::Accepted;
        accept();
    });
    if (!texts.m_Reject.isEmpty())
        connect(m_Buttons->addButton(texts.m_Reject, QDialogButtonBox::RejectRole),
                &QPushButton::clicked, this, &QDialog::reject);
    if (!texts.m_Abort.isEmpty())
        connect(m_Buttons->addButton(texts.m_Abort, QDialogButtonBox::ResetRole),
                &QPushButton::clicked, this, [this] {
                    m_Reply = EReply::AbortSuite;
                    done(QDialog::Rejected);
                });
}

EReply CRequestDialog::Ask()
{
    exec();
    return m_Reply;
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

void CRequestDialog::SetIcon(QPixmap const& icon)
{
    m_Icon->setPixmap(icon);
    m_Icon->show();
}

void CRequestDialog::StartCountdown(std::uint32_t seconds)
{
    m_Countdown->setObjectName("countdown");
    m_Countdown->setVisible(seconds > 0);
    if (seconds == 0)
        return;
    m_SecondsLeft = seconds + 1;
    connect(m_Timer, &QTimer::timeout, this, [this] { CountDown(); });
    CountDown();
    m_Timer->start(std::chrono::seconds(1));
}

void CRequestDialog::CountDown()
{
    --m_SecondsLeft;
    m_Countdown->setText(tr("Goes on without an answer in %1 %2.")
                             .arg(m_SecondsLeft)
                             .arg(ToQString(PluralNoun(m_SecondsLeft, "second", ""))));
    if (m_SecondsLeft > 0)
        return;
    m_Reply = EReply::TimedOut;
    done(QDialog::Rejected);
}

CIntegerDialog::CIntegerDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout,
                               QString const& additionalText, CRange range)
    : CRequestDialog(parent, texts, timeout),
      m_Range(range),
      m_Edit(new QLineEdit)
{
    auto* const hint =
        new QLabel(tr("%1 From %2 to %3.")
                       .arg(additionalText, QString::number(range.m_Min, range.m_Base).toUpper(),
                            QString::number(range.m_Max, range.m_Base).toUpper()));
    hint->setTextFormat(Qt::PlainText);
    hint->setWordWrap(true);
    m_Edit->setAccessibleName(texts.m_Text);
    AddToBody(hint);
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
    m_List->setAccessibleName(texts.m_Text);
    if (choice == EChoice::Several) {
        for (int row = 0; row < m_List->count(); ++row)
            m_List->item(row)->setCheckState(Qt::Checked);
    } else if (!items.isEmpty()) {
        m_List->setCurrentRow(0);
    }
    connect(m_List, &QListWidget::itemChanged, this, [this] { OnChanged(); });
    connect(m_List, &QListWidget::itemSelectionChanged, this, [this] { OnChanged(); });
    AddToBody(m_List);
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

CInfoDialog::CInfoDialog(QWidget* parent, CRequestTexts const& texts, std::uint32_t timeout,
                         EInfoIcon icon, bool closable)
    : CRequestDialog(parent, texts, timeout),
      m_Closable(closable)
{
    QStyle::StandardPixmap pixmap = QStyle::SP_MessageBoxInformation;
    if (icon == EInfoIcon::Warning)
        pixmap = QStyle::SP_MessageBoxWarning;
    else if (icon == EInfoIcon::Error)
        pixmap = QStyle::SP_MessageBoxCritical;
    int const size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    SetIcon(style()->standardIcon(pixmap).pixmap(size));
    SetAcceptable(closable);
}

void CInfoDialog::reject()
{
    if (m_Closable)
        CRequestDialog::reject();
}
