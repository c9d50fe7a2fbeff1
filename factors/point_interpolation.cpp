#include "factors/point_interpolation.h"

#include "factors/column_batches.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tessaran::factors {
namespace {

using geometry::Box2;
using geometry::Point2;
using geometry::Point3;
using grid::myGrid;

constexpr double kAtThePoint = 1e-10; // a cell centre closer than this stands on the point
constexpr double kPointsABin = 2.0;
constexpr double kMostBinsAPoint = 4.0;

// Points in square bins, each bin's points in their given order.
class Bins {
  public:
    Bins(const std::vector<Point3>& points, double cellWidth) : points_(points) {
        Box2 box;
        for (const Point3& p : points)
            box.add(p.plan());
        low_ = box.low;
        const double area = std::max(box.width(), cellWidth) * std::max(box.height(), cellWidth);
        const double count = static_cast<double>(points.size());
        size_ = std::max(std::sqrt(area * kPointsABin / count), cellWidth);
        // A long thin plan must not ask for more bins than points warrant.
        while ((box.width() / size_ + 1.0) * (box.height() / size_ + 1.0) >
               kMostBinsAPoint * count + 16.0)
            size_ *= 2.0;
        nX_ = static_cast<int>(box.width() / size_) + 1;
        nY_ = static_cast<int>(box.height() / size_) + 1;
        sortIntoBins();
    }

    // Distance from c to its nearest point.
    double nearest(Point2 c) const {
        const int ci = column(c.x);
        const int cj = row(c.y);
        double best = std::numeric_limits<double>::infinity();
        for (int ring = 0;; ++ring) {
            // All bins of a ring lie at least this far away (from a centre outside the bins, more).
            if ((ring - 1) * size_ > best || ring > nX_ + nY_ + outside(c))
                return best;
            forRing(ci, cj, ring, [&](std::uint32_t k) {
                best = std::min(best, geometry::distance(points_[k].plan(), c));
            });
        }
    }

    // Appends the points within r, with their distances, in the given order of points.
    struct Found {
        std::uint32_t point;
        double distance;
    };
    void within(Point2 c, double r, std::vector<Found>& found) const {
        found.clear();
        const int i0 = std::max(0, column(c.x - r));
        const int i1 = std::min(nX_ - 1, column(c.x + r));
        const int j0 = std::max(0, row(c.y - r));
        const int j1 = std::min(nY_ - 1, row(c.y + r));
        for (int j = j0; j <= j1; ++j) {
            if (i0 > i1)
                break;
            const std::uint32_t begin = start_[bin(i0, j)];
            const std::uint32_t end = start_[bin(i1, j) + 1];
            for (std::uint32_t at = begin; at < end; ++at) {
                const std::uint32_t k = order_[at];
                const double d = geometry::distance(points_[k].plan(), c);
                if (d <= r)
                    found.push_back({k, d});
            }
        }
        std::sort(found.begin(), found.end(),
                  [](const Found& a, const Found& b) { return a.point < b.point; });
    }

  private:
    void sortIntoBins() {
        start_.assign(static_cast<std::size_t>(nX_) * static_cast<std::size_t>(nY_) + 1, 0);
        for (const Point3& p : points_)
            ++start_[bin(column(p.x), row(p.y)) + 1];
        for (std::size_t b = 1; b < start_.size(); ++b)
            start_[b] += start_[b - 1];
        order_.resize(points_.size());
        std::vector<std::uint32_t> next(start_.begin(), start_.end() - 1);
        for (std::size_t k = 0; k < points_.size(); ++k)
            order_[next[bin(column(points_[k].x), row(points_[k].y))]++] =
                static_cast<std::uint32_t>(k);
    }

    std::size_t bin(int i, int j) const {
        return static_cast<std::size_t>(std::clamp(j, 0, nY_ - 1)) * static_cast<std::size_t>(nX_) +
               static_cast<std::size_t>(std::clamp(i, 0, nX_ - 1));
    }
    // Held a little beyond the bins, so that far centres do not overflow.
    int held(double index, int count) const {
        return static_cast<int>(std::clamp(std::floor(index), -1e6, count + 1e6));
    }
    int column(double x) const { return held((x - low_.x) / size_, nX_); }
    int row(double y) const { return held((y - low_.y) / size_, nY_); }
    int outside(Point2 c) const {
        const int i = column(c.x);
        const int j = row(c.y);
        return std::max({0, -i, i - nX_, -j, j - nY_});
    }

    template <class Visit>
    void forRing(int ci, int cj, int ring, const Visit& visit) const {
        for (int j = cj - ring; j <= cj + ring; ++j) {
            if (j < 0 || j >= nY_)
                continue;
            const bool edge = j == cj - ring || j == cj + ring;
            const int step = edge || ring == 0 ? 1 : 2 * ring;
            for (int i = ci - ring; i <= ci + ring; i += step) {
                if (i < 0 || i >= nX_)
                    continue;
                for (std::uint32_t at = start_[bin(i, j)]; at < start_[bin(i, j) + 1]; ++at)
                    visit(order_[at]);
            }
        }
    }

    const std::vector<Point3>& points_;
    Point2 low_;
    double size_ = 1.0;
    int nX_ = 1;
    int nY_ = 1;
    std::vector<std::uint32_t> start_; // of each bin in order_, and the end
    std::vector<std::uint32_t> order_;
};

// One cell's search: the entries in their order, summed as they come.
class CellSearch {
  public:
    CellSearch(const std::vector<Point3>& points, const Bins& bins, const PointSearch& search,
               double cellWidth)
        : points_(points), bins_(bins), search_(search), cellWidth_(cellWidth) {}

    struct Value {
        bool found = false;
        double value = 0.0;
    };
    Value at(Point2 c) {
        count_ = 0;
        zSum_ = weightSum_ = weightedSum_ = 0.0;
        stopped_ = false;
        const double nearest = bins_.nearest(c);
        double r = cellWidth_;
        do {
            // Circles smaller than the nearest point's distance find nothing.
            if (r >= nearest * (1.0 - 1e-12)) {
                bins_.within(c, r, found_);
                for (const Bins::Found& f : found_)
                    addEntry(f);
            }
            r += cellWidth_;
        } while (count_ < search_.minimumPoints && r < search_.limit);
        if (count_ == 0)
            return {};
        if (count_ == 1)
            return {true, lastZ_};
        if (search_.interpolation == Interpolation::inverseDistance)
            return {true, weightedSum_ / weightSum_};
        return {true, zSum_ / static_cast<double>(count_)};
    }

  private:
    void addEntry(const Bins::Found& f) {
        const double z = points_[f.point].z;
        ++count_;
        lastZ_ = z;
        zSum_ += z;
        // The walk of the inverse-distance mean ends at a point that the cell stands on.
        stopped_ = stopped_ || f.distance < kAtThePoint;
        if (stopped_)
            return;
        const double w = 1.0 / f.distance;
        weightSum_ += w;
        weightedSum_ += w * z;
    }

    const std::vector<Point3>& points_;
    const Bins& bins_;
    const PointSearch& search_;
    double cellWidth_;
    std::vector<Bins::Found> found_;
    long count_ = 0;
    double zSum_ = 0.0;
    double lastZ_ = 0.0;
    double weightSum_ = 0.0;
    double weightedSum_ = 0.0;
    bool stopped_ = false;
};

// What one column of cells came to; columns are told of in their order.
struct Column {
    std::vector<int> emptyRows;
    long withoutNumber = 0;
};

} // namespace

PointGridResult gridPoints(const std::vector<Point3>& points, const PointSearch& search,
                           myGrid& grid, const PointGridWatch& watch, base::Progress& progress) {
    PointGridResult out;
    const Bins bins(points, grid.cellWidthX());
    std::vector<Column> columns(static_cast<std::size_t>(grid.nX()) + 1);
    const auto fill = [&](int begin, int end) {
        CellSearch cells(points, bins, search, grid.cellWidthX());
        for (int i = begin; i < end; ++i) {
            Column& column = columns[static_cast<std::size_t>(i)];
            for (int j = 0; j <= grid.nY(); ++j) {
                const CellSearch::Value value = cells.at(grid.cellCenter(i, j)->plan());
                if (!value.found)
                    column.emptyRows.push_back(j);
                else
                    grid.setValue(i, j, value.value);
                const bool isCell = i < grid.nX() && j < grid.nY();
                column.withoutNumber += isCell && value.found && std::isnan(value.value) ? 1 : 0;
            }
        }
    };
    const auto tell = [&](int first, int last) {
        for (int i = first; i < last; ++i) {
            const Column& column = columns[static_cast<std::size_t>(i)];
            for (const int j : column.emptyRows)
                watch.noPoint(i, j);
            out.withoutNumber += column.withoutNumber;
        }
        if (watch.columnsDone && first < grid.nX())
            watch.columnsDone(first, std::min(last, grid.nX()));
    };
    out.completed = inColumnBatches(grid.nX() + 1, grid.nY(), progress, fill, tell);
    return out;
}

} // namespace tessaran::factors
