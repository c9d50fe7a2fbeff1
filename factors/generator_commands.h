#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::factors {

// Generates a grid file from points such as drill holes.
void zelk_gridFromPoint(host::Host& host);

// Generates grid files from various contour lines.
void zelk_gridFromContour(host::Host& host);

// Generates the topography grid: the ground's elevation, or the depth of a seam below it.
void zelk_topoGrid(host::Host& host);

// Generates a grid file from linear geological features such as faults.
void zelk_geoFeatures(host::Host& host);

// Generates a grid file from the effect of the maximum horizontal stress on entries.
void zelk_horizStress(host::Host& host);

} // namespace tessaran::factors
