#pragma once

// What an engineer checks by eye before a run: whether the element width suits the rock, the
// depths, how far the openings stay away from the edges, and what the run will take.

#include "stress/model.h"

#include <string>

namespace tessaran::stress {

// Elements of unmined coal between each edge and the nearest opening or gob, over all steps and
// seams; -1 where nothing is mined.
struct Margins {
    int north = -1;
    int east = -1;
    int south = -1;
    int west = -1;
};
Margins coalMargins(const CModelDat& model);

// Bytes that a run of the model needs at a time, about.
double memoryOfRun(const CModelDat& model);

// Lines of text in the user's units. Times a few sweeps to estimate the run's time.
std::string runOutlook(const CModelDat& model);

} // namespace tessaran::stress
