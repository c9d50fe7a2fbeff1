#pragma once

// One grid in hand and what can be done with it: load, save and define it, move its origin, combine
// its cells with a value or another grid, take values over, edit it, and work out figures. Results
// and confirmations go into the status text and to the command line. Operations that fail leave the
// grid as it was.

#include "grid/grid_arithmetic.h"
#include "grid/my_grid.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::grid {

class GridWorkbench {
  public:
    // Never null; undefined until one was loaded or defined.
    myGrid& grid() { return *grid_; }
    const std::string& fileName() const { return fileName_; }
    const std::string& status() const { return status_; }
    std::string description() const; // size, place and title
    bool modified() const { return modified_; }

    void setStatus(host::Host& host, std::string text);
    // Whether there is a grid; tells when there is none.
    bool isReady(host::Host& host);
    // Whether changes that were not saved may get lost.
    bool mayLose(host::Host& host, const char* question) const;

    // Each true when it has brought another grid.
    bool load(host::Host& host);
    bool define(host::Host& host);

    void save(host::Host& host);
    void moveOrigin(host::Host& host);
    void edit(host::Host& host);

    void apply(host::Host& host, const std::string& operation, const std::string& operand);
    void applyFile(host::Host& host, const std::string& operation);
    void takeValuesFromFile(host::Host& host);

    void showStatistics(host::Host& host);
    void showPolygonStatistics(host::Host& host);

  private:
    std::optional<std::string> chooseGridFile(host::Host& host) const;
    bool confirm(host::Host& host, const std::string& question) const;
    void fail(host::Host& host, const std::string& text); // a box, and the status text
    void changed(host::Host& host, const std::string& status);
    void tellLeftOver(host::Host& host, const CellCounts& counts) const;

    std::unique_ptr<myGrid> grid_ = std::make_unique<myGrid>();
    std::string fileName_;
    std::string status_;
    bool modified_ = false;
};

// The operand as the value operations read it; 0 where no number stands. Nothing when something
// stands behind the number or it is not finite.
std::optional<double> parseOperand(const std::string& text);

// What is asked before an operation with a value.
std::string valueQuestion(GridOperation operation, const std::string& operand);

} // namespace tessaran::grid
