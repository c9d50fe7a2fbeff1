#pragma once

// Choosing one of the host's 256 colours.

#include <QIcon>
#include <QString>
#include <optional>

class QWidget;

namespace tessaran::desktop {

QIcon colourIcon(int colour);
QString colourName(int colour); // "Red", "BYLAYER", "174"

// Shows the table; nothing when it is left. `byLayer`: that may be chosen too.
std::optional<int> chooseColour(QWidget* parent, int present, bool byLayer);

} // namespace tessaran::desktop
