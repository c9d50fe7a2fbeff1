#pragma once

// What is being asked at the moment, for whoever has to show it or may answer it: the command line,
// the drawing view, the menus.

#include "host/prompts.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::desktop {

struct PromptState {
    enum class Kind {
        command, // none of a command: the command prompt
        point,
        distance,
        angle,
        number,
        text,
        keyword,
        pick,
        selection,
    };
    Kind kind = Kind::command;
    std::string message{};
    std::vector<host::Keyword> keywords{};
    std::optional<host::Point3> base{}; // user coordinates
    host::RubberBand rubberBand = host::RubberBand::none;
    std::vector<host::Point2> dragged{}; // an outline relative to the cursor
    std::vector<host::Point3> trail{};   // the points given so far of a shape that selects
    // What the status area tells about a place; user coordinates.
    std::function<std::string(const host::Point3&)> statusAt{};

    // Whether a place of the drawing answers it.
    bool takesPoint() const {
        return kind == Kind::point || kind == Kind::distance || kind == Kind::angle;
    }
};

class PromptBoard {
  public:
    const PromptState& current() const { return stack_.empty() ? atCommand_ : stack_.back(); }
    bool atCommand() const { return stack_.empty(); }
    void push(PromptState state) { stack_.push_back(std::move(state)); }
    void pop() { stack_.pop_back(); }

  private:
    PromptState atCommand_;
    std::vector<PromptState> stack_;
};

// A prompt on the board as long as it waits.
class OnBoard {
  public:
    OnBoard(PromptBoard& board, PromptState state) : board_(board) {
        board_.push(std::move(state));
    }
    OnBoard(const OnBoard&) = delete;
    OnBoard& operator=(const OnBoard&) = delete;
    ~OnBoard() { board_.pop(); }

  private:
    PromptBoard& board_;
};

} // namespace tessaran::desktop
