#include "rfri/defect_pages.h"

#include "base/file.h"
#include "geometry/polygon.h"
#include "grid/base_grid.h"
#include "grid/grid_editor.h"
#include "grid/grid_objects.h"
#include "host/curves.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "host/services_entities.h"
#include "host/services_layers.h"
#include "host/services_view.h"
#include "rfri/defect_files.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tessaran::rfri {
namespace {

using host::DialogSession;
using host::EntityId;
using host::Host;
using host::Point3;
using host::PromptStatus;

constexpr const char* kLevel = "Defect Level";
constexpr double kLargestDistance = 99999999999.0;
constexpr const char* kEnterLevel = "\nPlease enter a valid defect level before drawing";

std::vector<std::string> levelTexts(const Category& category) {
    std::vector<std::string> texts;
    for (const DefectLevel& level : category.levels)
        texts.push_back(std::to_string(level.value));
    return texts;
}

// "2/3/4/5"
std::string joinedLevels(const Category& category, const char* separator) {
    std::string out;
    for (const std::string& text : levelTexts(category))
        out += (out.empty() ? "" : separator) + text;
    return out;
}

// Each its own abbreviation, so that "1" does not stand for "15".
std::string keywordsOf(const Category& category) {
    std::string out;
    for (const std::string& text : levelTexts(category))
        out += fmt::format("{}{},{}", out.empty() ? "" : " ", text, text);
    return out;
}

std::string drawPrompt(const Category& category) {
    return fmt::format("\nChange defect level [{}] or\nSelect first point of the {}{}:",
                       joinedLevels(category, "/"), category.singular,
                       category.isArea ? " Area" : "");
}

// Adds the entity, or changes the one that `drawn` names; tells at the command line when the
// drawing refuses.
bool put(Host& host, host::Entity entity, EntityId& drawn) {
    if (!drawn) {
        drawn = host::appendEntity(host, std::move(entity)).value_or(EntityId{});
        return static_cast<bool>(drawn);
    }
    const auto changed = host.drawing().modify(entity);
    if (!changed)
        host.print("\n" + changed.error().message());
    return changed.ok();
}

bool drawsOn(Host& host, const CategoryRecord& record) {
    if (!host::ensureLayer(host, record.layer, record.colour)) {
        host.print(fmt::format("\nThe layer <{}> cannot be made.", record.layer));
        return false;
    }
    const auto current = host.drawing().setCurrentLayer(record.layer);
    if (!current)
        host.print("\n" + current.error().message());
    return current.ok();
}

} // namespace

CDefectTab::CDefectTab(const Category& category, CategoryRecord& record)
    : category_(category), record_(record), output_(grid_) {}

// --- fields
// ---------------------------------------------------------------------------------------

void CDefectTab::describe(host::PageBuilder& page) {
    describeLevel(page);
    page.check("Graduated", record_.graduated);
    page.text("Layer", record_.layer);
    page.text("File", record_.file).onChange([this](DialogSession&, const std::string& before) {
        record_.file = gridFileName(record_.file, before);
    });
    page.button("< &Draw", [this](DialogSession& session) { draw(session); });
    page.button("< &Build Grid", [this](DialogSession& session) { build(session); });
    page.button("< &Edit Grid", [this](DialogSession& session) { edit(session); });
    page.button("&Save Grid", [this](DialogSession& session) { save(session.host()); });
}

void CDefectTab::describeLevel(host::PageBuilder& page) {
    page.dropList(kLevel, levelTexts(category_), record_.level)
        .onChange([this](DialogSession& session) {
            showLevel();
            session.refresh();
        });
    page.real("Influence Distance", distance_, 0.0, kLargestDistance)
        .enabledWhen([this] { return record_.level >= 0; })
        .onChange([this](DialogSession&) {
            if (record_.level >= 0)
                record_.distances[static_cast<std::size_t>(record_.level)] = distance_;
        });
}

void CDefectTab::opened(DialogSession& session) {
    Host& host = session.host();
    output_.markEmpty();
    if (record_.level >= static_cast<int>(category_.levels.size()))
        record_.level = -1;
    showLevel();
    const std::string path = workingPath(host, record_.file);
    if (!base::fileExists(path))
        return;
    if (!grid_.readGrid(host, path, true)) { // has said why, but not which of the twelve
        host.print(fmt::format("\nWarning: file {} cannot be read.", path));
        return;
    }
    takeBaseRotation(host, grid_);
    output_.markBuilt();
    output_.markSaved();
    host.print(fmt::format("\nFile {} was successfully read into the grid", path));
}

bool CDefectTab::mayClose(DialogSession& session, bool /*accepted*/) {
    return output_.mayClose(session.host(), [&] { return save(session.host()); });
}

void CDefectTab::showLevel() {
    distance_ =
        record_.level < 0 ? 0.0 : record_.distances[static_cast<std::size_t>(record_.level)];
}

int CDefectTab::levelValue() const {
    return category_.levels[static_cast<std::size_t>(record_.level)].value;
}

// --- draw
// -----------------------------------------------------------------------------------------

void CDefectTab::draw(DialogSession& session) {
    Host& host = session.host();
    if (!session.validate(*this))
        return;
    if (record_.level < 0) {
        host.print(kEnterLevel);
        return;
    }
    if (!drawsOn(host, record_))
        return;
    {
        const DialogSession::Hidden hidden(session);
        Point3 start;
        while (askStart(host, start))
            drawLine(host, start);
    }
    showLevel();
    session.discardTyped(*this);
    session.refresh();
}

bool CDefectTab::askStart(Host& host, Point3& start) {
    const auto levels = levelTexts(category_);
    for (;;) {
        host.print(fmt::format("\nThe current {} level = {}", category_.drawnLevel, levelValue()));
        host::PointPrompt prompt;
        prompt.message = drawPrompt(category_);
        prompt.keywords = keywordsOf(category_);
        const auto answer = host.prompts().getPoint(prompt);
        if (answer.status != PromptStatus::keyword) {
            start = answer.value;
            return answer.ok();
        }
        const auto at = std::find(levels.begin(), levels.end(), answer.keyword);
        record_.level = static_cast<int>(at - levels.begin());
    }
}

// In the drawing from the second point on.
void CDefectTab::drawLine(Host& host, const Point3& start) const {
    const Point3 first = host.coordinates().toWorld(start);
    host::Polyline line;
    line.vertices = {{first.plan()}};
    line.elevation = first.z;
    line.constantWidth = levelValue();
    host::PointPrompt prompt;
    prompt.message = "\nSpecify next point:";
    prompt.rubberBand = host::RubberBand::line;
    prompt.base = start;
    EntityId drawn;
    for (;;) {
        const auto answer = host.prompts().getPoint(prompt);
        if (!answer.ok())
            return;
        prompt.base = answer.value;
        line.vertices.push_back({host.coordinates().toWorld(answer.value).plan()});
        host::Entity entity;
        entity.id = drawn;
        entity.layer = record_.layer;
        entity.geometry = line;
        if (!put(host, std::move(entity), drawn))
            return;
        host.graphics().redraw();
    }
}

// --- build
// ----------------------------------------------------------------------------------------

void CDefectTab::build(DialogSession& session) {
    Host& host = session.host();
    if (!session.validate(*this) ||
        !output_.mayRebuild(host, false, "Old grid is not saved yet! Please save the grid"))
        return;
    // A grid that was built stays until the user lets the next build begin.
    grid::myGrid base;
    if (!grid::defineFromBaseGrid(host, output_.built() ? base : grid_)) {
        output_.markEmpty();
        host.dialogs().message("Grid initialization error!");
        return;
    }
    const DialogSession::Hidden hidden(session);
    fill(host, output_.built() ? base : grid_);
}

// Outline, highlighting and the closer view last as long as this.
void CDefectTab::fill(Host& host, const grid::myGrid& base) {
    const host::ZoomedTo zoomed(host, geometry::boxOf(grid::outlineAround(base, 0.0)));
    host::ShownGraphics shown(host.graphics());
    grid::showGridOutline(shown, base, host::colour::kYellow);
    const auto objects =
        grid::objectsOverGrid(host, base, 0.0, {record_.layer}, host::kPolylineTypes);
    host.print(fmt::format("\nTotal number of features found: {} in Layers: {}", objects.size(),
                           record_.layer));
    if (objects.empty()) {
        output_.markEmpty();
        host::waitForEnter(host, host::kQuitMessage);
        return;
    }
    const host::Highlighted highlighted(host.graphics(), objects);
    if (!host::waitForEnter(host))
        return;
    if (output_.built() && !grid::defineFromBaseGrid(host, grid_))
        return;
    output_.markEmpty();
    const auto defects = defectsOf(host, objects);
    const base::ProgressRun run(host.meter(), fmt::format("{} Griding...", category_.singular), 1,
                                static_cast<long>(objects.size()));
    if (gridDefects(defects, record_.graduated, grid_, host.meter()))
        output_.markBuilt();
    else
        host.print("\nCanceled by user!");
}

// One for each object, so that the meter counts objects; those that do not count reach nothing.
std::vector<Defect> CDefectTab::defectsOf(Host& host, const std::vector<EntityId>& objects) const {
    std::vector<Defect> defects(objects.size());
    std::size_t unseen = 0;
    for (std::size_t k = 0; k < objects.size(); ++k) {
        auto defect = defectOf(host, objects[k], k + 1);
        if (!defect)
            continue;
        unseen += defect->level <= kBackground ? 1 : 0;
        defects[k] = std::move(*defect);
    }
    if (unseen > 0)
        host.print(
            fmt::format("\n{} features have levels of {:g} and below, which never exceed the "
                        "background of {:.1f}.",
                        unseen, kBackground, kBackground));
    return defects;
}

std::optional<Defect> CDefectTab::defectOf(Host& host, EntityId id, std::size_t number) const {
    const host::Entity* entity = host.drawing().find(id);
    auto curve = entity ? host::curveOf(*entity) : std::nullopt;
    if (!curve) {
        host.print(fmt::format("\nCan not get {}th object", number));
        return std::nullopt;
    }
    const auto width = constantWidth(*entity);
    if (!width) {
        host.print(fmt::format("\nThe {}th object has no constant width and is skipped.", number));
        return std::nullopt;
    }
    // Held first: a width of 1e300 is no level of any category.
    const int level = static_cast<int>(std::trunc(std::clamp(*width, -1e6, 1e6)));
    if (!isCounted(category_, level))
        return std::nullopt;
    return Defect{std::move(*curve), level, reachOf(category_, record_.distances, level)};
}

// --- edit and save
// --------------------------------------------------------------------------------

void CDefectTab::edit(DialogSession& session) {
    Host& host = session.host();
    if (!grid_.isDefined()) {
        host.dialogs().message("The Grid needs to be defined and built before editing!");
        return;
    }
    if (!output_.built()) {
        host.dialogs().message("Grid needs to be built before editing!");
        return;
    }
    const DialogSession::Hidden hidden(session);
    grid::editGrid(host, grid_);
    output_.markChanged();
}

bool CDefectTab::save(Host& host) {
    if (!output_.built()) {
        host.dialogs().message("Grid has not been built yet!");
        return false;
    }
    grid_.setTitle(record_.description);
    const std::string path = workingPath(host, record_.file);
    const std::string question =
        fmt::format("{} values will be saved to < {} >", category_.saved, path);
    if (host.dialogs().ask({question, host::Buttons::okCancel,
                            host::Question::Stake::confirmsSave}) != host::Answer::ok ||
        !grid_.writeGrid(host, path))
        return false;
    output_.markSaved();
    return true;
}

} // namespace tessaran::rfri
