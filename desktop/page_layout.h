#pragma once

// Lays the controls of a dialog's page out, in the order of their description: fields in lines
// (caption, field, what stands beside it), buttons that follow each other in a row, groups in
// boxes, and groups that are alike side by side as the columns of a table.

#include "desktop/control_view.h"

#include <memory>
#include <vector>

namespace tessaran::desktop {

using ControlViews = std::vector<std::unique_ptr<ControlView>>;

// The page's widget, without a parent; the views of its controls are added in their order.
QWidget* layOutPage(DialogActions& actions, int page, ControlViews& views);

} // namespace tessaran::desktop
