#pragma once

// The dialog in which a stretch of roof is assessed.

#include "host/dialog_model.h"
#include "rfri/assessment.h"

namespace tessaran::rfri {

class CRFRIDefectValue final : public host::DialogPage {
  public:
    // A category whose text is empty shows its default level. Texts that are none of the levels
    // stay until another one is chosen, and the dialog says so.
    explicit CRFRIDefectValue(Assessment assessment);

    void describe(host::PageBuilder& page) override;
    bool accept(host::DialogSession& session) override;

    const Assessment& assessment() const { return assessment_; }

  private:
    std::string foreignTexts() const;

    Assessment assessment_;
    Assessment given_;
};

} // namespace tessaran::rfri
