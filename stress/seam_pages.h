#pragma once

// The page that makes the seam grid from the plan's pillars and gobs, and its code map.

#include "grid/grid_output.h"
#include "grid/my_grid.h"
#include "host/dialog_model.h"
#include "host/entity.h"
#include "stress/seam_grid.h"
#include "stress/seam_map.h"

#include <string>
#include <vector>

namespace tessaran::stress {

class CSeamTab final : public host::DialogPage {
  public:
    CSeamTab() : output_(grid_) {}

    std::string title() const override { return "Seam Grid"; }
    void describe(host::PageBuilder& page) override;
    bool mayClose(host::DialogSession& session, bool accepted) override;

  private:
    // Pillars or gobs: their layers and how they are spoken of.
    struct Kind {
        std::vector<std::string> layers;
        const char* pick;  // the prompt
        const char* count; // "{} objetcs in ... layers: {}"
    };

    void describeLayers(host::PageBuilder& page, const std::string& label,
                        const std::string& shortName, Kind& kind);
    void describeCodes(host::PageBuilder& page);
    void pick(host::DialogSession& session, Kind& kind);
    void choose(host::DialogSession& session, Kind& kind);
    void browse(host::Host& host);

    void build(host::DialogSession& session);
    bool layGrid(host::Host& host);
    bool fillGrid(host::Host& host);
    std::vector<geometry::Polygon> relatedPillars(host::Host& host,
                                                  std::vector<host::EntityId>& objects) const;
    bool overlapping(const std::vector<geometry::Polygon>& pillars) const;
    SeamGridOptions options() const;

    void draw(host::DialogSession& session);
    void preview(host::DialogSession& session);
    bool save(host::Host& host);
    void editCells(host::DialogSession& session);

    Kind pillars_{
        {}, "\nSelect any pillar object in the layer", "\n{} objetcs in pillar layers: {}"};
    Kind gobs_{
        {}, "\nSelect any gob polygon object in the layer", "\n{} objetcs in gob layers: {}"};
    int algorithm_ = static_cast<int>(SeamAlgorithm::none);
    int minimumArea_ = 0;
    SeamCodes codes_;
    std::string file_ = "Untitled.txt";
    grid::myGrid grid_;
    grid::GridOutput output_; // whether the grid was built and saved
};

} // namespace tessaran::stress
