#include "rfri/assessment_commands.h"

#include "base/numbers.h"
#include "base/text.h"
#include "base/tolerance.h"
#include "grid/legend.h"
#include "grid/ramp_dialog.h"
#include "host/host.h"
#include "host/layer_dialog.h"
#include "host/services_dialogs.h"
#include "host/services_entities.h"
#include "host/services_layers.h"
#include "host/services_selection.h"
#include "rfri/assessment_pages.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::rfri {
namespace {

using host::EntityId;
using host::Host;
using host::PromptStatus;

constexpr double kTextShare = 0.6; // of the polygon's width
constexpr const char* kLabelSize = "zelk_RFRI_Label";

struct Assessed {
    EntityId polygon;
    Assessment assessment;
    std::optional<host::Box2> box; // nothing where the object has no known extents
};

std::optional<Assessment> recordOn(Host& host, EntityId polygon) {
    const auto items = host.drawing().xdata(polygon, kApplication);
    return items ? assessmentOf(*items) : std::nullopt;
}

// The selected objects that carry a valid record; nothing, and told so, when nothing was selected.
std::optional<std::vector<Assessed>> selectAssessed(Host& host) {
    host::SelectionPrompt prompt;
    prompt.message = "\nSelect RFRI Entites:";
    prompt.removeMessage = "\nRemove RFRI Entites:";
    prompt.filter.xdataApplication = kApplication;
    const auto selected = host::selectObjects(host, prompt);
    if (selected.empty()) {
        host.print("\nNo RFRI entity selected.");
        return std::nullopt;
    }
    std::vector<Assessed> out;
    for (const EntityId id : selected) {
        if (auto record = recordOn(host, id))
            out.push_back({id, std::move(*record), host.drawing().extents(id)});
    }
    return out;
}

// Characters of a UTF-8 text: bytes that begin one.
std::size_t characterCount(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    }));
}

// So that the text fills some of the polygon's width; a polygon without width gets 1.
double heightIn(const host::Box2& box, const std::string& text) {
    const double height = kTextShare * box.width() / static_cast<double>(characterCount(text));
    return height > 0.0 ? height : 1.0;
}

void writeIn(Host& host, const host::Box2& box, const std::string& text, double height,
             const std::string& layer) {
    host::Text out;
    out.at = {box.centre().x, box.centre().y, 0.0};
    out.text = text;
    out.height = height;
    out.across = host::Text::Across::centre;
    out.up = host::Text::Up::middle;
    host::Entity entity;
    entity.layer = layer;
    entity.geometry = std::move(out);
    host::appendEntity(host, std::move(entity));
}

// --- input
// ----------------------------------------------------------------------------------------

// A closed polyline through points that are asked for; nothing with fewer than two.
std::optional<EntityId> drawPolygon(Host& host) {
    host::PointPrompt prompt;
    prompt.message = "\nStart Point:";
    std::vector<host::Point2> points;
    for (;;) {
        const auto answer = host.prompts().getPoint(prompt);
        if (answer.status == PromptStatus::cancel)
            return std::nullopt;
        if (!answer.ok())
            break;
        points.push_back(host.coordinates().toWorld(answer.value).plan());
        prompt.message = "\nNext Point:";
        prompt.base = answer.value;
        prompt.rubberBand = host::RubberBand::line;
    }
    if (points.size() < 2)
        return std::nullopt;
    return host::appendEntity(host, host::closedPolyline(points, host.drawing().currentLayer()));
}

void assess(Host& host, EntityId polygon) {
    const auto record = recordOn(host, polygon);
    CRFRIDefectValue page(record.value_or(defaultAssessment()));
    host::Dialog dialog(record ? "Modify RFRI Assesment Value" : "Assign RFRI Assesment Value",
                        {&page});
    const host::Highlighted highlighted(host.graphics(), {polygon});
    host.graphics().redraw();
    if (!host::runDialog(host, dialog))
        return;
    const auto written = host.drawing().setXData(polygon, kApplication, itemsOf(page.assessment()));
    if (!written)
        host.print("\n" + written.error().message());
}

// --- list
// -----------------------------------------------------------------------------------------

void list(Host& host, const Assessment& assessment) {
    host.print(fmt::format("\nMeasurment: {}\n", assessment.label));
    for (std::size_t k = 0; k < kCategories; ++k)
        host.print(fmt::format("{}: {}\n", categories()[k].listed, assessment.levels[k]));
}

// --- label
// ----------------------------------------------------------------------------------------

// Nothing when cancelled; 0 means by the polygon's size.
std::optional<double> askLabelSize(Host& host) {
    double& kept = host.memory().numbers[kLabelSize];
    host::NumberPrompt prompt;
    prompt.message = fmt::format("\nSpecify label size(0 - Auto size) <{}>:", base::general(kept));
    const auto answer = host.prompts().getDistance(prompt);
    if (answer.ok())
        kept = answer.value;
    else if (answer.status != PromptStatus::none)
        return std::nullopt;
    return kept;
}

// --- mapping
// --------------------------------------------------------------------------------------

std::pair<int, int> rangeOf(const std::vector<Assessed>& polygons) {
    int smallest = 10000;
    int largest = 0;
    for (const Assessed& one : polygons) {
        smallest = std::min(smallest, indexValue(one.assessment));
        largest = std::max(largest, indexValue(one.assessment));
    }
    return widenedRange(smallest, largest);
}

bool colourAndWrite(Host& host, const Assessed& one, const std::vector<grid::ColourBreak>& table) {
    const int value = indexValue(one.assessment);
    host::Entity entity = *host.drawing().find(one.polygon);
    entity.colour = grid::colourOfValue(table, value);
    if (const auto coloured = host.drawing().modify(entity); !coloured) {
        host.print("\n" + coloured.error().message());
        return false;
    }
    const std::string text = std::to_string(value);
    if (one.box)
        writeIn(host, *one.box, text, heightIn(*one.box, text), host.drawing().currentLayer());
    return true;
}

} // namespace

void zelk_RFRI_Input(Host& host) {
    for (;;) {
        const auto pick = host.prompts().pickEntity(
            {"\nAssign assessment value[Draw Polygon/<Select Polygon>]:", "Draw,D"});
        if (pick.status == PromptStatus::missed)
            continue;
        if (pick.status == PromptStatus::keyword) {
            if (const auto drawn = drawPolygon(host))
                assess(host, *drawn);
        } else if (pick.ok()) {
            assess(host, pick.value.entity);
        } else {
            return;
        }
    }
}

void zelk_RFRI_List(Host& host) {
    const auto selected = selectAssessed(host);
    if (!selected)
        return;
    for (const Assessed& one : *selected)
        list(host, one.assessment);
}

void zelk_RFRI_Label(Host& host) {
    const auto selected = selectAssessed(host);
    if (!selected)
        return;
    const auto size = askLabelSize(host);
    if (!size)
        return;
    const auto layer =
        host::chooseLayer(host, "Select Layer for Labels", host.drawing().currentLayer());
    if (!layer || !host::ensureLayer(host, *layer, host::colour::kForeground))
        return;
    for (const Assessed& one : *selected) {
        const std::string label(base::trimmed(one.assessment.label));
        if (!label.empty() && one.box)
            writeIn(host, *one.box, label,
                    *size > base::kTolerance ? *size : heightIn(*one.box, label), *layer);
    }
}

void zelk_RFRI_Mapping(Host& host) {
    const auto selected = selectAssessed(host);
    if (!selected)
        return;
    if (selected->empty()) {
        host.print("\nNo RFRI Data present.");
        return;
    }
    constexpr int kClasses = 5;
    const auto [lower, upper] = rangeOf(*selected);
    const auto ramp = grid::askColourRamp(host, lower, upper, kClasses);
    if (!ramp)
        return;
    std::size_t handled = 0;
    for (const Assessed& one : *selected)
        handled += colourAndWrite(host, one, ramp->table()) ? 1 : 0;
    if (host::askYesNo(host, "Draw Legend?", host::YesNo::yes) == host::YesNo::yes)
        grid::drawLegend(host, ramp->table());
    host.print(fmt::format("\n{} defects are processed.", handled));
}

} // namespace tessaran::rfri
