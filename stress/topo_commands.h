#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::stress {

// Computes the overburden stress on a seam under an uneven surface, for the solver.
void zelk_topoStressModel(host::Host& host);

} // namespace tessaran::stress
