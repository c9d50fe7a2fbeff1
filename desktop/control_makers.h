#pragma once

// The makers of the views, one for each kind of control.

#include "desktop/control_view.h"

namespace tessaran::desktop {

using MadeView = std::unique_ptr<ControlView>;

MadeView makeTextView(DialogActions& actions, const DialogActions::Place& place);
MadeView makeNamesView(DialogActions& actions, const DialogActions::Place& place);
MadeView makeInformationView(DialogActions& actions, const DialogActions::Place& place);
MadeView makeLinkView(DialogActions& actions, const DialogActions::Place& place);
MadeView makeCheckView(DialogActions& actions, const DialogActions::Place& place);
MadeView makeRadioView(DialogActions& actions, const DialogActions::Place& place);
MadeView makeDropListView(DialogActions& actions, const DialogActions::Place& place);
MadeView makeListView(DialogActions& actions, const DialogActions::Place& place);
MadeView makeButtonView(DialogActions& actions, const DialogActions::Place& place);

} // namespace tessaran::desktop
