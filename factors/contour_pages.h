#pragma once

// The page of contour lines: the topography grid for the stress solver, and factor grids of any
// quantity that is drawn as contour lines.

#include "factors/generator_page.h"
#include "factors/topo_file.h"
#include "geometry/curve.h"

#include <string>
#include <vector>

namespace tessaran::factors {

class CTopoTab final : public GeneratorPage {
  public:
    enum class Use { topography, factor };
    explicit CTopoTab(Use use) : GeneratorPage(grid::kMapFilled), use_(use) {}

    std::string title() const override;
    void describe(host::PageBuilder& page) override;

  private:
    enum class ContourType { elevation = 0, textLabel = 1 };

    void build(host::DialogSession& session) override;
    bool save(host::Host& host) override;

    void describeSeam(host::PageBuilder& page);
    void pickSeamLevel(host::DialogSession& session);
    void browseTopo(host::DialogSession& session);

    bool layGrid(host::Host& host);
    std::vector<geometry::Curve> contours(host::Host& host) const;
    std::vector<geometry::Curve> labelled(host::Host& host,
                                          const std::vector<host::EntityId>& objects) const;
    bool fill(host::Host& host, const std::vector<geometry::Curve>& contours);
    bool saveTopo(host::Host& host) const;
    double seamLevel() const; // 0 unless it is switched on

    Use use_;
    int contourType_ = static_cast<int>(ContourType::elevation);
    int units_ = static_cast<int>(DepthUnit::feet);
    bool useSeamLevel_ = false;
    std::string seamText_;
    double searchLimit_ = 2000.0; // drawing units
    std::string topoFile_;
};

} // namespace tessaran::factors
