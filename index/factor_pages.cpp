#include "index/factor_pages.h"

#include "base/numbers.h"
#include "base/text.h"
#include "base/tolerance.h"
#include "grid/grid_drawing.h"
#include "grid/grid_output.h"
#include "host/host.h"
#include "host/services_dialogs.h"

#include <fmt/format.h>

#include <cmath>

namespace tessaran::index {
namespace {

using host::DialogSession;
using host::Host;

constexpr const char* kOutputFile = "Output File";
constexpr const char* kUpper = "Upper:";

} // namespace

// --- grid file ----------------------------------------------------------------------------------

void CGenFactFileTab::describe(host::PageBuilder& page) {
    page.text("Input File", inputFile_).onChange([this](DialogSession& session) {
        readInput(session.host());
    });
    page.button("Select a Grid File", [this](DialogSession& session) { chooseInput(session); });
    page.information("", [this] { return information_; });
    page.text(kOutputFile, outputFile_)
        .onChange([this](DialogSession& session, const std::string& before) {
            if (!base::equalsIgnoringCase(outputFile_, inputFile_))
                grid::completeOutputName(session, outputFile_, before);
            outputChosen(session);
        });
    page.button("Select a Output Grid File",
                [this](DialogSession& session) { chooseOutput(session); });
    page.text("Description:", description_);
    page.button("< Grid Preview", [this](DialogSession& session) { preview(session); });
}

bool CGenFactFileTab::mayLeave(DialogSession& session) {
    Host& host = session.host();
    if (!ready_) {
        host.dialogs().message("Input Grid file is not ready !");
        readInput(host);
        return false;
    }
    if (base::trimmed(outputFile_).empty()) {
        host.dialogs().message("Output file name is missing!");
        session.focus(kOutputFile);
        return false;
    }
    return true;
}

void CGenFactFileTab::readInput(Host& host) {
    ready_ = false;
    grid::myGrid grid;
    if (base::trimmed(inputFile_).empty() || !grid.readGrid(host, inputFile_, true)) {
        information_ = "Invalid Grid input file!";
        inputFile_.clear();
        return;
    }
    if (!grid.title().empty())
        description_ = grid.title() + " Index";
    const grid::MinMax range = grid.getMinMax().value_or(grid::MinMax{});
    minimum_ = base::fixed6(range.min);
    maximum_ = base::fixed6(range.max);
    information_ = fmt::format("Input Grid: {} X {} ;\r\nGrid Value Min: {}, Max: {}", grid.nX(),
                               grid.nY(), minimum_, maximum_);
    if (std::abs(range.max - range.min) <= base::kTolerance)
        information_ += "\r\nValue interval is very small!";
    outputFile_ = proposedOutput();
    ready_ = true;
}

std::string CGenFactFileTab::proposedOutput() const {
    return base::withLastReplaced(inputFile_, ".grd", "_index.grd");
}

void CGenFactFileTab::chooseInput(DialogSession& session) {
    const auto chosen =
        host::chooseFile(session.host(), host::FileRequest::Mode::open, grid::kGridExtension);
    if (!chosen)
        return;
    inputFile_ = *chosen;
    readInput(session.host());
}

void CGenFactFileTab::chooseOutput(DialogSession& session) {
    const auto chosen = host::chooseFileAt(session.host(), host::FileRequest::Mode::save,
                                           grid::kGridExtension, outputFile_);
    if (!chosen)
        return;
    outputFile_ = base::withEnding(*chosen, ".grd");
    outputChosen(session);
}

void CGenFactFileTab::outputChosen(DialogSession& session) {
    if (outputFile_.empty() || !base::equalsIgnoringCase(outputFile_, inputFile_))
        return;
    const host::Question question{"Output file is the same as the input file, Overwrite?",
                                  host::Buttons::okCancel, host::Question::Stake::guarded};
    if (session.host().dialogs().ask(question) != host::Answer::ok)
        outputFile_ = proposedOutput();
}

void CGenFactFileTab::preview(DialogSession& session) {
    Host& host = session.host();
    if (base::trimmed(inputFile_).empty()) {
        host.dialogs().message("Please specify the Grid file first!");
        return;
    }
    grid::myGrid grid;
    if (!grid.readGrid(host, inputFile_, true)) {
        host.dialogs().message("Not read in Grid file!");
        return;
    }
    const DialogSession::Hidden hidden(session);
    grid::drawAfterBuild(host, grid, grid::kMapFilled);
}

// --- function -----------------------------------------------------------------------------------

void CGenFactFuncTab::describe(host::PageBuilder& page) {
    page.dropList("Function", {"Linear", "Step", "Exponential"}, function_)
        .onChange([this](DialogSession& session) {
            session.discardTyped(*this);
            resetBounds();
        });
    page.radio("Index Tendency with Increasing Grid Value :", {"Inverse", "Normal"}, tendency_);
    page.group("Bounds:");
    page.real("Lower:", bounds_.lower).onChange([this](DialogSession&) {
        if (function() == FactorFunction::step)
            bounds_.upper = bounds_.lower;
    });
    page.real(kUpper, bounds_.upper).enabledWhen([this] {
        return function() != FactorFunction::step && function() != FactorFunction::exponential;
    });
    page.group("Grid Value Info:");
    page.information("Minimum Value:", [this] { return minimum_; });
    page.information("Maxmum Value:", [this] { return maximum_; });
    page.group("");
    page.check("Preview Final Grid", previewsResult_);
}

void CGenFactFuncTab::activated(DialogSession& session) {
    minimum_ = file_.minimum();
    maximum_ = file_.maximum();
    session.discardTyped(*this);
    resetBounds();
}

void CGenFactFuncTab::resetBounds() {
    bounds_ = proposedBounds(function(), base::leadingDouble(minimum_),
                             base::leadingDouble(maximum_), bounds_);
}

bool CGenFactFuncTab::mayLeave(DialogSession& session) {
    if (!session.validate(*this))
        return false;
    if (function() != FactorFunction::linear || bounds_.upper - bounds_.lower > base::kTolerance)
        return true;
    session.host().dialogs().message(
        "Limit bound error: Upper limit has to greater than lower limit!");
    session.focus(kUpper);
    return false;
}

FactorTransformation CGenFactFuncTab::transformation() const {
    return {function(), static_cast<Tendency>(tendency_), bounds_.lower, bounds_.upper};
}

// --- dialog -------------------------------------------------------------------------------------

std::string FactorDialog::okLabel(const DialogSession& session) const {
    return session.frontPage() == 0 ? "Next>>" : "OK";
}

bool FactorDialog::okPressed(DialogSession& session) {
    if (session.frontPage() != 0)
        return Dialog::okPressed(session);
    session.bringToFront(1);
    return false;
}

} // namespace tessaran::index
