#include "desktop/tool_icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace tessaran::desktop {
namespace {

constexpr int kSharpest = 3; // device pixels a pixel on the finest screens

// All in a square of 22 by 22.
void drawPage(QPainter& painter) {
    painter.drawPolygon(QPolygonF({{5, 2.5}, {13, 2.5}, {17, 6.5}, {17, 19.5}, {5, 19.5}}));
    painter.drawPolyline(QPolygonF({{13, 2.5}, {13, 6.5}, {17, 6.5}}));
}

void drawFolder(QPainter& painter) {
    painter.drawPolyline(QPolygonF({{3, 18}, {3, 4.5}, {8.5, 4.5}, {10.5, 7}, {17, 7}, {17, 10}}));
    painter.drawPolygon(QPolygonF({{3, 18}, {6, 10}, {20, 10}, {17, 18}}));
}

void drawDisk(QPainter& painter) {
    painter.drawPolygon(QPolygonF({{3, 3}, {16, 3}, {19, 6}, {19, 19}, {3, 19}}));
    painter.drawRect(QRectF(7, 3, 7, 5));
    painter.drawRect(QRectF(6, 12, 10, 7));
}

// To the left.
void drawTurn(QPainter& painter) {
    QPainterPath path(QPointF(4, 8.5));
    path.lineTo(13, 8.5);
    path.arcTo(QRectF(8, 8.5, 10, 10), 90, -180);
    path.lineTo(8, 18.5);
    painter.drawPath(path);
    painter.drawPolyline(QPolygonF({{8.5, 4}, {4, 8.5}, {8.5, 13}}));
}

void drawLens(QPainter& painter) {
    painter.drawEllipse(QPointF(9.5, 9.5), 7.0, 7.0);
    painter.setPen(QPen(painter.pen().color(), 2.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(15, 15), QPointF(19.5, 19.5));
    painter.setPen(QPen(painter.pen().color(), 1.4));
}

void drawInLens(QPainter& painter, ToolIcon icon) {
    drawLens(painter);
    if (icon == ToolIcon::zoomIn || icon == ToolIcon::zoomOut)
        painter.drawLine(QPointF(6, 9.5), QPointF(13, 9.5));
    if (icon == ToolIcon::zoomIn)
        painter.drawLine(QPointF(9.5, 6), QPointF(9.5, 13));
    if (icon == ToolIcon::zoomWindow)
        painter.drawRect(QRectF(6, 7, 7, 5));
    if (icon == ToolIcon::zoomPrevious)
        painter.drawPolyline(QPolygonF({{11, 6}, {7.5, 9.5}, {11, 13}}));
    if (icon == ToolIcon::zoomExtents)
        for (const double turn : {0.0, 90.0, 180.0, 270.0}) {
            painter.save();
            painter.translate(9.5, 9.5);
            painter.rotate(turn);
            painter.drawPolyline(QPolygonF({{1.2, -4}, {4, -4}, {4, -1.2}}));
            painter.restore();
        }
}

void draw(QPainter& painter, ToolIcon icon) {
    switch (icon) {
    case ToolIcon::newDrawing:
        return drawPage(painter);
    case ToolIcon::open:
        return drawFolder(painter);
    case ToolIcon::save:
        return drawDisk(painter);
    case ToolIcon::redo:
        painter.translate(kToolIconSize, 0);
        painter.scale(-1, 1);
        return drawTurn(painter);
    case ToolIcon::undo:
        return drawTurn(painter);
    default:
        return drawInLens(painter, icon);
    }
}

} // namespace

QIcon toolIcon(ToolIcon icon, const QColor& colour) {
    QIcon made;
    for (int ratio = 1; ratio <= kSharpest; ++ratio) {
        QPixmap pixmap(kToolIconSize * ratio, kToolIconSize * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        draw(painter, icon);
        painter.end();
        made.addPixmap(pixmap);
    }
    return made;
}

} // namespace tessaran::desktop
