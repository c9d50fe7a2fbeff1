#pragma once

// The user's manual: pages beside the installed program, or beside a build.

#include <QString>
#include <QWidget>

namespace tessaran::desktop {

// The page that the manual begins with; empty where it is neither installed nor built.
QString manualIndex(const QString& programFolder);

// Opens the manual in the system's browser, or says why it cannot.
void openManual(QWidget* parent);

} // namespace tessaran::desktop
