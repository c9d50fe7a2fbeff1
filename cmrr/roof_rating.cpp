#include "cmrr/roof_rating.h"

#include "base/parallel.h"
#include "cmrr/field_checks.h"
#include "cmrr/unit_rating.h"

#include <cmath>
#include <limits>
#include <vector>

namespace tessaran::cmrr {
namespace {

using base::Result;
using grid::myGrid;

constexpr int kRowGrain = 16;

// An input as it is read cell by cell: the same number everywhere, or a grid's values.
class Source {
  public:
    Source() = default;
    explicit Source(double constant) : constant_(constant) {}
    explicit Source(const myGrid& grid) : values_(grid.values().data()) {}
    Source(const Input& input, const InputGrids& grids) {
        if (input.fromFile)
            values_ = grids.find(input.file)->values().data();
        else
            constant_ = *input.constant;
    }

    bool isGrid() const { return values_ != nullptr; }
    double at(std::size_t k) const { return values_ != nullptr ? values_[k] : constant_; }

  private:
    const double* values_ = nullptr;
    double constant_ = 0.0;
};

// --- one unit -----------------------------------------------------------------------------------

// What a cell's inputs make of its rating: a rating, kNotRated for one at or below zero, no value
// where one is missing.
double inputState(double value) {
    if (!base::hasValue(value))
        return base::kNoValue;
    return value > 0.0 ? 0.0 : kNotRated;
}

// The parts that follow from numbers are worked out once.
class CoreRating {
  public:
    CoreRating(const CoreData& data, const InputGrids& grids)
        : data_(data), axial_(data.axialTest == AxialTest::ucs ? data.ucs : data.axialIs50, grids) {
        if (data.diametralTest == DiametralTest::is50)
            diametral_ = Source(data.diametralIs50, grids);
        if (data.fractures != Fractures::none)
            fractures_ = Source(data.fractures == Fractures::rqd ? data.rqd : data.spacing, grids);
        evenStrength_ = axial_.isGrid() ? 0.0 : strength(axial_.at(0));
        evenCohesion_ = diametral_.isGrid() ? 0.0 : cohesion(diametral_.at(0));
        evenIntensity_ = fractures_.isGrid() ? 0.0 : intensity(fractures_.at(0));
    }

    bool isGrid() const { return diametral_.isGrid() || fractures_.isGrid() || axial_.isGrid(); }
    double at(std::size_t k) const {
        const double axial = axial_.at(k);
        const double diametral = diametral_.at(k);
        const double fractures = fractures_.at(k);
        const double state =
            std::min({inputState(axial), inputState(diametral), inputState(fractures)});
        if (state != 0.0)
            return state;
        return (axial_.isGrid() ? strength(axial) : evenStrength_) +
               std::min(diametral_.isGrid() ? cohesion(diametral) : evenCohesion_,
                        fractures_.isGrid() ? intensity(fractures) : evenIntensity_);
    }

  private:
    static constexpr double kNoFractures = std::numeric_limits<double>::infinity();

    double strength(double axial) const {
        return strengthRating(data_.axialTest == AxialTest::ucs ? axial : ucsFromIs50(axial));
    }
    double cohesion(double diametral) const {
        return data_.diametralTest == DiametralTest::is50 ? diametralRating(diametral)
                                                          : diametralEstimateRating(data_.estimate);
    }
    double intensity(double fractures) const {
        switch (data_.fractures) {
        case Fractures::rqd:
            return rqdRating(fractures);
        case Fractures::spacing:
            return spacingRating(fractures);
        case Fractures::none:
            break;
        }
        return kNoFractures; // the cohesion alone counts
    }

    const CoreData& data_;
    Source diametral_{1.0}; // inputs not in use are in order
    Source fractures_{1.0};
    Source axial_;
    double evenStrength_ = 0.0;
    double evenCohesion_ = 0.0;
    double evenIntensity_ = 0.0;
};

class ObservedRating {
  public:
    ObservedRating(const Observation& data, bool immediateRoof, const InputGrids& grids)
        : beside_(observedBesideStrength(data, immediateRoof).value_or(kNotRated)),
          strength_(data.strengthIndex, grids) {}

    bool isGrid() const { return strength_.isGrid(); }
    double at(std::size_t k) const {
        const double index = strength_.at(k);
        return base::hasValue(index) ? withStrengthIndex(beside_, index).value_or(kNotRated)
                                     : base::kNoValue;
    }

  private:
    double beside_; // kNotRated leads to no rating: it is far below zero
    Source strength_;
};

// A grid of ready ratings: none at or below zero.
class ReadyRating {
  public:
    explicit ReadyRating(const myGrid& grid) : source_(grid) {}
    double at(std::size_t k) const {
        const double state = inputState(source_.at(k));
        return state == 0.0 ? source_.at(k) : state;
    }

  private:
    Source source_;
};

// A grid without values on the cells of another.
std::unique_ptr<myGrid> emptyGridLike(const myGrid& frame) {
    auto grid = std::make_unique<myGrid>();
    grid->setBlankValue(base::kNoValue);
    if (!grid->setupGrid(frame.nX(), frame.nY(), frame.cellWidthX(), frame.cellWidthY(), 0.0))
        return nullptr;
    grid->setOrigin(frame.origin().x, frame.origin().y, 0.0);
    return grid;
}

template <class Rating>
std::unique_ptr<myGrid> ratingGrid(const myGrid& frame, const Rating& rating) {
    std::unique_ptr<myGrid> grid = emptyGridLike(frame);
    if (!grid)
        return nullptr;
    const auto columns = static_cast<std::size_t>(grid->nX());
    base::parallelRanges(0, grid->nY(), kRowGrain, [&](int begin, int end) {
        for (int j = begin; j < end; ++j) {
            const std::span<double> row = grid->row(j);
            const std::size_t start = static_cast<std::size_t>(j) * row.size();
            for (std::size_t i = 0; i < columns; ++i) {
                const double value = rating.at(start + i);
                row[i] = value == kNotRated ? base::kNoValue : value;
            }
        }
    });
    return grid;
}

// Rows are summed by themselves, so that the mean does not depend on the threads.
Range rangeOf(const myGrid& grid) {
    constexpr double kNoEnd = std::numeric_limits<double>::infinity();
    std::vector<Range> rows(static_cast<std::size_t>(grid.nY()), Range{0.0, kNoEnd, -kNoEnd});
    base::parallelRanges(0, grid.nY(), kRowGrain, [&](int begin, int end) {
        for (int j = begin; j < end; ++j) {
            Range range = rows[static_cast<std::size_t>(j)];
            for (const double value : grid.row(j).first(static_cast<std::size_t>(grid.nX()))) {
                if (!base::hasValue(value)) {
                    ++range.withoutValue;
                    continue;
                }
                range.mean += value;
                range.lowest = std::min(range.lowest, value);
                range.highest = std::max(range.highest, value);
            }
            rows[static_cast<std::size_t>(j)] = range;
        }
    });
    Range all{0.0, kNoEnd, -kNoEnd};
    for (const Range& row : rows) {
        all.mean += row.mean;
        all.lowest = std::min(all.lowest, row.lowest);
        all.highest = std::max(all.highest, row.highest);
        all.withoutValue += row.withoutValue;
    }
    const auto cells = static_cast<std::size_t>(grid.nX()) * static_cast<std::size_t>(grid.nY());
    if (all.withoutValue == cells)
        return {0.0, 0.0, 0.0, cells, true};
    all.mean /= static_cast<double>(cells - all.withoutValue);
    return all;
}

// Null where the rating is a number.
std::unique_ptr<myGrid> unitRatingGrid(const CUnit& unit, int number, const InputGrids& grids,
                                       const myGrid& frame) {
    if (unit.ratingSource == RatingSource::file)
        return ratingGrid(frame, ReadyRating(*grids.find(unit.ratingFile)));
    if (unit.type == DataType::core)
        return ratingGrid(frame, CoreRating(unit.core, grids));
    return ratingGrid(frame, ObservedRating(unit.observation, number == 1, grids));
}

bool ratingIsGrid(const CUnit& unit, int number) {
    for (const GridUse& use : gridsInUse(unit, number))
        if (use.kind != GridKind::thickness)
            return true;
    return false;
}

// --- the roof -----------------------------------------------------------------------------------

struct Column {
    int units = 0;
    std::array<Source, kMostUnits> rating{};
    std::array<Source, kMostUnits> thickness{};
    std::array<bool, kMostUnits> weakTop{};
    Source groundWater{};
    Conditions conditions{};

    std::optional<Breakdown> at(std::size_t k) const {
        std::array<Layer, kMostUnits> layers{};
        const auto count = static_cast<std::size_t>(units);
        for (std::size_t u = 0; u < count; ++u)
            layers[u] = {rating[u].at(k), thickness[u].at(k), weakTop[u]};
        Conditions here = conditions;
        here.groundWater = groundWaterAdjustment(groundWater.at(k));
        return combine({layers.data(), count}, here);
    }
};

// Sums of the parts over some cells.
struct Sums {
    Breakdown parts{};
    std::size_t cells = 0;

    void add(const Breakdown& b) {
        parts.average += b.average;
        parts.strongBed += b.strongBed;
        parts.contacts += b.contacts;
        parts.groundWater += b.groundWater;
        parts.surcharge += b.surcharge;
        parts.cmrr += b.cmrr;
        parts.participating = std::max(parts.participating, b.participating);
    }
    Breakdown mean() const {
        const double n = cells > 0 ? static_cast<double>(cells) : 1.0;
        return {parts.participating,   parts.average / n,   parts.strongBed / n, parts.contacts / n,
                parts.groundWater / n, parts.surcharge / n, parts.cmrr / n};
    }
};

// Rows are summed by themselves, so that the means do not depend on the threads.
Breakdown fillRoof(const Column& column, myGrid& grid) {
    std::vector<Sums> rows(static_cast<std::size_t>(grid.nY()));
    base::parallelRanges(0, grid.nY(), kRowGrain, [&](int begin, int end) {
        for (int j = begin; j < end; ++j) {
            const std::span<double> row = grid.row(j);
            Sums& sums = rows[static_cast<std::size_t>(j)];
            const std::size_t start = static_cast<std::size_t>(j) * row.size();
            for (std::size_t i = 0; i + 1 < row.size(); ++i)
                if (const auto found = column.at(start + i)) {
                    row[i] = found->cmrr;
                    sums.add(*found);
                    ++sums.cells;
                }
        }
    });
    Sums all;
    for (const Sums& row : rows) {
        all.add(row.parts);
        all.cells += row.cells;
    }
    return all.mean();
}

Column columnOf(const RoofData& data, const InputGrids& grids, const RoofResult& result) {
    Column column;
    column.units = data.units;
    for (std::size_t u = 0; u < static_cast<std::size_t>(data.units); ++u) {
        const CUnit& unit = data.unit[u];
        column.rating[u] =
            result.unitGrids[u] ? Source(*result.unitGrids[u]) : Source(*unit.rating);
        column.thickness[u] = Source(unit.thickness, grids);
        column.weakTop[u] = unit.contact() == Contact::weak;
    }
    column.groundWater = Source(data.final.groundWater, grids);
    column.conditions.boltLength = *data.final.boltLength;
    column.conditions.surcharge = surchargeAdjustment(*data.final.surcharge);
    return column;
}

base::Error noMemory() {
    return base::rangeError("There is not enough memory for the CMRR grid.");
}

Result<void> rateUnits(const RoofData& data, const InputGrids& grids, const myGrid* frame,
                       RoofResult& result) {
    for (int n = 1; n <= data.units; ++n) {
        const auto u = static_cast<std::size_t>(n) - 1;
        const CUnit& unit = data.unit[u];
        if (!ratingIsGrid(unit, n)) {
            if (!unit.rating)
                return base::stateError(missingRatingText(n));
            result.units[u] = {*unit.rating, *unit.rating, *unit.rating};
            continue;
        }
        result.unitGrids[u] = unitRatingGrid(unit, n, grids, *frame);
        if (!result.unitGrids[u])
            return noMemory();
        result.units[u] = rangeOf(*result.unitGrids[u]);
    }
    return {};
}

} // namespace

Result<void> computeRating(CUnit& unit, int number) {
    unit.rating.reset();
    unit.ratingSource = RatingSource::none;
    const bool core = unit.type == DataType::core;
    if (auto checked = core ? checkCore(unit.core) : checkObservation(unit.observation); !checked)
        return checked;
    unit.ratingSource = RatingSource::computed;
    if (ratingIsGrid(unit, number))
        return {};
    const InputGrids none;
    const double rating = core ? CoreRating(unit.core, none).at(0)
                               : ObservedRating(unit.observation, number == 1, none).at(0);
    if (rating == kNotRated) {
        unit.ratingSource = RatingSource::none;
        return base::rangeError(kRatingError);
    }
    unit.rating = rating;
    return {};
}

Result<RoofResult> rateRoof(const RoofData& data, const InputGrids& grids) {
    RoofResult result;
    const std::vector<GridUse> uses = gridsInUse(data);
    const myGrid* frame = uses.empty() ? nullptr : grids.find(uses.front().file);
    for (const GridUse& use : uses)
        if (grids.find(use.file) == nullptr)
            return base::stateError(readErrorText(use));
    if (const auto rated = rateUnits(data, grids, frame, result); !rated)
        return rated.error();
    const Column column = columnOf(data, grids, result);
    if (frame == nullptr) {
        const auto how = column.at(0);
        if (!how)
            return base::rangeError("The CMRR could not be calculated.");
        result.how = *how;
        result.cmrr = {how->cmrr, how->cmrr, how->cmrr};
        return result;
    }
    result.grid = emptyGridLike(*frame);
    if (!result.grid)
        return noMemory();
    result.cells = static_cast<std::size_t>(frame->nX()) * static_cast<std::size_t>(frame->nY());
    result.how = fillRoof(column, *result.grid);
    result.cmrr = rangeOf(*result.grid);
    return result;
}

myGrid* unitGrid(RoofResult& result, int unit) {
    const auto u = static_cast<std::size_t>(unit) - 1;
    std::unique_ptr<myGrid>& grid = result.unitGrids[u];
    if (!grid) {
        grid = emptyGridLike(*result.grid);
        if (grid)
            grid->fillValue(result.units[u].mean);
    }
    return grid.get();
}

} // namespace tessaran::cmrr
