#include "desktop/desktop_session.h"

#include "console/drawing_files.h"
#include "console/plain_commands.h"
#include "desktop/qt_text.h"

#include <QMessageBox>

namespace tessaran::desktop {
namespace {

constexpr int kAutosaveLook = 15'000; // milliseconds; whether to save is the autosave's matter

// A copy of a drawing that never had a file: it comes back without one.
base::Result<std::unique_ptr<drawing::Database>> recovered(const std::filesystem::path& copy) {
    base::NoProgress progress;
    auto opened = console::openDrawing(copy, progress);
    if (!opened)
        return opened.error();
    opened->database->setPath({});
    opened->database->markUnsaved();
    return std::move(opened->database);
}

} // namespace

DesktopSession::DesktopSession(const Options& options)
    : options_(options), state_(options.profile), lines_(recorder_),
      conversation_(lines_, transcript_), window_({state_, lines_, board_, busy_, recorder_}),
      frontEnd_(state_, conversation_,
                {window_, window_.meter(), board_, busy_, recorder_, lines_}),
      host_(state_, frontEnd_), module_(host_), interpreter_(host_, conversation_),
      copies_(options.configuration), autosaves_(copies_.path(), options.autosave) {
    transcript_.addSink(
        [this](std::string_view text) { window_.commands().history().append(text); });
    host_.setQuit([this] {
        lines_.end();
        conversation_.end();
    });
    console::addPlainCommands(host_);
    window_.setInDialog([this] { return frontEnd_.inDialog(); });
    lines_.setWait([this] { window_.waitBegins(); }, [this] { window_.waitEnds(); });
    conversation_.setRefused(
        [this](const console::Conversation::Refusal& refusal) { refused(refusal); });
    interpreter_.setIdle([this] {
        frontEnd_.settle();
        window_.commandEnds();
        autosaves_.offer(state_.workspace);
    });
    QObject::connect(&autosaveTimer_, &QTimer::timeout, &window_, [this] {
        if (lines_.atCommandPrompt())
            autosaves_.offer(state_.workspace);
    });
    autosaveTimer_.setInterval(kAutosaveLook);
    window_.restore();
}

// What was refused is left out of the script of the session.
void DesktopSession::refused(const console::Conversation::Refusal& refusal) {
    using What = console::Conversation::Refusal::What;
    switch (refusal.what) {
    case What::line:
        recorder_.dropLast();
        break;
    case What::given:
        recorder_.shortenCommand(refusal.unused);
        break;
    case What::command:
        recorder_.dropCommand();
        break;
    }
    lines_.refused();
}

// Drawings that a crash left without a file.
void DesktopSession::offerAbandoned() {
    const auto copies = console::abandonedCopies(options_.configuration);
    if (copies.empty())
        return;
    QMessageBox box(QMessageBox::Question, "Tessaran", "Tessaran was not closed in good order.",
                    QMessageBox::NoButton, &window_);
    box.setObjectName("recoveryQuestion");
    box.setInformativeText(QString("%n drawing(s) that had no file can be recovered.")
                               .replace("%n", QString::number(copies.size())));
    const auto* recover = box.addButton("&Recover", QMessageBox::AcceptRole);
    box.addButton("&Discard", QMessageBox::DestructiveRole);
    box.exec();
    for (const auto& copy : copies) {
        if (box.clickedButton() == recover) {
            auto drawing = recovered(copy);
            if (!drawing) {
                transcript_.line(drawing.error().message());
                continue; // kept for another look
            }
            workspace().add(std::move(*drawing));
        }
        console::forgetCopy(copy);
    }
}

int DesktopSession::run(const std::string& drawing) {
    window_.show();
    offerAbandoned();
    autosaveTimer_.start();
    if (!drawing.empty())
        lines_.run({"OPEN", drawing});
    interpreter_.run();
    autosaveTimer_.stop();
    if (host_.endStatus())
        keepCopies();
    window_.keep();
    window_.hide();
    return host_.endStatus().value_or(0);
}

// The program has to end: what is unsaved comes back at its next start.
void DesktopSession::keepCopies() {
    const std::string told = autosaves_.keep(state_.workspace);
    if (!told.empty())
        frontEnd_.dialogs().message(told);
}

} // namespace tessaran::desktop
