#include "index/open_areas.h"

#include "base/parallel.h"
#include "index/cell_cut.h"
#include "index/planar_parts.h"

#include <algorithm>
#include <mutex>
#include <optional>

namespace tessaran::index {

namespace {

using base::Result;
using geometry::CellLabels;
using geometry::CellLoop;
using geometry::CellOutlines;
using geometry::LatticeNode;
using geometry::PlanarRegion;
using geometry::Polygon;

// Cells of one label that are connected by sides.
struct Connected {
    std::int16_t label = 0;
    PlanarRegion area;
    std::vector<int> pillars; // those that cut some of its cells, ascending, each once
};

class Components {
  public:
    Components(const CellLabels& cells, const LabelGrid& labels)
        : cells_(cells), labels_(labels), numbers_(cells.labels.size(), -1) {
        for (int j = 0; j < cells.nY; ++j)
            for (int i = 0; i < cells.nX; ++i)
                if (cells.at(i, j) != 0 && numbers_[at(i, j)] < 0)
                    fill(i, j);
        addOutlines();
    }

    std::vector<Connected> take() { return std::move(areas_); }

  private:
    struct Cell {
        int i;
        int j;
    };

    std::size_t at(int i, int j) const {
        return static_cast<std::size_t>(j) * static_cast<std::size_t>(cells_.nX) +
               static_cast<std::size_t>(i);
    }

    void fill(int i, int j) {
        areas_.push_back({cells_.at(i, j), {}, {}});
        reach(i, j);
        std::vector<int>& pillars = areas_.back().pillars;
        while (!open_.empty()) {
            const Cell c = open_.back();
            open_.pop_back();
            if (labels_.isCut(c.i, c.j)) {
                const std::vector<int> cutting = labels_.pillars(c.i, c.j);
                pillars.insert(pillars.end(), cutting.begin(), cutting.end());
            }
            reach(c.i - 1, c.j);
            reach(c.i + 1, c.j);
            reach(c.i, c.j - 1);
            reach(c.i, c.j + 1);
        }
        std::sort(pillars.begin(), pillars.end());
        pillars.erase(std::unique(pillars.begin(), pillars.end()), pillars.end());
    }

    void reach(int i, int j) {
        if (i < 0 || j < 0 || i >= cells_.nX || j >= cells_.nY ||
            cells_.at(i, j) != areas_.back().label || numbers_[at(i, j)] >= 0)
            return;
        numbers_[at(i, j)] = static_cast<std::int32_t>(areas_.size() - 1);
        open_.push_back({i, j});
    }

    // The cell at the left of a loop's first side.
    Cell cellOf(std::span<const LatticeNode> loop) const {
        const LatticeNode a = loop[0];
        const LatticeNode b = loop[1];
        if (a.j == b.j)
            return a.i < b.i ? Cell{a.i, a.j} : Cell{a.i - 1, a.j - 1};
        return a.j < b.j ? Cell{a.i - 1, a.j} : Cell{a.i, a.j - 1};
    }

    void addOutlines() {
        const CellOutlines outlines = geometry::traceOutlines(cells_);
        for (const CellLoop& loop : outlines.loops) {
            const std::span<const LatticeNode> nodes = outlines.nodesOf(loop);
            const Cell c = cellOf(nodes);
            Polygon polygon;
            polygon.reserve(nodes.size());
            for (const LatticeNode n : nodes)
                polygon.push_back({static_cast<double>(n.i), static_cast<double>(n.j)});
            const auto number = static_cast<std::size_t>(numbers_[at(c.i, c.j)]);
            areas_[number].area.loops.push_back(std::move(polygon));
        }
    }

    const CellLabels& cells_;
    const LabelGrid& labels_;
    std::vector<std::int32_t> numbers_; // of each cell's area; -1: none
    std::vector<Cell> open_;
    std::vector<Connected> areas_;
};

Result<void> cutByPillars(Connected& area, std::span<const PlanarRegion> pillars, double smallest) {
    if (area.pillars.empty())
        return {};
    const geometry::Box2 box = boxOf(area.area);
    if (area.pillars.size() == 1 && box.width() == 1.0 && box.height() == 1.0) {
        const PlanarRegion& pillar = pillars[static_cast<std::size_t>(area.pillars[0])];
        if (auto open =
                cellLessPillar(static_cast<int>(box.low.x), static_cast<int>(box.low.y), pillar)) {
            area.area = *std::move(open);
            return {};
        }
    }
    const geometry::Box2 around = box.enlarged(0.5);
    std::vector<PlanarRegion> cutting;
    for (const int pillar : area.pillars)
        cutting.push_back(partNear(pillars[static_cast<std::size_t>(pillar)], around));
    auto open = geometry::subtract(area.area, cutting);
    if (!open)
        return open.error();
    area.area = orientedArea(*open) > smallest ? std::move(*open) : PlanarRegion{};
    return {};
}

} // namespace

Result<std::vector<OpenArea>> openAreas(const CellLabels& cells, const LabelGrid& labels,
                                        std::span<const PlanarRegion> pillars, double smallest) {
    std::vector<Connected> areas = Components(cells, labels).take();
    std::optional<base::Error> failed;
    std::mutex failing;
    base::parallelRanges(0, static_cast<int>(areas.size()), 1, [&](int begin, int end) {
        for (int k = begin; k < end; ++k) {
            const auto cut = cutByPillars(areas[static_cast<std::size_t>(k)], pillars, smallest);
            const std::scoped_lock lock(failing);
            if (!cut && !failed)
                failed = cut.error();
        }
    });
    if (failed)
        return *failed;
    std::stable_sort(areas.begin(), areas.end(),
                     [](const Connected& a, const Connected& b) { return a.label < b.label; });
    std::vector<OpenArea> united;
    for (Connected& area : areas) {
        if (area.area.empty())
            continue;
        if (united.empty() || united.back().label != area.label)
            united.push_back({area.label, {}});
        std::vector<Polygon>& loops = united.back().area.loops;
        std::move(area.area.loops.begin(), area.area.loops.end(), std::back_inserter(loops));
    }
    return united;
}

} // namespace tessaran::index
