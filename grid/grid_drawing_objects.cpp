#include "grid/grid_drawing_objects.h"

#include "grid/grid_drawing_shapes.h"
#include "host/services_entities.h"
#include "host/services_layers.h"

#include <fmt/format.h>

#include <utility>

namespace tessaran::grid {
namespace {

using host::Entity;
using host::EntityId;
using host::Host;
using host::colour::kByLayer;

constexpr int kNewLayerColour = 7;
// The linetype that the seam layers ask for exists nowhere, so that they get "Continuous".
constexpr const char* kSeamLinetype = "countinous";

// Puts objects into the drawing until one is refused; takes all out again unless they are kept.
class Adder {
  public:
    Adder(Host& host, std::string layer) : host_(host), layer_(std::move(layer)) {}
    Adder(const Adder&) = delete;
    Adder& operator=(const Adder&) = delete;
    ~Adder() {
        for (const EntityId id : ids_)
            host_.drawing().erase(id);
    }

    const std::string& layer() const { return layer_; }

    bool add(Entity entity) {
        const base::Result<EntityId> added = host_.drawing().add(std::move(entity));
        if (!added) {
            host_.print("\n" + added.error().message());
            return false;
        }
        ids_.push_back(*added);
        return true;
    }
    bool addOutline(std::span<const Point2> points, int colour) {
        return add(host::closedPolyline({points.begin(), points.end()}, layer_, colour));
    }

    std::vector<EntityId> keep() { return std::exchange(ids_, {}); }

  private:
    Host& host_;
    std::string layer_;
    std::vector<EntityId> ids_;
};

// body(i, j, colour) for every cell that has a colour, until one says false.
template <class Body>
bool forEachCell(const myGrid& grid, const CellColours& colours, const Body& body) {
    std::size_t k = 0;
    for (int j = 0; j < grid.nY(); ++j)
        for (int i = 0; i < grid.nX(); ++i, ++k)
            if (colours[k] != 0 && !body(i, j, static_cast<int>(colours[k])))
                return false;
    return true;
}

bool addLine(Adder& adder, const myGrid& grid, int number, Point2 from, Point2 to) {
    const double z = grid.origin().z;
    return adder.add({{},
                      adder.layer(),
                      lineColour(number),
                      "ByLayer",
                      host::Line{{from.x, from.y, z}, {to.x, to.y, z}}});
}

bool addCellLines(Adder& adder, const myGrid& grid) {
    const int nX = grid.nX();
    const int nY = grid.nY();
    for (int i = 0; i <= nX; ++i)
        if (!addLine(adder, grid, i, grid.nodePoint(i, 0), grid.nodePoint(i, nY)))
            return false;
    for (int j = 0; j <= nY; ++j)
        if (!addLine(adder, grid, j, grid.nodePoint(0, j), grid.nodePoint(nX, j)))
            return false;
    return true;
}

bool addCells(Adder& adder, const myGrid& grid, const CellColours& colours) {
    return forEachCell(grid, colours, [&](int i, int j, int colour) {
        return adder.addOutline(*grid.cellCorners(i, j), colour);
    });
}

bool addSeamCells(Adder& adder, Host& host, const myGrid& grid) {
    for (const SeamLayer& layer : kSeamLayers)
        if (!host::ensureLayer(host, layer.name, layer.colour,
                               host::linetypeOrContinuous(host.drawing(), kSeamLinetype)))
            return false;
    const bool onLayers = drawnOnSeamLayers(grid);
    return forEachCell(grid, coloursBySeam(grid), [&](int i, int j, int /*colour*/) {
        const std::string layer = onLayers ? seamLayer(grid.getValue(i, j)).name : adder.layer();
        const auto corners = *grid.cellCorners(i, j);
        return adder.add(host::closedPolyline({corners.begin(), corners.end()}, layer, kByLayer));
    });
}

bool addPreview(Adder& adder, Host& host, const myGrid& grid, int number) {
    switch (number) {
    case 1:
        return addCellLines(adder, grid);
    case 3:
        return addSeamCells(adder, host, grid);
    default:
        return addCells(adder, grid, coloursByValue(grid));
    }
}

bool addRuns(Adder& adder, const myGrid& grid) {
    for (const CellRun& run : columnRuns(grid, coloursByValue(grid)))
        if (!adder.addOutline(runOutline(grid, run), run.colour))
            return false;
    return true;
}

bool addAreaOutlines(Adder& adder, const ColourArea& area) {
    for (const host::Loop& loop : area.loops) {
        std::vector<Point2> points;
        for (const host::Loop::Vertex& vertex : loop.vertices)
            points.push_back(vertex.at);
        if (!adder.addOutline(points, area.colour))
            return false;
    }
    return true;
}

bool addFaces(Adder& adder, const myGrid& grid) {
    return forEachCell(grid, coloursByValue(grid), [&](int i, int j, int colour) {
        host::Face3d face;
        const auto corners = *grid.cellCorners(i, j);
        for (std::size_t k = 0; k < corners.size(); ++k)
            face.corners[k] = {corners[k].x, corners[k].y, grid.getValue(i, j)};
        return adder.add({{}, adder.layer(), colour, "ByLayer", face});
    });
}

bool addHatch(Adder& adder, const myGrid& grid, ColourArea area) {
    if (grid.drawingSettings().outlined && !addAreaOutlines(adder, area))
        return false;
    host::Hatch hatch;
    hatch.loops = std::move(area.loops);
    return adder.add({{}, adder.layer(), area.colour, "ByLayer", std::move(hatch)});
}

bool interrupted(Host& host) {
    if (!host.userBreak())
        return false;
    host.print("\nOperation is interrupted by user");
    return true;
}

// The cells' colours, column by column; nothing when the user stopped.
std::optional<CellColours> createBaseRegions(Host& host, const myGrid& grid) {
    host.print("\nCreating base regions ...");
    base::ProgressRun meter(host.meter(), "Creating base regions ...", 0, grid.nX());
    CellColours colours(static_cast<std::size_t>(grid.nX()) * static_cast<std::size_t>(grid.nY()));
    for (int i = 0; i < grid.nX(); ++i) {
        if (interrupted(host))
            return std::nullopt;
        meter.at(i);
        colourColumn(grid, i, colours);
    }
    return colours;
}

bool addRegions(Adder& adder, Host& host, const myGrid& grid) {
    const std::optional<CellColours> colours = createBaseRegions(host, grid);
    if (!colours)
        return false;
    host.print("\n Combining base regions ...");
    std::size_t hatches = 0;
    for (ColourArea& area : colourAreas(grid, *colours)) {
        const std::string text = fmt::format("Combining regions for color <{}> ...", area.colour);
        host.print("\n" + text);
        const base::ProgressRun meter(host.meter(), text, 0, 1);
        if (interrupted(host) || !addHatch(adder, grid, std::move(area)))
            return false;
        ++hatches;
    }
    host.print(fmt::format("\n {} Hatchs are generated", hatches));
    return true;
}

bool addMap(Adder& adder, Host& host, const myGrid& grid, int number) {
    switch (number) {
    case 3:
        return addRuns(adder, grid);
    case 4:
        for (const ColourArea& area : colourAreas(grid, coloursByValue(grid)))
            if (!addAreaOutlines(adder, area))
                return false;
        return true;
    case 5:
        for (ColourArea& area : colourAreas(grid, coloursByValue(grid)))
            if (!addHatch(adder, grid, std::move(area)))
                return false;
        return true;
    case 6:
        return addFaces(adder, grid);
    case 7:
        return addRegions(adder, host, grid);
    default:
        return addCells(adder, grid, coloursByValue(grid));
    }
}

// The layer that a map goes to; nothing when it could not be made.
std::optional<std::string> mapLayer(Host& host, const myGrid& grid) {
    const std::string& layer = grid.drawingSettings().layer;
    if (layer.empty())
        return host.drawing().currentLayer();
    if (!host::ensureLayer(host, layer, kNewLayerColour))
        return std::nullopt;
    return layer;
}

} // namespace

std::size_t objectCount(const myGrid& grid, DrawMode mode) {
    if (mode.kind == DrawMode::Kind::preview && mode.number == 1)
        return static_cast<std::size_t>(grid.nX()) + static_cast<std::size_t>(grid.nY()) + 2;
    if (mode.kind == DrawMode::Kind::colourMap) {
        if (mode.number == 5 || mode.number == 7) {
            grid.bandColour(0); // makes the default table where there is none
            return grid.colorBreaks().size();
        }
        if (mode.number == 3)
            return columnRuns(grid, coloursByValue(grid)).size();
    }
    return static_cast<std::size_t>(grid.nX()) * static_cast<std::size_t>(grid.nY()) -
           grid.countWithoutValue();
}

std::optional<std::vector<EntityId>> addObjects(Host& host, const myGrid& grid, DrawMode mode) {
    const bool isMap = mode.kind == DrawMode::Kind::colourMap;
    const std::optional<std::string> layer =
        isMap ? mapLayer(host, grid) : host.drawing().currentLayer();
    if (!layer)
        return std::nullopt;
    Adder adder(host, *layer);
    const bool done =
        isMap ? addMap(adder, host, grid, mode.number) : addPreview(adder, host, grid, mode.number);
    if (!done)
        return std::nullopt;
    return adder.keep();
}

} // namespace tessaran::grid
