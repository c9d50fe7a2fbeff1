#pragma once

// The dialog that runs the laminated stress solver on an input file.

#include "host/dialog_model.h"

#include <string>

namespace tessaran::stress {

class PlektonPage final : public host::DialogPage {
  public:
    void describe(host::PageBuilder& page) override;

  private:
    void selectFile(host::Host& host);
    void run(host::DialogSession& session);

    std::string inputFile_;
};

class dlg_plekton final : public host::Dialog { // NOLINT(readability-identifier-naming)
  public:
    explicit dlg_plekton(PlektonPage& page) : Dialog("Plekton Stress Calculation", {&page}) {}

    std::string okLabel(const host::DialogSession& /*session*/) const override { return {}; }
    std::string cancelLabel(const host::DialogSession& /*session*/) const override {
        return "&Exit";
    }
};

} // namespace tessaran::stress
