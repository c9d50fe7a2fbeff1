#pragma once

// The dialog that turns items of a result file into grid files.

#include "grid/my_grid.h"
#include "host/dialog_model.h"
#include "stress/result_reader.h"

#include <string>
#include <vector>

namespace tessaran::stress {

class TransferPage final : public host::DialogPage {
  public:
    void describe(host::PageBuilder& page) override;

  private:
    void select(host::Host& host);
    void transfer(host::DialogSession& session);
    void preview(host::DialogSession& session);
    std::vector<host::Control::Row> rows() const;

    // The selected row's item and step, from 1, once the user has confirmed `question`; 0 when not.
    struct Chosen {
        int item = 0;
        int step = 0;
    };
    Chosen confirmed(host::Host& host, const char* verb) const;
    bool load(host::Host& host, const Chosen& chosen, grid::myGrid& grid) const;

    std::string file_;
    ResultHeader header_;
    std::vector<int> selected_;
};

class dlg_convplekgrid final : public host::Dialog { // NOLINT(readability-identifier-naming)
  public:
    explicit dlg_convplekgrid(TransferPage& page)
        : Dialog("Transfer Plekton/MulSim Results", {&page}) {}

    std::string cancelLabel(const host::DialogSession& /*session*/) const override { return {}; }
};

} // namespace tessaran::stress
