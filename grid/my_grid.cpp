#include "grid/my_grid.h"

#include "base/numbers.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace tessaran::grid {
namespace {

using base::hasValue;
using geometry::Vector2;

// Part of the design: grids made with it are told from grids made with the exact value by their
// corners.
constexpr double kShortPi = 3.1415926;

// Length of the part of `d` that is orthogonal to `normal`, in steps; kBefore when it does not
// point along `step`, kBeyond behind the last of `count` cells.
int placeAlong(Vector2 d, Vector2 step, Vector2 normal, int count) {
    const double normalLength = std::sqrt(geometry::dot(normal, normal));
    const Vector2 unit = (1.0 / normalLength) * normal;
    const Vector2 along = d - geometry::dot(d, unit) * unit;
    if (!(geometry::dot(along, step) > 0.0))
        return kBefore;
    const double steps =
        std::sqrt(geometry::dot(along, along)) / std::sqrt(geometry::dot(step, step));
    return steps < count ? static_cast<int>(steps) : kBeyond;
}

int clampedPlace(int place, int count) {
    if (place == kBefore)
        return 0;
    return place == kBeyond ? count - 1 : place;
}

std::size_t valueCount(int nX, int nY) {
    return (static_cast<std::size_t>(nX) + 1) * (static_cast<std::size_t>(nY) + 1);
}

std::size_t wrapped(int k, std::size_t n) {
    const auto size = static_cast<long long>(n);
    return static_cast<std::size_t>(((k % size) + size) % size);
}

} // namespace

bool CellList::get(std::size_t index, CellIndex& cell) const {
    if (index >= cells_.size())
        return false;
    cell = cells_[index];
    return true;
}

// --- definition ---------------------------------------------------------------------------------

bool myGrid::setupGrid(int nX, int nY, double cellWidthX, double cellWidthY,
                       double rotationDegrees) {
    // Also refuses a width that is not a number.
    if (nX < 1 || nY < 1 || !(cellWidthY >= base::kSmallestCellWidth) ||
        !std::isfinite(cellWidthX) || !std::isfinite(cellWidthY))
        return false;
    if (valueCount(nX, nY) > kMostValues)
        return false;
    std::vector<double> values;
    try {
        values.assign(valueCount(nX, nY), blankValue_);
    } catch (const std::bad_alloc&) {
        return false;
    }
    values_ = std::move(values);
    nX_ = nX;
    nY_ = nY;
    cellWidthX_ = cellWidthX;
    cellWidthY_ = cellWidthY;
    rotation_ = rotationDegrees * kShortPi / 180.0;
    const double c = std::cos(rotation_);
    const double s = std::sin(rotation_);
    xStep_ = {cellWidthX * c, cellWidthX * s, 0.0};
    yStep_ = {-cellWidthY * s, cellWidthY * c, 0.0};
    forgetDefaultColours();
    return true;
}

bool myGrid::isDefined() const {
    return cellWidthX_ > base::kSmallestCellWidth && cellWidthY_ > base::kSmallestCellWidth &&
           nX_ >= 2 && nY_ >= 2;
}

std::optional<GridDefinition> myGrid::getDefinition() const {
    if (!isDefined())
        return std::nullopt;
    return GridDefinition{nX_, nY_, rotation_, cellWidthX_, cellWidthY_};
}

void myGrid::setOrigin(double x, double y, double z) {
    origin_ = {x, y, z};
}

// --- values -------------------------------------------------------------------------------------

double myGrid::getValue(int i, int j) const {
    double value = 0.0;
    getValue(i, j, value);
    return value;
}

bool myGrid::getValue(int i, int j, double& value) const {
    if (!inStore(i, j) || values_.empty())
        return false;
    value = row(j)[static_cast<std::size_t>(i)];
    return true;
}

bool myGrid::setValue(int i, int j, double value) {
    if (!inStore(i, j) || values_.empty())
        return false;
    row(j)[static_cast<std::size_t>(i)] = value;
    return true;
}

bool myGrid::setValueText(int i, int j, std::string_view text) {
    return setValue(i, j, base::leadingDouble(text));
}

std::optional<MinMax> myGrid::getMinMax() const {
    if (!isDefined())
        return std::nullopt;
    MinMax found{HUGE_VAL, -HUGE_VAL};
    bool any = false;
    for (int j = 0; j < nY_; ++j)
        for (const double value : row(j).first(static_cast<std::size_t>(nX_)))
            if (hasValue(value)) {
                any = true;
                found = {std::min(found.min, value), std::max(found.max, value)};
            }
    return any ? std::optional(found) : std::nullopt;
}

double myGrid::getMean() const {
    if (!isDefined())
        return 0.0;
    double sum = 0.0;
    std::size_t count = 0;
    for (int j = 0; j < nY_; ++j)
        for (const double value : row(j).first(static_cast<std::size_t>(nX_)))
            if (hasValue(value)) {
                sum += value;
                ++count;
            }
    return count > 0 ? sum / static_cast<double>(count) : 0.0;
}

std::size_t myGrid::countWithoutValue() const {
    if (!isDefined())
        return 0;
    std::size_t count = 0;
    for (int j = 0; j < nY_; ++j)
        for (const double value : row(j).first(static_cast<std::size_t>(nX_)))
            count += hasValue(value) ? 0 : 1;
    return count;
}

void myGrid::fillValue(double value) {
    if (!isDefined())
        return;
    for (int j = 0; j < nY_; ++j)
        std::ranges::fill(row(j).first(static_cast<std::size_t>(nX_)), value);
}

void myGrid::scaleValues(double factor) {
    if (!isDefined())
        return;
    for (double& value : values_)
        if (hasValue(value))
            value *= factor;
}

void myGrid::rescaleValues(double a, double b) {
    const std::optional<MinMax> range = getMinMax();
    if (!range || !(range->max - range->min > base::kTolerance))
        return;
    const double low = std::min(a, b);
    const double high = std::max(a, b);
    if (!(high - low > base::kTolerance))
        return;
    for (double& value : values_)
        if (hasValue(value))
            value = low + (value - range->min) * (high - low) / (range->max - range->min);
}

// --- places -------------------------------------------------------------------------------------

std::optional<Point3> myGrid::cellCenter(int i, int j) const {
    double z = 0.0;
    if (!getValue(i, j, z))
        return std::nullopt;
    Point3 centre = origin_ + (i + 0.5) * xStep_ + (j + 0.5) * yStep_;
    centre.z = z;
    return centre;
}

Point2 myGrid::nodePoint(int i, int j) const {
    return (origin_ + static_cast<double>(i) * xStep_ + static_cast<double>(j) * yStep_).plan();
}

Point3 myGrid::nodePoint3(int i, int j) const {
    const Point2 p = nodePoint(i, j);
    return {p.x, p.y, getValue(i, j)};
}

std::optional<std::array<Point2, 4>> myGrid::cellCorners(int i, int j) const {
    if (i < 0 || j < 0 || i >= nX_ || j >= nY_)
        return std::nullopt;
    return std::array{nodePoint(i, j), nodePoint(i + 1, j), nodePoint(i + 1, j + 1),
                      nodePoint(i, j + 1)};
}

std::optional<std::array<Point3, 4>> myGrid::cellCorners3(int i, int j) const {
    if (i < 0 || j < 0 || i >= nX_ || j >= nY_)
        return std::nullopt;
    return std::array{nodePoint3(i, j), nodePoint3(i + 1, j), nodePoint3(i + 1, j + 1),
                      nodePoint3(i, j + 1)};
}

std::optional<std::array<Point2, 4>> myGrid::gridOutline() const {
    if (!isDefined())
        return std::nullopt;
    return std::array{nodePoint(0, 0), nodePoint(nX_, 0), nodePoint(nX_, nY_), nodePoint(0, nY_)};
}

CellIndex myGrid::pointToCell(Point2 point) const {
    const Vector2 d = point - origin_.plan();
    const Vector2 x = xStep_.plan();
    const Vector2 y = yStep_.plan();
    return {placeAlong(d, x, y, nX_), placeAlong(d, y, x, nY_)};
}

CellIndex myGrid::held(CellIndex cell) const {
    return {clampedPlace(cell.column, nX_), clampedPlace(cell.row, nY_)};
}

void myGrid::setDrawingSettings(int mode, int colour, std::string layer, bool outlined,
                                bool grouped) {
    settings_ = {colour, outlined, mode, std::move(layer), grouped};
}

// --- colour table -------------------------------------------------------------------------------

void myGrid::setColorBreaks(std::vector<ColourBreak> breaks) {
    colorBreaks_ = std::move(breaks);
    defaultColours_ = colorBreaks_.empty();
}

void myGrid::forgetDefaultColours() {
    if (defaultColours_)
        colorBreaks_.clear();
}

ColourRamp myGrid::defaultRamp() const {
    const MinMax range = getMinMax().value_or(MinMax{});
    return ColourRamp::between(std::floor(range.min), std::ceil(range.max), kDefaultBands);
}

void myGrid::needColours() const {
    if (!colorBreaks_.empty())
        return;
    colorBreaks_ = defaultRamp().table();
    defaultColours_ = true;
}

int myGrid::bandColour(int k) const {
    needColours();
    const long long bands = std::max<long long>(std::ssize(colorBreaks_) - 1, 1);
    const long long size = k < 0 ? -static_cast<long long>(k) : k;
    return colorBreaks_[static_cast<std::size_t>(size % bands)].colour;
}

int myGrid::colourOfValue(double value) const {
    needColours();
    return grid::colourOfValue(colorBreaks_, value);
}

int myGrid::bandOfValue(double value) const {
    return grid::bandOfValue(colorBreaks_, value);
}

double myGrid::breakValue(int k) const {
    needColours();
    return colorBreaks_[wrapped(k, colorBreaks_.size())].value;
}

} // namespace tessaran::grid
