#pragma once

// The file dialog. Whether a file may be replaced is not asked here.

#include "host/dialogs.h"

#include <QString>
#include <QStringList>
#include <QWidget>
#include <optional>

namespace tessaran::desktop {

// "Text (*.a)|*.a|All (*.*)|*.*||" as Qt's filters: "Text (*.a)", "All (*)". Texts without their
// patterns get them; patterns are separated by ";".
QStringList fileFilters(const std::string& filter);

std::optional<std::string> runFileDialog(QWidget* parent, const host::FileRequest& request);

} // namespace tessaran::desktop
