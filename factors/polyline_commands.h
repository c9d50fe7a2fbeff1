#pragma once

// Commands that prepare the drawing's polylines for the factor generators.

namespace tessaran::host {
class Host;
}

namespace tessaran::factors {

void zelk_checkClosedPolylines(host::Host& host);
void zelk_checkContours(host::Host& host);
void zelk_checkDuplicates(host::Host& host);
void zelk_checkOverlaps(host::Host& host);
// Erases what stands on the working layer or on chosen ones.
void zelk_clearWorkingLayer(host::Host& host);
// Chains picked objects into one polyline.
void zelk_createPolylineFromObjects(host::Host& host);
// Joins polylines (and lines) end to end.
void zelk_joinPolylines(host::Host& host);

} // namespace tessaran::factors
