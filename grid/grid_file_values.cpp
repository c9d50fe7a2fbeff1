#include "grid/grid_file_values.h"

#include "base/fast_numbers.h"
#include "base/numbers.h"
#include "base/parallel.h"
#include "base/tolerance.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace tessaran::grid {
namespace {

using base::Progress;
using base::Result;

// Pieces are small enough to stay in the cache between counting and reading, batches large enough
// to keep the cores busy and small enough for a lively progress meter.
constexpr std::size_t kPieceBytes = std::size_t{1} << 17;
constexpr std::size_t kPiecesPerBatch = 32;
constexpr std::size_t kPieceValues = std::size_t{1} << 14;

constexpr std::size_t kHeaderLines = 6; // before the values

// Whole lines of the text, and the place of their values.
struct Piece {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t lines = 0;
    std::size_t firstValue = 0;
    std::size_t stop = 0; // where reading stopped
};

std::size_t afterLineEnd(std::string_view text, std::size_t at) {
    const std::size_t end = text.find('\n', at);
    return end == std::string_view::npos ? text.size() : end + 1;
}

std::vector<Piece> cutPieces(std::string_view text, std::size_t at) {
    std::vector<Piece> out;
    while (at < text.size() && out.size() < kPiecesPerBatch) {
        const std::size_t end = afterLineEnd(text, std::min(at + kPieceBytes, text.size()));
        out.push_back({at, end, 0, 0, at});
        at = end;
    }
    return out;
}

void countLines(std::string_view text, Piece& piece) {
    const std::string_view part = text.substr(piece.begin, piece.end - piece.begin);
    piece.lines = static_cast<std::size_t>(std::ranges::count(part, '\n'));
    if (!part.ends_with('\n'))
        ++piece.lines;
}

double valueOfLine(std::string_view line) {
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    if (line.size() == 1 && (line[0] == 'N' || line[0] == 'n'))
        return base::kNoValue;
    return base::leadingDouble(line);
}

// The start of the line after a number that ends at `p`, where the line ends there; else null.
const char* ifLineEnds(const char* p, const char* end) {
    if (p != nullptr && p != end && *p == '\r')
        ++p;
    return p != nullptr && p != end && *p == '\n' ? p + 1 : nullptr;
}

void readPiece(std::string_view text, Piece& piece, std::span<double> values) {
    const char* p = text.data() + piece.begin;
    const char* const end = text.data() + piece.end;
    const std::size_t count = std::min(piece.lines, values.size() - piece.firstValue);
    for (double& value : values.subspan(piece.firstValue, count)) {
        const char* next = ifLineEnds(base::readPlainDouble(p, end, value), end);
        if (next == nullptr) {
            const auto* lineEnd =
                static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
            next = lineEnd == nullptr ? end : lineEnd + 1;
            value = valueOfLine({p, lineEnd == nullptr ? end : lineEnd});
        }
        p = next;
    }
    piece.stop = static_cast<std::size_t>(p - text.data());
}

template <class Body>
void forEachPiece(std::vector<Piece>& pieces, const Body& body) {
    base::parallelRanges(0, static_cast<int>(pieces.size()), 1, [&](int begin, int end) {
        for (int k = begin; k < end; ++k)
            body(pieces[static_cast<std::size_t>(k)]);
    });
}

void writePiece(std::span<const double> values, std::string& out) {
    constexpr std::size_t kUsualLine = 24;
    std::array<char, base::kFixed6Room + 2> line;
    out.clear();
    out.reserve(values.size() * kUsualLine);
    for (const double value : values) {
        char* end = line.data();
        if (value <= base::kNoValue)
            *end++ = 'N';
        else
            end = base::writeFixed6(end, value);
        *end++ = '\r';
        *end++ = '\n';
        out.append(line.data(), end);
    }
}

} // namespace

Result<std::size_t> readValueLines(std::string_view text, std::size_t at, std::span<double> values,
                                   std::size_t rowLength, Progress& progress) {
    std::size_t done = 0;
    while (done < values.size()) {
        if (progress.cancelled())
            return base::cancelledError();
        std::vector<Piece> pieces = cutPieces(text, at);
        if (pieces.empty())
            return base::formatError("the file ends after " + std::to_string(done) + " of " +
                                         std::to_string(values.size()) + " values",
                                     {}, static_cast<long>(kHeaderLines + done));
        forEachPiece(pieces, [&](Piece& piece) { countLines(text, piece); });
        for (Piece& piece : pieces) {
            piece.firstValue = std::min(done, values.size());
            done += piece.lines;
        }
        forEachPiece(pieces, [&](Piece& piece) { readPiece(text, piece, values); });
        done = std::min(done, values.size());
        at = pieces.back().stop;
        // Pieces behind the last value were not touched.
        for (const Piece& piece : pieces)
            if (piece.stop < piece.end) {
                at = piece.stop;
                break;
            }
        progress.setPosition(static_cast<long>(done / rowLength));
    }
    return at;
}

Result<void> writeValueLines(std::span<const double> values, std::size_t rowLength,
                             const std::function<void(std::string_view)>& sink,
                             Progress& progress) {
    std::vector<std::string> texts(kPiecesPerBatch);
    std::size_t done = 0;
    while (done < values.size()) {
        if (progress.cancelled())
            return base::cancelledError();
        const std::span<const double> batch =
            values.subspan(done, std::min(values.size() - done, kPiecesPerBatch * kPieceValues));
        const std::size_t pieces = (batch.size() + kPieceValues - 1) / kPieceValues;
        base::parallelRanges(0, static_cast<int>(pieces), 1, [&](int begin, int end) {
            for (auto k = static_cast<std::size_t>(begin); k < static_cast<std::size_t>(end); ++k)
                writePiece(batch.subspan(k * kPieceValues,
                                         std::min(kPieceValues, batch.size() - k * kPieceValues)),
                           texts[k]);
        });
        for (std::size_t k = 0; k < pieces; ++k)
            sink(texts[k]);
        done += batch.size();
        progress.setPosition(static_cast<long>(done / rowLength));
    }
    return {};
}

} // namespace tessaran::grid
