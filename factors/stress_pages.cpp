#include "factors/stress_pages.h"

#include "base/numbers.h"
#include "base/text.h"
#include "factors/horizontal_stress.h"
#include "grid/base_grid.h"
#include "host/curves.h"
#include "host/host.h"

#include <fmt/format.h>

#include <cmath>
#include <numbers>

namespace tessaran::factors {
namespace {

using geometry::Point2;
using geometry::Point3;
using host::DialogSession;
using host::Host;

constexpr const char* kTitle = "Horizontal Stress";
constexpr const char* kWidth = "Entry Width:";
constexpr const char* kOrientation = "Stress Orientation:";
constexpr double kDegree = std::numbers::pi / 180.0;

// How far the user's X axis is turned from the drawing's.
double turnOfUser(Host& host) {
    const Point3 zero = host.coordinates().toWorld({0.0, 0.0, 0.0});
    const Point3 there = host.coordinates().toWorld({1.0, 0.0, 0.0});
    return std::atan2(there.y - zero.y, there.x - zero.x);
}

std::vector<Point2> verticesOf(const host::Entity& entity) {
    if (const auto* line = std::get_if<host::Line>(&entity.geometry))
        return {line->start.plan(), line->end.plan()};
    return host::vertexPolygon(entity);
}

// The extents of every segment.
void showExtents(host::ShownGraphics& shown, const std::vector<std::vector<Point2>>& lines) {
    for (const std::vector<Point2>& line : lines)
        for (std::size_t k = 1; k < line.size(); ++k) {
            geometry::Box2 box;
            box.add(line[k - 1]);
            box.add(line[k]);
            const auto corners = box.corners();
            shown.polyline({corners.begin(), corners.end()}, true, host::colour::kYellow);
        }
}

} // namespace

CHorizonStressTab::CHorizonStressTab() {
    output_.setDescription(kTitle);
}

void CHorizonStressTab::describe(host::PageBuilder& page) {
    page.real(kWidth, entryWidth_);
    page.button("< Width", [this](DialogSession& session) { pickWidth(session); });
    output_.describeFile(page);
    output_.describeDescription(page, kGridTitle);
    describeLayers(page, "Projection Line Layers", "<Pick Layer");
    page.text(kOrientation, orientationText_)
        .tip("Degrees from the X axis, counter-clockwise")
        .onChange([this](DialogSession& session, const std::string& before) {
            orientationTyped(session, before);
        });
    page.button("< Orientation", [this](DialogSession& session) { pickOrientation(session); })
        .beside();
    describeButtons(page);
}

// --- input --------------------------------------------------------------------------------------

void CHorizonStressTab::pickWidth(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    host::NumberPrompt prompt;
    prompt.message = fmt::format("\nInput width of entry <{:f}>:", entryWidth_);
    prompt.allowNegative = false;
    const auto width = session.host().prompts().getDistance(prompt);
    if (!width.ok())
        return;
    session.discardTyped(*this);
    entryWidth_ = width.value;
}

void CHorizonStressTab::pickOrientation(DialogSession& session) {
    Host& host = session.host();
    const DialogSession::Hidden hidden(session);
    const grid::BaseGrid& grid = grid::baseGrid(host);
    host::NumberPrompt prompt;
    prompt.message =
        fmt::format("\nInput orientation of the maxmum horizontal stress <{}>: ", orientationText_);
    prompt.base = host.coordinates().toUser(
        {base::leadingDouble(grid.originX), base::leadingDouble(grid.originY), 0.0});
    prompt.allowNegative = false;
    const auto angle = host.prompts().getOrientation(prompt);
    if (!angle.ok())
        return;
    session.discardTyped(*this);
    orientation_ = angle.value + turnOfUser(host);
    orientationText_ = base::general(orientation_ / kDegree);
}

void CHorizonStressTab::orientationTyped(DialogSession& session, const std::string& before) {
    if (base::trimmed(orientationText_).empty()) {
        orientation_ = 0.0;
        return;
    }
    const std::optional<double> degrees = base::wholeDouble(orientationText_);
    if (degrees && std::isfinite(*degrees)) {
        orientation_ = *degrees * kDegree;
        return;
    }
    session.host().dialogs().message("Please enter a number.");
    orientationText_ = before;
    session.focus(kOrientation);
}

bool CHorizonStressTab::checkInput(DialogSession& session) {
    if (entryWidth_ > 0.0)
        return true;
    session.host().dialogs().message("entry width must biger than zero!!?");
    session.focus(kWidth);
    return false;
}

// --- build --------------------------------------------------------------------------------------

std::string CHorizonStressTab::countText(std::size_t count) const {
    return fmt::format("\nTotal number of projection lines found: {} in Layers: {}", count,
                       layerText());
}

bool CHorizonStressTab::fill(Host& host, const std::vector<host::EntityId>& objects,
                             host::ShownGraphics& shown) {
    shown.clear();
    std::vector<std::vector<Point2>> lines;
    lines.reserve(objects.size());
    for (const host::EntityId id : objects) {
        const host::Entity* entity = host.drawing().find(id);
        lines.push_back(entity ? verticesOf(*entity) : std::vector<Point2>{});
    }
    showExtents(shown, lines);
    host.graphics().redraw();
    const base::ProgressRun run(host.meter(), "Horizontal Stress Effect Griding...", 1,
                                static_cast<long>(lines.size()));
    std::vector<int> tooShort;
    const bool completed =
        gridHorizontalStress(lines, {entryWidth_, orientation_}, grid_, tooShort, host.meter());
    for (const int line : tooShort)
        host.print(fmt::format("\n Projection line {} has too few points.", line));
    return completed;
}

} // namespace tessaran::factors
