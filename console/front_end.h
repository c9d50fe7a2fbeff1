#pragma once

// What shows and asks: the line interpreter here, or a window. The rest of the host is the same
// under both.

#include "host/host.h"

#include <filesystem>

namespace tessaran::console {

class FrontEnd {
  public:
    virtual ~FrontEnd() = default;
    virtual host::Prompts& prompts() = 0;
    virtual host::Dialogs& dialogs() = 0;
    virtual base::Progress& meter() = 0;
    virtual host::ProgressView& progressView() = 0;
    virtual void print(std::string_view text) = 0;
    virtual bool userBreak() = 0;
    virtual void openLink(const std::string& target) = 0;

    // The answer given last could not be used after all (a file that could not be opened): an error
    // of a script's line, told to a person.
    virtual void refused(const std::string& why) = 0;
    // What to do with the unsaved changes of a drawing that is about to be closed.
    enum class Unsaved { discard, save, keepOpen };
    virtual Unsaved unsavedChanges(const std::string& document) = 0;
    // A drawing was opened that a crash left an autosaved copy of: whether to take that instead.
    virtual bool wantsRecovered(const std::filesystem::path& copy) = 0;
    // Whether the line that comes next is a command's name, so that a prompt which is rarely wanted
    // need not be shown.
    virtual bool commandFollows() = 0;
};

} // namespace tessaran::console
