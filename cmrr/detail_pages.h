#pragma once

// The dialogs behind a unit's "Details...": what was seen underground with its sets of
// discontinuities, or what the drill core gave. They work on the unit itself; the caller keeps what
// it was for a Cancel.

#include "cmrr/page_fields.h"
#include "host/dialog_model.h"

namespace tessaran::cmrr {

class ObservationPage final : public host::DialogPage {
  public:
    ObservationPage(RoofSession& roof, CUnit& unit) : roof_(roof), data_(unit.observation) {}

    void describe(host::PageBuilder& page) override;
    bool accept(host::DialogSession& session) override;

  private:
    void editSets(host::DialogSession& session);

    RoofSession& roof_;
    Observation& data_;
};

class Sets final : public host::DialogPage {
  public:
    explicit Sets(Observation& data) : data_(data) {}

    void describe(host::PageBuilder& page) override;

  private:
    Observation& data_;
};

class CorePage final : public host::DialogPage {
  public:
    CorePage(RoofSession& roof, CUnit& unit) : roof_(roof), data_(unit.core) {}

    void describe(host::PageBuilder& page) override;

  private:
    void describeDiametral(host::PageBuilder& page);
    void describeFractures(host::PageBuilder& page);
    void describeAxial(host::PageBuilder& page);
    // An input's number and its grid, both enabled while the input is the one in use.
    void describeInput(host::PageBuilder& page, const std::string& label, const FieldCheck& field,
                       Input& input, const std::string& gridLabel, GridKind kind,
                       const Condition& inUse);

    RoofSession& roof_;
    CoreData& data_;
};

// Runs the dialog of the unit's type of data; whether it ended by OK. Otherwise the unit is as it
// was. After OK the rating is computed from the data.
bool editDetails(host::Host& host, RoofSession& roof, int unit);

} // namespace tessaran::cmrr
