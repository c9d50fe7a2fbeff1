#include "grid/base_grid_pages.h"

#include "base/numbers.h"
#include "base/text.h"
#include "grid/grid_drawing.h"
#include "grid/grid_file.h"
#include "grid/grid_output.h"
#include "host/host.h"
#include "host/services_dialogs.h"

#include <fmt/format.h>

#include <cmath>
#include <optional>

namespace tessaran::grid {
namespace {

using host::DialogSession;
using host::Host;
using host::PromptResult;
using host::PromptStatus;

constexpr int kMostCells = 2000; // columns or rows

constexpr const char* kCellsX = "Number of Cells in X Direction:";
constexpr const char* kCellsY = "Number of Cells in Y Direction:";
constexpr const char* kWidthX = "Cell Width in X Direction:";
constexpr const char* kWidthY = "Cell Width in Y Direction:";
constexpr const char* kRotation = "Rotation to X axis (degree)  :";
constexpr const char* kOriginX = "X Coordinate of Grid Origin:";
constexpr const char* kOriginY = "Y Coordinate of Grid Origin:";

// A coordinate as the host shows distances: decimal, at the drawing's current precision.
std::string displayed(Host& host, double value) {
    const auto precision = host.variables().get("LUPREC");
    const int* decimals = precision ? std::get_if<int>(&*precision) : nullptr;
    return base::fixed(value, decimals != nullptr && *decimals >= 0 ? *decimals : 4);
}

// A distance asked for with a default; nothing when it was cancelled.
std::optional<double> askWidth(Host& host, const std::string& message, double byDefault) {
    const PromptResult<double> answer = host.prompts().getDistance(
        {.message = message, .allowZero = false, .allowNegative = false});
    if (answer.status == PromptStatus::none)
        return byDefault;
    return answer.ok() ? std::optional(answer.value) : std::nullopt;
}

// Whole cells of that width that come closest to the length.
int countOver(double length, double width) {
    const double count = std::floor(length / width + 0.5);
    return count > 0.0 && count < 1e9 ? static_cast<int>(count) : 0;
}

} // namespace

CGridTab::CGridTab() {
    texts_.cellsX = "100";
    texts_.cellsY = "100";
}

double CGridTab::Coordinate::value() const {
    return shown == untouched ? exact : base::leadingDouble(shown);
}

void CGridTab::describe(host::PageBuilder& page) {
    describeLocation(page);
    describeGeometry(page);
    describeActions(page);
}

void CGridTab::describeLocation(host::PageBuilder& page) {
    page.group("Grid Location");
    page.text(kOriginX, originX_.shown);
    page.text(kOriginY, originY_.shown);
    page.button("Pick a Point", [this](DialogSession& session) { pickOrigin(session); }).beside();
    page.text(kRotation, texts_.rotation);
}

void CGridTab::describeGeometry(host::PageBuilder& page) {
    page.group("Grid Geometry");
    page.text(kCellsX, texts_.cellsX);
    page.text(kCellsY, texts_.cellsY);
    page.text(kWidthX, texts_.widthX);
    page.button("< Cell Size",
                [this](DialogSession& session) { pickCellSize(session, texts_.widthX, "X"); })
        .beside();
    page.text(kWidthY, texts_.widthY);
    page.button("< Cell Size",
                [this](DialogSession& session) { pickCellSize(session, texts_.widthY, "Y"); })
        .beside();
    page.button("< Geometry", [this](DialogSession& session) { pickGeometry(session); });
    page.information("Total number of Cells:",
                     [this] { return std::to_string(totalCells(texts_)); });
}

void CGridTab::describeActions(host::PageBuilder& page) {
    page.group("");
    page.button("< Preview Grid", [this](DialogSession& session) { preview(session); });
    page.button("Save As ...", [this](DialogSession& session) { saveDefinition(session); });
    page.button("Import From ...", [this](DialogSession& session) { importDefinition(session); });
}

void CGridTab::opened(DialogSession& session) {
    Host& host = session.host();
    BaseGrid base = baseGrid(host);
    myGrid given;
    gridGiven_ = setupFromBaseGrid(base, given);
    for (const BaseGridReset& reset : fillCountsAndWidths(base))
        host.print(fmt::format("\nThe {} \"{}\" is taken as {}.", reset.what, reset.text,
                               kCountAndWidthDefault));
    showBaseGrid(host, base);
}

bool CGridTab::mayLeave(DialogSession& session) {
    if (!check(session))
        return false;
    texts_ = worldTexts(session.host());
    baseGrid(session.host()) = texts_;
    showBaseGrid(session.host(), texts_);
    gridGiven_ = true;
    return true;
}

bool CGridTab::checkCount(DialogSession& session, const char* label, const std::string& text) {
    const int count = base::leadingInt(text);
    if (count >= 1 && count <= kMostCells)
        return true;
    session.host().dialogs().message(
        count < 1 ? "Error: Size of cells should be larger than zero!"
                  : fmt::format("Please enter an integer between {} and {}.", 1, kMostCells));
    session.focus(label);
    return false;
}

// Empty texts read as 0.
bool CGridTab::checkNumber(DialogSession& session, const char* label, const std::string& text) {
    const std::optional<double> number = base::wholeDouble(text);
    if (base::trimmed(text).empty() || (number && std::isfinite(*number)))
        return true;
    session.host().dialogs().message("Please enter a number.");
    session.focus(label);
    return false;
}

bool CGridTab::check(DialogSession& session) {
    return checkCount(session, kCellsX, texts_.cellsX) &&
           checkCount(session, kCellsY, texts_.cellsY) &&
           checkNumber(session, kWidthX, texts_.widthX) &&
           checkNumber(session, kWidthY, texts_.widthY) &&
           checkNumber(session, kRotation, texts_.rotation) &&
           checkNumber(session, kOriginX, originX_.shown) &&
           checkNumber(session, kOriginY, originY_.shown);
}

Point3 CGridTab::userOrigin() const {
    return {originX_.value(), originY_.value(), 0.0};
}

void CGridTab::showUserOrigin(const Point3& user) {
    originX_.shown = base::fixed6(user.x);
    originY_.shown = base::fixed6(user.y);
}

void CGridTab::showBaseGrid(Host& host, const BaseGrid& base) {
    texts_ = base;
    const Point3 user = host.coordinates().toUser(
        {base::leadingDouble(base.originX), base::leadingDouble(base.originY), 0.0});
    const std::string x = displayed(host, user.x);
    const std::string y = displayed(host, user.y);
    originX_ = {x, x, user.x};
    originY_ = {y, y, user.y};
}

BaseGrid CGridTab::worldTexts(Host& host) const {
    BaseGrid base = texts_;
    if (originX_.shown == originX_.untouched && originY_.shown == originY_.untouched)
        return base;
    const Point3 world = host.coordinates().toWorld(userOrigin());
    base.originX = base::fixed6(world.x);
    base.originY = base::fixed6(world.y);
    return base;
}

// Checks the page and lays the grid out as it says.
bool CGridTab::toGrid(DialogSession& session, myGrid& grid) {
    return check(session) && setupFromBaseGrid(worldTexts(session.host()), grid);
}

void CGridTab::pickOrigin(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    Host& host = session.host();
    host::PointPrompt prompt{.message = "\nSpecify the orign point of grid (low-left corner): ",
                             .keywords = {}};
    myGrid grid;
    if (gridGiven_ && setupFromBaseGrid(worldTexts(host), grid)) {
        prompt.message = "\nNew position:";
        const auto outline = grid.gridOutline();
        for (const Point2 corner : *outline)
            prompt.dragged.push_back(corner - grid.origin().plan());
    }
    const PromptResult<Point3> point = host.prompts().getPoint(prompt);
    if (point.ok())
        showUserOrigin(point.value);
}

void CGridTab::pickGeometry(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    Host& host = session.host();
    const Point3 origin = userOrigin();
    const PromptResult<Point3> corner =
        host.prompts().getCorner({.message = "\nPick a opposite Point(up right corner): ",
                                  .keywords = {},
                                  .base = origin,
                                  .rubberBand = host::RubberBand::box});
    if (!corner.ok())
        return;
    const auto widthX =
        askWidth(host, fmt::format("\nWidth of Cells in X direction<{}>", texts_.widthX),
                 base::leadingDouble(texts_.widthX));
    if (!widthX || !(*widthX > 0.0))
        return;
    const auto widthY =
        askWidth(host, fmt::format("\nWidth of Cells in Y direction<{}>", texts_.widthY),
                 base::leadingDouble(texts_.widthY));
    if (!widthY || !(*widthY > 0.0))
        return;

    // The corner as the grid sees it: along its own axes.
    const Point2 from = host.coordinates().toWorld(origin).plan();
    const Point2 to = host.coordinates().toWorld(corner.value).plan();
    myGrid axes; // one unit cell
    axes.setupGrid(1, 1, 1.0, 1.0, base::leadingDouble(texts_.rotation));
    const int cellsX = countOver(dot(to - from, axes.xStep().plan()), *widthX);
    const int cellsY = countOver(dot(to - from, axes.yStep().plan()), *widthY);
    if (cellsX < 1 || cellsY < 1)
        return;
    texts_.cellsX = std::to_string(cellsX);
    texts_.cellsY = std::to_string(cellsY);
    texts_.widthX = base::fixed6(*widthX);
    texts_.widthY = base::fixed6(*widthY);
    gridGiven_ = true;
}

void CGridTab::pickCellSize(DialogSession& session, std::string& width, const char* direction) {
    const DialogSession::Hidden hidden(session);
    const double present = base::leadingDouble(width);
    const auto size = askWidth(
        session.host(),
        fmt::format("\nInput the size of a cell<{:f}> in {} direction:", present, direction),
        present);
    if (size)
        width = base::fixed6(*size);
}

void CGridTab::preview(DialogSession& session) {
    if (!check(session))
        return;
    myGrid grid; // the preview tells when it is not defined
    static_cast<void>(setupFromBaseGrid(worldTexts(session.host()), grid));
    const DialogSession::Hidden hidden(session);
    drawAfterBuild(session.host(), grid, kPreviewLines);
}

void CGridTab::saveDefinition(DialogSession& session) {
    myGrid grid;
    if (!check(session))
        return;
    if (!setupFromBaseGrid(worldTexts(session.host()), grid)) {
        session.host().dialogs().message("Grid is not defined!");
        return;
    }
    const auto file =
        host::chooseFile(session.host(), host::FileRequest::Mode::save, kGridExtension,
                         kUntitledGrid, "Save Grid Definition to file: ");
    if (file)
        grid.writeGrid(session.host(), base::withEnding(*file, ".grd"));
}

void CGridTab::importDefinition(DialogSession& session) {
    Host& host = session.host();
    const auto file = host::chooseFile(host, host::FileRequest::Mode::open, kGridExtension);
    if (!file)
        return;
    myGrid grid;
    const bool read = readAnyGridFile(host, *file, false, grid);
    if (gridFileKind(*file) == GridFileKind::unknown)
        return;
    if (!read || !grid.isDefined()) {
        host.dialogs().message("Grid file definition is not correct!");
        return;
    }
    showBaseGrid(host, baseGridOf(grid));
    gridGiven_ = true;
    host.dialogs().message("Grid file definition loaded!");
}

} // namespace tessaran::grid
