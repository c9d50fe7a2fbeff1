#include "console/conversation.h"

#include "base/numbers.h"
#include "base/text.h"
#include "console/show_dialog.h"

#include <fmt/format.h>

namespace tessaran::console {
namespace {

// A command that asks this often without a line to answer it never comes to an end by Enter.
constexpr int kMostAutomaticAnswers = 1000;

} // namespace

const Line* Conversation::next(const Waiting& waiting) {
    prompt_ = waiting.prompted ? std::string{} : waiting.prompt;
    place_ = waiting.prompt.empty() ? Transcript::Place::ownLine : Transcript::Place::behindPrompt;
    while (!over() && fill(waiting)) {
        if (next_->kind == Line::Kind::comment || next_->answersNothing()) {
            const Line line = *std::exchange(next_, std::nullopt);
            current_ = line.number;
            carryOut(line, waiting.text);
            prompt_ = waiting.prompt;
            continue;
        }
        if (next_->kind != Line::Kind::badDirective)
            return &*next_;
        take();
        refuse("unknown directive");
    }
    return nullptr;
}

// Reads the line that comes next; false at the end of the lines.
bool Conversation::fill(const Waiting& waiting) {
    if (next_)
        return true;
    if (interactive()) {
        transcript_.print(prompt_);
        prompt_.clear();
    }
    std::optional<std::string> raw = source_.read(waiting.text);
    if (!raw) {
        ended_ = true;
        return false;
    }
    ++number_;
    next_ = parseLine(std::move(*raw), number_);
    return true;
}

bool Conversation::carryOut(const Line& line, const std::string& waiting) {
    // What was read is no output: looking for a text must not find itself.
    echo(line, false);
    if (line.is(Verb::show))
        show(waiting);
    else if (line.is(Verb::expect))
        expect(line, waiting);
    else if (line.is(Verb::breakAt))
        breakAt(line);
    return !over();
}

void Conversation::show(const std::string& waiting) {
    if (!sessions_.empty())
        for (const std::string& text : showDialog(*sessions_.back()))
            transcript_.line(text);
    else if (waiting.empty())
        refuse("no dialog is showing");
    else
        transcript_.line(std::string(base::trimmed(waiting)));
}

void Conversation::expect(const Line& line, const std::string& waiting) {
    const bool stands =
        transcript_.stands(line.text) || waiting.find(line.text) != std::string::npos;
    if (line.text.empty())
        refuse(":expect needs a text");
    else if (!stands)
        refuse(fmt::format("expected \"{}\" since the last command began", line.text));
}

void Conversation::breakAt(const Line& line) {
    const std::optional<long long> count = base::wholeInt(line.text);
    if (!count || *count < 1)
        refuse(":break needs a number from 1");
    else
        pollsLeft_ = static_cast<long>(*count);
}

Line Conversation::take() {
    Line line = *std::exchange(next_, std::nullopt);
    current_ = line.number;
    givenFrom_.reset();
    automatic_ = 0;
    enters_ = 0;
    broken_ = false;
    echo(line, true);
    return line;
}

bool Conversation::refuse(const std::string& why) {
    if (givenFrom_)
        return refuse(why, {Refusal::What::given, *givenFrom_});
    return refuse(why, {Refusal::What::line});
}

void Conversation::refuseLeftOver() {
    if (given_.empty())
        return;
    const std::string left(base::trimmed(std::exchange(given_, {})));
    refuse(fmt::format("\"{}\" was not asked for", left), {Refusal::What::given, left});
}

void Conversation::refuseCommand(const std::string& why) {
    given_.clear();
    refuse(why, {Refusal::What::command});
}

bool Conversation::refuse(const std::string& why, const Refusal& refusal) {
    if (interactive()) {
        transcript_.line(why);
        given_.clear();
        givenFrom_.reset();
        if (refused_)
            refused_(refusal);
        return true;
    }
    if (!failure_)
        failure_ = fmt::format("{}:{}: {}", source_.name(), current_, why);
    return false;
}

void Conversation::echo(const Line& line, bool counted) {
    transcript_.print(prompt_);
    prompt_.clear();
    transcript_.echo(line.raw, place_, counted);
}

std::optional<Conversation::Answer> Conversation::givenAnswer(bool oneWord) {
    const std::string_view rest = base::trimmed(given_);
    if (rest.empty())
        return std::nullopt;
    const std::size_t blank = oneWord ? rest.find(' ') : std::string_view::npos;
    Answer answer{Answer::Kind::text, std::string(rest.substr(0, blank))};
    givenFrom_ = std::string(rest);
    given_ = blank == std::string_view::npos ? std::string{} : std::string(rest.substr(blank));
    transcript_.echo(answer.text, Transcript::Place::behindPrompt);
    return answer;
}

// The line that comes next is a directive, which answers no prompt: Enter, until the prompt has
// refused it twice, then Escape.
Conversation::Answer Conversation::automaticAnswer(const std::string& message) {
    const std::uint64_t activity = activity_ ? activity_() : 0;
    const bool refused = enters_ > 0 && entered_ == message && enteredActivity_ == activity;
    enters_ = refused ? enters_ + 1 : 1;
    entered_ = message;
    enteredActivity_ = activity;
    const bool escape = enters_ > 2 || ++automatic_ > kMostAutomaticAnswers;
    transcript_.echo("", Transcript::Place::behindPrompt);
    return {escape ? Answer::Kind::escape : Answer::Kind::enter};
}

Conversation::Answer Conversation::ask(const std::string& message, bool oneWord) {
    transcript_.print(message);
    if (over())
        return {};
    if (auto given = givenAnswer(oneWord))
        return *given;
    const Line* line = next({message, message, true});
    if (line == nullptr)
        return {};
    if (line->kind == Line::Kind::directive)
        return automaticAnswer(message);
    const Line taken = take();
    if (taken.kind == Line::Kind::escape)
        return {};
    if (taken.kind == Line::Kind::enter)
        return {Answer::Kind::enter};
    return {Answer::Kind::text, taken.text};
}

bool Conversation::poll() {
    if (pollsLeft_ > 0 && --pollsLeft_ == 0)
        broken_ = true;
    if (interrupted_ && interrupted_())
        broken_ = true;
    return broken_;
}

void Conversation::beginCommand() {
    broken_ = false;
    enters_ = 0;
    automatic_ = 0;
    transcript_.beginCommand();
}

} // namespace tessaran::console
