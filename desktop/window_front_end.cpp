#include "desktop/window_front_end.h"

#include "desktop/qt_text.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QFileInfo>
#include <QMessageBox>
#include <QUrl>
#include <algorithm>

namespace tessaran::desktop {

WindowFrontEnd::WindowFrontEnd(console::HostState& state, console::Conversation& conversation,
                               const Parts& parts)
    : conversation_(conversation), parts_(parts),
      prompts_(state.workspace, conversation, parts.board, state.graphics),
      dialogs_(parts.window, &parts.recorder), watched_(dialogs_),
      progress_(new ProgressDialog(parts.busy, &parts.window)), workspace_(state.workspace) {
    conversation_.setInterrupted([this] { return interrupted(); });
    parts_.recorder.setRecorded([this] {
        conversation_.forgetBreak();
        parts_.busy.forget();
        broken_ = false;
    });
    parts_.meter.setPoll([this] { return conversation_.poll(); });
    progress_->setPoll([this] { return conversation_.poll(); });
}

// One poll: the window lives, and Escape ends what runs.
bool WindowFrontEnd::interrupted() {
    parts_.recorder.polled();
    parts_.busy.turn();
    if (parts_.busy.escaped() && !broken_) {
        broken_ = true;
        parts_.recorder.broken();
    }
    return parts_.busy.escaped();
}

void WindowFrontEnd::openLink(const std::string& target) {
    if (!QDesktopServices::openUrl(QUrl(qt(target))))
        conversation_.transcript().line("(link) " + target);
}

void WindowFrontEnd::refused(const std::string& why) {
    conversation_.transcript().line(why);
    conversation_.setGiven({});
    parts_.recorder.cancelLast();
}

console::FrontEnd::Unsaved WindowFrontEnd::unsavedChanges(const std::string& document) {
    QMessageBox box(QMessageBox::Warning, "Tessaran",
                    QString("Save the changes to %1?").arg(qt(document)),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &parts_.window);
    box.setObjectName("unsavedQuestion");
    box.setInformativeText("They will be lost if you do not save them.");
    box.setDefaultButton(QMessageBox::Save);
    const int pressed = box.exec();
    if (!savedFirst_.empty())
        recordQuitAgain();
    switch (pressed) {
    case QMessageBox::Save:
        recordSaving(document);
        parts_.lines.prepare({""}); // without a file: the file dialog
        return Unsaved::save;
    case QMessageBox::Discard:
        parts_.recorder.record(":answer yes");
        ++discarded_;
        return Unsaved::discard;
    default:
        parts_.recorder.record(":answer no");
        return Unsaved::keepOpen;
    }
}

// A script says no to the question, saves, and asks to close again.
void WindowFrontEnd::recordSaving(const std::string& document) {
    parts_.recorder.record(":answer no");
    if (workspace_.current().name != document) {
        parts_.recorder.record("DOCUMENT");
        parts_.recorder.record(document);
    }
    parts_.recorder.record("SAVE");
    savedFirst_ = document;
}

// Several drawings are asked about when the program is to end: after one that was saved the script
// comes back to the question here past those that were given up.
void WindowFrontEnd::recordQuitAgain() {
    parts_.recorder.record("QUIT");
    for (int k = 0; k < discarded_; ++k)
        parts_.recorder.record(":answer yes");
    savedFirst_.clear();
}

void WindowFrontEnd::settle() {
    const auto& documents = workspace_.documents();
    const bool closed = std::none_of(documents.begin(), documents.end(),
                                     [&](const auto& one) { return one->name == savedFirst_; });
    if (!savedFirst_.empty() && closed)
        parts_.recorder.record("CLOSE");
    savedFirst_.clear();
    discarded_ = 0;
}

bool WindowFrontEnd::wantsRecovered(const std::filesystem::path& copy) {
    const QString when =
        QLocale().toString(QFileInfo(qt(copy.string())).lastModified(), QLocale::ShortFormat);
    QMessageBox box(QMessageBox::Question, "Tessaran", "This drawing was not closed in good order.",
                    QMessageBox::NoButton, &parts_.window);
    box.setObjectName("recoveryQuestion");
    box.setInformativeText(
        QString("An autosaved copy of %1 is there. Do you want to go on with it?").arg(when));
    const auto* recover = box.addButton("&Recover", QMessageBox::AcceptRole);
    box.addButton("Open as &saved", QMessageBox::RejectRole);
    box.exec();
    return box.clickedButton() == recover;
}

} // namespace tessaran::desktop
