#include "factors/point_pages.h"

#include "base/tolerance.h"
#include "factors/point_interpolation.h"
#include "factors/point_sources.h"
#include "geometry/polygon.h"
#include "grid/base_grid.h"
#include "grid/colour_ramp.h"
#include "grid/grid_objects.h"
#include "host/curves.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "host/services_layers.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::factors {
namespace {

using geometry::Point2;
using geometry::Point3;
using geometry::Polygon;
using grid::myGrid;
using host::DialogSession;
using host::Host;

constexpr const char* kDefinitionError = "Grid definition error!";
constexpr const char* kRebuildQuestion = "grid is not saved yet! continue to rebuild";
const std::vector<std::string> kPointTypes{"POINT", "LINE", "LWPOLYLINE", "POLYLINE"};

// The outline's corners moved along the drawing's axes, for a turned grid too.
Polygon enlargedOutline(const myGrid& grid, double by) {
    const auto outline = *grid.gridOutline();
    return {outline[0] + Point2{-by, -by}, outline[1] + Point2{by, -by},
            outline[2] + Point2{by, by}, outline[3] + Point2{-by, by}};
}

grid::MinMax heightsOf(const std::vector<Point3>& points) {
    const auto [low, high] =
        std::ranges::minmax_element(points, {}, [](const Point3& p) { return p.z; });
    return {low->z, high->z};
}

void tellCounts(Host& host, const PointFileCounts& counts) {
    if (counts.skipped > 0)
        host.print(
            fmt::format("\n{} lines without exactly three fields are skipped.", counts.skipped));
    if (counts.unusable > 0)
        host.print(
            fmt::format("\n{} lines with numbers out of range are skipped.", counts.unusable));
    if (counts.withoutNumber > 0)
        host.print(fmt::format("\n{} lines hold a field that is no number and counts as 0.",
                               counts.withoutNumber));
}

} // namespace

// Points are held against the limit as they come, so that only those of use take memory.
struct CPointsTab::Gathered {
    Polygon within;
    long long total = 0;
    Points points;

    void add(const Point3& p) {
        ++total;
        if (geometry::pointInPolygon(p.plan(), within))
            points.push_back(p);
    }
};

void CPointsTab::describe(host::PageBuilder& page) {
    output_.describeFile(page);
    describeLayers(page, "Define Point Layers", "Pick a Layer");
    output_.describeDescription(page, kGridTitle);
    page.check("From External File", fromFile_);
    page.radio("Interpolations", {"Simple Average", "Inverse Distance"}, interpolation_);
    page.integer("Min. Points:", minimumPoints_, 1, 10);
    page.integer("Max. Search R (%):", searchPercent_);
    describeButtons(page);
}

double CPointsTab::searchLimit(const myGrid& grid) const {
    return searchPercent_ * static_cast<double>(grid.nX()) * grid.cellWidthX() * 0.01;
}

// --- gathering points ---------------------------------------------------------------------------

bool CPointsTab::gatherFromLayers(Host& host, double step, Gathered& gathered) const {
    if (layers_.empty()) {
        host.dialogs().message("No layer is selected!");
        return false;
    }
    const auto objects = host::entitiesOnLayers(host, layers_, kPointTypes);
    if (objects.empty()) {
        host.dialogs().message("No related point objects in specified layers!");
        return false;
    }
    long tooLong = 0;
    for (const host::EntityId id : objects) {
        const host::Entity* entity = host.drawing().find(id);
        if (entity == nullptr)
            continue;
        if (const auto* point = std::get_if<host::PointMark>(&entity->geometry))
            gathered.add(point->at);
        else if (const auto curve = host::curveOf(*entity))
            tooLong +=
                samplesAlong(*curve, step, [&](const Point3& p) { gathered.add(p); }) ? 0 : 1;
    }
    if (tooLong > 0)
        host.print(
            fmt::format("\n{} objects are too long for the cell width and are skipped.", tooLong));
    if (gathered.total == 0)
        host.dialogs().message("No points is available!");
    else
        host.print(
            fmt::format("\n{} points are obtained in layers: {}", gathered.total, layerText()));
    return gathered.total > 0;
}

bool CPointsTab::gatherFromFile(Host& host, Gathered& gathered) const {
    const auto file = host::chooseFile(host, host::FileRequest::Mode::open, "txt");
    if (!file)
        return false;
    PointFileCounts counts;
    const base::Result<void> read = readPointFile(
        *file, [&](const Point3& p) { gathered.add(p); }, counts);
    if (!read) {
        host.dialogs().message(fmt::format("Can't open file {}, error = {}\n", *file,
                                           static_cast<unsigned>(read.error().cause)));
        return false;
    }
    tellCounts(host, counts);
    if (gathered.total == 0)
        host.dialogs().message(fmt::format("No point are imported from {}", *file));
    else
        host.print(fmt::format("\n{} point are imported from {}", gathered.total, *file));
    return gathered.total > 0;
}

std::optional<CPointsTab::Points> CPointsTab::gather(Host& host, const myGrid& grid) const {
    Gathered gathered{enlargedOutline(grid, searchLimit(grid)), 0, {}};
    if (!(fromFile_ ? gatherFromFile(host, gathered)
                    : gatherFromLayers(host, grid.cellWidthX(), gathered)))
        return std::nullopt;
    host.print("\nfiltering the points...");
    if (!gathered.points.empty())
        return std::move(gathered.points);
    host.dialogs().message("No points is related!");
    return std::nullopt;
}

// --- build --------------------------------------------------------------------------------------

// Whether the points will do.
bool CPointsTab::agreed(Host& host, const Points& points, const myGrid& grid) const {
    // The count is held against columns times the cell's height, and that is meant.
    if (static_cast<double>(points.size()) < grid.nX() * grid.cellWidthY() * 0.5) {
        const std::string text = fmt::format("Only {} points for {} grid size!", points.size(),
                                             static_cast<long>(grid.nX()) * grid.nY());
        if (host.dialogs().ask({text, host::Buttons::okCancel}) != host::Answer::ok)
            return false;
    }
    const grid::MinMax heights = heightsOf(points);
    if (heights.max - heights.min > base::kTolerance)
        return true;
    host.dialogs().message("All points have same z value!");
    return false;
}

void CPointsTab::build(DialogSession& session) {
    Host& host = session.host();
    if (!output_.mayRebuild(host, false, kRebuildQuestion))
        return;
    output_.markEmpty();
    if (!session.validate(*this))
        return;
    std::optional<Points> points;
    {
        myGrid grid; // the working grid stays as it is until its cells are computed
        if (!grid::defineFromBaseGrid(host, grid)) {
            host.dialogs().message(kDefinitionError);
            return;
        }
        points = gather(host, grid);
        if (!points || !agreed(host, *points, grid))
            return;
        host.print(fmt::format("\nTotal {} points are in search ranges", points->size()));
        host.print(fmt::format("\nGrid({} X {}) is going to be built from these points!", grid.nX(),
                               grid.nY()));
    }
    const DialogSession::Hidden hidden(session);
    if (host::waitForEnter(host) && fill(host, *points))
        showBuilt(host);
}

// Whether the grid is whole. The cells are shown as they are filled.
bool CPointsTab::fill(Host& host, const Points& points) {
    if (!layWorkingGrid(host)) {
        host.dialogs().message(kDefinitionError);
        return false;
    }
    const grid::MinMax heights = heightsOf(points);
    grid_.setColorBreaks(
        grid::ColourRamp::between(heights.min, heights.max, grid::kDefaultBands).table());
    host::ShownGraphics shown(host.graphics());
    PointGridWatch watch;
    watch.noPoint = [&](int i, int j) {
        host.print(fmt::format("\nCan not find point for cell : {},{}", i, j));
    };
    watch.columnsDone = [&](int from, int to) {
        shown.cells(outlinesOfColumns(grid_, from, to));
        host.graphics().redraw();
    };
    const PointSearch search{interpolation_ == static_cast<int>(Interpolation::inverseDistance)
                                 ? Interpolation::inverseDistance
                                 : Interpolation::simpleAverage,
                             minimumPoints_, searchLimit(grid_)};
    const base::ProgressRun run(host.meter(), "Building grids...", 0,
                                static_cast<long>(grid_.nX()) * grid_.nY());
    const PointGridResult result = gridPoints(points, search, grid_, watch, host.meter());
    if (!result.completed)
        host.print(kCancelledByUser);
    else if (result.withoutNumber > 0)
        host.print(fmt::format("\n{} cells got no number: they stand on the first of their points.",
                               result.withoutNumber));
    return result.completed;
}

} // namespace tessaran::factors
