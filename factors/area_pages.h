#pragma once

// The pages of the dialog "Create Grid for Area Based Factor": the factor grid of closed boundaries
// on the working layer.

#include "factors/area_factor.h"
#include "grid/grid_output.h"
#include "grid/my_grid.h"
#include "host/dialog_model.h"
#include "host/entity.h"

#include <string>
#include <vector>

namespace tessaran::factors {

class CAreaFactTab final : public host::DialogPage {
  public:
    CAreaFactTab() : output_(grid_) {}

    std::string title() const override { return "Area Factor"; }
    void describe(host::PageBuilder& page) override;
    bool mayClose(host::DialogSession& session, bool /*accepted*/) override {
        return output_.mayClose(session.host());
    }

  private:
    // Polylines of the working layer with their vertex polygons.
    struct Boundaries {
        std::vector<host::EntityId> entities;
        std::vector<geometry::Polygon> outlines;
        std::size_t existed = 0; // before those outside the grid were taken out
    };

    void build(host::DialogSession& session);
    void draw(host::DialogSession& session);
    void check(host::DialogSession& session);
    void changeCells(host::DialogSession& session);

    bool readDialog(host::DialogSession& session);
    bool defineWorkingGrid(host::Host& host);
    bool fillGrid(host::Host& host, Boundaries& boundaries);
    void removeBoundaries(host::Host& host) const;
    AreaFactorOptions options() const;

    static Boundaries workingBoundaries(host::Host& host);
    static void keepRelated(const grid::myGrid& grid, Boundaries& boundaries);
    static std::string countText(const Boundaries& boundaries);

    int insideFactor_ = 0;
    int outsideFactor_ = 0;
    int minimumArea_ = 0;
    int algorithm_ = static_cast<int>(AreaAlgorithm::none);
    bool removeBoundaries_ = false;
    bool changedByHand_ = false;
    bool gridEmpty_ = true;
    grid::myGrid grid_;
    grid::GridOutput output_;
};

} // namespace tessaran::factors
