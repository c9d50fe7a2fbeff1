#pragma once

// A dialog as text: what ":show" prints. Values stand as ":set" takes them.

#include "host/dialog_model.h"

#include <string>
#include <vector>

namespace tessaran::console {

std::vector<std::string> showDialog(const host::DialogSession& session);

} // namespace tessaran::console
