#include "grid/base_grid.h"

#include "base/numbers.h"
#include "base/text.h"
#include "host/host.h"
#include "host/services_records.h"

#include <array>

namespace tessaran::grid {
namespace {

constexpr const char* kRecordKey = "ZelkBaseGrid";
constexpr const char* kProfileSection = "Settings";

// The short pi that grids turn degrees into radians with, so that the way back gives the same text.
constexpr double kGridPi = 3.1415926;

} // namespace

std::vector<BaseGridReset> fillCountsAndWidths(BaseGrid& base) {
    struct Field {
        std::string_view what;
        std::string& text;
    };
    const std::array fields{Field{"number of cells in X direction", base.cellsX},
                            Field{"number of cells in Y direction", base.cellsY},
                            Field{"cell width in X direction", base.widthX},
                            Field{"cell width in Y direction", base.widthY}};
    std::vector<BaseGridReset> resets;
    for (const Field& field : fields) {
        if (base::leadingInt(field.text) != 0)
            continue;
        if (!base::trimmed(field.text).empty())
            resets.push_back({field.what, field.text});
        field.text = kCountAndWidthDefault;
    }
    return resets;
}

long long totalCells(const BaseGrid& base) {
    return static_cast<long long>(base::leadingInt(base.cellsX)) * base::leadingInt(base.cellsY);
}

bool setupFromBaseGrid(const BaseGrid& base, myGrid& grid) {
    grid.setOrigin(base::leadingDouble(base.originX), base::leadingDouble(base.originY), 0.0);
    return grid.setupGrid(base::leadingInt(base.cellsX), base::leadingInt(base.cellsY),
                          base::leadingDouble(base.widthX), base::leadingDouble(base.widthY),
                          base::leadingDouble(base.rotation)) &&
           grid.isDefined();
}

BaseGrid baseGridOf(const myGrid& grid) {
    return {std::to_string(grid.nX()),
            std::to_string(grid.nY()),
            base::fixed6(grid.cellWidthX()),
            base::fixed6(grid.cellWidthY()),
            base::fixed6(grid.rotation() * 180.0 / kGridPi),
            base::fixed6(grid.origin().x),
            base::fixed6(grid.origin().y)};
}

BaseGrid& baseGrid(host::Host& host) {
    return host::documentRecord<BaseGrid>(host.documentSlot());
}

bool defineFromBaseGrid(host::Host& host, myGrid& grid) {
    return setupFromBaseGrid(baseGrid(host), grid);
}

bool recordBaseGrid(host::Host& host, const BaseGrid& base) {
    host::Profile& profile = host.profile();
    profile.write(kProfileSection, "GridXNum", base.cellsX);
    profile.write(kProfileSection, "GridYNum", base.cellsY);
    profile.write(kProfileSection, "GridXCellXW", base.widthX);
    profile.write(kProfileSection, "GridXCellYW", base.widthY);
    profile.write(kProfileSection, "GridRotA", base.rotation);
    profile.write(kProfileSection, "GridOX", base.originX);
    profile.write(kProfileSection, "GridOY", base.originY);
    return host::writeStoredRecord(host, kRecordKey,
                                   {base.cellsX, base.cellsY, base.widthX, base.widthY,
                                    base.originX, base.originY, base.rotation});
}

} // namespace tessaran::grid
