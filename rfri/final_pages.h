#pragma once

// The dialog of the final calculation.

#include "grid/my_grid.h"
#include "host/dialog_model.h"
#include "rfri/categories.h"

#include <string>
#include <vector>

namespace tessaran::rfri {

class FinalPage final : public host::DialogPage {
  public:
    // The document's records, which outlive the page.
    explicit FinalPage(const CategoryRecords& records) : records_(records) {}

    void describe(host::PageBuilder& page) override;
    void opened(host::DialogSession& session) override;

  private:
    void calculate(host::Host& host);
    void draw(host::DialogSession& session);
    void save(host::Host& host);
    // False, and told, as long as nothing is calculated.
    bool calculated(host::Host& host) const;
    std::vector<host::Control::Row> fileRows() const;

    const CategoryRecords& records_;
    std::vector<int> selected_;
    std::string outputFile_ = "RFRI_FinalValue.grd";
    std::string title_ = "Final RFRI Value";
    grid::myGrid final_;
    bool ready_ = false;
    bool calculated_ = false;
};

class dlg_RFRI_RFRICalc final // NOLINT(readability-identifier-naming): the system's own name
    : public host::Dialog {
  public:
    explicit dlg_RFRI_RFRICalc(host::DialogPage& page) : Dialog("RFRI Calculation", {&page}) {}
};

} // namespace tessaran::rfri
