#pragma once

// The "Grid Dimension" page, which every dialog that builds grids begins with.

#include "grid/base_grid.h"
#include "host/dialog_model.h"

#include <string>

namespace tessaran::grid {

class CGridTab final : public host::DialogPage {
  public:
    CGridTab();

    std::string title() const override { return "Grid Dimension"; }
    void describe(host::PageBuilder& page) override;

    // Fills the page from the document's base grid; leaving it and OK check the page and write the
    // base grid back.
    void opened(host::DialogSession& session) override;
    bool mayLeave(host::DialogSession& session) override;
    bool accept(host::DialogSession& session) override { return mayLeave(session); }

  private:
    // An origin coordinate as shown, in the user's coordinate system. What was not edited keeps
    // the digits that the display rounds off.
    struct Coordinate {
        std::string shown;
        std::string untouched; // as it was shown first
        double exact = 0.0;    // what `untouched` stands for

        double value() const;
    };

    void describeLocation(host::PageBuilder& page);
    void describeGeometry(host::PageBuilder& page);
    void describeActions(host::PageBuilder& page);

    bool checkCount(host::DialogSession& session, const char* label, const std::string& text);
    bool checkNumber(host::DialogSession& session, const char* label, const std::string& text);
    bool check(host::DialogSession& session);

    Point3 userOrigin() const;
    void showUserOrigin(const Point3& user);
    void showBaseGrid(host::Host& host, const BaseGrid& base);
    BaseGrid worldTexts(host::Host& host) const;
    bool toGrid(host::DialogSession& session, myGrid& grid);

    void pickOrigin(host::DialogSession& session);
    void pickGeometry(host::DialogSession& session);
    void pickCellSize(host::DialogSession& session, std::string& width, const char* direction);
    void preview(host::DialogSession& session);
    void saveDefinition(host::DialogSession& session);
    void importDefinition(host::DialogSession& session);

    BaseGrid texts_; // the origin's as they are in the document
    Coordinate originX_;
    Coordinate originY_;
    bool gridGiven_ = false; // by the document or the user, not by defaults alone
};

} // namespace tessaran::grid
