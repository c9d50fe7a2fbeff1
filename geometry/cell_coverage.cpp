#include "geometry/cell_coverage.h"

#include "geometry/edge.h"
#include "geometry/polygon.h"

#include <algorithm>
#include <cmath>

// Coverage. The area of a polygon within a cell is the sum, over what its edges do in the cell's
// row, of the signed height dy of each piece times the part of the cell's width that lies right of
// it: all of it for pieces in columns to the left, none for pieces to the right, the mean width
// within the cell for its own pieces. Going along a row, the heights of all pieces passed are
// therefore the share of every cell that no piece runs through.

namespace tessaran::geometry {

namespace {

// Shares below this are the rounding of sums that should be 0.
constexpr double kNoShare = 1e-12;

int heldFloor(double value, int low, int high) {
    return static_cast<int>(
        std::floor(std::clamp(value, static_cast<double>(low), static_cast<double>(high))));
}

int heldCeil(double value, int low, int high) {
    return static_cast<int>(
        std::ceil(std::clamp(value, static_cast<double>(low), static_cast<double>(high))));
}

// The range's rows that the box reaches; all of its columns.
CellRange rowsReached(const CellRange& range, const Box2& box) {
    CellRange reached = range;
    reached.rowBegin = heldFloor(box.low.y, range.rowBegin, range.rowEnd);
    reached.rowEnd = heldCeil(box.high.y, range.rowBegin, range.rowEnd);
    if (box.high.x <= range.columnBegin || box.low.x >= range.columnEnd)
        reached.rowEnd = reached.rowBegin;
    return reached;
}

double shareOf(double signedShare) {
    const double share = std::abs(signedShare);
    const double whole = std::round(share);
    if (std::abs(share - whole) <= (whole == 0.0 ? kNoShare : kWholeCellTolerance))
        return whole;
    return share;
}

// Insertion for the handful of items that a row usually holds, keeping the order of equals.
template <class Item, class Less>
void sortFew(std::span<Item> items, Less less) {
    constexpr std::size_t kFew = 24;
    if (items.size() > kFew) {
        std::stable_sort(items.begin(), items.end(), less);
        return;
    }
    for (std::size_t k = 1; k < items.size(); ++k) {
        const Item item = items[k];
        std::size_t at = k;
        for (; at > 0 && less(item, items[at - 1]); --at)
            items[at] = items[at - 1];
        items[at] = item;
    }
}

template <class Visit>
void forEachEdge(std::span<const Point2> polygon, Visit visit) {
    Point2 previous = polygon.back();
    for (const Point2 p : polygon) {
        visit(Edge(previous, p));
        previous = p;
    }
}

} // namespace

std::span<const CoverageRun> CellWalker::coverage(std::span<const Point2> polygon,
                                                  const CellRange& range) {
    runs_.clear();
    pieces_.clear();
    if (polygon.size() < 3 || range.empty() || !isUsable(polygon))
        return runs_;
    const CellRange reached = rowsReached(range, boxOf(polygon));
    if (reached.empty())
        return runs_;
    forEachEdge(polygon, [&](const Edge& edge) { addEdge(edge, reached); });
    sortByRow(pieces_, sortedPieces_, reached);
    for (std::size_t row = 0; row + 1 < rowStart_.size(); ++row)
        sweepRow(rowOf(sortedPieces_, row), reached);
    return runs_;
}

void CellWalker::addEdge(const Edge& edge, const CellRange& range) {
    const double from = std::max(edge.low.y, static_cast<double>(range.rowBegin));
    const double to = std::min(edge.high.y, static_cast<double>(range.rowEnd));
    if (edge.direction == 0 || from >= to)
        return;
    Point2 start{edge.xAt(from), from};
    for (int row = static_cast<int>(std::floor(from)); start.y < to; ++row) {
        const double y = std::min(to, row + 1.0);
        const Point2 end{edge.xAt(y), y};
        addPieces(row, start, end, edge.direction, range);
        start = end;
    }
}

// Splits what an edge does in one row, from `low` to `high`, by cells.
void CellWalker::addPieces(int row, Point2 low, Point2 high, int direction,
                           const CellRange& range) {
    const Point2 left = low.x <= high.x ? low : high;
    const Point2 right = low.x <= high.x ? high : low;
    const auto add = [&](int column, double height, double middle) {
        const double dy = direction * height;
        pieces_.push_back({row, column, dy, dy * (column + 1 - middle)});
    };
    if (left.x >= range.columnEnd)
        return;
    if (right.x <= range.columnBegin) {
        add(range.columnBegin - 1, high.y - low.y, range.columnBegin);
        return;
    }
    const int first = heldFloor(left.x, range.columnBegin, range.columnEnd);
    if (left.x >= first && right.x <= first + 1.0) { // most pieces: within one cell
        add(first, high.y - low.y, 0.5 * (left.x + right.x));
        return;
    }
    const double slope = (right.y - left.y) / (right.x - left.x);
    const auto yAt = [&](double x) {
        return x == right.x ? right.y : left.y + (x - left.x) * slope;
    };
    double x = std::max(left.x, static_cast<double>(range.columnBegin));
    double y = yAt(x);
    if (x > left.x)
        add(range.columnBegin - 1, std::abs(y - left.y), range.columnBegin);
    const double end = std::min(right.x, static_cast<double>(range.columnEnd));
    for (int column = first; x < end; ++column) {
        const double nextX = std::min(end, column + 1.0);
        const double nextY = yAt(nextX);
        add(column, std::abs(nextY - y), 0.5 * (x + nextX));
        x = nextX;
        y = nextY;
    }
}

template <class Item>
void CellWalker::sortByRow(const std::vector<Item>& items, std::vector<Item>& sorted,
                           const CellRange& range) {
    const auto rows = static_cast<std::size_t>(range.rowEnd - range.rowBegin);
    const auto slot = [&](const Item& item) {
        return static_cast<std::size_t>(item.row - range.rowBegin);
    };
    rowStart_.assign(rows + 2, 0); // shifted by one while placing
    for (const Item& item : items)
        ++rowStart_[slot(item) + 2];
    for (std::size_t row = 2; row < rowStart_.size(); ++row)
        rowStart_[row] += rowStart_[row - 1];
    sorted.resize(items.size());
    for (const Item& item : items)
        sorted[rowStart_[slot(item) + 1]++] = item;
    rowStart_.pop_back();
}

template <class Item>
std::span<Item> CellWalker::rowOf(std::vector<Item>& sorted, std::size_t row) const {
    return std::span(sorted).subspan(rowStart_[row], rowStart_[row + 1] - rowStart_[row]);
}

void CellWalker::sweepRow(std::span<Piece> pieces, const CellRange& range) {
    if (pieces.empty())
        return;
    sortFew(pieces, [](const Piece& a, const Piece& b) { return a.column < b.column; });
    const int row = pieces.front().row;
    const auto add = [&](int columnBegin, int columnEnd, double signedShare) {
        const double share = shareOf(signedShare);
        if (columnBegin < columnEnd && share > 0.0)
            runs_.push_back({row, columnBegin, columnEnd, share});
    };
    double passed = 0.0; // signed height of all pieces in columns to the left
    int next = range.columnBegin;
    for (std::size_t k = 0; k < pieces.size();) {
        const int column = pieces[k].column;
        double dy = 0.0;
        double right = 0.0;
        for (; k < pieces.size() && pieces[k].column == column; ++k) {
            dy += pieces[k].dy;
            right += pieces[k].right;
        }
        if (column >= range.columnBegin) {
            add(next, column, passed);
            add(column, column + 1, passed + right);
            next = column + 1;
        }
        passed += dy;
    }
    add(next, range.columnEnd, passed);
}

std::span<const CellRun> CellWalker::centresInside(std::span<const Point2> polygon,
                                                   const CellRange& range) {
    cellRuns_.clear();
    crossings_.clear();
    if (polygon.size() < 3 || range.empty() || !isUsable(polygon))
        return cellRuns_;
    const CellRange reached = rowsReached(range, boxOf(polygon));
    if (reached.empty())
        return cellRuns_;
    forEachEdge(polygon, [&](const Edge& edge) { addCrossings(edge, reached); });
    sortByRow(crossings_, sortedCrossings_, reached);
    for (std::size_t row = 0; row + 1 < rowStart_.size(); ++row)
        sweepCentres(rowOf(sortedCrossings_, row), reached);
    return cellRuns_;
}

void CellWalker::addCrossings(const Edge& edge, const CellRange& range) {
    if (edge.direction == 0)
        return;
    const int first = heldCeil(edge.low.y - 0.5, range.rowBegin, range.rowEnd);
    for (int row = std::max(first - 1, range.rowBegin); row < range.rowEnd; ++row) {
        const double y = row + 0.5;
        if (y >= edge.high.y)
            break;
        if (y < edge.low.y)
            continue;
        const double x = edge.xAt(y);
        int column = heldCeil(x - 0.5, range.columnBegin, range.columnEnd);
        while (column > range.columnBegin && column - 0.5 >= x) // rounding of x - 0.5
            --column;
        while (column < range.columnEnd && column + 0.5 < x)
            ++column;
        crossings_.push_back({row, column, edge.direction});
    }
}

void CellWalker::sweepCentres(std::span<Crossing> crossings, const CellRange& range) {
    sortFew(crossings, [](const Crossing& a, const Crossing& b) { return a.column < b.column; });
    int winding = 0;
    for (std::size_t k = 0; k < crossings.size(); ++k) {
        winding += crossings[k].direction;
        const int end = k + 1 < crossings.size() ? crossings[k + 1].column : range.columnEnd;
        if (winding != 0 && crossings[k].column < end)
            cellRuns_.push_back({crossings[k].row, crossings[k].column, end});
    }
}

} // namespace tessaran::geometry
