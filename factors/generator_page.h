#pragma once

// What the pages have in common that build a factor grid from objects on chosen layers: the layers,
// the output file, the buttons, and what becomes of the grid.

#include "grid/grid_drawing.h"
#include "grid/grid_output.h"
#include "grid/my_grid.h"
#include "host/dialog_model.h"
#include "host/entity.h"
#include "host/graphics.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tessaran::factors {

inline constexpr const char* kGridTitle = "Grid Title";
inline constexpr const char* kCancelledByUser = "\nCanceled by user!";

class GeneratorPage : public host::DialogPage {
  public:
    bool mayClose(host::DialogSession& session, bool accepted) override;

  protected:
    explicit GeneratorPage(grid::DrawMode mode) : output_(grid_), mode_(mode) {}

    // The list of layers and the button that fills it from picked objects.
    void describeLayers(host::PageBuilder& page, const std::string& label,
                        const std::string& pickLabel);
    // Build, Draw, Save.
    void describeButtons(host::PageBuilder& page);

    virtual void build(host::DialogSession& session) = 0;
    virtual bool save(host::Host& host) { return output_.save(host); } // whether it was saved

    std::string layerText() const; // the names joined by ","
    // Lays the working grid, empty; there is no built grid from here on. False when the drawing's
    // base grid is no usable definition.
    bool layWorkingGrid(host::Host& host);
    void showBuilt(host::Host& host);

    std::vector<std::string> layers_;
    grid::myGrid grid_;
    grid::GridOutput output_;

  private:
    grid::DrawMode mode_;
};

// A page that builds its grid from the objects of its layers which lie over the grid or within a
// distance of it.
class ObjectGeneratorPage : public GeneratorPage {
  protected:
    ObjectGeneratorPage() : GeneratorPage(grid::kMapFilled) {}

    // What the page itself asks for, after its layers; false when the user was told what is wrong.
    virtual bool checkInput(host::DialogSession& session) = 0;
    virtual std::vector<std::string> types() const = 0;
    virtual double reach() const = 0; // distance from the grid at which objects count
    virtual std::string countText(std::size_t count) const = 0;
    // Fills the working grid; false when the user ended it. `shown` holds the grid's outline.
    virtual bool fill(host::Host& host, const std::vector<host::EntityId>& objects,
                      host::ShownGraphics& shown) = 0;

    void build(host::DialogSession& session) final;

  private:
    bool readDialog(host::DialogSession& session);
    bool buildGrid(host::Host& host);
};

} // namespace tessaran::factors
