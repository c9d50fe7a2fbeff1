#pragma once

// Questions of every day: yes or no, picks, waits, and the file dialog.

#include "host/dialogs.h"
#include "host/prompts.h"

#include <optional>
#include <string>

namespace tessaran::host {

class Host;

// The message box's codes.
enum class YesNo { cancel = 2, yes = 6, no = 7 };

// Asks at the command line; Enter takes the default, Escape cancels.
YesNo askYesNo(Host& host, const std::string& text, YesNo byDefault);

// Nothing when the pick was cancelled or hit nothing.
std::optional<Pick> selectObject(Host& host, const std::string& message = "\nSelect object:");

// In the user's coordinate system.
std::optional<Point3> pickPoint(Host& host, const std::string& message = "\nPick a Point:");

inline constexpr const char* kContinueMessage = "\n <Enter> key to continue ...";
inline constexpr const char* kQuitMessage = "\n <Enter> key to Quit ...";

// Waits for Enter; false when the user cancelled instead.
bool waitForEnter(Host& host, const std::string& message = kContinueMessage);

// "Select Files (*.grd)|*.grd|All files(*.*)|*.*||"
std::string fileFilter(const std::string& extension);

// The host's file dialog. It starts in the folder that was used last in the session, at first in
// the drawing's, and remembers the folder of what was chosen.
std::optional<std::string> chooseFile(Host& host, FileRequest::Mode mode,
                                      const std::string& extension,
                                      const std::string& proposed = {},
                                      const std::string& title = "File Name");

// The same with a filter of one's own.
std::optional<std::string> chooseFile(Host& host, FileRequest request);

// The same, standing on a path that is known already, which brings its own folder.
std::optional<std::string> chooseFileAt(Host& host, FileRequest::Mode mode,
                                        const std::string& extension, const std::string& path,
                                        const std::string& title = "File Name");

} // namespace tessaran::host
