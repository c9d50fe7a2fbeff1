#include "stress/result_reader.h"

#include "base/numbers.h"
#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <optional>

namespace tessaran::stress {
namespace {

constexpr int kHeaderLines = 3;
constexpr std::size_t kHeaderFields = 7;

// Lines of a text one after the other, without their ends.
class Lines {
  public:
    explicit Lines(std::string_view text) : rest_(text) {}

    // Nothing at the end of the text and for an empty line.
    std::optional<std::string_view> filled() {
        const std::optional<std::string_view> line = next();
        return line && !base::trimmed(*line).empty() ? line : std::nullopt;
    }
    bool skip(long long count) {
        for (; count > 0; --count)
            if (!next())
                return false;
        return true;
    }

  private:
    std::optional<std::string_view> next() {
        if (rest_.empty())
            return std::nullopt;
        const std::size_t end = rest_.find('\n');
        std::string_view line = rest_.substr(0, end);
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        return line;
    }

    std::string_view rest_;
};

// The n-th comma-separated field (from 0) of a line; empty when there are fewer.
std::string_view field(std::string_view line, int n) {
    for (; n > 0; --n) {
        const std::size_t comma = line.find(',');
        if (comma == std::string_view::npos)
            return {};
        line.remove_prefix(comma + 1);
    }
    return base::trimmed(line.substr(0, line.find(',')));
}

// The names behind the count that a header line begins with.
std::vector<std::string> namesOf(std::string_view line) {
    std::vector<std::string> names = base::split(line, ',');
    const int stated = base::leadingInt(names.front());
    names.erase(names.begin());
    for (std::string& name : names)
        name = std::string(base::trimmed(name));
    const auto count = static_cast<std::size_t>(std::max(stated, 0));
    if (names.size() > count)
        names.resize(count);
    return names;
}

} // namespace

base::Result<ResultHeader> parseResultHeader(std::string_view text) {
    Lines lines(text);
    const auto first = lines.filled();
    if (!first)
        return base::formatError("Read an empty line in the input file - CHR2-1");
    const std::vector<std::string> fields = base::split(*first, ',');
    if (fields.size() < kHeaderFields)
        return base::formatError(
            fmt::format("Only Read {:2} Fields from Header Buffer", fields.size()));
    ResultHeader header;
    header.steps = base::leadingInt(fields[0]);
    header.elements = base::leadingInt(fields[1]);
    header.width = base::leadingDouble(fields[2]);
    header.nX = base::leadingInt(fields[3]);
    header.nY = base::leadingInt(fields[4]);
    header.x = base::leadingDouble(fields[5]);
    header.y = base::leadingDouble(fields[6]);
    for (int n = 2; n <= kHeaderLines; ++n) {
        const auto line = lines.filled();
        if (!line)
            return base::formatError(
                fmt::format("Read an empty line in the input file - CHR2-{}", n));
        (n == 2 ? header.items : header.units) = namesOf(*line);
    }
    header.units.resize(header.items.size());
    // A step takes a line an element: counts that the text cannot hold are a lie.
    const long long lineCount = std::count(text.begin(), text.end(), '\n') + 1;
    const bool sensible = header.steps >= 1 && header.nX >= 1 && header.nY >= 1 &&
                          header.elements >= 1 && header.width > 0.0 &&
                          static_cast<long long>(header.nX) * header.nY == header.elements &&
                          header.elements <= lineCount && header.steps <= lineCount;
    if (!sensible)
        return base::formatError("The header of the result file is not correct");
    return header;
}

base::Result<void> gridOfItem(std::string_view text, const ResultHeader& header, int item, int step,
                              grid::myGrid& grid) {
    grid.setOrigin(header.x, header.y, 0.0);
    if (!grid.setupGrid(header.nX, header.nY, header.width, header.width, 0.0))
        return base::stateError("Error in setting up grid!");
    grid.setTitle(header.items[static_cast<std::size_t>(item) - 1]);
    Lines lines(text);
    lines.skip(static_cast<long long>(step - 1) * header.elements + kHeaderLines);
    for (int i = 0; i < header.nX; ++i) {
        for (int j = 0; j < header.nY; ++j) {
            const auto line = lines.filled();
            if (!line)
                return base::formatError(
                    fmt::format("Read an empty line in the input file for row {} col {}", j, i));
            grid.setValueText(i, j, field(*line, item - 1));
        }
    }
    return {};
}

} // namespace tessaran::stress
