#include "cli/options.h"
#include "cli/subcommands.h"
#include "console/autosaves.h"
#include "console/drawing_files.h"
#include "console/profile_file.h"
#include "console/recovery.h"
#include "console/session.h"
#include "console/terminal.h"
#include "host/dialog_model.h"

#include <fmt/format.h>

#include <cstdio>
#include <unistd.h>

namespace tessaran::cli {
namespace {

std::string withoutMarks(const std::string& label) {
    std::string out;
    for (const char c : label)
        if (c != '&' && c != '<' && (c != ' ' || !out.empty()))
            out += c;
    while (!out.empty() && (out.back() == ':' || out.back() == ' '))
        out.pop_back();
    return out;
}

void addLabels(const host::DialogSession& dialog, std::vector<std::string>& labels) {
    for (const auto& page : dialog.pages()) {
        labels.push_back(page.page->title());
        for (const auto& control : page.controls) {
            labels.push_back(withoutMarks(control->label));
            for (const std::string& option : control->options)
                labels.push_back(withoutMarks(option));
        }
    }
    std::erase(labels, std::string());
}

// What Tab can offer: labels in a dialog, commands at the command prompt, else keywords.
console::CompletionContext contextOf(console::Session& session, const std::string& waiting) {
    console::CompletionContext context;
    context.keywords = console::keywordsOf(waiting);
    if (const host::DialogSession* dialog = session.conversation().dialog())
        addLabels(*dialog, context.labels);
    else if (waiting.empty())
        for (const console::Command& command : session.state().commands.commands())
            context.commands.push_back(command.localName);
    return context;
}

std::filesystem::path historyPath() {
    const std::filesystem::path folder = console::configurationFolder();
    return folder.empty() ? folder : folder / "history";
}

int openFirst(console::Session& session, console::Transcript& transcript,
              const std::string& drawing) {
    auto opened = console::openDrawing(drawing, session.host().meter());
    if (!opened) {
        fmt::print(stderr, "{}\n", opened.error().message());
        return kWrongUsage;
    }
    transcript.print("\n" + console::describe(opened->report));
    session.workspace().add(std::move(opened->database));
    return kDone;
}

} // namespace

int runConsole(const ConsoleOptions& options) {
    console::Terminal terminal(historyPath());
    console::Transcript transcript;
    transcript.addSink([&](std::string_view text) { terminal.write(text); },
                       console::Transcript::Echo::hidden);
    console::Session session(
        terminal, transcript,
        {.profile = console::profilePath(), .showProgress = isatty(STDERR_FILENO) != 0});
    session.conversation().setInterrupted(console::Terminal::interrupted);
    terminal.setContext([&](const std::string& waiting) { return contextOf(session, waiting); });
    if (!options.drawing.empty())
        if (const int status = openFirst(session, transcript, options.drawing); status != kDone)
            return status;
    const console::RecoveryFolder copies(console::configurationFolder());
    console::Autosaves autosaves(copies.path());
    session.interpreter().setIdle([&] { autosaves.offer(session.workspace()); });
    session.interpreter().run();
    transcript.finish();
    const auto status = session.host().endStatus();
    if (status)
        fmt::print(stderr, "{}", autosaves.keep(session.workspace()));
    return status.value_or(kDone);
}

} // namespace tessaran::cli
