#include "grid/grid_file.h"

#include "base/file.h"
#include "base/numbers.h"
#include "base/text.h"
#include "grid/grid_file_lines.h"
#include "grid/grid_file_values.h"

#include <array>
#include <cmath>

namespace tessaran::grid {
namespace {

using base::Error;
using base::Progress;
using base::Result;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF"; // editors put it before UTF-8
constexpr std::string_view kLineEnd = "\r\n";

std::size_t textStart(std::string_view text) {
    return text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
}

double averageOf(double a, double b, double c, double d) {
    for (const double value : {a, b, c, d})
        if (!base::hasValue(value))
            return base::kNoValue;
    return 0.25 * (a + b + c + d);
}

// Node values to cell values, in place: each step reads only what was not replaced yet.
void averageNodes(myGrid& grid) {
    const auto columns = static_cast<std::size_t>(grid.nX());
    for (int j = 0; j < grid.nY(); ++j) {
        const std::span<double> low = grid.row(j);
        const std::span<const double> high = grid.row(j + 1);
        for (std::size_t i = 0; i < columns; ++i)
            low[i] = averageOf(low[i + 1], low[i], high[i + 1], high[i]);
    }
}

// Title and marker behind the values; whether the file is the system's own.
bool readTail(std::string_view text, std::size_t at, myGrid& grid) {
    TextLines lines(text, at);
    const std::optional<std::string_view> title = lines.next();
    if (title)
        grid.setTitle(std::string(*title));
    const std::optional<std::string_view> marker = lines.next();
    return (marker && base::equalsIgnoringCase(*marker, kGridFileMarker)) ||
           (title && base::equalsIgnoringCase(*title, kGridFileMarker));
}

std::string headerText(const myGrid& grid) {
    const double x = grid.origin().x;
    const double y = grid.origin().y;
    std::string out;
    for (const double extent :
         {y, x, grid.nY() * grid.cellWidthY() + y, grid.nX() * grid.cellWidthX() + x}) {
        base::appendFixed6(out, extent);
        out += kLineEnd;
    }
    for (const int count : {grid.nX(), grid.nY()}) {
        out += std::to_string(count);
        out += kLineEnd;
    }
    return out;
}

} // namespace

Result<GridHeader> readGridHeader(std::string_view text) {
    static constexpr std::array<std::string_view, 6> kOrdinals{"first",  "second", "third",
                                                               "fourth", "fifth",  "sixth"};
    TextLines lines(text, textStart(text));
    std::array<std::string_view, 6> read;
    for (std::size_t k = 0; k < read.size(); ++k) {
        const std::optional<std::string_view> line = lines.next();
        if (!line)
            return base::formatError("Error in reading " + std::string(kOrdinals[k]) + " line!", {},
                                     static_cast<long>(k) + 1);
        read[k] = *line;
    }
    GridHeader header{base::leadingDouble(read[0]),
                      base::leadingDouble(read[1]),
                      base::leadingDouble(read[2]),
                      base::leadingDouble(read[3]),
                      base::leadingInt(read[4]),
                      base::leadingInt(read[5]),
                      lines.position()};
    if (header.nX < 1 || header.nY < 1)
        return base::formatError("Error in calculating number of cells!", {},
                                 header.nX < 1 ? 5 : 6);
    return header;
}

Result<void> setupFromHeader(const GridHeader& header, std::size_t textSize, myGrid& grid) {
    const Error refused = base::formatError("Error in setting up grid!");
    const std::size_t values =
        (static_cast<std::size_t>(header.nX) + 1) * (static_cast<std::size_t>(header.nY) + 1);
    // A value takes a byte at least, its line end.
    if (values > kValuesWithoutFile && values > textSize)
        return refused;
    if (!std::isfinite(header.xMin) || !std::isfinite(header.yMin))
        return refused;
    if (!grid.setupGrid(header.nX, header.nY, (header.xMax - header.xMin) / header.nX,
                        (header.yMax - header.yMin) / header.nY, 0.0))
        return refused;
    grid.setOrigin(header.xMin, header.yMin, grid.origin().z);
    return {};
}

Result<void> readGridValues(std::string_view text, const GridHeader& header, myGrid& grid,
                            Progress& progress) {
    const base::ProgressRun meter(progress, "Loading grid ...", 0, grid.nY());
    const Result<std::size_t> tail = readValueLines(
        text, header.valuesAt, grid.values(), static_cast<std::size_t>(grid.nX()) + 1, progress);
    if (!tail)
        return tail.error();
    if (!readTail(text, *tail, grid))
        averageNodes(grid);
    return {};
}

Result<void> readGridText(std::string_view text, bool loadValues, myGrid& grid,
                          Progress& progress) {
    const Result<GridHeader> header = readGridHeader(text);
    if (!header)
        return header.error();
    if (const Result<void> setup = setupFromHeader(*header, text.size(), grid); !setup)
        return setup.error();
    return loadValues ? readGridValues(text, *header, grid, progress) : Result<void>{};
}

Result<void> readGridFile(const std::string& fileName, bool loadValues, myGrid& grid,
                          Progress& progress) {
    const Result<std::string> text = base::readFile(fileName);
    if (!text)
        return text.error();
    Result<void> read = readGridText(*text, loadValues, grid, progress);
    if (read)
        return read;
    Error error = read.error();
    error.file = fileName;
    return error;
}

Result<void> writeGridText(const myGrid& grid, const TextSink& sink, Progress& progress) {
    if (!grid.isDefined())
        return base::stateError("Grid is not defined!");
    sink(headerText(grid));
    const Result<void> values =
        writeValueLines(grid.values(), static_cast<std::size_t>(grid.nX()) + 1, sink, progress);
    if (!values)
        return values;
    sink(onOneLine(grid.title()));
    sink(kLineEnd);
    sink(kGridFileMarker);
    return {};
}

Result<void> writeGridFile(const myGrid& grid, const std::string& fileName, Progress& progress) {
    if (!grid.isDefined())
        return base::stateError("Grid is not defined!");
    Result<base::FileWriter> writer = base::FileWriter::create(fileName);
    if (!writer)
        return writer.error();
    const Result<void> written = writeGridText(
        grid, [&](std::string_view part) { writer->write(part); }, progress);
    return written ? writer->commit() : written;
}

GridFileKind gridFileKind(std::string_view fileName) {
    const std::string name = base::lowered(fileName);
    const auto holds = [&](std::string_view ending) {
        return name.find(ending, 1) != std::string::npos;
    };
    if (holds(".grd"))
        return GridFileKind::grid;
    return holds(".top") || holds(".f") ? GridFileKind::definition : GridFileKind::unknown;
}

} // namespace tessaran::grid
