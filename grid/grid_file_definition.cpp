// Grid definition files (".top", ".f").

#include "base/numbers.h"
#include "grid/grid_file.h"
#include "grid/grid_file_lines.h"

#include <charconv>
#include <system_error>

namespace tessaran::grid {
namespace {

using base::Result;

constexpr int kMostCellsOfDefinition = 2000; // in each direction
constexpr std::string_view kLineEnd = "\r\n";

// Numbers between commas, read the way scanf does: blanks before a number are skipped, a comma must
// follow it at once, and from the first number that is none on nothing more is read.
class HeaderScanner {
  public:
    explicit HeaderScanner(std::string_view line) : rest_(line) {}

    template <class Number>
    void read(Number& number) {
        skipBlanks();
        if (rest_.starts_with('+'))
            rest_.remove_prefix(1);
        const auto [end, code] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
        failed_ = failed_ || code != std::errc{};
        if (failed_) {
            number = Number{};
            return;
        }
        rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
        // A missing comma ends the reading before the next number.
        failed_ = !rest_.starts_with(',');
        if (!failed_)
            rest_.remove_prefix(1);
    }

  private:
    void skipBlanks() {
        const std::size_t at = rest_.find_first_not_of(" \t\r\v\f");
        rest_.remove_prefix(at == std::string_view::npos ? rest_.size() : at);
    }

    std::string_view rest_;
    bool failed_ = false;
};

base::Error tooFewValues() {
    return base::formatError("the file ends before its last value");
}

} // namespace

Result<DefinitionHeader> readDefinitionHeader(std::string_view text) {
    TextLines lines(text);
    const std::optional<std::string_view> first = lines.next();
    if (!first)
        return base::formatError("Could not read from input file.", {}, 1);
    DefinitionHeader header;
    HeaderScanner scan(*first);
    const bool newForm = first->starts_with("1,");
    if (newForm) {
        int form = 0;
        scan.read(form);
        lines.next(); // title
        lines.next(); // units
    }
    scan.read(header.count);
    scan.read(header.cellSize);
    scan.read(header.nX);
    scan.read(header.nY);
    scan.read(header.originX);
    scan.read(header.originY);
    header.valuesAt = lines.position();
    if (header.nX == 0 || header.nY == 0 ||
        !(static_cast<double>(header.cellSize) >= base::kSmallestCellWidth) ||
        header.count < header.nX)
        return base::formatError(" bad grid definition -- 2!", {}, 1);
    if (header.nX > kMostCellsOfDefinition || header.nY > kMostCellsOfDefinition)
        return base::formatError("bad grid definition -- 3!", {}, 1);
    return header;
}

bool setupFromHeader(const DefinitionHeader& header, myGrid& grid) {
    const double width = header.cellSize;
    if (!grid.setupGrid(header.nX, header.nY, width, width, 0.0))
        return false;
    grid.setOrigin(header.originX, header.originY, grid.origin().z);
    return true;
}

Result<void> readDefinitionValues(std::string_view text, const DefinitionHeader& header,
                                  myGrid& grid) {
    TextLines lines(text, header.valuesAt);
    for (int i = 0; i < grid.nX(); ++i)
        for (int j = 0; j < grid.nY(); ++j) {
            const std::optional<std::string_view> line = lines.next();
            if (!line)
                return tooFewValues();
            grid.setValue(i, j, base::leadingDouble(*line));
        }
    return {};
}

Result<void> readDefinitionText(std::string_view text, bool loadValues, myGrid& grid) {
    const Result<DefinitionHeader> header = readDefinitionHeader(text);
    if (!header)
        return header.error();
    if (!setupFromHeader(*header, grid))
        return base::formatError("the grid cannot be set up", {}, 1);
    return loadValues ? readDefinitionValues(text, *header, grid) : Result<void>{};
}

Result<void> writeDefinitionText(const myGrid& grid, const TextSink& sink) {
    if (!grid.isDefined())
        return base::stateError("Grid is not defined!");
    const long long count = static_cast<long long>(grid.nX()) * grid.nY();
    std::string out = "1,";
    out += std::to_string(count);
    out += ',';
    base::appendFixed6(out, grid.cellWidthX());
    for (const int cells : {grid.nX(), grid.nY()}) {
        out += ',';
        out += std::to_string(cells);
    }
    for (const double number : {grid.origin().x, grid.origin().y, grid.getMean()}) {
        out += ',';
        base::appendFixed6(out, number);
    }
    out += kLineEnd;
    out += "1,";
    out += grid.title().empty() ? "NO TITLE" : onOneLine(grid.title());
    out += kLineEnd;
    out += "1,Inches";
    for (int i = 0; i < grid.nX(); ++i) {
        for (int j = 0; j < grid.nY(); ++j) {
            out += kLineEnd;
            base::appendFixed6(out, grid.getValue(i, j));
        }
        sink(out);
        out.clear();
    }
    return {};
}

} // namespace tessaran::grid
