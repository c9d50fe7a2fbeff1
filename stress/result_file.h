#pragma once

// The result files of a run: one text file a seam (base name plus ".f" and the seam's number) and
// the off-seam file (".off"). A header of three lines, then for every step one line an element, X
// outer and Y inner. All numbers stand in the user's units.

#include "base/result.h"
#include "stress/seam_state.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::stress {

std::filesystem::path resultPath(const std::filesystem::path& base, int seam); // seam from 1
std::filesystem::path offSeamPath(const std::filesystem::path& base);

std::string resultHeader(const CModelDat& model, int seam); // seam from 0
std::string resultStep(const CModelDat& model, const SeamState& seam);

std::string offSeamHeader(const CModelDat& model);
std::string offSeamStep(const CModelDat& model, const std::vector<double>& displacement);

// Text added to the end of a file: the file's beginning where `fresh`. What was written before a
// failure stays.
base::Result<void> appendText(const std::filesystem::path& path, std::string_view text, bool fresh);

} // namespace tessaran::stress
