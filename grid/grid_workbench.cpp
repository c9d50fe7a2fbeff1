#include "grid/grid_workbench.h"

#include "base/numbers.h"
#include "base/text.h"
#include "base/tolerance.h"
#include "grid/base_grid.h"
#include "grid/base_grid_pages.h"
#include "grid/grid_editor.h"
#include "grid/grid_output.h"
#include "grid/grid_statistics.h"
#include "grid/polygon_statistics.h"
#include "host/host.h"
#include "host/services_dialogs.h"

#include <fmt/format.h>

#include <cmath>
#include <numbers>

namespace tessaran::grid {
namespace {

using host::Answer;
using host::Buttons;
using host::Host;
using Mode = host::FileRequest::Mode;

constexpr const char* kDiscardQuestion =
    "Grid is modified but not saved, Do you want to discard anyway?";

bool isForGrids(GridOperation operation) {
    return operation != GridOperation::square && operation != GridOperation::squareRoot;
}

// Reads into a grid of its own; null, and what is wrong told, when that failed.
std::unique_ptr<myGrid> readWhole(Host& host, const std::string& file) {
    auto grid = std::make_unique<myGrid>();
    return grid->readGrid(host, file, true) ? std::move(grid) : nullptr;
}

} // namespace

std::optional<double> parseOperand(const std::string& text) {
    if (!base::leadingNumber(text))
        return 0.0;
    const std::optional<double> whole = base::wholeDouble(text);
    return whole && std::isfinite(*whole) ? whole : std::nullopt;
}

std::string valueQuestion(GridOperation operation, const std::string& operand) {
    const char* name = nameOf(operation);
    if (operation == GridOperation::add)
        return fmt::format("Apply <{}> to grid cells with value < {} >!", name, operand);
    if (isForGrids(operation))
        return fmt::format("Apply <{}> to grid cells with value <{}>!", name, operand);
    return fmt::format("Apply <{}> to grid cells!", name);
}

std::string GridWorkbench::description() const {
    if (!grid_->isDefined())
        return {};
    const Point3& origin = grid_->origin();
    return fmt::format("{} x {} cells of {} x {}, origin ({}, {}), rotation {}{}{}", grid_->nX(),
                       grid_->nY(), base::general(grid_->cellWidthX()),
                       base::general(grid_->cellWidthY()), base::fixed(origin.x, 2),
                       base::fixed(origin.y, 2),
                       base::general(grid_->rotation() * 180.0 / std::numbers::pi),
                       grid_->title().empty() ? "" : ": ", grid_->title());
}

// --- telling ------------------------------------------------------------------------------------

void GridWorkbench::setStatus(Host& host, std::string text) {
    status_ = std::move(text);
    host.print("\n" + status_);
}

void GridWorkbench::fail(Host& host, const std::string& text) {
    status_ = text;
    host.dialogs().message(text);
}

bool GridWorkbench::isReady(Host& host) {
    if (grid_->isDefined())
        return true;
    setStatus(host, "Grid is not defined!");
    return false;
}

bool GridWorkbench::mayLose(Host& host, const char* question) const {
    return !modified_ || host.dialogs().ask({question, Buttons::yesNo,
                                             host::Question::Stake::guarded}) == Answer::yes;
}

bool GridWorkbench::confirm(Host& host, const std::string& question) const {
    return host.dialogs().ask({question, Buttons::okCancel}) == Answer::ok;
}

void GridWorkbench::changed(Host& host, const std::string& status) {
    modified_ = true;
    grid_->forgetDefaultColours();
    setStatus(host, status);
}

void GridWorkbench::tellLeftOver(Host& host, const CellCounts& counts) const {
    const auto tell = [&](std::size_t cells, const char* why) {
        if (cells > 0)
            host.print(fmt::format("\n{} cells are left as they are: {}.", cells, why));
    };
    tell(counts.withoutValue, "no value");
    tell(counts.outside, "outside of the other grid");
    tell(counts.zeroDivisor, "division by zero");
    tell(counts.outOfRange, "the result is no number that a grid can hold");
}

// --- files --------------------------------------------------------------------------------------

std::optional<std::string> GridWorkbench::chooseGridFile(Host& host) const {
    return host::chooseFile(host, Mode::open, kGridExtension);
}

bool GridWorkbench::load(Host& host) {
    if (!mayLose(host, kDiscardQuestion))
        return false;
    const auto file = chooseGridFile(host);
    if (!file)
        return false;
    auto read = readWhole(host, *file);
    if (!read || !read->isDefined()) {
        fail(host, "Grid file loading failed!");
        return false;
    }
    grid_ = std::move(read);
    fileName_ = *file;
    modified_ = false;
    setStatus(host, "grid loaded:" + fileName_);
    return true;
}

bool GridWorkbench::define(Host& host) {
    if (!mayLose(host, kDiscardQuestion))
        return false;
    CGridTab page;
    host::Dialog dialog("Define a Grid", {&page});
    if (!host::runDialog(host, dialog))
        return false;
    auto made = std::make_unique<myGrid>();
    if (!defineFromBaseGrid(host, *made)) {
        fail(host, "Grid is not defined!");
        return false;
    }
    grid_ = std::move(made);
    fileName_ = kUntitledGrid;
    modified_ = false;
    setStatus(host, fmt::format("New Grid Defined ! ({}, {} x {} cells)", fileName_, grid_->nX(),
                                grid_->nY()));
    return true;
}

void GridWorkbench::save(Host& host) {
    if (!isReady(host))
        return;
    const auto file = host::chooseFileAt(host, Mode::save, kGridExtension, fileName_);
    if (!file)
        return;
    const std::string path = base::withEnding(*file, std::string(".") + kGridExtension);
    if (!grid_->writeGrid(host, path))
        return;
    fileName_ = path;
    modified_ = false;
    setStatus(host, "grid saved to " + fileName_);
}

// --- place and values ---------------------------------------------------------------------------

void GridWorkbench::moveOrigin(Host& host) {
    if (!grid_->isDefined()) {
        setStatus(host, "grid is not defined!");
        return;
    }
    const Point3 before = grid_->origin();
    host::PointPrompt prompt{.message = "\nNew position:", .keywords = {}};
    const auto outline = grid_->gridOutline();
    for (const Point2 corner : *outline)
        prompt.dragged.push_back(corner - before.plan());
    const auto picked = host.prompts().getPoint(prompt);
    if (!picked.ok())
        return;
    const Point2 now = host.coordinates().toWorld(picked.value).plan();
    grid_->setOrigin(now.x, now.y, before.z);
    changed(host, fmt::format("Origin position moved from ({:f},{:f}) to ({:f},{:f})", before.x,
                              before.y, now.x, now.y));
}

void GridWorkbench::edit(Host& host) {
    if (isReady(host) && editGrid(host, *grid_))
        changed(host, "Grid values have been edited.");
}

// The operand is looked at before the operation is, even where it is not used.
void GridWorkbench::apply(Host& host, const std::string& operationName,
                          const std::string& operandText) {
    if (!isReady(host))
        return;
    const std::optional<double> operand = parseOperand(operandText);
    if (!operand)
        return fail(host, "Please enter a number.");
    if (std::abs(*operand) < base::kTolerance)
        return fail(host, "No Zero value makes sense!!");
    const std::optional<GridOperation> operation = operationNamed(operationName);
    if (!operation)
        return fail(host, "Unsupported Operation!!");
    const std::optional<MinMax> range = grid_->getMinMax();
    if (*operation == GridOperation::squareRoot && range && range->min < 0.0)
        return fail(host, "Negative value can not find square root !!");
    const std::string question = valueQuestion(*operation, std::string(base::trimmed(operandText)));
    if (!confirm(host, question))
        return;
    const CellCounts counts = applyValue(*grid_, *operation, *operand);
    changed(host, question + " Done!");
    tellLeftOver(host, counts);
}

void GridWorkbench::applyFile(Host& host, const std::string& operationName) {
    if (!isReady(host))
        return;
    const std::optional<GridOperation> operation = operationNamed(operationName);
    if (!operation || !isForGrids(*operation))
        return fail(host, "Unsupported Operation!!");
    const auto file = chooseGridFile(host);
    if (!file)
        return;
    const std::string question = fmt::format("Apply <{}> to grid cells with values from grid <{}>!",
                                             nameOf(*operation), *file);
    if (!confirm(host, question))
        return;
    const auto other = readWhole(host, *file);
    if (!other || !other->isDefined())
        return fail(host, "Can not read in grid file!");
    const CellCounts counts = applyGrid(*grid_, *operation, *other);
    changed(host, question + " Done!");
    tellLeftOver(host, counts);
}

void GridWorkbench::takeValuesFromFile(Host& host) {
    if (!isReady(host))
        return;
    const auto file = chooseGridFile(host);
    if (!file)
        return;
    if (!confirm(host, fmt::format("Get grid values from {}, the nearest value will be assigned to "
                                   "grid cells out of range!",
                                   *file)))
        return;
    const auto other = readWhole(host, *file);
    if (!other)
        return fail(host, "Read file error!");
    if (!other->isDefined())
        return fail(host, "File is not correctly read in!");
    takeValues(*grid_, *other);
    changed(host, "Grid values have been read in from " + *file);
}

// --- figures ------------------------------------------------------------------------------------

void GridWorkbench::showStatistics(Host& host) {
    if (!isReady(host))
        return;
    std::string text = statisticsText(statisticsOf(*grid_));
    if (const auto file = chooseGridFile(host)) {
        const auto other = readWhole(host, *file);
        if (!other || !other->isDefined())
            return fail(host, "File read error!");
        text += "\n" + correlationText(correlation(*grid_, *other));
    }
    setStatus(host, text);
}

void GridWorkbench::showPolygonStatistics(Host& host) {
    if (!isReady(host))
        return;
    if (const auto statistics = askPolygonStatistics(host, *grid_))
        setStatus(host, "Statistics:\n" + statisticsText(*statistics));
}

} // namespace tessaran::grid
