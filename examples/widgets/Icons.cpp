#include "Icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace
{
// Drawn at this size with coordinates from 0 to 16; icons are scaled down for the screen.
constexpr int side = 128;

template <class Draw>
QPixmap Drawn(Draw draw)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / 16.0, side / 16.0);
    painter.setPen(Qt::NoPen);
    draw(painter);
    return pixmap;
}

QPainterPath Triangle(double left, double right)
{
    QPainterPath path;
    path.moveTo(left, 2.5);
    path.lineTo(right, 8);
    path.lineTo(left, 13.5);
    path.closeSubpath();
    return path;
}

QPainterPath FolderShape()
{
    QPainterPath path;
    path.addRoundedRect(QRectF(1.5, 4.5, 13, 9), 1.2, 1.2);
    QPainterPath tab;
    tab.addRoundedRect(QRectF(1.5, 2.8, 6, 4), 1.2, 1.2);
    return path.united(tab);
}

QPainterPath Shape(ECommandIcon icon)
{
    QPainterPath path;
    switch (icon) {
    case ECommandIcon::Folder:
        return FolderShape();
    case ECommandIcon::Start:
        return Triangle(4, 13.5);
    case ECommandIcon::Pause:
        path.addRoundedRect(QRectF(3.5, 2.5, 3.4, 11), 0.8, 0.8);
        path.addRoundedRect(QRectF(9.1, 2.5, 3.4, 11), 0.8, 0.8);
        return path;
    case ECommandIcon::Resume:
        path.addRoundedRect(QRectF(2.5, 2.5, 2.6, 11), 0.8, 0.8);
        path.addPath(Triangle(6.5, 14.5));
        return path;
    case ECommandIcon::Abort:
        path.addRoundedRect(QRectF(3, 3, 10, 10), 1.2, 1.2);
        return path;
    }
    return path;
}

QColor ColorOf(ECommandIcon icon)
{
    switch (icon) {
    case ECommandIcon::Folder:
        return {74, 124, 184};
    case ECommandIcon::Pause:
        return {198, 134, 22};
    case ECommandIcon::Abort:
        return {198, 52, 48};
    default:
        return {38, 142, 72};
    }
}

QPixmap Filled(QPainterPath const& path, QColor const& color)
{
    return Drawn([&](QPainter& painter) { painter.fillPath(path, color); });
}

struct CSign
{
    QColor m_Color;
    char const* m_Character;
};

CSign SignOf(ERequestIcon icon)
{
    switch (icon) {
    case ERequestIcon::Question:
        return {{60, 116, 186}, "?"};
    case ERequestIcon::Warning:
        return {{208, 140, 20}, "!"};
    case ERequestIcon::Error:
        return {{198, 52, 48}, "!"};
    default:
        return {{60, 116, 186}, "i"};
    }
}
} // namespace

// A tick on a tile.
QIcon ProgramIcon()
{
    return Drawn([](QPainter& painter) {
        painter.setBrush(QColor(60, 116, 186));
        painter.drawRoundedRect(QRectF(0.5, 0.5, 15, 15), 3.5, 3.5);
        painter.setPen(QPen(Qt::white, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        QPointF const tick[] = {{4, 8.4}, {7, 11.2}, {12.2, 5}};
        painter.drawPolyline(tick, 3);
    });
}

QIcon CommandIcon(ECommandIcon icon, QPalette const& palette)
{
    QPainterPath const shape = Shape(icon);
    QIcon picture(Filled(shape, ColorOf(icon)));
    QColor pale = palette.color(QPalette::Disabled, QPalette::WindowText);
    pale.setAlphaF(0.5F);
    picture.addPixmap(Filled(shape, pale), QIcon::Disabled);
    return picture;
}

QIcon RequestIcon(ERequestIcon icon)
{
    CSign const sign = SignOf(icon);
    return Drawn([&](QPainter& painter) {
        painter.setBrush(sign.m_Color);
        painter.drawEllipse(QRectF(0.5, 0.5, 15, 15));
        QFont font;
        font.setBold(true);
        font.setPixelSize(11);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(QRectF(0.5, 0.5, 15, 15), Qt::AlignCenter, sign.m_Character);
    });
}
