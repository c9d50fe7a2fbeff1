// The window; only of a build with Qt.

#ifdef TESSARAN_DESKTOP

#include "cli/subcommands.h"
#include "desktop/application.h"

namespace tessaran::cli {

int openWindow(const WindowOptions& options) {
    return desktop::runWindow(options.drawing);
}

} // namespace tessaran::cli

#endif
