#pragma once

// Colours of what the drawing view shows beside the drawing.

#include "drawing/colour_table.h"

#include <QColor>

namespace tessaran::desktop {

struct ViewStyle {
    drawing::Rgb background;
    QColor cursor;
    QColor highlight;
    QColor rubber;
    QColor window;   // the selection box that takes what is wholly inside
    QColor crossing; // and what it touches
    QColor snap;

    static ViewStyle dark() {
        return {{33, 40, 48},         QColor(220, 225, 230), QColor(70, 160, 255),
                QColor(230, 200, 90), QColor(60, 120, 230),  QColor(60, 180, 90),
                QColor(90, 230, 120)};
    }
    static ViewStyle light() {
        return {{255, 255, 255},     QColor(60, 60, 60),   QColor(20, 110, 230),
                QColor(170, 110, 0), QColor(60, 120, 230), QColor(40, 150, 70),
                QColor(0, 140, 50)};
    }
};

} // namespace tessaran::desktop
