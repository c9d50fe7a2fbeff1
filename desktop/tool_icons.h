#pragma once

// The tool bar's pictures, drawn in the text's colour so that they suit light and dark themes.

#include <QColor>
#include <QIcon>

namespace tessaran::desktop {

enum class ToolIcon {
    newDrawing,
    open,
    save,
    undo,
    redo,
    zoomExtents,
    zoomWindow,
    zoomPrevious,
    zoomIn,
    zoomOut,
};

inline constexpr int kToolIconSize = 22; // pixels

QIcon toolIcon(ToolIcon icon, const QColor& colour);

} // namespace tessaran::desktop
