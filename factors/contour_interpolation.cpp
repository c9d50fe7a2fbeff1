#include "factors/contour_interpolation.h"

#include "base/tolerance.h"
#include "factors/column_batches.h"
#include "factors/contour_lines.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace tessaran::factors {
namespace {

using geometry::Vector2;

constexpr std::size_t kFewestLines = 4;
constexpr double kRightAngle = 1e-9;  // angles this near a right one count as right, radians
constexpr double kSquareSlack = 1e-9; // of a cell width, so that rounding loses no touching line
constexpr int kMostSteps = 200;       // through the index; then the rest is gone through as a whole
constexpr double kReachOfNext = 1.1;  // of the reach that a cell needed, for the one after it
constexpr double kFar = std::numeric_limits<double>::infinity();
constexpr double kBoundSlack = 1.0 + 1e-12; // a run's extents may be rounded away from its segments

double lengthOf(Vector2 v) {
    return std::sqrt(geometry::dot(v, v));
}

// One cell's search; keeps its memory from cell to cell.
class CellContours {
  public:
    CellContours(const ContourLines& lines, const ContourSearch& search, double cellWidth)
        : lines_(lines), search_(search), width_(cellWidth), runs_(lines.runIndex()),
          takenFor_(lines.size(), 0), reach_(cellWidth) {}

    std::optional<double> at(Point2 p) {
        const std::optional<double> half = halfSize(p);
        if (!half)
            return std::nullopt;
        place_ = p;
        square_ = Box2{p, p}.enlarged(*half + kSquareSlack * width_);
        begin();
        const std::optional<ContourPoint> nearest = first();
        if (!nearest)
            return std::nullopt;
        const std::optional<ContourPoint> partner = partnerOf(*nearest);
        if (partner && steps_ <= kMostSteps)
            reach_ = kReachOfNext * std::sqrt(partner->squared) + width_;
        return valueBetween(*nearest, partner) - search_.datum;
    }

  private:
    // The half size at which enough lines are met; nothing when the limit comes first.
    std::optional<double> halfSize(Point2 p) const {
        const auto enough = [&](double steps) {
            const Box2 square = Box2{p, p}.enlarged((steps + kSquareSlack) * width_);
            return lines_.extentsIndex().anyMeet(square, kFewestLines);
        };
        const double most = std::floor(search_.limit / width_ + kSquareSlack);
        if (!(most >= 1.0) || lines_.size() < kFewestLines)
            return std::nullopt;
        double low = 0.0; // not enough
        double high = 1.0;
        while (!enough(high)) {
            if (high >= most)
                return std::nullopt;
            low = high;
            high = std::min(2.0 * high, most);
        }
        while (high - low > 1.0) {
            const double middle = std::floor(0.5 * (low + high));
            (enough(middle) ? high : low) = middle;
        }
        return high * width_;
    }

    // --- lines one by one, the nearest first ----------------------------------------------------

    void begin() {
        waiting_.clear();
        collectNear();
        nearOnly_ = true;
        steps_ = 0;
        ++cell_;
    }

    // The runs within the distance at which the cell before found what it needed: nearly always
    // enough, and cheaper than opening the index run by run.
    void collectNear() {
        near_.clear();
        searched_ = reach_ * reach_;
        lines_.runIndex().forEach(Box2{place_, place_}.enlarged(reach_), [&](std::size_t run) {
            const double squared = geometry::distanceSquared(place_, lines_.runExtents(run));
            if (squared <= searched_)
                near_.push_back({squared, static_cast<std::uint32_t>(run)});
        });
        std::make_heap(near_.begin(), near_.end());
    }

    // No run still to come is nearer than this, squared; infinite where none is to come.
    double nextBound() const {
        if (!nearOnly_)
            return runs_.atEnd() ? kFar : runs_.boundSquared();
        return near_.empty() ? searched_ : near_.front().squared;
    }

    // Looks at the next run, or goes a step towards it; not when none is to come.
    void advance() {
        if (!nearOnly_) {
            if (const std::size_t run = runs_.step(); run != runs_.kOnTheWay)
                lookAtRun(run);
            return;
        }
        if (near_.empty()) { // runs looked at twice do no harm: their lines are taken once
            nearOnly_ = false;
            runs_.start(place_);
            return;
        }
        std::pop_heap(near_.begin(), near_.end());
        const std::size_t run = near_.back().run;
        near_.pop_back();
        lookAtRun(run);
    }

    bool taken(std::size_t line) const { return takenFor_[line] == cell_; }
    bool counts(std::size_t line) const {
        return !taken(line) && lines_.extents(line).meets(square_);
    }

    static bool later(const ContourPoint& a, const ContourPoint& b) { return b.before(a); }

    void lookAtRun(std::size_t run) {
        const std::uint32_t line = lines_.lineOfRun(run);
        if (!counts(line))
            return;
        ContourPoint point{{}, kFar, line, 0};
        lines_.nearestOfRun(run, place_, point);
        waiting_.push_back(point);
        std::push_heap(waiting_.begin(), waiting_.end(), later);
    }

    std::optional<ContourPoint> first() {
        if (const auto next = takeNext())
            return next;
        const auto nearest = nearestOfRest([](const Box2&) { return true; },
                                           [](const ContourPoint&) { return true; });
        if (nearest)
            takenFor_[nearest->line] = cell_;
        return nearest;
    }

    // Nothing when there are no more, or when lines that do not count stand in the way for long.
    std::optional<ContourPoint> takeNext() {
        for (;;) {
            while (!waiting_.empty() && taken(waiting_.front().line))
                dropFirst();
            const double known = waiting_.empty() ? kFar : waiting_.front().squared * kBoundSlack;
            if (const double bound = nextBound(); bound < kFar && bound <= known) {
                if (++steps_ > kMostSteps)
                    return std::nullopt;
                advance();
                continue;
            }
            if (waiting_.empty())
                return std::nullopt;
            const ContourPoint next = waiting_.front();
            dropFirst();
            takenFor_[next.line] = cell_;
            return next;
        }
    }

    void dropFirst() {
        std::pop_heap(waiting_.begin(), waiting_.end(), later);
        waiting_.pop_back();
    }

    // --- the partner ----------------------------------------------------------------------------

    bool acrossFrom(const ContourPoint& nearest, const ContourPoint& other) const {
        const Vector2 a = nearest.at.plan() - place_;
        const Vector2 b = other.at.plan() - place_;
        return geometry::dot(a, b) <= kRightAngle * lengthOf(a) * lengthOf(b);
    }
    static bool differs(const ContourPoint& a, const ContourPoint& b) {
        return std::abs(a.at.z - b.at.z) > base::kTolerance;
    }

    std::optional<ContourPoint> partnerOf(const ContourPoint& nearest) {
        std::optional<ContourPoint> ofOtherValue;
        while (const std::optional<ContourPoint> next = takeNext()) {
            if (acrossFrom(nearest, *next))
                return next;
            if (!ofOtherValue && differs(nearest, *next))
                ofOtherValue = next;
        }
        // Only a line that reaches across can have its closest point there.
        const Vector2 toward = nearest.at.plan() - place_;
        const double least = kRightAngle * lengthOf(toward);
        const auto across = nearestOfRest(
            [&](const Box2& box) {
                const Vector2 low = box.low - place_;
                const Vector2 high = box.high - place_;
                const double x = std::min(toward.x * low.x, toward.x * high.x);
                const double y = std::min(toward.y * low.y, toward.y * high.y);
                return x + y <= least * (std::abs(low.x) + std::abs(low.y) + std::abs(high.x) +
                                         std::abs(high.y));
            },
            [&](const ContourPoint& point) { return acrossFrom(nearest, point); });
        if (across || ofOtherValue)
            return across ? across : ofOtherValue;
        return nearestOfRest([](const Box2&) { return true; },
                             [&](const ContourPoint& point) { return differs(nearest, point); });
    }

    // The nearest point that is `wanted`, of the lines not taken yet whose extents `may` hold one.
    template <class May, class Wanted>
    std::optional<ContourPoint> nearestOfRest(const May& may, const Wanted& wanted) const {
        std::optional<ContourPoint> best;
        lines_.extentsIndex().forEach(square_, [&](std::size_t line) {
            const Box2& box = lines_.extents(line);
            if (taken(line) || !may(box) ||
                (best && geometry::distanceSquared(place_, box) > best->squared * kBoundSlack))
                return;
            ContourPoint point{{}, kFar, 0, 0};
            lines_.nearestOfLine(line, place_, point);
            if (wanted(point) && (!best || point.before(*best)))
                best = point;
        });
        return best;
    }

    double valueBetween(const ContourPoint& nearest,
                        const std::optional<ContourPoint>& partner) const {
        const double toNearest = std::sqrt(nearest.squared);
        if (!partner || toNearest < base::kTolerance)
            return nearest.at.z;
        const double between = lengthOf(partner->at.plan() - nearest.at.plan());
        if (between < base::kTolerance)
            return nearest.at.z;
        const double rise = (partner->at.z - nearest.at.z) / between * toNearest;
        return acrossFrom(nearest, *partner) ? nearest.at.z + rise : nearest.at.z - rise;
    }

    const ContourLines& lines_;
    const ContourSearch& search_;
    double width_;
    // A run by the distance of its extents; as the heap's order the nearest first.
    struct NearRun {
        double squared;
        std::uint32_t run;
        friend bool operator<(const NearRun& a, const NearRun& b) { return a.squared > b.squared; }
    };

    geometry::BoxesByDistance runs_;
    std::vector<NearRun> near_;           // a heap
    bool nearOnly_ = true;                // whether the index is not asked yet
    std::vector<ContourPoint> waiting_;   // a heap, the nearest first
    std::vector<std::uint32_t> takenFor_; // number of the cell that a line was last taken for
    std::uint32_t cell_ = 0;
    int steps_ = 0;
    double reach_;          // how far near_ is collected
    double searched_ = 0.0; // its square for this cell
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
