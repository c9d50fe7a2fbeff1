#pragma once

// The grid files that stand for numbers of the roof data: read once each, compared with each other,
// and looked over for values that cannot be meant.

#include "base/progress.h"
#include "base/result.h"
#include "cmrr/unit.h"
#include "grid/my_grid.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace tessaran::cmrr {

enum class GridKind {
    thickness,
    strength,
    diametral,
    rqd,
    spacing,
    axialIs50,
    ucs,
    rating,
    groundWater,
};

// An input whose grid is in use, with its unit (from 1; 0: the final data's).
struct GridUse {
    GridKind kind = GridKind::thickness;
    int unit = 0;
    std::string file{};
    const void* input = nullptr; // which member of the roof data: an Input or a CUnit's ratingFile
};
// In the order of the dialogs.
std::vector<GridUse> gridsInUse(const RoofData& data);
std::vector<GridUse> gridsInUse(const CUnit& unit, int number);

// "There was an error reading the %s grid for unit %d - DDRGOO-"
std::string readErrorText(const GridUse& use);
inline constexpr const char* kGroundWaterReadError =
    "There was an error reading the thickness grid file - F-OOGWGR-1";

// Whom the findings are told.
class GridAdvice {
  public:
    virtual ~GridAdvice() = default;
    virtual void warn(const std::string& text) = 0;
    // Whether to go on with the grid.
    virtual bool goOn(const std::string& question) = 0;
};

// What a grid's cells hold that the kind of input cannot be: a warning for each point up to one
// short of the number at which it is asked whether to go on.
struct Inspection {
    std::vector<std::string> warnings{};
    std::string question{}; // empty: not so many
    std::string blanks{};   // empty: every cell has a value
};
Inspection inspect(GridKind kind, const grid::myGrid& grid);

// Nothing when both lie on the same cells; else the stated text. Compared in the order columns,
// rows, low Y, low X, high Y, high X: a grid of another size has its high corner elsewhere too.
base::Result<void> sameFrame(const grid::myGrid& earlier, const grid::myGrid& grid);

class InputGrids {
  public:
    // The file's grid, read and looked over when it is asked for the first time in that kind. It
    // has to lie as the first of `others` that was read. Errors: io and format, it could not be
    // read; range, it does not fit the others; cancelled, the user drops it.
    base::Result<const grid::myGrid*> need(const std::string& file, GridKind kind,
                                           const std::vector<std::string>& others,
                                           GridAdvice& advice, base::Progress& progress);
    // Null unless it was read.
    const grid::myGrid* find(const std::string& file) const;

    std::size_t filesRead() const { return filesRead_; }

  private:
    struct Entry {
        grid::myGrid grid;
        std::set<GridKind> inspected;
    };
    base::Result<Entry*> read(const std::string& file, base::Progress& progress);

    std::map<std::string, std::unique_ptr<Entry>> entries_; // by whole path
    std::size_t filesRead_ = 0;
};

// How it went with several grids.
struct GridNeed {
    enum class Outcome {
        allRead,
        unread,  // a file could not be read
        misfit,  // a grid does not lie as the earlier ones
        dropped, // the user does not go on with it
    };
    Outcome outcome = Outcome::allRead;
    GridUse use{};        // the one that it stopped at
    std::string text{};   // what the user is told
    std::string reason{}; // what lay behind a failed read

    bool ok() const { return outcome == Outcome::allRead; }
};

// In order, each against the earlier ones.
GridNeed needAll(const std::vector<GridUse>& uses, InputGrids& grids, GridAdvice& advice,
                 base::Progress& progress);

} // namespace tessaran::cmrr
