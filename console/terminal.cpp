#include "console/terminal.h"

#include <fmt/format.h>
#include <histedit.h>

#include <csignal>
#include <cstdio>
#include <iostream>
#include <unistd.h>

namespace tessaran::console {
namespace {

constexpr int kHistoryLines = 1000;
constexpr const char* kEscape = "^C";

volatile std::sig_atomic_t theInterrupt = 0; // set by the signal, read by the polls

void onInterrupt(int /*signal*/) {
    theInterrupt = 1;
}

} // namespace

struct Terminal::State {
    std::filesystem::path historyFile;
    EditLine* edit = nullptr; // null: the input is no terminal
    History* history = nullptr;
    Context context;
    std::string unfinished;    // the output's last line, not printed yet
    std::string waiting;       // the prompt's message
    bool lineBreakDue = false; // the terminal has moved on where the transcript has not
    bool escaped = false;

    ~State() {
        if (history != nullptr)
            history_end(history);
        if (edit != nullptr)
            el_end(edit);
    }

    static State& of(EditLine* edit) {
        void* data = nullptr;
        el_get(edit, EL_CLIENTDATA, &data);
        return *static_cast<State*>(data);
    }
    static char* prompt(EditLine* edit) { return of(edit).unfinished.data(); }
    static unsigned char escape(EditLine* edit, int /*key*/) {
        of(edit).escaped = true;
        return CC_EOF;
    }
    static unsigned char completeLine(EditLine* edit, int key);

    void open();
    void remember(const char* typed);
};

void Terminal::State::open() {
    if (isatty(STDIN_FILENO) == 0)
        return;
    edit = el_init("tessaran", stdin, stdout, stderr);
    if (edit == nullptr)
        return;
    el_set(edit, EL_CLIENTDATA, this);
    el_set(edit, EL_PROMPT, &State::prompt);
    el_set(edit, EL_EDITOR, "emacs");
    el_set(edit, EL_ADDFN, "tessaran-escape", "Ends what is showing", &State::escape);
    el_set(edit, EL_ADDFN, "tessaran-complete", "Completes", &State::completeLine);
    el_set(edit, EL_BIND, "^C", "tessaran-escape", nullptr);
    el_set(edit, EL_BIND, "^I", "tessaran-complete", nullptr);
    // Ctrl-C is a key while a line is edited, and a signal while a command runs.
    el_set(edit, EL_SETTY, "-d", "-isig", nullptr);
    history = history_init();
    HistEvent event;
    ::history(history, &event, H_SETSIZE, kHistoryLines);
    ::history(history, &event, H_SETUNIQUE, 1);
    el_set(edit, EL_HIST, ::history, history);
    if (!historyFile.empty())
        ::history(history, &event, H_LOAD, historyFile.c_str());
}

void Terminal::State::remember(const char* typed) {
    HistEvent event;
    ::history(history, &event, H_ENTER, typed);
    if (historyFile.empty())
        return;
    std::error_code ignored; // a history that cannot be kept is not worth a word
    std::filesystem::create_directories(historyFile.parent_path(), ignored);
    ::history(history, &event, H_SAVE, historyFile.c_str());
}

unsigned char Terminal::State::completeLine(EditLine* edit, int /*key*/) {
    State& state = of(edit);
    const LineInfo* info = el_line(edit);
    const std::string_view typed(info->buffer,
                                 static_cast<std::size_t>(info->cursor - info->buffer));
    const CompletionContext context =
        state.context ? state.context(state.waiting) : CompletionContext{};
    const Completion completion = complete(typed, context);
    if (completion.candidates.empty())
        return CC_REFRESH_BEEP;
    const std::string common = commonBeginning(completion.candidates);
    const std::size_t present = typed.size() - completion.from;
    if (completion.candidates.size() == 1 || common.size() > present) {
        el_deletestr(edit, static_cast<int>(present));
        el_insertstr(edit, common.c_str());
        return CC_REFRESH;
    }
    fmt::print("\n");
    for (const std::string& candidate : completion.candidates)
        fmt::print("{}\n", candidate);
    std::fflush(stdout);
    return CC_REDISPLAY;
}

Terminal::Terminal(std::filesystem::path history) : state_(std::make_unique<State>()) {
    state_->historyFile = std::move(history);
    state_->open();
    std::signal(SIGINT, onInterrupt);
}

Terminal::~Terminal() {
    std::signal(SIGINT, SIG_DFL);
}

void Terminal::setContext(Context context) {
    state_->context = std::move(context);
}

bool Terminal::interrupted() {
    const bool pressed = theInterrupt != 0;
    theInterrupt = 0;
    return pressed;
}

std::optional<std::string> Terminal::read(const std::string& prompt) {
    State& state = *state_;
    state.waiting = prompt;
    if (!state.unfinished.empty() && !state.unfinished.ends_with(' '))
        state.unfinished += ' ';
    interrupted();
    if (state.edit == nullptr) {
        fmt::print("{}", state.unfinished);
        std::fflush(stdout);
        state.unfinished.clear();
        std::string line;
        state.lineBreakDue = true;
        return std::getline(std::cin, line) ? std::optional(line) : std::nullopt;
    }
    state.escaped = false;
    int count = 0;
    const char* typed = el_gets(state.edit, &count);
    state.unfinished.clear();
    state.lineBreakDue = true;
    if (state.escaped) {
        fmt::print("\n");
        return kEscape;
    }
    if (typed == nullptr || count <= 0)
        return std::nullopt;
    std::string line(typed, static_cast<std::size_t>(count));
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.pop_back();
    if (!line.empty())
        state.remember(line.c_str());
    return line;
}

void Terminal::write(std::string_view text) {
    State& state = *state_;
    if (state.lineBreakDue && text.starts_with('\n'))
        text.remove_prefix(1);
    if (text.empty())
        return;
    state.lineBreakDue = false;
    state.unfinished += text;
    const std::size_t end = state.unfinished.rfind('\n');
    if (end == std::string::npos)
        return;
    fmt::print("{}", state.unfinished.substr(0, end + 1));
    std::fflush(stdout);
    state.unfinished.erase(0, end + 1);
}

} // namespace tessaran::console
