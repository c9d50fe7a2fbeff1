#pragma once

// The tabbed dialog in which defects are drawn and gridded: one page for each category, all of one
// class, which takes what differs from the category's row in the table.

#include "grid/grid_output.h"
#include "grid/my_grid.h"
#include "host/dialog_model.h"
#include "host/entity.h"
#include "host/prompts.h"
#include "rfri/categories.h"
#include "rfri/defect_grid.h"

#include <optional>
#include <string>
#include <vector>

namespace tessaran::rfri {

class CDefectTab final : public host::DialogPage {
  public:
    // `record` is the dialog's copy and outlives the page.
    CDefectTab(const Category& category, CategoryRecord& record);

    std::string title() const override { return category_.description; }
    void describe(host::PageBuilder& page) override;
    void opened(host::DialogSession& session) override;
    bool mayClose(host::DialogSession& session, bool accepted) override;

  private:
    void describeLevel(host::PageBuilder& page);
    void showLevel();
    int levelValue() const;

    void draw(host::DialogSession& session);
    bool askStart(host::Host& host, host::Point3& start); // changes levels meanwhile
    void drawLine(host::Host& host, const host::Point3& start) const;

    void build(host::DialogSession& session);
    void fill(host::Host& host, const grid::myGrid& base);
    std::vector<Defect> defectsOf(host::Host& host,
                                  const std::vector<host::EntityId>& objects) const;
    std::optional<Defect> defectOf(host::Host& host, host::EntityId id, std::size_t number) const;

    void edit(host::DialogSession& session);
    bool save(host::Host& host);

    const Category& category_;
    CategoryRecord& record_;
    double distance_ = 0.0; // of the selected level
    grid::myGrid grid_;
    grid::GridOutput output_; // whether there is a grid, and whether it is saved
};

} // namespace tessaran::rfri
