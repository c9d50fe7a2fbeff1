#pragma once

// Directives of a dialog carried out on its session. An error's text says why a line could not be
// used; what the dialog itself refuses, it has told.

#include "base/result.h"
#include "console/line.h"
#include "host/dialog_model.h"

namespace tessaran::console {

base::Result<void> carryOut(const Line& directive, host::DialogSession& session);

} // namespace tessaran::console
