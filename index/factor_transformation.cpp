#include "index/factor_transformation.h"

#include "base/parallel.h"
#include "base/tolerance.h"

#include <optional>

namespace tessaran::index {
namespace {

constexpr double kFull = 100.0;

// Rows that one thread takes at least, so that small grids stay on one.
constexpr int kRowsATask = 64;

// What a value outside the bounds becomes. Which side is looked at first matters where an upper
// bound lies below the lower one.
std::optional<double> outsideOf(const FactorTransformation& t, double v) {
    const bool above = v > t.upper;
    const bool below = v < t.lower;
    if (above && (t.tendency == Tendency::normal || !below))
        return kFull;
    if (below)
        return 0.0;
    return std::nullopt;
}

double rampOf(const FactorTransformation& t, double v) {
    if (const auto outside = outsideOf(t, v))
        return *outside;
    const double along = t.tendency == Tendency::normal ? v - t.lower : t.upper - v;
    const double ratio = along / (t.upper - t.lower);
    return kFull * (t.function == FactorFunction::exponential ? ratio * ratio : ratio);
}

double stepOf(const FactorTransformation& t, double v) {
    const bool above = v > t.lower;
    if (!above && !(v <= t.lower)) // not a number
        return v;
    return above == (t.tendency == Tendency::normal) ? kFull : 0.0;
}

} // namespace

FactorBounds proposedBounds(FactorFunction function, double min, double max, FactorBounds present) {
    const double middle = min + (max - min) * 0.5;
    switch (function) {
    case FactorFunction::linear:
        return {min, max};
    case FactorFunction::step:
    case FactorFunction::exponential:
        return {middle, middle};
    case FactorFunction::none:
        break;
    }
    return present;
}

double indexOf(const FactorTransformation& transformation, double value) {
    if (transformation.tendency == Tendency::none)
        return value;
    switch (transformation.function) {
    case FactorFunction::linear:
    case FactorFunction::exponential:
        return rampOf(transformation, value);
    case FactorFunction::step:
        return stepOf(transformation, value);
    case FactorFunction::none:
        break;
    }
    return value;
}

void transform(grid::myGrid& grid, const FactorTransformation& transformation) {
    base::parallelRanges(0, grid.nY(), kRowsATask, [&](int begin, int end) {
        for (int j = begin; j < end; ++j)
            for (double& value : grid.row(j).first(static_cast<std::size_t>(grid.nX())))
                if (base::hasValue(value))
                    value = indexOf(transformation, value);
    });
    grid.forgetDefaultColours();
}

} // namespace tessaran::index
