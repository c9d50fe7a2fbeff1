#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::rfri {

// Assigns assessments to polygons that are picked or drawn, or changes them.
void zelk_RFRI_Input(host::Host& host);

// Prints the assessments of selected polygons.
void zelk_RFRI_List(host::Host& host);

// Writes the measurement labels of selected polygons into the drawing.
void zelk_RFRI_Label(host::Host& host);

// Colours selected polygons by their index, writes the index into them, and draws the legend.
void zelk_RFRI_Mapping(host::Host& host);

} // namespace tessaran::rfri
