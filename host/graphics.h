#pragma once

// Temporary graphics: shown over the drawing, never part of it. What a command leaves shown or
// highlighted goes when the next of the system's commands begins.

#include "host/entity.h"

#include <cstdint>
#include <vector>

namespace tessaran::host {

// A whole grid's cells as one graphic. Cell (i, j) is the parallelogram at
// origin + i * xStep + j * yStep.
struct CellPatch {
    Point2 origin;
    Point2 xStep;
    Point2 yStep;
    int nX = 0;
    int nY = 0;
    bool filled = false; // filled cells, or outlines
    std::vector<std::uint8_t>
        colours; // nX * nY colour indexes, rows outer (j * nX + i); 0: not shown
};

struct GraphicId {
    std::uint64_t value = 0;
};

class TemporaryGraphics {
  public:
    virtual ~TemporaryGraphics() = default;

    virtual GraphicId showPolyline(const std::vector<Point2>& points, bool closed, int colour) = 0;
    virtual GraphicId showCells(CellPatch patch) = 0;
    virtual GraphicId showEntity(const Entity& entity) = 0; // id and layer are ignored
    virtual void remove(GraphicId id) = 0;

    virtual void highlight(const std::vector<EntityId>& entities, bool on) = 0;
    // Draws everything again; called when a picture has to be up to date before a wait.
    virtual void redraw() = 0;
};

// Removes what it showed when it goes.
class ShownGraphics {
  public:
    explicit ShownGraphics(TemporaryGraphics& graphics) : graphics_(graphics) {}
    ShownGraphics(const ShownGraphics&) = delete;
    ShownGraphics& operator=(const ShownGraphics&) = delete;
    ~ShownGraphics() { clear(); }

    void polyline(const std::vector<Point2>& points, bool closed, int colour) {
        shown_.push_back(graphics_.showPolyline(points, closed, colour));
    }
    void cells(CellPatch patch) { shown_.push_back(graphics_.showCells(std::move(patch))); }
    void entity(const Entity& entity) { shown_.push_back(graphics_.showEntity(entity)); }
    void clear() {
        for (const GraphicId id : shown_)
            graphics_.remove(id);
        shown_.clear();
    }

  private:
    TemporaryGraphics& graphics_;
    std::vector<GraphicId> shown_;
};

// Highlights entities until it goes.
class Highlighted {
  public:
    Highlighted(TemporaryGraphics& graphics, std::vector<EntityId> entities)
        : graphics_(graphics), entities_(std::move(entities)) {
        graphics_.highlight(entities_, true);
    }
    Highlighted(const Highlighted&) = delete;
    Highlighted& operator=(const Highlighted&) = delete;
    ~Highlighted() { graphics_.highlight(entities_, false); }

  private:
    TemporaryGraphics& graphics_;
    std::vector<EntityId> entities_;
};

} // namespace tessaran::host
