#pragma once

// A person at a terminal: lines with editing, history and completion, and Ctrl-C. Where the input
// is no terminal, plain lines.

#include "console/completion.h"
#include "console/line_source.h"

#include <filesystem>
#include <functional>
#include <memory>

namespace tessaran::console {

class Terminal final : public LineSource {
  public:
    // `history`: its file, kept from run to run; empty: not kept.
    explicit Terminal(std::filesystem::path history);
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() override;

    // Asked when Tab is pressed, with the prompt that waits.
    using Context = std::function<CompletionContext(const std::string& prompt)>;
    void setContext(Context context);

    std::optional<std::string> read(const std::string& prompt) override;
    bool interactive() const override { return true; }
    std::string name() const override { return "terminal"; }

    // The transcript's sink: prints, but keeps the unfinished last line for the next prompt.
    void write(std::string_view text);

    // Whether Ctrl-C was pressed while a command ran; asking takes it back.
    static bool interrupted();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tessaran::console
