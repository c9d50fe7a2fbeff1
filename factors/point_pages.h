#pragma once

// The page "Points": a factor grid interpolated from points that carry a value as their height,
// taken from objects of the drawing or from a text file.

#include "factors/generator_page.h"
#include "geometry/point.h"

#include <optional>
#include <vector>

namespace tessaran::factors {

class CPointsTab final : public GeneratorPage {
  public:
    CPointsTab() : GeneratorPage(grid::kPreviewCells) {}

    std::string title() const override { return "Points"; }
    void describe(host::PageBuilder& page) override;

  private:
    using Points = std::vector<geometry::Point3>;
    struct Gathered; // what lies within the search limit, and how much there was

    void build(host::DialogSession& session) override;

    // Nothing when the user was told why there are none.
    std::optional<Points> gather(host::Host& host, const grid::myGrid& grid) const;
    bool gatherFromLayers(host::Host& host, double step, Gathered& gathered) const;
    bool gatherFromFile(host::Host& host, Gathered& gathered) const;
    double searchLimit(const grid::myGrid& grid) const; // drawing units
    bool agreed(host::Host& host, const Points& points, const grid::myGrid& grid) const;
    bool fill(host::Host& host, const Points& points);

    bool fromFile_ = false;
    int interpolation_ = -1;
    int minimumPoints_ = 0;
    int searchPercent_ = 0;
};

} // namespace tessaran::factors
