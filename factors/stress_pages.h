#pragma once

// The page "Horizontal Stress": how strongly the maximum horizontal stress works on entries, by
// the angle between the two.

#include "factors/generator_page.h"

namespace tessaran::factors {

class CHorizonStressTab final : public ObjectGeneratorPage {
  public:
    CHorizonStressTab();

    std::string title() const override { return "Horizontal Stress"; }
    void describe(host::PageBuilder& page) override;

  private:
    bool checkInput(host::DialogSession& session) override;
    std::vector<std::string> types() const override { return {"LWPOLYLINE", "LINE"}; }
    double reach() const override { return 0.5 * entryWidth_; }
    std::string countText(std::size_t count) const override;
    bool fill(host::Host& host, const std::vector<host::EntityId>& objects,
              host::ShownGraphics& shown) override;

    void pickWidth(host::DialogSession& session);
    void pickOrientation(host::DialogSession& session);
    void orientationTyped(host::DialogSession& session, const std::string& before);

    double entryWidth_ = 0.0;
    std::string orientationText_; // degrees from the drawing's X axis
    double orientation_ = 0.0;    // the same in radians, with all digits of a pick
};

} // namespace tessaran::factors
