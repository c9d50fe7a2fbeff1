#pragma once

// Message and question boxes.

#include "host/dialogs.h"

#include <QWidget>

namespace tessaran::desktop {

void showMessage(QWidget* parent, const std::string& text);

// Escape and the window's close button are the answer that gives up.
host::Answer askQuestion(QWidget* parent, const host::Question& question);

} // namespace tessaran::desktop
