#include "CMessageText.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr int maxLines = 12;
constexpr int preferredWidth = 30; // in widths of an M

int PreferredWidth(QWidget const& text)
{
    return text.fontMetrics().horizontalAdvance('M') * preferredWidth;
}
} // namespace

CMessageText::CMessageText(QString const& text)
{
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    setFocusPolicy(Qt::ClickFocus);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setPlainText(text);
    setAccessibleName(text);
    document()->setTextWidth(PreferredWidth(*this));
    FitHeight();
}

QSize CMessageText::sizeHint() const
{
    return {PreferredWidth(*this), height()};
}

QSize CMessageText::minimumSizeHint() const
{
    return {PreferredWidth(*this) / 2, fontMetrics().height()};
}

void CMessageText::resizeEvent(QResizeEvent* event)
{
    QTextEdit::resizeEvent(event);
    FitHeight();
}

void CMessageText::FitHeight()
{
    int const wanted = static_cast<int>(std::ceil(document()->size().height()));
    int const limit = fontMetrics().lineSpacing() * maxLines;
    setVerticalScrollBarPolicy(wanted > limit ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    setFixedHeight(std::min(wanted, limit));
}
