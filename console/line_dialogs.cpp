#include "console/line_dialogs.h"

#include "base/file.h"
#include "base/text.h"
#include "console/answer_buttons.h"
#include "console/dialog_lines.h"
#include "console/file_answers.h"

#include <fmt/format.h>

#include <filesystem>

namespace tessaran::console {
namespace {

using host::Answer;
using host::DialogSession;
using host::FileRequest;
using host::Question;

} // namespace

// Boxes and dialogs have no prompt; a person who types sees one all the same.
std::string LineDialogs::typedPrompt(const std::string& name) const {
    return conversation_.interactive() ? "\n" + name + "> " : std::string{};
}

void LineDialogs::message(const std::string& text) {
    conversation_.transcript().line("(message) " + text);
}

// The answer from a line; nothing when none is meant for the question.
std::optional<Answer> LineDialogs::answered(const Question& question) {
    const std::string waiting = "(question) " + question.text;
    if (conversation_.interactive())
        conversation_.transcript().line(waiting);
    for (;;) {
        const Line* line =
            conversation_.next({waiting, typedPrompt(buttonNames(question.buttons))});
        if (line == nullptr)
            return cancelAnswer(question.buttons);
        if (line->kind == Line::Kind::escape) {
            conversation_.take();
            return cancelAnswer(question.buttons);
        }
        const bool typed = conversation_.interactive() && line->kind == Line::Kind::text;
        if (!line->is(Verb::answer) && !typed) {
            if (conversation_.interactive() && line->kind == Line::Kind::enter)
                conversation_.take();
            return std::nullopt;
        }
        const Line taken = conversation_.take();
        if (const auto answer = parseAnswer(taken.text, question.buttons))
            return answer;
        if (!conversation_.refuse(fmt::format("\"{}\" is none of the answers {}", taken.text,
                                              buttonNames(question.buttons))))
            return cancelAnswer(question.buttons);
    }
}

Answer LineDialogs::ask(const Question& question) {
    const auto given = answered(question);
    const Answer answer = given ? *given : defaultAnswer(question);
    conversation_.transcript().line(
        fmt::format("(question) {} -> {}", question.text, answerName(answer)));
    return answer;
}

std::optional<std::string> LineDialogs::chooseFile(const FileRequest& request) {
    const auto path = chosen(request);
    conversation_.transcript().line(
        fmt::format("(file) {} -> {}", request.title, path.value_or("cancel")));
    return path;
}

std::optional<std::string> LineDialogs::chosen(const FileRequest& request) {
    const std::string proposal = proposedPath(request);
    const std::string waiting = proposal.empty()
                                    ? "(file) " + request.title
                                    : fmt::format("(file) {} <{}>", request.title, proposal);
    if (conversation_.interactive())
        conversation_.transcript().line(waiting);
    bool proposalRefused = proposal.empty();
    for (;;) {
        const Line* line = conversation_.next({waiting, typedPrompt("File")});
        if (line == nullptr)
            return std::nullopt;
        bool again = false;
        std::optional<std::string> path;
        const bool typed = conversation_.interactive() && line->kind == Line::Kind::text;
        if (line->is(Verb::file) || line->kind == Line::Kind::escape || typed) {
            path = fromLine(request, again);
        } else {
            if (conversation_.interactive() && line->kind == Line::Kind::enter)
                conversation_.take();
            if (proposalRefused)
                return std::nullopt;
            proposalRefused = true;
            path = completedPath(request, proposal);
            if (request.mode == FileRequest::Mode::open && !base::fileExists(*path))
                return std::nullopt;
        }
        if (again)
            continue;
        if (!path || mayReplace(request, *path))
            return path;
    }
}

// The path of a ":file" line; `again` when the line was refused and another one may come.
std::optional<std::string> LineDialogs::fromLine(const FileRequest& request, bool& again) {
    const Line taken = conversation_.take();
    if (taken.kind == Line::Kind::escape || taken.text.empty())
        return std::nullopt;
    const std::string path = completedPath(request, taken.text);
    if (request.mode == FileRequest::Mode::save || base::fileExists(path))
        return path;
    again = conversation_.refuse(fmt::format("no file \"{}\"", path));
    return std::nullopt;
}

bool LineDialogs::mayReplace(const FileRequest& request, const std::string& path) {
    if (request.mode == FileRequest::Mode::open || !base::fileExists(path))
        return true;
    return ask(replaceQuestion(path)) == Answer::yes;
}

bool LineDialogs::run(DialogSession& session) {
    conversation_.transcript().line("(dialog) " + session.dialog().title());
    conversation_.push(session);
    session.open();
    while (!session.ended() && !conversation_.over())
        useLine(session, session.dialog().title());
    // Escape; a page that would not let go has no say any more.
    if (!session.ended())
        session.cancel();
    if (!session.ended())
        session.end(false);
    conversation_.pop();
    conversation_.transcript().line(fmt::format("(dialog) {} -> {}", session.dialog().title(),
                                                session.accepted() ? "ok" : "cancel"));
    return session.accepted();
}

void LineDialogs::useLine(DialogSession& session, const std::string& waiting) {
    if (conversation_.next({waiting, typedPrompt(waiting)}) == nullptr)
        return;
    const Line line = conversation_.take();
    switch (line.kind) {
    case Line::Kind::enter:
        return;
    case Line::Kind::escape:
        session.cancel();
        return;
    case Line::Kind::directive:
        if (const auto used = carryOut(line, session); !used)
            conversation_.refuse(used.error().text);
        return;
    default:
        conversation_.refuse(
            fmt::format("the dialog \"{}\" waits for a directive", session.dialog().title()));
    }
}

} // namespace tessaran::console
