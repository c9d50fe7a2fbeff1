#include "stress/transfer_pages.h"

#include "base/numbers.h"
#include "base/text.h"
#include "geometry/polygon.h"
#include "grid/base_grid.h"
#include "grid/grid_drawing.h"
#include "grid/grid_output.h"
#include "host/host.h"
#include "host/services_dialogs.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessaran::stress {
namespace {

using grid::myGrid;
using host::DialogSession;
using host::Host;

constexpr const char* kResultFilter = "f*;*.F*";
constexpr double kSameWidth = 1e-6; // share of a cell

// Whether a result file's header, which holds five digits, would show `exact` as `printed`.
bool printsAs(double exact, double printed, double near) {
    return std::abs(exact - printed) <= near ||
           base::leadingDouble(fmt::format("{:12.5g}", exact)) == printed;
}

// Result files hold neither a rotation nor all digits of an origin: a grid that lies where the base
// grid lies takes both back.
void takePlaceOfBaseGrid(Host& host, myGrid& grid) {
    myGrid base;
    if (!grid::defineFromBaseGrid(host, base))
        return;
    const double near = kSameWidth * grid.cellWidthX();
    const bool same = base.nX() == grid.nX() && base.nY() == grid.nY() &&
                      std::abs(base.cellWidthX() - grid.cellWidthX()) <= near &&
                      std::abs(base.cellWidthY() - grid.cellWidthY()) <= near &&
                      printsAs(base.origin().x, grid.origin().x, near) &&
                      printsAs(base.origin().y, grid.origin().y, near);
    if (!same)
        return;
    std::copy(grid.values().begin(), grid.values().end(), base.values().begin());
    grid.setOrigin(base.origin().x, base.origin().y, 0.0);
    grid.setupGrid(base.nX(), base.nY(), base.cellWidthX(), base.cellWidthY(),
                   base.getDefinition()->rotation * 180.0 / std::numbers::pi);
    std::copy(base.values().begin(), base.values().end(), grid.values().begin());
}

std::string messageFor(const base::Error& error) {
    return error.kind == base::ErrorKind::io ? "File could not be opened: " : error.text;
}

} // namespace

void TransferPage::describe(host::PageBuilder& page) {
    page.information("", [this] {
        return file_.empty() ? "Current Plekton file: None" : "Current Plekton File: " + file_;
    });
    page.button("Select", [this](DialogSession& s) { select(s.host()); });
    page.list(
        "List", {"Item#", "Item Name", "Unit", "Step", "Comments"}, [this] { return rows(); },
        selected_);
    page.button("Transfer...", [this](DialogSession& s) { transfer(s); });
    page.button("Preview...", [this](DialogSession& s) { preview(s); });
}

std::vector<host::Control::Row> TransferPage::rows() const {
    std::vector<host::Control::Row> out;
    int number = 0;
    for (int step = 1; step <= header_.steps; ++step)
        for (std::size_t k = 0; k < header_.items.size(); ++k)
            out.push_back({std::to_string(++number), header_.items[k], header_.units[k],
                           std::to_string(step), fmt::format("{} X {}", header_.nX, header_.nY)});
    return out;
}

void TransferPage::select(Host& host) {
    const auto chosen = host::chooseFile(host, host::FileRequest::Mode::open, kResultFilter, file_);
    if (!chosen)
        return;
    const base::Result<ResultHeader> header = readResultHeader(*chosen);
    if (!header) {
        host.dialogs().message(messageFor(header.error()));
        return;
    }
    file_ = *chosen;
    header_ = *header;
    selected_.clear();
}

TransferPage::Chosen TransferPage::confirmed(Host& host, const char* verb) const {
    if (selected_.empty() || header_.items.empty()) {
        host.dialogs().message("No items were selected!\n");
        return {};
    }
    const int items = static_cast<int>(header_.items.size());
    const int number = selected_.front() + 1;
    const int step = (number - 1) / items + 1;
    const Chosen chosen{number - (step - 1) * items, step};
    const std::string question =
        fmt::format("{} the item: {}<{}> in step {}", verb,
                    header_.items[static_cast<std::size_t>(chosen.item) - 1], chosen.item, step);
    const bool yes = host.dialogs().ask({question, host::Buttons::okCancel}) == host::Answer::ok;
    return yes ? chosen : Chosen{};
}

bool TransferPage::load(Host& host, const Chosen& chosen, myGrid& grid) const {
    const base::Result<void> loaded = readItem(file_, header_, chosen.item, chosen.step, grid);
    if (!loaded) {
        host.dialogs().message(messageFor(loaded.error()));
        return false;
    }
    takePlaceOfBaseGrid(host, grid);
    return true;
}

void TransferPage::transfer(DialogSession& session) {
    Host& host = session.host();
    const Chosen chosen = confirmed(host, "Convert");
    if (chosen.item == 0)
        return;
    const auto output = host::chooseFile(host, host::FileRequest::Mode::save, grid::kGridExtension);
    myGrid grid;
    if (!output || !load(host, chosen, grid))
        return;
    const std::string name = base::withEnding(*output, ".grd");
    if (grid.writeGrid(host, name))
        host.dialogs().message(fmt::format("File: {} is saved!", name));
}

void TransferPage::preview(DialogSession& session) {
    Host& host = session.host();
    const Chosen chosen = confirmed(host, "Preview");
    if (chosen.item == 0)
        return;
    myGrid grid;
    if (!load(host, chosen, grid))
        return;
    host.print("\nLoading ...");
    const DialogSession::Hidden hidden(session);
    host.zoomWindow(geometry::boxOf(*grid.gridOutline()));
    grid::drawAfterBuild(host, grid, grid::kMapFilled);
}

} // namespace tessaran::stress
