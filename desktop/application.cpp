#include "desktop/application.h"

#include "console/profile_file.h"
#include "desktop/desktop_session.h"

#include <QApplication>
#include <QIcon>

namespace tessaran::desktop {

int runWindow(const std::string& drawing) {
    int argc = 1;
    char name[] = "tessaran";
    char* argv[] = {name, nullptr};
    QApplication application(argc, argv);
    QApplication::setApplicationName("tessaran");
    QApplication::setApplicationDisplayName("Tessaran");
    QApplication::setDesktopFileName("tessaran");
    QApplication::setWindowIcon(QIcon::fromTheme("tessaran"));
    QApplication::setQuitOnLastWindowClosed(false);
    DesktopSession session(
        {.profile = console::profilePath(), .configuration = console::configurationFolder()});
    return session.run(drawing);
}

} // namespace tessaran::desktop
