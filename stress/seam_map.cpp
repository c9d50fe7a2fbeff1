#include "stress/seam_map.h"

#include "base/file.h"
#include "base/text.h"
#include "base/tolerance.h"
#include "stress/field_scanner.h"

#include <fmt/format.h>

namespace tessaran::stress {
namespace {

base::Error wrong(const std::string& text, long line) {
    return base::formatError(text, {}, line);
}

bool readHeader(FieldScanner& scan, SeamMap& map) {
    const auto nX = scan.integer();
    const auto nY = nX && scan.comma() ? scan.integer() : std::nullopt;
    const auto x = nY && scan.comma() ? scan.real() : std::nullopt;
    const auto y = x && scan.comma() ? scan.real() : std::nullopt;
    if (!y || *nX < 1 || *nY < 1)
        return false;
    map.nX = *nX;
    map.nY = *nY;
    map.x = *x;
    map.y = *y;
    scan.line();
    return true;
}

const std::string& codeOf(double value, const SeamCodes& codes) {
    if (value > base::kTolerance)
        return codes.pillar;
    return value < -base::kTolerance ? codes.gob : codes.entry;
}

} // namespace

base::Result<SeamMap> parseSeamMap(std::string_view text) {
    FieldScanner scan(text);
    SeamMap map;
    if (!readHeader(scan, map))
        return wrong("a seam code map begins with columns, rows and the origin's X and Y", 1);
    const auto nX = static_cast<std::size_t>(map.nX);
    const auto nY = static_cast<std::size_t>(map.nY);
    if (nX > scan.left() / nY)
        return wrong(fmt::format("the file is too short for {} by {} codes", nX, nY), 1);
    map.codes.resize(nX * nY);
    for (std::size_t j = nY; j-- > 0;) {
        const long number = scan.lineNumber();
        const std::string_view row = base::trimmed(scan.line().value_or(""));
        if (row.size() != nX)
            return wrong(fmt::format("a row of {} codes of one character is expected here, not {}",
                                     nX, row.size()),
                         number);
        for (std::size_t i = 0; i < nX; ++i)
            map.codes[i * nY + j] = row[i];
    }
    return map;
}

base::Result<SeamMap> readSeamMap(const std::filesystem::path& path) {
    const base::Result<std::string> text = base::readFile(path);
    if (!text)
        return text.error();
    base::Result<SeamMap> map = parseSeamMap(*text);
    if (map)
        return map;
    base::Error error = map.error();
    error.file = path.string();
    return error;
}

base::Result<void> writeSeamMap(const std::filesystem::path& path, const grid::myGrid& grid,
                                const SeamCodes& codes) {
    base::Result<base::FileWriter> writer = base::FileWriter::create(path);
    if (!writer)
        return writer.error();
    const geometry::Point2 origin = grid.nodePoint(0, 0);
    writer->write(fmt::format("{},{},{:f},{:f}\n", grid.nX(), grid.nY(), origin.x, origin.y));
    std::string line;
    for (int j = grid.nY() - 1; j >= 0; --j) {
        line.clear();
        for (int i = 0; i < grid.nX(); ++i)
            line += codeOf(grid.getValue(i, j), codes);
        line += '\n';
        writer->write(line);
    }
    return writer->commit();
}

} // namespace tessaran::stress
