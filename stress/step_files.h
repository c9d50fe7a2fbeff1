#pragma once

// The scratch files of a run, STEP1.CHR, STEP2.CHR ... in the input file's folder: the element
// codes of one mining step each, for every seam one line a row from the top row down.

#include "base/result.h"
#include "stress/model.h"

#include <filesystem>
#include <vector>

namespace tessaran::stress {

std::filesystem::path stepFile(const std::filesystem::path& folder, int step); // step from 1

// One new text file for each step that the model has codes of.
base::Result<void> writeStepFiles(const std::filesystem::path& folder, const CModelDat& model);

// The codes of a step, seam by seam.
base::Result<std::vector<ElementCodes>> readStepFile(const std::filesystem::path& folder, int step,
                                                     const CModelDat& model);

} // namespace tessaran::stress
