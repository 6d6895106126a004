#include "VerdictLook.h"

#include <VerdictFormat.h>

#include <QPainter>
#include <QPalette>

QColor VerdictColor(TEST_STATUS verdict, QPalette const& palette)
{
    TQColor const& color = VerdictFormat(verdict).m_Color;
    QColor const painted(static_cast<int>(color.m_Red), static_cast<int>(color.m_Green),
                         static_cast<int>(color.m_Blue));
    bool const dark = palette.base().color().lightness() < 128;
    return dark ? painted.lighter(180) : painted;
}

// Drawn at four times the size: icons are scaled down for the screen, never up.
QIcon VerdictDot(TEST_STATUS verdict, QPalette const& palette, int size)
{
    QPixmap pixmap(size * 4, size * 4);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(VerdictColor(verdict, palette));
    double const margin = size * 0.75;
    painter.drawEllipse(QRectF(pixmap.rect()).adjusted(margin, margin, -margin, -margin));
    painter.end();
    return pixmap;
}
