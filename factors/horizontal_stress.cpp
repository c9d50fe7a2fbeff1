#include "factors/horizontal_stress.h"

#include "base/parallel.h"
#include "grid/cells_near.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessaran::factors {
namespace {

using geometry::Point2;
using grid::GridFrame;
using grid::NearSegment;

constexpr double kFullRating = 100.0;
constexpr int kRowsOfABand = 64;
constexpr std::size_t kSegmentsBetweenPolls = 4096;

struct RatedSegment {
    NearSegment segment;
    double rating = 0.0;
    long line = 0; // number of its line, from 1
};

std::vector<RatedSegment> ratedSegments(std::span<const std::vector<Point2>> lines,
                                        const HorizontalStress& stress, const GridFrame& frame,
                                        std::vector<int>& tooShort) {
    std::vector<RatedSegment> out;
    for (std::size_t n = 0; n < lines.size(); ++n) {
        const std::vector<Point2>& line = lines[n];
        if (line.size() < 2)
            tooShort.push_back(static_cast<int>(n));
        for (std::size_t k = 1; k < line.size(); ++k)
            out.push_back({NearSegment(frame.fromWorld(line[k - 1]), frame.fromWorld(line[k])),
                           horizontalStressRating(line[k - 1], line[k], stress.orientation),
                           static_cast<long>(n) + 1});
    }
    return out;
}

void rateRows(const RatedSegment& rated, double half, const GridFrame& frame, int rowFrom,
              int rowTo, grid::myGrid& grid) {
    forEachCellNear(rated.segment, half, frame, rowFrom, rowTo, [&](int i, int j, double square) {
        double& value = grid.row(j)[static_cast<std::size_t>(i)];
        if (value < rated.rating && std::sqrt(square) <= half)
            value = rated.rating;
    });
}

} // namespace

double horizontalStressRating(Point2 a, Point2 b, double orientation) {
    constexpr double kPi = std::numbers::pi;
    const auto halfTurn = [](double angle) {
        const double rest = std::fmod(angle, kPi);
        return rest < 0.0 ? rest + kPi : rest;
    };
    const double entry = halfTurn(std::atan2(b.y - a.y, b.x - a.x));
    double between = std::abs(entry - halfTurn(orientation));
    if (between > kPi / 2.0)
        between = kPi - between;
    return std::sin(between) * kFullRating;
}

bool gridHorizontalStress(std::span<const std::vector<Point2>> lines,
                          const HorizontalStress& stress, grid::myGrid& grid,
                          std::vector<int>& tooShort, base::Progress& progress) {
    const GridFrame frame(grid);
    grid.fillValue(0.0);
    const double half = stress.entryWidth * 0.5;
    const std::vector<RatedSegment> all = ratedSegments(lines, stress, frame, tooShort);
    const int bands = (frame.nY() + kRowsOfABand - 1) / kRowsOfABand;
    for (std::size_t first = 0; first < all.size(); first += kSegmentsBetweenPolls) {
        progress.setPosition(all[first].line);
        if (progress.cancelled())
            return false;
        const std::size_t last = std::min(all.size(), first + kSegmentsBetweenPolls);
        base::parallelRanges(0, bands, 1, [&](int begin, int end) {
            for (std::size_t k = first; k < last; ++k)
                rateRows(all[k], half, frame, begin * kRowsOfABand,
                         std::min(frame.nY(), end * kRowsOfABand), grid);
        });
    }
    return true;
}

} // namespace tessaran::factors
