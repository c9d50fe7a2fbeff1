#include "geometry/cell_coverage.h"

#include "geometry/edge.h"
#include "geometry/polygon.h"

#include <algorithm>
#include <cmath>

// Coverage. The area of a polygon within a cell is the sum, over what its edges do in the cell's
// column, of the signed width dx of each piece times the part of the cell's height that lies below
// it: all of it for pieces in rows above, none for pieces below, the mean height within the cell
// for its own pieces. Going down a column, the widths of all pieces above are therefore the share
// of every cell that no piece runs through.

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

// The range's columns that the box reaches; all of its rows.
CellRange columnsReached(const CellRange& range, const Box2& box) {
    CellRange reached = range;
    reached.columnBegin = heldFloor(box.low.x, range.columnBegin, range.columnEnd);
    reached.columnEnd = heldCeil(box.high.x, range.columnBegin, range.columnEnd);
    if (box.high.y <= range.rowBegin || box.low.y >= range.rowEnd)
        reached.columnEnd = reached.columnBegin;
    return reached;
}

double shareOf(double signedShare) {
    const double share = std::abs(signedShare);
    const double whole = std::round(share);
    if (std::abs(share - whole) <= (whole == 0.0 ? kNoShare : kWholeCellTolerance))
        return whole;
    return share;
}

// Insertion for the handful of items that a column usually holds, keeping the order of equals.
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
    const CellRange reached = columnsReached(range, boxOf(polygon));
    if (reached.empty())
        return runs_;
    forEachEdge(polygon, [&](const Edge& edge) { addEdge(edge, reached); });
    sortByColumn(pieces_, sortedPieces_, reached);
    for (std::size_t c = 0; c + 1 < columnStart_.size(); ++c)
        sweepColumn(std::span(sortedPieces_)
                        .subspan(columnStart_[c], columnStart_[c + 1] - columnStart_[c]),
                    reached);
    return runs_;
}

void CellWalker::addEdge(const Edge& edge, const CellRange& range) {
    const double from = std::max(edge.left.x, static_cast<double>(range.columnBegin));
    const double to = std::min(edge.right.x, static_cast<double>(range.columnEnd));
    if (edge.direction == 0 || from >= to)
        return;
    Point2 start{from, edge.heightAt(from)};
    for (int column = static_cast<int>(std::floor(from)); start.x < to; ++column) {
        const double x = std::min(to, column + 1.0);
        const Point2 end{x, edge.heightAt(x)};
        addPieces(column, start, end, edge.direction, range);
        start = end;
    }
}

void CellWalker::addPieces(int column, Point2 left, Point2 right, int direction,
                           const CellRange& range) {
    const Point2 low = left.y <= right.y ? left : right;
    const Point2 high = left.y <= right.y ? right : left;
    if (high.y <= range.rowBegin)
        return;
    if (low.y >= range.rowEnd) {
        pieces_.push_back({column, range.rowEnd, direction * (right.x - left.x), 0.0});
        return;
    }
    const int firstRow = heldFloor(low.y, range.rowBegin, range.rowEnd);
    if (low.y >= firstRow && high.y <= firstRow + 1.0) { // most pieces: within one cell
        const double dx = direction * (right.x - left.x);
        pieces_.push_back({column, firstRow, dx, dx * (0.5 * (low.y + high.y) - firstRow)});
        return;
    }
    const double slope = (high.x - low.x) / (high.y - low.y);
    const auto xAt = [&](double y) { return y == high.y ? high.x : low.x + (y - low.y) * slope; };
    double y = std::max(low.y, static_cast<double>(range.rowBegin));
    double x = xAt(y);
    const double top = std::min(high.y, static_cast<double>(range.rowEnd));
    for (int row = firstRow; y < top; ++row) {
        const double nextY = std::min(top, row + 1.0);
        const double nextX = xAt(nextY);
        const double dx = direction * std::abs(nextX - x);
        pieces_.push_back({column, row, dx, dx * (0.5 * (y + nextY) - row)});
        y = nextY;
        x = nextX;
    }
    if (high.y > range.rowEnd)
        pieces_.push_back({column, range.rowEnd, direction * std::abs(high.x - x), 0.0});
}

template <class Item>
void CellWalker::sortByColumn(const std::vector<Item>& items, std::vector<Item>& sorted,
                              const CellRange& range) {
    const auto columns = static_cast<std::size_t>(range.columnEnd - range.columnBegin);
    const auto slot = [&](const Item& item) {
        return static_cast<std::size_t>(item.column - range.columnBegin);
    };
    columnStart_.assign(columns + 2, 0); // shifted by one while placing
    for (const Item& item : items)
        ++columnStart_[slot(item) + 2];
    for (std::size_t c = 2; c < columnStart_.size(); ++c)
        columnStart_[c] += columnStart_[c - 1];
    sorted.resize(items.size());
    for (const Item& item : items)
        sorted[columnStart_[slot(item) + 1]++] = item;
    columnStart_.pop_back();
}

void CellWalker::sweepColumn(std::span<Piece> pieces, const CellRange& range) {
    if (pieces.empty())
        return;
    sortFew(pieces, [](const Piece& a, const Piece& b) { return a.row > b.row; });
    const int column = pieces.front().column;
    const auto add = [&](int rowBegin, int rowEnd, double signedShare) {
        const double share = shareOf(signedShare);
        if (rowBegin < rowEnd && share > 0.0)
            runs_.push_back({column, rowBegin, rowEnd, share});
    };
    double above = 0.0; // signed width of all pieces in higher rows
    int next = range.rowEnd;
    for (std::size_t k = 0; k < pieces.size();) {
        const int row = pieces[k].row;
        double dx = 0.0;
        double below = 0.0;
        for (; k < pieces.size() && pieces[k].row == row; ++k) {
            dx += pieces[k].dx;
            below += pieces[k].below;
        }
        if (row < range.rowEnd) {
            add(row + 1, next, above);
            add(row, row + 1, above + below);
            next = row;
        }
        above += dx;
    }
    add(range.rowBegin, next, above);
}

std::span<const CellRun> CellWalker::centresInside(std::span<const Point2> polygon,
                                                   const CellRange& range) {
    cellRuns_.clear();
    crossings_.clear();
    if (polygon.size() < 3 || range.empty() || !isUsable(polygon))
        return cellRuns_;
    const CellRange reached = columnsReached(range, boxOf(polygon));
    if (reached.empty())
        return cellRuns_;
    forEachEdge(polygon, [&](const Edge& edge) { addCrossings(edge, reached); });
    sortByColumn(crossings_, sortedCrossings_, reached);
    for (std::size_t c = 0; c + 1 < columnStart_.size(); ++c)
        sweepCentres(std::span(sortedCrossings_)
                         .subspan(columnStart_[c], columnStart_[c + 1] - columnStart_[c]),
                     reached);
    return cellRuns_;
}

void CellWalker::addCrossings(const Edge& edge, const CellRange& range) {
    if (edge.direction == 0)
        return;
    const int first = heldCeil(edge.left.x - 0.5, range.columnBegin, range.columnEnd);
    for (int column = std::max(first - 1, range.columnBegin); column < range.columnEnd; ++column) {
        const double x = column + 0.5;
        if (x >= edge.right.x)
            break;
        if (x < edge.left.x)
            continue;
        const double y = edge.heightAt(x);
        int row = heldCeil(y - 0.5, range.rowBegin, range.rowEnd);
        while (row > range.rowBegin && row - 0.5 >= y)
            --row;
        while (row < range.rowEnd && row + 0.5 < y)
            ++row;
        crossings_.push_back({column, row, edge.direction});
    }
}

void CellWalker::sweepCentres(std::span<Crossing> crossings, const CellRange& range) {
    sortFew(crossings, [](const Crossing& a, const Crossing& b) { return a.row < b.row; });
    int winding = 0;
    for (std::size_t k = 0; k < crossings.size(); ++k) {
        winding += crossings[k].direction;
        const int rowEnd = k + 1 < crossings.size() ? crossings[k + 1].row : range.rowEnd;
        if (winding == 0 || crossings[k].row >= rowEnd)
            continue;
        cellRuns_.push_back({crossings[k].column, crossings[k].row, rowEnd});
    }
}

} // namespace tessaran::geometry
