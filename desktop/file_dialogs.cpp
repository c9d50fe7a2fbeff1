#include "desktop/file_dialogs.h"

#include "console/file_answers.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace tessaran::desktop {
namespace {

using host::FileRequest;

// The text before its patterns in brackets, and the patterns as Qt writes them. Extensions are
// matched in any capitals by Qt's dialog on its own.
QString oneFilter(const QString& text, const QString& patterns) {
    QStringList names = patterns.split(';', Qt::SkipEmptyParts);
    for (QString& name : names) {
        name = name.trimmed();
        if (name == "*.*")
            name = "*";
    }
    const QString title = text.left(text.indexOf('(')).trimmed();
    return QString("%1 (%2)").arg(title, names.join(' '));
}

void startAt(QFileDialog& dialog, const FileRequest& request) {
    const QFileInfo proposed(QString::fromStdString(console::proposedPath(request)));
    if (!request.proposed.empty()) {
        dialog.setDirectory(proposed.absolutePath());
        dialog.selectFile(proposed.fileName());
    } else if (!request.folder.empty()) {
        dialog.setDirectory(QString::fromStdString(request.folder));
    }
}

} // namespace

QStringList fileFilters(const std::string& filter) {
    const QStringList parts = QString::fromStdString(filter).split('|');
    QStringList out;
    for (qsizetype k = 0; k + 1 < parts.size(); k += 2)
        if (!parts[k].isEmpty() && !parts[k + 1].isEmpty())
            out.append(oneFilter(parts[k], parts[k + 1]));
    return out;
}

std::optional<std::string> runFileDialog(QWidget* parent, const FileRequest& request) {
    const bool saves = request.mode == FileRequest::Mode::save;
    QFileDialog dialog(parent, QString::fromStdString(request.title));
    dialog.setObjectName("file");
    dialog.setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(saves ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (const QStringList filters = fileFilters(request.filter); !filters.isEmpty())
        dialog.setNameFilters(filters);
    startAt(dialog, request);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    const std::string chosen = dialog.selectedFiles().constFirst().toStdString();
    return console::completedPath(request, chosen);
}

} // namespace tessaran::desktop
