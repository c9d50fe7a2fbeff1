#include "factors/contour_interpolation.h"

#include "base/tolerance.h"
#include "factors/column_batches.h"
#include "factors/contour_lines.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace tessaran::factors {
namespace {

using geometry::Vector2;

constexpr std::size_t kFewestLines = 4;
constexpr double kRightAngle = 1e-9;   // angles this near a right one count as right, radians
constexpr double kSquareSlack = 1e-9;  // of a cell width, so that rounding loses no touching line
constexpr std::size_t kFewLines = 24;  // whose closest points are all looked for
constexpr double kWidening = 1.5;      // of the reach, where it was too short
constexpr int kMostRounds = 12;        // of widening, and
constexpr std::size_t kMostRuns = 300; // met; then all lines that count are gone through
constexpr double kReachOfNext = 1.1;   // of the reach that a cell needed, for the one after it

double lengthOf(Vector2 v) {
    return std::sqrt(geometry::dot(v, v));
}

// One cell's search; keeps its memory from cell to cell.
class CellContours {
  public:
    CellContours(const ContourLines& lines, const ContourSearch& search, double cellWidth)
        : lines_(lines), search_(search), width_(cellWidth), closest_(lines.size()),
          bests_(lines.size()), reach_(cellWidth) {}

    std::optional<double> at(Point2 p) {
        const std::optional<double> half = halfSize(p);
        if (!half)
            return std::nullopt;
        begin(p, *half);
        std::optional<Pair> pair;
        if (counting_.size() > kFewLines)
            pair = pairNearby();
        if (!pair)
            pair = pairOfAll();
        return valueBetween(*pair) - search_.datum;
    }

  private:
    struct Pair {
        ContourPoint nearest;
        std::optional<ContourPoint> partner; // nothing where all lines are of one value
    };

    // The half size at which enough lines are met; nothing when the limit comes first. Looked for
    // from the cell before on, whose half size is mostly the same.
    std::optional<double> halfSize(Point2 p) {
        const auto enough = [&](double steps) {
            const Box2 square = Box2{p, p}.enlarged((steps + kSquareSlack) * width_);
            return lines_.extentsIndex().anyMeet(square, kFewestLines);
        };
        const double most = std::floor(search_.limit / width_ + kSquareSlack);
        if (!(most >= 1.0) || lines_.size() < kFewestLines)
            return std::nullopt;
        double low = 0.0; // not enough
        double high = std::min(halfSteps_, most);
        double stride = 1.0;
        for (; !enough(high); stride *= 2.0) {
            if (high >= most)
                return std::nullopt;
            low = high;
            high = std::min(high + stride, most);
        }
        for (; low == 0.0 && high - stride > 0.0; stride *= 2.0)
            (enough(high - stride) ? high : low) = high - stride;
        while (high - low > 1.0) {
            const double middle = std::floor(0.5 * (low + high));
            (enough(middle) ? high : low) = middle;
        }
        halfSteps_ = high;
        return high * width_;
    }

    void begin(Point2 p, double half) {
        ++cell_;
        place_ = p;
        square_ = Box2{p, p}.enlarged(half + kSquareSlack * width_);
        counting_.clear();
        lines_.extentsIndex().forEach(square_, [&](std::size_t line) {
            counting_.push_back(static_cast<std::uint32_t>(line));
        });
    }

    // --- the pair among the lines nearby --------------------------------------------------------

    // Nothing where the partner is far, or lines that do not count stand in the way. The first
    // reach is that which the cell before needed, and is nearly always enough.
    std::optional<Pair> pairNearby() {
        touched_.clear();
        searched_ = -1.0;
        met_ = 0;
        double reach = reach_;
        for (int round = 0; round < kMostRounds && met_ < kMostRuns; ++round) {
            searchTo(reach);
            if (std::optional<Pair> pair = pairOfTouched()) {
                reach_ = kReachOfNext * std::sqrt(pair->partner->squared) + width_;
                return pair;
            }
            reach *= kWidening;
        }
        return std::nullopt;
    }

    // Looks at all runs that reach into the circle and did not into the one before.
    void searchTo(double reach) {
        const double squaredReach = reach * reach;
        lines_.runIndex().forEach(Box2{place_, place_}.enlarged(reach), [&](std::size_t run) {
            const double squared = geometry::distanceSquared(place_, lines_.runExtents(run));
            if (squared > searched_ && squared <= squaredReach) {
                ++met_;
                lookAtRun(run, squared);
            }
        });
        searched_ = squaredReach;
    }

    void lookAtRun(std::size_t run, double squared) {
        const std::uint32_t line = lines_.lineOfRun(run);
        Best& best = bests_[line];
        if (best.cell != cell_)
            best = {startOfLine(line), cell_};
        if (squared > best.point.squared * kBoundSlack)
            return;
        lines_.nearestOfRun(run, place_, best.point);
    }

    // A line that does not count is one that nothing can be nearer than.
    ContourPoint startOfLine(std::uint32_t line) {
        if (!lines_.extents(line).meets(square_))
            return {{}, -1.0, line, 0};
        touched_.push_back(line);
        return {{}, kFar, line, 0};
    }

    // Points within what was searched are their lines' closest ones; those beyond are not yet.
    std::optional<Pair> pairOfTouched() const {
        const ContourPoint* nearest = nullptr;
        for (const std::uint32_t line : touched_)
            if (const ContourPoint& point = bests_[line].point; !nearest || point.before(*nearest))
                nearest = &point;
        if (!nearest)
            return std::nullopt;
        const ContourPoint* partner = nullptr;
        for (const std::uint32_t line : touched_)
            if (const ContourPoint& point = bests_[line].point;
                point.squared * kBoundSlack <= searched_ && &point != nearest &&
                (!partner || point.before(*partner)) && acrossFrom(*nearest, point))
                partner = &point;
        if (!partner)
            return std::nullopt;
        return Pair{*nearest, *partner};
    }

    // --- the pair among all lines that count ----------------------------------------------------

    Pair pairOfAll() {
        const auto nearest = nearestOfAll([](const Box2&) { return true; },
                                          [](const ContourPoint&) { return true; });
        return {*nearest, partnerOf(*nearest)};
    }

    bool acrossFrom(const ContourPoint& nearest, const ContourPoint& other) const {
        const Vector2 a = nearest.at.plan() - place_;
        const Vector2 b = other.at.plan() - place_;
        return geometry::dot(a, b) <= kRightAngle * lengthOf(a) * lengthOf(b);
    }
    static bool differs(const ContourPoint& a, const ContourPoint& b) {
        return std::abs(a.at.z - b.at.z) > base::kTolerance;
    }

    std::optional<ContourPoint> partnerOf(const ContourPoint& nearest) {
        // Only a line that reaches across can have its closest point there.
        const Vector2 toward = nearest.at.plan() - place_;
        const double least = kRightAngle * lengthOf(toward);
        const auto across = nearestOfAll(
            [&](const Box2& box) {
                const Vector2 low = box.low - place_;
                const Vector2 high = box.high - place_;
                const double x = std::min(toward.x * low.x, toward.x * high.x);
                const double y = std::min(toward.y * low.y, toward.y * high.y);
                return x + y <= least * (std::abs(low.x) + std::abs(low.y) + std::abs(high.x) +
                                         std::abs(high.y));
            },
            [&](const ContourPoint& point) {
                return point.line != nearest.line && acrossFrom(nearest, point);
            });
        if (across)
            return across;
        return nearestOfAll([](const Box2&) { return true; },
                            [&](const ContourPoint& point) {
                                return point.line != nearest.line && differs(nearest, point);
                            });
    }

    // The nearest of the lines' closest points that is `wanted`, of lines whose extents `may` hold
    // one.
    template <class May, class Wanted>
    std::optional<ContourPoint> nearestOfAll(const May& may, const Wanted& wanted) {
        std::optional<ContourPoint> best;
        for (const std::uint32_t line : counting_) {
            const Box2& box = lines_.extents(line);
            if (!may(box) ||
                (best && geometry::distanceSquared(place_, box) > best->squared * kBoundSlack))
                continue;
            const ContourPoint& point = closestOf(line);
            if (wanted(point) && (!best || point.before(*best)))
                best = point;
        }
        return best;
    }

    // Looked for once a cell, from where it was for the cell before on.
    const ContourPoint& closestOf(std::uint32_t line) {
        Best& closest = closest_[line];
        if (closest.cell != cell_)
            closest = {lines_.closestOfLine(line, place_, closest.point.segment), cell_};
        return closest.point;
    }

    double valueBetween(const Pair& pair) const {
        const auto& [nearest, partner] = pair;
        const double toNearest = std::sqrt(nearest.squared);
        if (!partner || toNearest < base::kTolerance)
            return nearest.at.z;
        const double between = lengthOf(partner->at.plan() - nearest.at.plan());
        if (between < base::kTolerance)
            return nearest.at.z;
        const double rise = (partner->at.z - nearest.at.z) / between * toNearest;
        return acrossFrom(nearest, *partner) ? nearest.at.z + rise : nearest.at.z - rise;
    }

    // A line's point for a cell.
    struct Best {
        ContourPoint point;
        std::uint32_t cell = 0;
    };

    const ContourLines& lines_;
    const ContourSearch& search_;
    double width_;
    std::vector<std::uint32_t> counting_; // the lines whose extents meet the square
    std::vector<Best> closest_;           // a line's closest point
    std::vector<Best> bests_;             // the same of the runs met only
    std::vector<std::uint32_t> touched_;  // lines that count and were met for this cell
    std::uint32_t cell_ = 0;
    std::size_t met_ = 0;    // runs
    double halfSteps_ = 1.0; // the half size that the cell before needed, in cell widths
    double reach_;           // how far the cell before had to look
    double searched_ = 0.0;  // squared, for this cell
    Point2 place_;
    Box2 square_;
};

} // namespace

ContourGridResult gridContours(std::span<const geometry::Curve> contours,
                               const ContourSearch& search, grid::myGrid& grid,
                               const std::function<void(int, int)>& tooFew,
                               base::Progress& progress) {
    ContourGridResult out;
    const GridFrame frame(grid);
    const ContourLines lines(contours, frame);
    std::vector<std::vector<int>> emptyRows(static_cast<std::size_t>(grid.nX()));
    const auto fill = [&](int begin, int end) {
        CellContours cells(lines, search, grid.cellWidthX());
        for (int i = begin; i < end; ++i)
            for (int j = 0; j < grid.nY(); ++j) {
                if (const std::optional<double> value = cells.at(frame.centre(i, j)))
                    grid.setValue(i, j, *value);
                else
                    emptyRows[static_cast<std::size_t>(i)].push_back(j);
            }
    };
    const auto tell = [&](int first, int last) {
        for (int i = first; i < last; ++i)
            for (const int j : emptyRows[static_cast<std::size_t>(i)]) {
                tooFew(i, j);
                ++out.tooFew;
            }
    };
    out.completed = inColumnBatches(grid.nX(), grid.nY(), progress, fill, tell);
    return out;
}

} // namespace tessaran::factors
