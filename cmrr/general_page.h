#pragma once

// The first dialog of the roof rating: the units, their thicknesses and types of data, and the unit
// data file.

#include "cmrr/page_fields.h"
#include "host/dialog_model.h"

namespace tessaran::cmrr {

class GeneralPage final : public host::DialogPage {
  public:
    explicit GeneralPage(RoofSession& roof) : roof_(roof) {}

    void describe(host::PageBuilder& page) override;
    bool mayClose(host::DialogSession& session, bool accepted) override;

    // On to the final data: fields, thin units, ratings and grids are checked.
    void next(host::DialogSession& session);

  private:
    void describeUnit(host::PageBuilder& page, int number);
    void describeRating(host::PageBuilder& page, int number);
    void describeRatingFile(host::PageBuilder& page, int number);
    void describeThickness(host::PageBuilder& page, int number);
    bool checkUnits(host::DialogSession& session);
    bool acceptsThin(host::DialogSession& session, int number);

    void open(host::DialogSession& session);
    bool save(host::Host& host);
    bool saveAs(host::Host& host);
    bool mayDiscard(host::Host& host);

    CUnit& unit(int number) { return roof_.data.unit[static_cast<std::size_t>(number) - 1]; }
    Condition inUse(int number) {
        return [this, number] { return number <= roof_.data.units; };
    }

    RoofSession& roof_;
};

class GeneralDialog final : public host::Dialog {
  public:
    explicit GeneralDialog(GeneralPage& page)
        : Dialog("General Information", {&page}), page_(page) {}

    std::string okLabel(const host::DialogSession& /*session*/) const override { return "Next..."; }
    std::string cancelLabel(const host::DialogSession& /*session*/) const override {
        return "Close";
    }
    bool okPressed(host::DialogSession& session) override {
        page_.next(session);
        return false; // it is still there after "Back"
    }

  private:
    GeneralPage& page_;
};

} // namespace tessaran::cmrr
