#include "desktop/dialog_host.h"

#include "base/file.h"
#include "console/directives.h"
#include "console/file_answers.h"
#include "desktop/dialog_window.h"
#include "desktop/file_dialogs.h"
#include "desktop/message_boxes.h"

#include <algorithm>

namespace tessaran::desktop {

using host::Answer;
using host::FileRequest;

void DialogHost::record(const std::string& line) {
    if (recorder_ != nullptr)
        recorder_->record(line);
}

// What boxes stand over: the dialog in front, where one is to be seen.
QWidget* DialogHost::topmost() const {
    const auto shown = std::find_if(open_.rbegin(), open_.rend(),
                                    [](const DialogWindow* window) { return window->isVisible(); });
    return shown != open_.rend() ? *shown : &parent_;
}

void DialogHost::message(const std::string& text) {
    showMessage(topmost(), text);
}

Answer DialogHost::ask(const host::Question& question) {
    const Answer answer = askQuestion(topmost(), question);
    record(console::answerDirective(answer));
    return answer;
}

std::optional<std::string> DialogHost::chooseFile(const FileRequest& request) {
    for (;;) {
        const std::optional<std::string> path = runFileDialog(topmost(), request);
        record(console::fileDirective(path.value_or("")));
        if (!path || request.mode == FileRequest::Mode::open || !base::fileExists(*path) ||
            ask(console::replaceQuestion(*path)) == Answer::yes)
            return path;
    }
}

// A dialog is seen while neither it nor one that it opened wants to be hidden.
void DialogHost::showOpen() {
    bool seen = true;
    std::for_each(open_.rbegin(), open_.rend(), [&](DialogWindow* window) {
        seen = seen && window->session().visible();
        window->setShown(seen);
    });
}

bool DialogHost::run(host::DialogSession& session) {
    DialogWindow window(session, recorder_, topmost());
    window.setOnVisible([this] { showOpen(); });
    open_.push_back(&window);
    struct Closing { // also when an action threw
        std::vector<DialogWindow*>& open;
        ~Closing() { open.pop_back(); }
    };
    {
        const Closing closing{open_};
        window.run();
    }
    return session.accepted();
}

} // namespace tessaran::desktop
