#pragma once

// The port to the command line's questions. Messages are given as they are printed, with their
// leading "\n". Points are in the user's current coordinate system (host/coordinates.h converts).

#include "host/drawing.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::host {

// Keywords in the host's form: "Yes No" or "WINDOW,W ALL,A" (global keyword, abbreviation; blanks
// between keywords). Without an abbreviation the capitals of a keyword are one ("Move" by "M"), and
// any longer beginning is taken too.
struct Keyword {
    std::string name;
    std::string abbreviation;
};
std::vector<Keyword> parseKeywords(std::string_view form);

// The name of the keyword that `answer` (any capitals) stands for.
std::optional<std::string> matchKeyword(const std::vector<Keyword>& keywords,
                                        std::string_view answer);

enum class PromptStatus {
    ok,
    none,    // Enter
    keyword, // `keyword` holds its name
    missed,  // a pick that hit nothing
    cancel,  // Escape
};

template <class T>
struct PromptResult {
    PromptStatus status = PromptStatus::cancel;
    T value{};
    std::string keyword;

    bool ok() const { return status == PromptStatus::ok; }
};

// What moves with the cursor while a point is asked for.
enum class RubberBand { none, line, box };

struct PointPrompt {
    std::string message;
    std::string keywords;         // host's form; empty: none
    std::optional<Point3> base{}; // for relative input, rubber band, second point of a distance
    RubberBand rubberBand = RubberBand::none;
    std::vector<Point2> dragged{}; // an outline dragged with the cursor, relative to it
    // What the status area shows while the cursor is at a point; empty: nothing of the prompt's.
    std::function<std::string(const Point3& cursor)> statusAt{};
};

struct NumberPrompt {
    std::string message;
    std::string keywords{};
    std::optional<Point3> base{};
    bool allowZero = true;
    bool allowNegative = true;
};

struct PickPrompt {
    std::string message;
    std::string keywords{};
    bool otherWords = false; // words that are no keyword are given back like keywords
};

struct Pick {
    EntityId entity;
    Point3 at;
};

struct SelectionPrompt {
    std::string message = "\nSelect objects:";
    std::string removeMessage = "\nRemove objects:";
    std::string keywords{};
    SelectionFilter filter{};
    std::vector<EntityId> selected{}; // already in the selection; the user goes on from there
};

class Prompts {
  public:
    virtual ~Prompts() = default;

    virtual PromptResult<Point3> getPoint(const PointPrompt& prompt) = 0;
    // The opposite corner of a box that starts at prompt.base.
    virtual PromptResult<Point3> getCorner(const PointPrompt& prompt) = 0;
    virtual PromptResult<double> getDistance(const NumberPrompt& prompt) = 0;
    // Radians, from the user's X axis.
    virtual PromptResult<double> getOrientation(const NumberPrompt& prompt) = 0;
    virtual PromptResult<double> getReal(const NumberPrompt& prompt) = 0;
    virtual PromptResult<int> getInteger(const NumberPrompt& prompt) = 0;
    virtual PromptResult<std::string> getString(const std::string& message, bool allowBlanks) = 0;
    virtual PromptResult<std::string> getKeyword(const std::string& message,
                                                 const std::string& keywords) = 0;
    virtual PromptResult<Pick> pickEntity(const PickPrompt& prompt) = 0;
    // Repeats until Enter; an empty selection gives status none. With a keyword comes what was
    // selected before it.
    virtual PromptResult<std::vector<EntityId>> getSelection(const SelectionPrompt& prompt) = 0;
};

} // namespace tessaran::host
