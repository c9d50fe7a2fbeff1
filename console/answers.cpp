#include "console/answers.h"

#include "base/numbers.h"
#include "base/text.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>

namespace tessaran::console {
namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;

base::Error notAPoint(std::string_view text) {
    return base::formatError(fmt::format("\"{}\" is not a point", text));
}

std::optional<double> finite(std::string_view text) {
    const std::optional<double> value = base::wholeDouble(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

// "distance<angle" as an offset.
std::optional<Point3> parsePolar(std::string_view text) {
    const std::size_t mark = text.find('<');
    if (mark == std::string_view::npos)
        return std::nullopt;
    const auto distance = finite(text.substr(0, mark));
    const auto angle = finite(text.substr(mark + 1));
    if (!distance || !angle)
        return std::nullopt;
    const double a = *angle * kRadiansPerDegree;
    return Point3{*distance * std::cos(a), *distance * std::sin(a), 0.0};
}

std::optional<Point3> parseCartesian(std::string_view text) {
    const std::vector<std::string> parts = base::split(text, ',');
    if (parts.size() != 2 && parts.size() != 3)
        return std::nullopt;
    double values[3] = {0.0, 0.0, 0.0};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto value = finite(parts[i]);
        if (!value)
            return std::nullopt;
        values[i] = *value;
    }
    return Point3{values[0], values[1], values[2]};
}

base::Result<void> checkSign(double value, const host::NumberPrompt& prompt) {
    if (value < 0.0 && !prompt.allowNegative)
        return base::rangeError(prompt.allowZero ? "Value must be positive."
                                                 : "Value must be positive and nonzero.");
    if (value == 0.0 && !prompt.allowZero)
        return base::rangeError(prompt.allowNegative ? "Value must be nonzero."
                                                     : "Value must be positive and nonzero.");
    return {};
}

const std::vector<std::pair<host::Keyword, SelectionStep::Kind>>& selectionKeywords() {
    using Kind = SelectionStep::Kind;
    static const std::vector<std::pair<host::Keyword, Kind>> table = {
        {{"All", "ALL"}, Kind::all},
        {{"Last", "L"}, Kind::last},
        {{"Previous", "P"}, Kind::previous},
        {{"Window", "W"}, Kind::window},
        {{"Crossing", "C"}, Kind::crossing},
        {{"Fence", "F"}, Kind::fence},
        {{"WPolygon", "WP"}, Kind::windowPolygon},
        {{"CPolygon", "CP"}, Kind::crossingPolygon},
        {{"Remove", "R"}, Kind::remove},
        {{"Add", "A"}, Kind::add},
    };
    return table;
}

std::optional<SelectionStep::Kind> selectionKind(std::string_view word) {
    std::vector<host::Keyword> keywords;
    for (const auto& [keyword, kind] : selectionKeywords())
        keywords.push_back(keyword);
    const auto name = host::matchKeyword(keywords, word);
    if (!name)
        return std::nullopt;
    for (const auto& [keyword, kind] : selectionKeywords())
        if (keyword.name == *name)
            return kind;
    return std::nullopt;
}

// Each relative point counts from the one before it.
base::Result<std::vector<Point3>> parsePoints(const std::vector<std::string>& parts,
                                              std::size_t first, Point3 from) {
    std::vector<Point3> points;
    for (std::size_t i = first; i < parts.size(); ++i) {
        const auto point = parsePoint(parts[i], from);
        if (!point)
            return point.error();
        points.push_back(*point);
        from = *point;
    }
    return points;
}

base::Result<std::vector<EntityId>> parseHandles(const std::vector<std::string>& parts) {
    std::vector<EntityId> handles;
    for (const std::string& part : parts) {
        const auto handle = parseHandle(part);
        if (!handle)
            return base::formatError(fmt::format("\"{}\" is not a handle", part));
        handles.push_back(*handle);
    }
    return handles;
}

base::Result<SelectionStep> checkedCount(SelectionStep step) {
    const int count = static_cast<int>(step.points.size());
    if (step.fewestPoints() == 0 && count > 0)
        return base::formatError("this way of selecting takes no points");
    if (count > 0 && (count < step.fewestPoints() || count > step.mostPoints()))
        return base::formatError(fmt::format("{} points do not make this selection", count));
    return step;
}

} // namespace

base::Result<Point3> parsePoint(std::string_view text, const Point3& from) {
    std::string_view rest = base::trimmed(text);
    const bool relative = rest.starts_with('@');
    if (relative)
        rest.remove_prefix(1);
    if (relative && rest.empty())
        return from;
    std::optional<Point3> point = parseCartesian(rest);
    if (!point)
        point = parsePolar(rest);
    if (!point)
        return notAPoint(text);
    return relative ? from + *point : *point;
}

bool isWrittenAsPoint(std::string_view text) {
    return text.find_first_of(",@<") != std::string_view::npos;
}

base::Result<double> parseReal(std::string_view text, const host::NumberPrompt& prompt) {
    const auto value = finite(text);
    if (!value)
        return base::formatError("Requires numeric value.");
    if (const auto sign = checkSign(*value, prompt); !sign)
        return sign.error();
    return *value;
}

base::Result<int> parseInteger(std::string_view text, const host::NumberPrompt& prompt) {
    const auto value = base::wholeInt(text);
    if (!value || *value < std::numeric_limits<int>::min() ||
        *value > std::numeric_limits<int>::max())
        return base::formatError("Requires an integer value.");
    if (const auto sign = checkSign(static_cast<double>(*value), prompt); !sign)
        return sign.error();
    return static_cast<int>(*value);
}

base::Result<double> parseAngle(std::string_view text) {
    const auto value = finite(text);
    if (!value)
        return base::formatError("Requires valid angle or point.");
    return *value * kRadiansPerDegree;
}

std::optional<EntityId> parseHandle(std::string_view word) {
    if (!word.starts_with('#'))
        return std::nullopt;
    word.remove_prefix(1);
    EntityId id;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), id.value, 16);
    if (error != std::errc() || end != word.data() + word.size() || id.value == 0)
        return std::nullopt;
    return id;
}

std::string handleText(EntityId id) {
    return fmt::format("#{:X}", id.value);
}

base::Result<PickAnswer> parsePick(std::string_view text, const Point3& from) {
    const std::vector<std::string> parts = words(text);
    PickAnswer pick;
    std::size_t used = 0;
    if (!parts.empty())
        if (const auto handle = parseHandle(parts[0])) {
            pick.entity = *handle;
            used = 1;
        }
    if (used == 0 && parts.size() == 2 && parts[0] == "#0") {
        pick.onNothing = true;
        used = 1;
    }
    if (used == 0 && !isWrittenAsPoint(text))
        return base::formatError(fmt::format("\"{}\" is neither a point nor a handle", text));
    if (parts.size() > used + 1)
        return base::formatError("one point is enough for a pick");
    if (parts.size() == used + 1) {
        const auto at = parsePoint(parts[used], from);
        if (!at)
            return at.error();
        pick.at = *at;
    }
    return pick;
}

int SelectionStep::fewestPoints() const {
    switch (kind) {
    case Kind::points:
        return 1;
    case Kind::window:
    case Kind::crossing:
    case Kind::fence:
        return 2;
    case Kind::windowPolygon:
    case Kind::crossingPolygon:
        return 3;
    default:
        return 0;
    }
}

int SelectionStep::mostPoints() const {
    if (kind == Kind::window || kind == Kind::crossing)
        return 2;
    return fewestPoints() == 0 ? 0 : std::numeric_limits<int>::max();
}

base::Result<SelectionStep> parseSelection(std::string_view text, const Point3& from) {
    const std::vector<std::string> parts = words(text);
    SelectionStep step;
    if (parts.empty())
        return base::formatError("nothing to select by");
    if (parts[0].starts_with('#')) {
        auto handles = parseHandles(parts);
        if (!handles)
            return handles.error();
        step.kind = SelectionStep::Kind::handles;
        step.handles = std::move(*handles);
        return step;
    }
    const auto kind = selectionKind(parts[0]);
    if (!kind && !isWrittenAsPoint(parts[0]))
        return base::formatError(fmt::format(
            "\"{}\" selects nothing: all, last, previous, points, handles, window, crossing, "
            "fence, wpolygon, cpolygon, remove, add",
            text));
    step.kind = kind.value_or(SelectionStep::Kind::points);
    auto points = parsePoints(parts, kind ? 1 : 0, from);
    if (!points)
        return points.error();
    step.points = std::move(*points);
    return checkedCount(std::move(step));
}

std::vector<std::string> words(std::string_view text) {
    std::vector<std::string> out;
    for (const std::string& part : base::split(text, ' '))
        if (const std::string_view word = base::trimmed(part); !word.empty())
            out.emplace_back(word);
    return out;
}

} // namespace tessaran::console
