#include "factors/linear_pages.h"

#include "factors/linear_feature.h"
#include "host/curves.h"
#include "host/host.h"
#include "host/services_layers.h"

#include <fmt/format.h>

namespace tessaran::factors {
namespace {

using host::DialogSession;
using host::Host;

constexpr const char* kDistance = "Influence Distance:";
constexpr double kLargestDistance = 99999999999.0;

// The features' curves, each with its extents shown. What is no curve is told and left out.
std::vector<geometry::Curve> curvesOf(Host& host, const std::vector<host::EntityId>& objects,
                                      host::ShownGraphics& shown) {
    std::vector<geometry::Curve> curves;
    curves.reserve(objects.size());
    for (std::size_t k = 0; k < objects.size(); ++k) {
        const host::Entity* entity = host.drawing().find(objects[k]);
        std::optional<geometry::Curve> curve = entity ? host::curveOf(*entity) : std::nullopt;
        if (!curve) {
            host.print(fmt::format("\nCan not get {}th object", k + 1));
            continue;
        }
        const auto corners = curve->extents().corners();
        shown.polyline({corners.begin(), corners.end()}, true, host::colour::kYellow);
        curves.push_back(std::move(*curve));
    }
    host.graphics().redraw();
    return curves;
}

} // namespace

void CGeoFeatureTab::describe(host::PageBuilder& page) {
    describeLayers(page, "Define Feature Layers", "<Pick Layer");
    output_.describeFile(page);
    page.real(kDistance, distance_, 0.0, kLargestDistance);
    page.button("Pick a distance", [this](DialogSession& session) { pickDistance(session); });
    page.check("Accumulation", accumulation_);
    output_.describeDescription(page, kGridTitle);
    describeButtons(page);
}

void CGeoFeatureTab::pickDistance(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    host::NumberPrompt prompt;
    prompt.message = "\nInfluence Distance:";
    prompt.allowNegative = false;
    const auto distance = session.host().prompts().getDistance(prompt);
    if (!distance.ok())
        return;
    session.discardTyped(*this);
    distance_ = distance.value;
}

bool CGeoFeatureTab::checkInput(DialogSession& session) {
    if (distance_ > 0.0)
        return true;
    session.host().dialogs().message("Influence distance must greater than zero!!");
    session.focus(kDistance);
    return false;
}

std::vector<std::string> CGeoFeatureTab::types() const {
    return host::kPolylineTypes;
}

std::string CGeoFeatureTab::countText(std::size_t count) const {
    return fmt::format("\nTotal number of features found: {} in Layers: {}", count, layerText());
}

bool CGeoFeatureTab::fill(Host& host, const std::vector<host::EntityId>& objects,
                          host::ShownGraphics& shown) {
    const std::vector<geometry::Curve> curves = curvesOf(host, objects, shown);
    const base::ProgressRun run(host.meter(), "Geological Features Griding...", 1,
                                static_cast<long>(objects.size()));
    return gridLinearFeatures(curves, {distance_, accumulation_}, grid_, host.meter());
}

} // namespace tessaran::factors
