#include "index/composite_pages.h"

#include "base/numbers.h"
#include "base/text.h"
#include "grid/grid_output.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "index/composite_index.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::index {
namespace {

using grid::myGrid;
using host::DialogSession;
using host::FileRequest;
using host::Host;

constexpr const char* kProjectExtension = "prj";
constexpr const char* kProposedWeighting = "50";

// What stays out of the result is told, not done silently.
void tellWithoutValue(Host& host, const ProjectEntry& entry, std::size_t cells) {
    if (cells > 0)
        host.print(
            fmt::format("\n{} cells of {} have no value and add nothing.", cells, entry.name));
}

bool isComplete(const ProjectEntry& entry) {
    return !entry.name.empty() && !entry.weighting.empty() && !entry.gridFile.empty();
}

} // namespace

void StabilityPage::describe(host::PageBuilder& page) {
    page.information("", [this] { return "Current Project: " + project_; });
    page.button("< Select Project", [this](DialogSession& s) { selectProject(s.host()); });
    page.list(
            "Entries", {"Factor Name", "Grid File", "Description", "Weighting"},
            [this] {
                std::vector<host::Control::Row> rows;
                for (const ProjectEntry& e : entries_)
                    rows.push_back({e.name, e.gridFile, e.description, e.weighting});
                return rows;
            },
            selected_)
        .columnShares({1, 3, 3, 1})
        .onOpen([this](DialogSession&, int row) { edit(row); });
    describeEntry(page);
    page.button("Create Index", [this](DialogSession& s) { createIndex(s.host()); });
}

void StabilityPage::describeEntry(host::PageBuilder& page) {
    page.text("Name", edited_.name);
    page.text("Weighting Factor", edited_.weighting).tip("(0 -- 100)");
    page.information("", [] { return std::string("(0 -- 100)"); }).beside();
    page.information("Factor Grid:", [this] { return edited_.gridFile; });
    page.button("< Select Index Grid", [this](DialogSession& s) { selectGrid(s.host()); }).beside();
    page.button("Add", [this](DialogSession& s) { add(s.host()); });
    page.button("Update", [this](DialogSession& s) { update(s.host()); });
    page.button("Remove", [this](DialogSession& s) { remove(s.host()); });
}

// --- the project --------------------------------------------------------------------------------

void StabilityPage::selectProject(Host& host) {
    const auto file = host::chooseFile(host, FileRequest::Mode::open, kProjectExtension);
    if (!file)
        return;
    base::Result<std::vector<ProjectEntry>> entries = readProject(*file);
    if (!entries) {
        host.dialogs().message("File could not be opened: ");
        return;
    }
    entries_ = std::move(entries).value();
    selected_.clear();
    project_ = *file;
}

bool StabilityPage::saveProject(Host& host) {
    if (project_ == kNewProject) {
        const auto file =
            host::chooseFile(host, FileRequest::Mode::save, kProjectExtension, project_);
        if (!file)
            return false;
        project_ = base::withEnding(*file, ".prj");
    }
    const base::Result<void> written = writeProject(project_, entries_);
    if (written)
        return true;
    host.dialogs().message(written.error().kind == base::ErrorKind::io
                               ? "File could not be opened for write"
                               : written.error().message());
    return false;
}

// --- its entries --------------------------------------------------------------------------------

void StabilityPage::selectGrid(Host& host) {
    const auto file = host::chooseFile(host, FileRequest::Mode::open, grid::kGridExtension);
    if (!file)
        return;
    myGrid grid;
    if (!grid.readGrid(host, *file, true)) {
        host.dialogs().message("invalid grid file: reading failed");
        edited_.gridFile.clear();
        edited_.description.clear();
        return;
    }
    edited_ = {grid.title(), *file,
               fmt::format("{} (grid: {} * {})", grid.title(), grid.nX(), grid.nY()),
               kProposedWeighting};
}

// The check takes the weighting as an integer while the sum takes it as a real number, so 0.5 is
// refused and 1.5 counts as 1.5.
bool StabilityPage::checkEdited(Host& host) const {
    if (!isComplete(edited_)) {
        host.dialogs().message("Not all data is specified!");
        return false;
    }
    if (base::leadingInt(edited_.weighting) < 1) {
        host.dialogs().message("Weighting Factor must larger than zero!");
        return false;
    }
    return true;
}

std::vector<ProjectEntry>::iterator StabilityPage::entryNamed(const std::string& name) {
    return std::find_if(entries_.begin(), entries_.end(),
                        [&](const ProjectEntry& entry) { return entry.name == name; });
}

void StabilityPage::add(Host& host) {
    if (!checkEdited(host))
        return;
    if (entryNamed(edited_.name) != entries_.end())
        host.dialogs().message("The entry with same name is already in the list!");
    else
        entries_.push_back(edited_);
}

void StabilityPage::update(Host& host) {
    if (!checkEdited(host))
        return;
    const auto entry = entryNamed(edited_.name);
    if (entry == entries_.end())
        host.dialogs().message("This entry not in the list!");
    else
        *entry = edited_;
}

void StabilityPage::remove(Host& host) {
    if (selected_.empty()) {
        host.dialogs().message("No items were selected!\n");
        return;
    }
    entries_.erase(entries_.begin() + selected_.front());
    selected_.clear();
}

void StabilityPage::edit(int row) {
    edited_ = entries_[static_cast<std::size_t>(row)];
}

// --- the composite index ------------------------------------------------------------------------

bool StabilityPage::readEntry(Host& host, const ProjectEntry& entry, myGrid& grid) const {
    const std::string path = gridPath(entry.gridFile, project_);
    if (!grid.readGrid(host, path, true)) {
        host.dialogs().message("Grid File Read fail: " + path);
        return false;
    }
    if (grid.nX() == 0 || grid.nY() == 0) {
        host.dialogs().message("Grid Size failure: " + path);
        return false;
    }
    host.print(fmt::format("\n{}: weighting {}", entry.name,
                           base::general(base::leadingDouble(entry.weighting))));
    return true;
}

std::optional<double> StabilityPage::sumUp(Host& host, myGrid& sum) const {
    const ProjectEntry& first = entries_.front();
    if (!readEntry(host, first, sum))
        return std::nullopt;
    sum.setTitle("Composite Stability Index for Project: " + project_);
    tellWithoutValue(host, first, sum.countWithoutValue());
    double total = base::leadingDouble(first.weighting);
    sum.scaleValues(total);
    for (std::size_t k = 1; k < entries_.size(); ++k) {
        myGrid grid;
        if (!readEntry(host, entries_[k], grid))
            return std::nullopt;
        const double weight = base::leadingDouble(entries_[k].weighting);
        tellWithoutValue(host, entries_[k], addSampled(sum, grid, weight));
        total += weight;
    }
    return total;
}

void StabilityPage::createIndex(Host& host) const {
    if (entries_.empty())
        return;
    myGrid sum;
    const std::optional<double> total = sumUp(host, sum);
    if (!total)
        return;
    if (!hasWeight(*total)) {
        host.print("\nStrange! Total Weight could not be zero!");
        return;
    }
    const host::Question question{"Final index for project: " + project_ +
                                      " produced! Do you want to save?",
                                  host::Buttons::yesNo, host::Question::Stake::guarded};
    if (host.dialogs().ask(question) == host::Answer::yes)
        saveIndex(host, sum, *total);
}

void StabilityPage::saveIndex(Host& host, myGrid& sum, double totalWeight) const {
    const std::string proposed = base::withLastReplaced(project_, ".prj", ".grd");
    const auto file =
        project_ == kNewProject
            ? host::chooseFile(host, FileRequest::Mode::save, grid::kGridExtension, proposed)
            : host::chooseFileAt(host, FileRequest::Mode::save, grid::kGridExtension, proposed);
    if (!file)
        return;
    const std::string path = base::withEnding(*file, ".grd");
    const grid::MinMax range = finishComposite(sum, totalWeight);
    host.print(fmt::format("\nTotal weight {}; index before stretching: minimum {}, maximum {}",
                           base::general(totalWeight), base::fixed6(range.min),
                           base::fixed6(range.max)));
    if (sum.writeGrid(host, path))
        host.dialogs().message("Final Index saved to grid file: " + path);
}

bool dlg_stability::okPressed(DialogSession& session) {
    return Dialog::okPressed(session) && page_.saveProject(session.host());
}

} // namespace tessaran::index
