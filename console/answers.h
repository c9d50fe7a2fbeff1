#pragma once

// Typed answers as values: pure functions, used by the script interpreter, the terminal and the
// window's command line alike. An error's text says why the answer is refused.

#include "base/result.h"
#include "host/prompts.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::console {

using host::EntityId;
using host::Point3;

// "x,y", "x,y,z", "distance<angle" (degrees), and each relative to `from` behind "@"; "@" alone is
// `from` itself. Numbers must be finite.
base::Result<Point3> parsePoint(std::string_view text, const Point3& from);

// Whether the answer is written as a point, well or badly ("1,x" is one, "12" is none).
bool isWrittenAsPoint(std::string_view text);

base::Result<double> parseReal(std::string_view text, const host::NumberPrompt& prompt);
base::Result<int> parseInteger(std::string_view text, const host::NumberPrompt& prompt);
// Degrees in, radians out.
base::Result<double> parseAngle(std::string_view text);

// "#1F": an entity's handle in hexadecimal.
std::optional<EntityId> parseHandle(std::string_view word);
std::string handleText(EntityId id);

// One object to pick: its handle, a place, or both. "#0 x,y" is a place where nothing lies, however
// large the pick tolerance is.
struct PickAnswer {
    EntityId entity;
    std::optional<Point3> at;
    bool onNothing = false;
};
base::Result<PickAnswer> parsePick(std::string_view text, const Point3& from);

// One step of a selection. Points are in the user's coordinate system.
struct SelectionStep {
    enum class Kind {
        all,
        last,
        previous,
        points,
        handles,
        window,
        crossing,
        fence,
        windowPolygon,
        crossingPolygon,
        remove,
        add,
    };
    Kind kind = Kind::points;
    std::vector<Point3> points{};
    std::vector<EntityId> handles{};

    // How many points the kind needs; 0 where it takes none.
    int fewestPoints() const;
    int mostPoints() const;
};
// A shape without points is complete but for them: the caller asks.
base::Result<SelectionStep> parseSelection(std::string_view text, const Point3& from);

// The words of a line, separated by blanks.
std::vector<std::string> words(std::string_view text);

} // namespace tessaran::console
