#include "desktop/manual_pages.h"

#include "desktop/message_boxes.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QUrl>

namespace tessaran::desktop {

QString manualIndex(const QString& programFolder) {
    for (const char* place : {"../share/doc/tessaran/manual", "../docs/manual"}) {
        const QString page = QDir(programFolder).filePath(QString(place) + "/index.html");
        if (QFile::exists(page))
            return QDir::cleanPath(page);
    }
    return {};
}

void openManual(QWidget* parent) {
    const QString page = manualIndex(QCoreApplication::applicationDirPath());
    if (page.isEmpty())
        showMessage(parent, "The manual's pages are not installed. \"./dev docs\" builds them.");
    else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(page)))
        showMessage(parent, "No browser could be started for " + page.toStdString());
}

} // namespace tessaran::desktop
