#include "factors/generator_page.h"

#include "base/text.h"
#include "grid/base_grid.h"
#include "grid/grid_objects.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "host/services_layers.h"

namespace tessaran::factors {
namespace {

using host::DialogSession;
using host::Host;

constexpr const char* kDiscardQuestion = "Grid is not saved yet! Continue to discard and rebuild";
constexpr const char* kInitializationError = "Grid initialization error!";

} // namespace

// --- every generator ----------------------------------------------------------------------------

bool GeneratorPage::mayClose(DialogSession& session, bool /*accepted*/) {
    return output_.mayClose(session.host(), [&] { return save(session.host()); });
}

void GeneratorPage::describeLayers(host::PageBuilder& page, const std::string& label,
                                   const std::string& pickLabel) {
    page.names(label, layers_);
    page.button(pickLabel, [this](DialogSession& session) {
        const DialogSession::Hidden hidden(session);
        layers_ = host::pickLayers(session.host(), layers_);
    });
}

void GeneratorPage::describeButtons(host::PageBuilder& page) {
    page.button("< &Build Grid", [this](DialogSession& session) { build(session); });
    page.button("< &Draw Grid", [this](DialogSession& session) {
        const DialogSession::Hidden hidden(session);
        grid::drawForGood(session.host(), grid_, mode_);
    });
    page.button("< &Save Grid", [this](DialogSession& session) { save(session.host()); });
}

std::string GeneratorPage::layerText() const {
    return base::joined(layers_, ",");
}

bool GeneratorPage::layWorkingGrid(Host& host) {
    output_.markEmpty();
    return grid::defineFromBaseGrid(host, grid_);
}

void GeneratorPage::showBuilt(Host& host) {
    output_.markBuilt();
    grid::drawAfterBuild(host, grid_, mode_);
}

// --- from objects over the grid -----------------------------------------------------------------

bool ObjectGeneratorPage::readDialog(DialogSession& session) {
    if (!session.validate(*this))
        return false;
    if (!layers_.empty())
        return checkInput(session);
    session.host().dialogs().message("Select layer name first!!");
    return false;
}

void ObjectGeneratorPage::build(DialogSession& session) {
    Host& host = session.host();
    if (!readDialog(session) || !output_.mayRebuild(host, false, kDiscardQuestion))
        return;
    if (!layWorkingGrid(host)) {
        host.dialogs().message(kInitializationError);
        return;
    }
    const DialogSession::Hidden hidden(session);
    if (buildGrid(host))
        showBuilt(host);
}

// Outlines and highlighting last as long as this.
bool ObjectGeneratorPage::buildGrid(Host& host) {
    host::ShownGraphics shown(host.graphics());
    showGridOutline(shown, grid_, host::colour::kYellow);
    const auto objects = objectsOverGrid(host, grid_, reach(), layers_, types());
    const host::Highlighted highlighted(host.graphics(), objects);
    host.print(countText(objects.size()));
    if (objects.empty()) {
        host::waitForEnter(host, host::kQuitMessage);
        return false;
    }
    if (!host::waitForEnter(host))
        return false;
    if (fill(host, objects, shown))
        return true;
    host.print(kCancelledByUser);
    return false;
}

} // namespace tessaran::factors
