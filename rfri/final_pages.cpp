#include "rfri/final_pages.h"

#include "grid/base_grid.h"
#include "grid/grid_drawing.h"
#include "grid/grid_file.h"
#include "host/host.h"
#include "rfri/defect_files.h"
#include "rfri/final_value.h"

#include <fmt/format.h>

namespace tessaran::rfri {
namespace {

using host::DialogSession;
using host::Host;

constexpr long kWholeMeter = 100;

} // namespace

void FinalPage::describe(host::PageBuilder& page) {
    page.list(
        "Defect Grids", {"Category", "File"}, [this] { return fileRows(); }, selected_);
    page.button("Final RFRI Calculation",
                [this](DialogSession& session) { calculate(session.host()); });
    page.text("Output File", outputFile_)
        .onChange([this](DialogSession&, const std::string& before) {
            outputFile_ = gridFileName(outputFile_, before);
        });
    page.text("Title", title_);
    page.button("< &Draw", [this](DialogSession& session) { draw(session); });
    page.button("&Save", [this](DialogSession& session) {
        if (session.validate(*this))
            save(session.host());
    });
}

std::vector<host::Control::Row> FinalPage::fileRows() const {
    std::vector<host::Control::Row> rows;
    for (const CategoryRecord& record : records_.records)
        rows.push_back({record.description, record.file});
    return rows;
}

void FinalPage::opened(DialogSession& session) {
    ready_ = prepareDefectFiles(session.host(), records_);
}

void FinalPage::calculate(Host& host) {
    if (!ready_ || !grid::defineFromBaseGrid(host, final_)) {
        host.print("\nYou need to build RFRI grids before running this command");
        return;
    }
    const auto path = [&](std::size_t k) { return workingPath(host, records_.records[k].file); };
    const auto read = [&](std::size_t k, grid::myGrid& grid) {
        base::NoProgress quiet;
        return grid::readGridFile(path(k), true, grid, quiet);
    };
    const auto missing = [&](std::size_t k, const base::Error& error) {
        host.print(fmt::format("\nWarning: {} is taken as zeros: {}", path(k), error.message()));
    };
    {
        base::ProgressRun run(host.meter(), "Final RFRI Calculation...", 0, kWholeMeter);
        sumCategories(read, missing, final_, host.meter());
        run.at(kWholeMeter);
    }
    takeBaseRotation(host, final_);
    final_.forgetDefaultColours();
    calculated_ = true;
    host.print("\nThe Final RFRI Grid has been Calculated");
}

bool FinalPage::calculated(Host& host) const {
    if (!calculated_)
        host.dialogs().message("The final RFRI Grid has not been calculated yet!");
    return calculated_;
}

void FinalPage::draw(DialogSession& session) {
    if (!calculated(session.host()))
        return;
    const DialogSession::Hidden hidden(session);
    grid::drawForGood(session.host(), final_, grid::kMapFilled);
}

void FinalPage::save(Host& host) {
    if (!calculated(host))
        return;
    final_.setTitle(title_);
    const std::string path = workingPath(host, outputFile_);
    const std::string question = fmt::format("The Final RFRI Values will be saved to < {} >", path);
    if (host.dialogs().ask({question, host::Buttons::okCancel,
                            host::Question::Stake::confirmsSave}) == host::Answer::ok)
        final_.writeGrid(host, path);
}

} // namespace tessaran::rfri
