#include "cmrr/input_grids.h"

#include "cmrr/field_checks.h"
#include "grid/grid_file.h"

#include <fmt/format.h>

#include <cmath>
#include <filesystem>
#include <functional>

namespace tessaran::cmrr {
namespace {

using base::ErrorKind;
using base::Result;
using grid::myGrid;

// How a kind is named where its values are spoken of, and where it could not be read.
const char* valueName(GridKind kind) {
    switch (kind) {
    case GridKind::thickness:
        return "thickness";
    case GridKind::strength:
        return "strength";
    case GridKind::diametral:
        return "diametral strength";
    case GridKind::rqd:
        return "RQD";
    case GridKind::spacing:
        return "discontinuity";
    case GridKind::axialIs50:
        return "axial strength";
    case GridKind::ucs:
        return "UCS";
    case GridKind::rating:
        return "unit rating";
    case GridKind::groundWater:
        break;
    }
    return "ground water";
}

const char* fileName(GridKind kind) {
    switch (kind) {
    case GridKind::diametral:
        return "diametral";
    case GridKind::rqd:
        return "discontinuity";
    case GridKind::axialIs50:
    case GridKind::ucs:
        return "axial";
    default:
        return valueName(kind);
    }
}

std::string wholePath(const std::string& file) {
    std::error_code error;
    const std::filesystem::path whole = std::filesystem::absolute(file, error);
    return error ? file : whole.lexically_normal().string();
}

// --- what is looked for -------------------------------------------------------------------------

// The points that a kind takes offence at, and from how many on it asks.
struct Offence {
    std::function<bool(double)> bad;
    std::function<std::string(double, int row, int column)> text;
    std::size_t limit = 4;
};

constexpr double kDriestIndex = 1.0;
constexpr double kWettestIndex = 5.0;

Offence thicknessOffence() {
    constexpr std::size_t kThicknessLimit = 2;
    return {[](double value) { return value < 0.0 || isThin(value); },
            [](double value, int row, int column) {
                if (value < 0.0)
                    return fmt::format("The thickness grid that was entered contains a point with "
                                       "a value less than zero\nat row {} column {}. The program "
                                       "will continue but will be unable to use this point GR-1.",
                                       row, column);
                return fmt::format("The thickness grid that was entered contains a point with a "
                                   "value less than the recommended 1/2\nfoot at row {} column {}.",
                                   row, column);
            },
            kThicknessLimit};
}

Offence groundWaterOffence() {
    return {[](double value) { return value < kDriestIndex || value > kWettestIndex; },
            [](double, int row, int column) {
                return fmt::format("The ground water grid that was entered contains a point value "
                                   "less than 1 or greater than 5\nat row {} column {}. The "
                                   "program will continue but will consider this point to be damp.",
                                   row, column);
            }};
}

Offence zeroOffence(GridKind kind) {
    return {[](double value) { return value <= 0.0; },
            [name = valueName(kind)](double, int row, int column) {
                return fmt::format("The {} grid that was entered contains a point with a value "
                                   "less than or equal to zero\nat row {} column {}.  The program "
                                   "will continue but will not use this point in the calculations",
                                   name, row, column);
            }};
}

Offence offenceOf(GridKind kind) {
    switch (kind) {
    case GridKind::thickness:
        return thicknessOffence();
    case GridKind::groundWater:
        return groundWaterOffence();
    default:
        return zeroOffence(kind);
    }
}

bool advise(const Inspection& found, GridAdvice& advice) {
    for (const std::string& warning : found.warnings)
        advice.warn(warning);
    if (!found.question.empty() && !advice.goOn(found.question))
        return false;
    if (!found.blanks.empty())
        advice.warn(found.blanks);
    return true;
}

} // namespace

// --- which grids --------------------------------------------------------------------------------

std::vector<GridUse> gridsInUse(const CUnit& unit, int number) {
    std::vector<GridUse> uses;
    const auto add = [&](GridKind kind, const Input& input) {
        if (input.fromFile)
            uses.push_back({kind, number, input.file, &input});
    };
    if (unit.ratingSource == RatingSource::file)
        uses.push_back({GridKind::rating, number, unit.ratingFile, &unit.ratingFile});
    const bool computed = unit.ratingSource == RatingSource::computed;
    if (computed && unit.type == DataType::observation)
        add(GridKind::strength, unit.observation.strengthIndex);
    if (computed && unit.type == DataType::core) {
        const CoreData& core = unit.core;
        if (core.diametralTest == DiametralTest::is50)
            add(GridKind::diametral, core.diametralIs50);
        if (core.fractures == Fractures::rqd)
            add(GridKind::rqd, core.rqd);
        if (core.fractures == Fractures::spacing)
            add(GridKind::spacing, core.spacing);
        if (core.axialTest == AxialTest::is50)
            add(GridKind::axialIs50, core.axialIs50);
        else
            add(GridKind::ucs, core.ucs);
    }
    add(GridKind::thickness, unit.thickness);
    return uses;
}

std::vector<GridUse> gridsInUse(const RoofData& data) {
    std::vector<GridUse> uses;
    for (int n = 1; n <= data.units; ++n)
        for (GridUse& use : gridsInUse(data.unit[static_cast<std::size_t>(n) - 1], n))
            uses.push_back(std::move(use));
    const Input& water = data.final.groundWater;
    if (water.fromFile)
        uses.push_back({GridKind::groundWater, 0, water.file, &water});
    return uses;
}

std::string readErrorText(const GridUse& use) {
    if (use.kind == GridKind::groundWater)
        return kGroundWaterReadError;
    return fmt::format("There was an error reading the {} grid for unit {} - DDRGOO-",
                       fileName(use.kind), use.unit);
}

// --- their cells --------------------------------------------------------------------------------

Inspection inspect(GridKind kind, const myGrid& grid) {
    const Offence offence = offenceOf(kind);
    Inspection found;
    std::size_t bad = 0;
    bool blank = false;
    for (int j = 0; j < grid.nY(); ++j) {
        const auto cells = grid.row(j).first(static_cast<std::size_t>(grid.nX()));
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const double value = cells[i];
            if (!base::hasValue(value)) {
                blank = true;
            } else if (bad < offence.limit && offence.bad(value) && ++bad < offence.limit) {
                found.warnings.push_back(offence.text(value, j + 1, static_cast<int>(i) + 1));
            }
        }
    }
    if (bad == offence.limit)
        found.question = fmt::format("The {} grid that was entered contains at least {} or more "
                                     "points that are\nout of range. Would you like to continue "
                                     "reading in this grid file?",
                                     valueName(kind), offence.limit);
    if (blank)
        found.blanks = fmt::format("The {} grid that was entered contains some blank data "
                                   "points\nThe program will continue but the output will also "
                                   "contain blank data points",
                                   valueName(kind));
    return found;
}

Result<void> sameFrame(const myGrid& earlier, const myGrid& grid) {
    // Files give the corners to six decimals.
    constexpr double kSamePlace = 2e-6;
    const auto corners = [](const myGrid& g) {
        const grid::Point3 low = g.origin();
        return std::array{low.y, low.x, low.y + g.nY() * g.cellWidthY(),
                          low.x + g.nX() * g.cellWidthX()};
    };
    if (earlier.nX() != grid.nX() || earlier.nY() != grid.nY())
        return base::rangeError(
            fmt::format("The grid which you have specified is not the same size "
                        "as your previous grids - H-R-{}",
                        earlier.nX() != grid.nX() ? 5 : 6));
    const auto expected = corners(earlier);
    const auto found = corners(grid);
    for (std::size_t k = 0; k < found.size(); ++k)
        if (!(std::abs(found[k] - expected[k]) <= kSamePlace))
            return base::rangeError(fmt::format("The grid which you have specified does not have "
                                                "the same location as your previous grids - H-R-{}",
                                                k + 1));
    return {};
}

// --- the files ----------------------------------------------------------------------------------

Result<InputGrids::Entry*> InputGrids::read(const std::string& file, base::Progress& progress) {
    const std::string key = wholePath(file);
    if (const auto found = entries_.find(key); found != entries_.end())
        return found->second.get();
    auto entry = std::make_unique<Entry>();
    ++filesRead_;
    if (const auto done = grid::readGridFile(file, true, entry->grid, progress); !done)
        return done.error();
    if (!entry->grid.isDefined())
        return base::formatError("The grid is not defined.", file);
    return (entries_[key] = std::move(entry)).get();
}

const myGrid* InputGrids::find(const std::string& file) const {
    const auto found = entries_.find(wholePath(file));
    return found == entries_.end() ? nullptr : &found->second->grid;
}

Result<const myGrid*> InputGrids::need(const std::string& file, GridKind kind,
                                       const std::vector<std::string>& others, GridAdvice& advice,
                                       base::Progress& progress) {
    const Result<Entry*> entry = read(file, progress);
    if (!entry)
        return entry.error();
    for (const std::string& other : others) {
        const myGrid* earlier = find(other);
        if (earlier == nullptr || earlier == &(*entry)->grid)
            continue;
        if (const auto same = sameFrame(*earlier, (*entry)->grid); !same)
            return same.error();
        break;
    }
    if (!(*entry)->inspected.contains(kind)) {
        if (!advise(inspect(kind, (*entry)->grid), advice))
            return base::cancelledError();
        (*entry)->inspected.insert(kind);
    }
    return &(*entry)->grid;
}

GridNeed needAll(const std::vector<GridUse>& uses, InputGrids& grids, GridAdvice& advice,
                 base::Progress& progress) {
    using Outcome = GridNeed::Outcome;
    std::vector<std::string> earlier;
    for (const GridUse& use : uses) {
        const auto grid = grids.need(use.file, use.kind, earlier, advice, progress);
        if (!grid && grid.error().kind == ErrorKind::range)
            return {Outcome::misfit, use, grid.error().text, {}};
        if (!grid && grid.error().kind == ErrorKind::cancelled)
            return {Outcome::dropped, use, grid.error().text, {}};
        if (!grid)
            return {Outcome::unread, use, readErrorText(use), grid.error().message()};
        earlier.push_back(use.file);
    }
    return {};
}

} // namespace tessaran::cmrr
