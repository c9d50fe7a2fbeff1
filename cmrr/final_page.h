#pragma once

// The last dialog of the roof rating: conditions, bolts, and the result with how it came about.

#include "cmrr/page_fields.h"
#include "cmrr/roof_rating.h"
#include "host/dialog_model.h"

#include <string>

namespace tessaran::cmrr {

class FinalPage final : public host::DialogPage {
  public:
    explicit FinalPage(RoofSession& roof) : roof_(roof) {}

    void describe(host::PageBuilder& page) override;

    // Checks, computes, writes the grids and shows the result.
    void finish(host::DialogSession& session);

  private:
    void forgetResult() { rating_.clear(), report_.clear(); }
    bool writeGrids(host::Host& host, RoofResult& result);
    std::string outputFolder(host::Host& host) const;

    RoofSession& roof_;
    std::string rating_;
    std::string report_;
};

class FinalDialog final : public host::Dialog {
  public:
    explicit FinalDialog(FinalPage& page) : Dialog("Final Data Parameters", {&page}), page_(page) {}

    std::string okLabel(const host::DialogSession& /*session*/) const override { return "Finish"; }
    std::string cancelLabel(const host::DialogSession& /*session*/) const override {
        return "<---  Back";
    }
    bool okPressed(host::DialogSession& session) override {
        page_.finish(session);
        return false;
    }

  private:
    FinalPage& page_;
};

} // namespace tessaran::cmrr
