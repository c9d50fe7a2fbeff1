#pragma once

// The buttons of question boxes by name, and what an unattended run presses.

#include "host/dialogs.h"

#include <optional>
#include <string>
#include <string_view>

namespace tessaran::console {

std::string buttonNames(host::Buttons buttons);
std::string answerName(host::Answer answer);

// The button of that name, any capitals, or by its first letter. "ok" presses Yes where there is
// no OK, "yes" OK; "cancel" No where there is no Cancel, "no" Cancel.
std::optional<host::Answer> parseAnswer(std::string_view text, host::Buttons buttons);

// OK or Yes; where something could be lost, No or Cancel.
host::Answer defaultAnswer(const host::Question& question);
// Escape: Cancel, or No.
host::Answer cancelAnswer(host::Buttons buttons);

} // namespace tessaran::console
