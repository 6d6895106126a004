#include "CElidedLabel.h"

CElidedLabel::CElidedLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void CElidedLabel::SetText(QString const& text)
{
    m_Text = text.simplified();
    setAccessibleDescription(m_Text);
    Elide();
}

QSize CElidedLabel::minimumSizeHint() const
{
    return {0, fontMetrics().height()};
}

QSize CElidedLabel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(m_Text), fontMetrics().height()};
}

void CElidedLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    Elide();
}

void CElidedLabel::Elide()
{
    QString const shown = fontMetrics().elidedText(m_Text, Qt::ElideMiddle, contentsRect().width());
    setText(shown);
    setToolTip(shown == m_Text ? QString() : m_Text);
}
