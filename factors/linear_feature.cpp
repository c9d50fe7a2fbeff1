#include "factors/linear_feature.h"

#include "base/parallel.h"
#include "factors/cells_near.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaran::factors {
namespace {

constexpr double kFullInfluence = 100.0;
constexpr int kRowsOfABand = 32;
constexpr std::size_t kFeaturesBetweenPolls = 256;

struct Feature {
    std::vector<NearSegment> segments;
    Box2 reach; // extents and the influence distance around them
};

// The nearest segment's distance for the cells of one band of rows, one feature at a time.
class Band {
  public:
    Band(const GridFrame& frame, int rowFrom, int rowTo)
        : frame_(frame), from_(rowFrom), to_(rowTo),
          nearest_(static_cast<std::size_t>(rowTo - rowFrom) * static_cast<std::size_t>(frame.nX()),
                   kFar) {}

    void add(const Feature& feature, const LinearInfluence& influence, grid::myGrid& grid) {
        const GridFrame::Range rows = frame_.rows(feature.reach.low.y, feature.reach.high.y);
        const int from = std::max(rows.from, from_);
        const int to = std::min(rows.to, to_);
        if (from >= to)
            return;
        for (const NearSegment& segment : feature.segments)
            forEachCellNear(segment, influence.distance, frame_, from, to,
                            [this](int i, int j, double square) {
                                double& nearest = at(i, j);
                                nearest = std::min(nearest, square);
                            });
        const GridFrame::Range columns = frame_.columns(feature.reach.low.x, feature.reach.high.x);
        for (int j = from; j < to; ++j)
            store(columns, j, influence, grid.row(j));
    }

  private:
    static constexpr double kFar = std::numeric_limits<double>::infinity();

    double& at(int i, int j) {
        return nearest_[static_cast<std::size_t>(j - from_) *
                            static_cast<std::size_t>(frame_.nX()) +
                        static_cast<std::size_t>(i)];
    }

    // Turns the distances of a row into influence, and forgets them.
    void store(const GridFrame::Range& columns, int j, const LinearInfluence& influence,
               std::span<double> row) {
        for (int i = columns.from; i < columns.to; ++i) {
            double& nearest = at(i, j);
            if (nearest == kFar)
                continue;
            const double d = std::sqrt(nearest);
            nearest = kFar;
            if (d > influence.distance)
                continue;
            const double f = (influence.distance - d) * kFullInfluence / influence.distance;
            double& value = row[static_cast<std::size_t>(i)];
            value = influence.accumulate ? std::min(f + value, kFullInfluence) : std::max(f, value);
        }
    }

    const GridFrame& frame_;
    int from_;
    int to_;
    std::vector<double> nearest_; // squares
};

std::vector<Feature> featuresOf(std::span<const geometry::Curve> curves, const GridFrame& frame,
                                double distance) {
    std::vector<Feature> out;
    out.reserve(curves.size());
    for (const geometry::Curve& curve : curves) {
        Feature feature{segmentsOf(curve, frame), {}};
        for (const NearSegment& segment : feature.segments)
            feature.reach.add(segment.extents());
        if (!feature.reach.empty())
            feature.reach = feature.reach.enlarged(distance);
        out.push_back(std::move(feature));
    }
    return out;
}

} // namespace

bool gridLinearFeatures(std::span<const geometry::Curve> features, const LinearInfluence& influence,
                        grid::myGrid& grid, base::Progress& progress) {
    const GridFrame frame(grid);
    grid.fillValue(0.0);
    const std::vector<Feature> all = featuresOf(features, frame, influence.distance);
    const int bands = (frame.nY() + kRowsOfABand - 1) / kRowsOfABand;
    // Bands of rows share nothing, and in each the features come in their order, so that sums do
    // not depend on the number of threads.
    for (std::size_t first = 0; first < all.size(); first += kFeaturesBetweenPolls) {
        progress.setPosition(static_cast<long>(first) + 1);
        if (progress.cancelled())
            return false;
        const std::size_t last = std::min(all.size(), first + kFeaturesBetweenPolls);
        base::parallelRanges(0, bands, 1, [&](int begin, int end) {
            for (int b = begin; b < end; ++b) {
                Band band(frame, b * kRowsOfABand, std::min(frame.nY(), (b + 1) * kRowsOfABand));
                for (std::size_t k = first; k < last; ++k)
                    if (!all[k].reach.empty())
                        band.add(all[k], influence, grid);
            }
        });
    }
    progress.setPosition(static_cast<long>(all.size()));
    return true;
}

} // namespace tessaran::factors
