#pragma once

// The dialog of the grid utilities: a workbench for one grid held in memory.

#include "grid/colour_ramp.h"
#include "grid/grid_workbench.h"
#include "host/dialog_model.h"

#include <functional>
#include <string>
#include <vector>

namespace tessaran::grid {

class GridUtilityPage final : public host::DialogPage {
  public:
    void describe(host::PageBuilder& page) override;
    void opened(host::DialogSession& session) override;
    bool mayClose(host::DialogSession& session, bool accepted) override;

  private:
    void describeGrid(host::PageBuilder& page);
    void describeValues(host::PageBuilder& page);
    void describeFigures(host::PageBuilder& page);
    void describePlot(host::PageBuilder& page);

    void anotherGrid(); // colours of the grid before are forgotten
    // By the edited breaks, else over the present values; in colours or greys.
    std::vector<ColourBreak> colourTable();
    // Gives the grid its colours, layer and drawing mode; false when there is no grid or the layer
    // could not be made, which is told.
    bool prepareDrawing(host::Host& host);
    std::string drawingText(const char* what) const;

    void plot(host::Host& host);
    void preview(host::Host& host);
    void editRamp(host::Host& host);
    void legend(host::Host& host);
    void groupPercentage(host::Host& host);
    void newLayer(host::Host& host);

    GridWorkbench bench_;
    std::string operation_ = "Add";
    std::string operand_;
    std::string layer_;
    bool blackWhite_ = false;
    bool toGroup_ = false;
    std::vector<double> breaks_; // as edited; empty: over the values
    std::function<std::vector<std::string>()> layers_;
};

class dlg_gridutility final : public host::Dialog { // NOLINT(readability-identifier-naming)
  public:
    explicit dlg_gridutility(GridUtilityPage& page) : Dialog("Grid Utilities", {&page}) {}
};

} // namespace tessaran::grid
