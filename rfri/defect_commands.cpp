#include "rfri/defect_commands.h"

#include "grid/base_grid_pages.h"
#include "host/host.h"
#include "rfri/defect_pages.h"
#include "rfri/final_pages.h"

#include <deque>

namespace tessaran::rfri {

void zelk_RFRI_Draw(host::Host& host) {
    auto& records = host::documentRecord<CategoryRecords>(host.documentSlot());
    CategoryRecords copy = records;
    grid::CGridTab gridPage;
    std::deque<CDefectTab> tabs;
    std::vector<host::DialogPage*> pages{&gridPage};
    for (std::size_t k = 0; k < kCategories; ++k)
        pages.push_back(&tabs.emplace_back(categories()[k], copy.records[k]));
    host::Dialog dialog("RFRI Draw Defects", pages);
    if (host::runDialog(host, dialog))
        records = copy;
    host.print("\nLeaving the RFRI Drawing Menus!");
}

void zelk_RFRI_Calc(host::Host& host) {
    FinalPage page(host::documentRecord<CategoryRecords>(host.documentSlot()));
    dlg_RFRI_RFRICalc dialog(page);
    if (host::runDialog(host, dialog))
        host.print("\nLeaving the RFRI Calculation!");
}

} // namespace tessaran::rfri
