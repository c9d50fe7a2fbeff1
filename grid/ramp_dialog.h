#pragma once

// The dialog that makes and edits a colour ramp.

#include "grid/colour_ramp.h"
#include "host/dialog_model.h"

#include <optional>
#include <string>
#include <vector>

namespace tessaran::grid {

class myGrid;

// Range, number of bands, and the break values that follow from them. Setting range or bands builds
// the ramp anew; single breaks can be taken out of it.
class CRampPage : public host::DialogPage {
  public:
    CRampPage(ColourRamp ramp, int bands);

    void describe(host::PageBuilder& page) override;

    const ColourRamp& ramp() const { return ramp_; }

  private:
    void rebuild(host::DialogSession& session);
    void deleteSelected(host::DialogSession& session);
    std::vector<host::Control::Row> rows() const;

    ColourRamp ramp_;
    double lowest_ = 0.0;
    double highest_ = 0.0;
    int bands_ = kDefaultBands;
    std::vector<int> selected_;
};

// Runs the dialog from a ramp between two values; nothing when it was cancelled.
std::optional<ColourRamp> askColourRamp(host::Host& host, double lowest, double highest, int bands,
                                        Palette palette = Palette::rainbow);
// Runs the dialog on the grid's colour table and sets it; false when it was cancelled.
bool editColours(host::Host& host, myGrid& grid);

} // namespace tessaran::grid
