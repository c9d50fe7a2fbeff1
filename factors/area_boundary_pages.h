#pragma once

// The page "Building Tools": closed boundary polylines on the working layer, made from other
// objects of the drawing.

#include "geometry/point.h"
#include "host/dialog_model.h"
#include "host/entity.h"

#include <optional>
#include <string>
#include <vector>

namespace tessaran::factors {

class CBoundTab final : public host::DialogPage {
  public:
    std::string title() const override { return "Building Tools"; }
    void describe(host::PageBuilder& page) override;

  private:
    using Made = std::vector<host::EntityId>;

    void createFromLayers(host::DialogSession& session);
    void createFromCenterLines(host::DialogSession& session);
    void createFromArea(host::DialogSession& session);
    void check(host::DialogSession& session);
    void deleteBoundaries(host::DialogSession& session);
    void pickRange(host::DialogSession& session);

    bool hasRange() const;
    Made closeOpenOnes(host::Host& host, const std::vector<host::EntityId>& polylines) const;
    Made surroundAll(host::Host& host, const std::vector<host::EntityId>& polylines) const;
    Made surround(host::Host& host, host::EntityId line) const; // empty: not possible

    std::vector<std::string> layers_;
    double range_ = 0.0;
};

} // namespace tessaran::factors
