#include "index/mapping_analysis.h"

#include "base/text.h"
#include "host/curves.h"
#include "host/graphics.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "host/services_entities.h"
#include "host/services_layers.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::index {
namespace {

using geometry::PlanarRegion;
using geometry::Polygon;
using host::Entity;
using host::EntityId;
using host::Host;
using host::YesNo;

constexpr int kRowsPerStep = 16;

host::Region regionGeometry(const PlanarRegion& area) {
    host::Region region;
    for (const Polygon& polygon : area.loops) {
        host::Loop& loop = region.loops.emplace_back();
        for (const geometry::Point2 p : polygon)
            loop.vertices.push_back({p});
    }
    return region;
}

// One run of the analysis.
class Analysis {
  public:
    Analysis(Host& host, const MappingTask& task)
        : host_(host), task_(task), mapping_(task.indexGrid, task.colours) {}

    std::optional<std::vector<EntityId>> run() {
        const std::vector<EntityId> pillars = selectPillars();
        if (pillars.empty())
            return std::nullopt;
        filterCells();
        if (!labelCells(pillars))
            return std::nullopt;
        const std::optional<std::size_t> count = countRegions();
        if (!count)
            return std::nullopt;
        host_.print(fmt::format("\n{} regions are constructed!", *count));
        const bool combine =
            host::askYesNo(host_, "Combine regions with same color?", YesNo::yes) == YesNo::yes;
        const bool drawn = combine ? addCombined() : addSingly(*count);
        if (drawn)
            return std::move(made_);
        for (const EntityId id : made_)
            host_.drawing().erase(id);
        return std::nullopt;
    }

  private:
    // The pillars after the user had a look at them.
    std::vector<EntityId> selectPillars() {
        const std::string layers = base::joined(task_.pillarLayers, ",");
        std::vector<EntityId> pillars =
            host::entitiesOnLayers(host_, task_.pillarLayers, host::kPolylineTypes);
        if (pillars.empty()) {
            host_.dialogs().message(
                fmt::format("No related pillar lines in given layers:{}!", layers));
            return {};
        }
        host_.print(fmt::format("\n{} Pillar objects from: {}", pillars.size(), layers));
        const auto blocks = host::entitiesOnLayers(host_, task_.pillarLayers, {"INSERT"});
        if (!blocks.empty())
            host_.print(fmt::format("\n{} block references in these layers are not entered.",
                                    blocks.size()));
        const host::Highlighted highlighted(host_.graphics(), pillars);
        return host::waitForEnter(host_) ? pillars : std::vector<EntityId>{};
    }

    void filterCells() {
        if (task_.filter == ValueFilter::largerThan)
            host_.print(fmt::format("\nFiltering out grid cells with value not larger than {:f}",
                                    task_.threshold));
        else if (task_.filter == ValueFilter::smallThan)
            host_.print(fmt::format("\nFiltering out grid cells with vlaue not smaller than {:f}",
                                    task_.threshold));
        const std::size_t withoutValue = mapping_.filterCells(task_.filter, task_.threshold);
        if (withoutValue > 0)
            host_.print(fmt::format("\n{} cells without value are left out.", withoutValue));
    }

    // False when the user ended it.
    bool labelCells(const std::vector<EntityId>& pillars) {
        host_.print("\nChecking grid cells around the pillars...");
        base::Progress& meter = host_.meter();
        meter.begin("Filter grid cells...", 0, static_cast<long>(pillars.size()));
        bool goOn = true;
        for (std::size_t k = 0; k < pillars.size() && goOn; ++k) {
            meter.setPosition(static_cast<long>(k));
            const Entity* entity = host_.drawing().find(pillars[k]);
            goOn = entity == nullptr || labelPillar(*entity);
        }
        meter.end();
        if (skippedOpen_ > 0)
            host_.print(fmt::format("\n{} open pillar lines are skipped.", skippedOpen_));
        return goOn;
    }

    bool labelPillar(const Entity& entity) {
        if (host::vertexPolygon(entity).empty()) {
            tellLeftOut(entity, "it has no usable vertices");
            return true;
        }
        if (!host::isClosedPolyline(entity)) {
            if (!openAsClosed_)
                openAsClosed_ = host::askYesNo(
                    host_, "There are open pillar lines, treat as closed pillar?", YesNo::yes);
            if (*openAsClosed_ == YesNo::cancel)
                return false;
            if (*openAsClosed_ == YesNo::no) {
                ++skippedOpen_;
                return true;
            }
        }
        const auto labelled =
            mapping_.addPillar(static_cast<long>(entity.id.value), host::outlineOf(entity));
        if (!labelled)
            tellLeftOut(entity, labelled.error().message());
        return true;
    }

    void tellLeftOut(const Entity& entity, const std::string& reason) {
        host_.print(fmt::format("\nPillar #{:X} is left out: {}", entity.id.value, reason));
    }

    // Calls step(rowBegin, rowEnd) for all rows under the meter. False when the user broke it off
    // or a step failed.
    template <class Step>
    bool forAllRows(const Step& step) {
        const int rows = task_.indexGrid.nY();
        base::Progress& meter = host_.meter();
        meter.begin("Processing individual grid cell :", 0, rows);
        bool goOn = true;
        for (int j = 0; j < rows && goOn; j += kRowsPerStep) {
            meter.setPosition(j);
            goOn = step(j, std::min(rows, j + kRowsPerStep));
            if (goOn && meter.cancelled()) {
                host_.print("\nUser interrupted!!");
                goOn = false;
            }
        }
        meter.end();
        return goOn;
    }

    bool tellFailure(const base::Error& error) {
        host_.print("\n" + error.message());
        return false;
    }

    std::optional<std::size_t> countRegions() {
        host_.print("\n Processing individual grid cell, please wait ....");
        std::size_t count = 0;
        const bool all = forAllRows([&](int begin, int end) {
            const auto more = mapping_.countCellRegions(begin, end);
            count += more ? *more : 0;
            return more ? true : tellFailure(more.error());
        });
        return all ? std::optional(count) : std::nullopt;
    }

    bool addRegions(const std::vector<ColouredRegion>& regions) {
        for (const ColouredRegion& region : regions) {
            const auto id = host::appendEntity(
                host_,
                {{}, task_.mappingLayer, region.colour, "ByLayer", regionGeometry(region.area)});
            if (!id)
                return false;
            made_.push_back(*id);
        }
        return true;
    }

    bool addSingly(std::size_t count) {
        const std::string question =
            fmt::format("{} regions will be added to the drawing. Do you want to continue?", count);
        if (count > kManyRegions &&
            host_.dialogs().ask({question, host::Buttons::yesNo}) != host::Answer::yes)
            return false;
        return forAllRows([&](int begin, int end) {
            const auto regions = mapping_.cellRegions(begin, end);
            return regions ? addRegions(*regions) : tellFailure(regions.error());
        });
    }

    bool addCombined() {
        host_.print("\n  Combining regions ...");
        const auto regions = mapping_.combinedRegions();
        if (!regions)
            return tellFailure(regions.error());
        if (!addRegions(*regions))
            return false;
        host_.print(fmt::format("\nThe number of regions reduced to {}", regions->size()));
        return true;
    }

    Host& host_;
    const MappingTask& task_;
    IndexMapping mapping_;
    std::optional<YesNo> openAsClosed_; // the answer at the first open pillar holds for all
    std::size_t skippedOpen_ = 0;
    std::vector<EntityId> made_;
};

} // namespace

std::optional<std::vector<EntityId>> mapOntoDrawing(Host& host, const MappingTask& task) {
    return Analysis(host, task).run();
}

} // namespace tessaran::index
