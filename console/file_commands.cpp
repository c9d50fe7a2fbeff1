#include "base/text.h"
#include "console/drawing_files.h"
#include "console/plain_commands.h"
#include "drawing/autosave.h"

#include <fmt/format.h>

#include <filesystem>

namespace tessaran::console {
namespace {

// A drawing's file: typed, or chosen in the file dialog where Enter is the answer.
struct DrawingFile {
    std::string path;
    bool chosen = false; // the file dialog has asked whether to replace it
};

std::optional<DrawingFile> askDrawingFile(ConsoleHost& host, const std::string& message,
                                          host::FileRequest::Mode mode) {
    const auto typed = host.prompts().getString(message, true);
    if (typed.status == host::PromptStatus::cancel)
        return std::nullopt;
    if (typed.ok() && !typed.value.empty())
        return DrawingFile{typed.value};
    host::FileRequest request;
    request.mode = mode;
    request.title = mode == host::FileRequest::Mode::open ? "Open Drawing" : "Save Drawing As";
    request.extension = "dxf";
    request.filter = "Drawings (*.dxf)|*.dxf|All files(*.*)|*.*||";
    const auto chosen = host.dialogs().chooseFile(request);
    return chosen ? std::optional(DrawingFile{*chosen, true}) : std::nullopt;
}

bool agreesTo(ConsoleHost& host, const std::string& question) {
    return host.dialogs().ask({.text = question,
                               .buttons = host::Buttons::yesNo,
                               .stake = host::Question::Stake::guarded}) == host::Answer::yes;
}

void save(ConsoleHost& host, const std::filesystem::path& path) {
    Workspace& workspace = host.workspace();
    const bool moved = workspace.database().path() != path;
    const auto saved = saveDrawing(workspace.database(), path);
    if (!saved) {
        host.frontEnd().refused(saved.error().message());
        return;
    }
    if (!saved->upgraded.empty())
        host.print("\n" + saved->upgraded);
    if (moved)
        workspace.rename();
    host.print(fmt::format("\nSaved {}", path.string()));
}

// Puts the autosaved copy in the place of what was opened.
void recover(ConsoleHost& host, const std::filesystem::path& copy, OpenedDrawing& opened) {
    auto recovered = openDrawing(copy, host.meter());
    if (!recovered)
        return host.frontEnd().refused(recovered.error().message());
    recovered->database->setPath(opened.database->path());
    recovered->database->markUnsaved();
    opened = std::move(*recovered);
}

// Whether the drawing may go: unchanged, its changes given up, or saved now.
bool mayGo(ConsoleHost& host, const Document& document) {
    if (!document.database->modified())
        return true;
    switch (host.frontEnd().unsavedChanges(document.name)) {
    case FrontEnd::Unsaved::discard:
        return true;
    case FrontEnd::Unsaved::save:
        host.workspace().switchTo(document.name);
        saveCommand(host);
        return !document.database->modified();
    default:
        return false;
    }
}

} // namespace

void newDrawing(ConsoleHost& host) {
    host.print(fmt::format("\n{}", host.workspace().addEmpty().name));
}

void openCommand(ConsoleHost& host) {
    const auto file =
        askDrawingFile(host, "\nEnter name of drawing to open:", host::FileRequest::Mode::open);
    if (!file)
        return;
    auto opened = openDrawing(file->path, host.meter());
    if (!opened) {
        host.frontEnd().refused(opened.error().message());
        return;
    }
    if (const std::string told = describe(opened->report); !told.empty())
        host.print("\n" + told);
    if (const auto copy = drawing::leftBehind(file->path);
        copy && host.frontEnd().wantsRecovered(*copy))
        recover(host, *copy, *opened);
    const Document& document = host.workspace().add(std::move(opened->database));
    host.print(
        fmt::format("\nOpened {}: {} objects", document.name, document.database->entityCount()));
}

void saveCommand(ConsoleHost& host) {
    const std::filesystem::path path = host.workspace().database().path();
    if (path.empty())
        saveAsCommand(host);
    else
        save(host, path);
}

void saveAsCommand(ConsoleHost& host) {
    const auto file = askDrawingFile(host, "\nSave drawing as:", host::FileRequest::Mode::save);
    if (!file)
        return;
    const std::filesystem::path path = base::withEnding(file->path, ".dxf");
    std::error_code ignored;
    const bool own = std::filesystem::equivalent(path, host.workspace().database().path(), ignored);
    if (!file->chosen && !own && std::filesystem::exists(path, ignored) &&
        !agreesTo(host,
                  fmt::format("{} already exists.\nDo you want to replace it?", path.string())))
        return;
    save(host, path);
}

void closeCommand(ConsoleHost& host) {
    if (!mayGo(host, host.workspace().current()))
        return;
    host.state().graphics.clear();
    host.workspace().closeCurrent();
}

void documentCommand(ConsoleHost& host) {
    Workspace& workspace = host.workspace();
    for (const auto& document : workspace.documents())
        host.print(fmt::format("\n{} {}", document.get() == &workspace.current() ? "*" : " ",
                               document->name));
    const auto name = host.prompts().getString("\nDrawing to switch to:", true);
    if (name.ok() && !workspace.switchTo(name.value))
        host.frontEnd().refused(fmt::format("no open drawing \"{}\"", name.value));
}

bool mayQuit(ConsoleHost& host) {
    for (const auto& document : host.workspace().documents())
        if (!mayGo(host, *document))
            return false;
    return true;
}

} // namespace tessaran::console
