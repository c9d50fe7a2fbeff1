#pragma once

// What a session prints: command-line output as it stands, and the interpreter's own lines. Kept
// since the last command began, so that scripts can look at it.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::console {

class Transcript {
  public:
    using Sink = std::function<void(std::string_view)>;
    // A terminal shows what is typed itself: its sink gets no echo.
    enum class Echo { shown, hidden };
    void addSink(Sink sink, Echo echo = Echo::shown) { sinks_.push_back({std::move(sink), echo}); }

    // Command-line output, which carries its own leading line breaks.
    void print(std::string_view text);
    // A line of its own.
    void line(std::string_view text);
    // A line that was read: behind its prompt, or where there is none a line of its own.
    // `counted`: `stands` finds it.
    enum class Place { behindPrompt, ownLine };
    void echo(std::string_view text, Place place, bool counted = true);
    // Ends the last line.
    void finish();

    void beginCommand() { sinceCommand_.clear(); }
    bool stands(std::string_view text) const {
        return sinceCommand_.find(text) != std::string::npos;
    }

  private:
    void put(std::string_view text, bool counted = true, bool isEcho = false);

    struct Listener {
        Sink sink;
        Echo echo;
    };
    std::vector<Listener> sinks_;
    std::string sinceCommand_;
    bool inLine_ = false;    // something stands in the last line
    bool lineEnded_ = false; // nothing may follow in the last line
    char last_ = '\n';
};

} // namespace tessaran::console
