#include "index/factor_commands.h"

#include "grid/grid_drawing.h"
#include "host/host.h"
#include "index/factor_pages.h"

#include <fmt/format.h>

namespace tessaran::index {

void zelk_genFactor(host::Host& host) {
    CGenFactFileTab file;
    CGenFactFuncTab function(file);
    FactorDialog dialog(file, function);
    if (!host::runDialog(host, dialog))
        return;

    grid::myGrid grid;
    if (!grid.readGrid(host, file.inputFile(), true))
        return;
    host.print(fmt::format("\nLoad from file {}", file.inputFile()));
    grid.setTitle(file.description());
    if (const std::size_t without = grid.countWithoutValue(); without > 0)
        host.print(fmt::format("\n{} cells have no value and stay so.", without));
    transform(grid, function.transformation());

    if (function.previewsResult())
        grid::drawAfterBuild(host, grid, grid::kMapFilled);
    grid.writeGrid(host, file.outputFile());
    const std::string saved =
        fmt::format("\nIndex has been saved to grid file< {} >", file.outputFile());
    host.dialogs().message(saved);
    host.print(saved);
    host.print("\nIndividual Factor Normalization/Formulization finished!");
}

} // namespace tessaran::index
