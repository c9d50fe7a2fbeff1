#pragma once

// The page "Linear Features": the influence of faults and other linear features on the cells
// around them.

#include "factors/generator_page.h"

namespace tessaran::factors {

class CGeoFeatureTab final : public ObjectGeneratorPage {
  public:
    std::string title() const override { return "Linear Features"; }
    void describe(host::PageBuilder& page) override;

  private:
    bool checkInput(host::DialogSession& session) override;
    std::vector<std::string> types() const override;
    double reach() const override { return distance_; }
    std::string countText(std::size_t count) const override;
    bool fill(host::Host& host, const std::vector<host::EntityId>& objects,
              host::ShownGraphics& shown) override;

    void pickDistance(host::DialogSession& session);

    double distance_ = 0.0;
    bool accumulation_ = false;
};

} // namespace tessaran::factors
