#include "stress/result_reader.h"

#include "base/line_reader.h"
#include "base/numbers.h"
#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

namespace tessaran::stress {
namespace {

constexpr int kHeaderLines = 3;
constexpr std::size_t kHeaderFields = 7;

// Nothing at the end of the text and for an empty line.
std::optional<std::string_view> filledLine(base::TextLines& lines) {
    const std::optional<std::string_view> line = lines.next();
    return line && !base::trimmed(*line).empty() ? line : std::nullopt;
}

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

base::Result<ResultHeader> parseResultHeader(std::string_view text, std::size_t fileSize) {
    base::TextLines lines(text);
    const auto first = filledLine(lines);
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
        const auto line = filledLine(lines);
        if (!line)
            return base::formatError(
                fmt::format("Read an empty line in the input file - CHR2-{}", n));
        (n == 2 ? header.items : header.units) = namesOf(*line);
    }
    header.units.resize(header.items.size());
    // A step takes a line an element: counts that the file cannot hold are a lie.
    const auto most = static_cast<long long>(fileSize);
    const bool sensible = header.steps >= 1 && header.nX >= 1 && header.nY >= 1 &&
                          header.elements >= 1 && header.width > 0.0 &&
                          static_cast<long long>(header.nX) * header.nY == header.elements &&
                          header.elements <= most && header.steps <= most;
    if (!sensible)
        return base::formatError("The header of the result file is not correct");
    return header;
}

base::Result<ResultHeader> readResultHeader(const std::filesystem::path& file) {
    base::Result<base::LineReader> reader = base::LineReader::open(file);
    if (!reader)
        return reader.error();
    std::string text;
    std::string_view line;
    for (int n = 0; n < kHeaderLines && reader->next(line); ++n)
        text.append(line).push_back('\n');
    if (!reader->status())
        return reader->status().error();
    return parseResultHeader(text, reader->fileSize());
}

base::Result<void> readItem(const std::filesystem::path& file, const ResultHeader& header, int item,
                            int step, grid::myGrid& grid) {
    base::Result<base::LineReader> reader = base::LineReader::open(file);
    if (!reader)
        return reader.error();
    grid.setOrigin(header.x, header.y, 0.0);
    if (!grid.setupGrid(header.nX, header.nY, header.width, header.width, 0.0))
        return base::stateError("Error in setting up grid!");
    grid.setTitle(header.items[static_cast<std::size_t>(item) - 1]);
    reader->skip(static_cast<long long>(step - 1) * header.elements + kHeaderLines);
    std::string_view line;
    for (int i = 0; i < header.nX; ++i) {
        for (int j = 0; j < header.nY; ++j) {
            const bool read = reader->next(line);
            if (!reader->status())
                return reader->status().error();
            if (!read || base::trimmed(line).empty())
                return base::formatError(
                    fmt::format("Read an empty line in the input file for row {} col {}", j, i));
            grid.setValueText(i, j, field(line, item - 1));
        }
    }
    return {};
}

} // namespace tessaran::stress
