#pragma once

// The parts of a model plan as people write them on one line; the command line and the dialog take
// the same forms. An error's text says what was expected.

#include "base/result.h"
#include "stress/model_plan.h"

#include <string>
#include <utility>

namespace tessaran::stress {

// "type,P1,...": up to five values, those left out are 0.
base::Result<Material> materialOf(const std::string& text);
std::string textOf(const Material& material);

// "Z,thickness,map[,map...]"
base::Result<SeamPlan> seamOf(const std::string& text);
std::string textOf(const SeamPlan& seam);

// "S=2" or "0=open"
base::Result<std::pair<char, int>> codeOf(const std::string& text);
std::string textOf(const std::pair<const char, int>& code);

// "A=3,4,5"
base::Result<RingPlan> ringsOf(const std::string& text);
std::string textOf(const RingPlan& rings);

// "north,east,south,west", each 0 or 1
base::Result<Boundaries> boundariesOf(const std::string& text);
std::string textOf(const Boundaries& boundaries);

// "block width,blocks in X,blocks in Y,x,y,z"
base::Result<OffSeamGrid> offSeamOf(const std::string& text);
std::string textOf(const OffSeamGrid& grid);

} // namespace tessaran::stress
