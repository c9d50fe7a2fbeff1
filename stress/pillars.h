#pragma once

// The pillars of a seam after a step: connected runs of coal elements and what they carry.

#include "stress/relaxation.h"
#include "stress/seam_state.h"

#include <string>
#include <vector>

namespace tessaran::stress {

struct Pillar {
    long elements = 0;
    double x = 0.0; // the middle of its elements, consistent units
    double y = 0.0;
    double meanStress = 0.0;
    double leastStress = 0.0;
    double mostStress = 0.0;
    bool atEdge = false; // reaches the grid's edge: the coal goes on beyond it
};

// Coal elements that share a side belong to one pillar. Gob and open entries belong to none.
// Pillars come in the order of their first element, columns outer.
std::vector<Pillar> pillarsOf(const std::vector<Material>& materials, const ElementLaws& laws,
                              const SeamState& seam, const ElementField& field);

// The pillars of all steps and seams, [step][seam], as a table of comma-separated values in the
// user's units.
using PillarTable = std::vector<std::vector<std::vector<Pillar>>>;
std::string pillarText(const CModelDat& model, const PillarTable& pillars);

} // namespace tessaran::stress
