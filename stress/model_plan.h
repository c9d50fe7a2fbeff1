#pragma once

// A solver input composed from seam code maps and what the user types. Lengths and stresses of a
// plan stand in the user's units, which its system of units names; the input file gets consistent
// ones.

#include "base/result.h"
#include "stress/model.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::stress {

struct SeamPlan {
    double z = 0.0;
    double thickness = 0.0;
    std::vector<std::string> maps{}; // one a step; the last one holds for the steps after it
};

// Coal re-lettered by its distance from the nearest opening or gob: the elements next to it are
// ring 1 (diagonally next counts), those next to ring 1 are ring 2 ...
struct RingPlan {
    char coal = 'A';              // the code of the maps that is re-lettered
    std::vector<int> materials{}; // of ring 1, 2 ...; farther elements keep theirs
};

struct ModelPlan {
    std::string title = "Untitled model";
    int unitSystem = 1;
    double poissonsRatio = 0.25;
    double modulus = 0.0;
    double laminationThickness = 0.0;
    double elementWidth = 0.0;
    double gradient = 0.0;
    std::vector<Material> materials{}; // material 1 first

    std::vector<SeamPlan> seams{};
    int steps = 0;               // 0: as many as the seam with the most maps has
    std::map<char, int> codes{}; // code of the maps to material; kOpenCode: an open entry
    std::vector<RingPlan> rings{};

    double overRelaxation = 1.35;
    double convergenceCriterion = 0.0;
    int maxIterations = 5000;
    bool surfaceEffects = false;
    Boundaries boundaries{1, 1, 1, 1};
    std::optional<OffSeamGrid> offSeam{};
    std::string topography{}; // a ".top" file of stresses; empty: none
};
inline constexpr int kOpenCode = 0;

// Codes without an entry: letters of materials that the plan has stay, "1" is an open entry.
struct ComposedModel {
    std::string text{}; // of the input file
    CModelDat model{};  // as the reader reads it
    std::vector<std::string> warnings{};
};
// Reads the maps and the topography. Everything that reading and preparing a run checks is checked
// here.
base::Result<ComposedModel> composeModel(const ModelPlan& plan);

// The input file and beside it, under its name, the topography: written whole or not at all.
base::Result<void> writeComposed(const ModelPlan& plan, const ComposedModel& composed,
                                 const std::filesystem::path& path);

// The values of a material from the user's units to consistent ones.
Material inConsistentUnits(const Material& material, const Units& units);

// The element's ring, from 1, or 0 for openings and gob and where nothing is mined. `mined` runs
// column by column.
std::vector<int> ringsAround(const std::vector<bool>& mined, int nX, int nY);

} // namespace tessaran::stress
