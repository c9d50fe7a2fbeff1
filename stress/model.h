#pragma once

// The laminated model: the rock mass as a stack of frictionless elastic layers of equal thickness,
// up to four parallel seams in it, each a grid of square elements that carry in-seam materials.
//
// Units are consistent ones: inches and psi, or metres and pascals, by the system of units; the
// factors of that system turn results into the user's units. X is east, Y north, Z up; a seam's Z
// is its level against the flat ground surface at Z = 0. Convergence and stress are positive in
// compression. Element (1, 1) is the south-west one in the files; in memory indices start at 0.

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::stress {

inline constexpr int kMostSeams = 4;
inline constexpr int kMostSteps = 20;
inline constexpr int kMostMaterials = 26;
inline constexpr int kMeshDivisor =
    10; // element counts are multiples of it: levels aggregate by 10

// In-seam materials, by the number that stands in the model file.
enum class MaterialType {
    linearElasticCoal = 1,
    strainSofteningCoal = 2,
    elasticPlasticCoal = 3,
    biLinearHardeningGob = 4,
    strainHardeningGob = 5,
    linearElasticGob = 6,
};

// The five values by type:
//   linear elastic coal      elastic modulus, shear modulus (only printed)
//   strain softening coal    peak stress, peak strain, residual stress, residual strain, Poisson's
//   ratio elastic plastic coal     peak stress, peak strain, plastic modulus, Poisson's ratio
//   bi-linear hardening gob  initial stress, initial strain, hardening modulus, gob height factor,
//                            Poisson's ratio
//   strain hardening gob     initial modulus, final modulus at peak stress, peak stress, gob height
//                            factor, Poisson's ratio
//   linear elastic gob       elastic modulus, shear modulus (only printed), gob height factor
struct Material {
    MaterialType type = MaterialType::linearElasticCoal;
    std::array<double, 5> p{};
};

struct Seam {
    double x = 0.0; // of the low-left corner of element (1, 1)
    double y = 0.0;
    double z = 0.0;
    double thickness = 0.0;
};

// 0: a rigid edge; 1: the seam goes on mirrored.
struct Boundaries {
    int north = 0;
    int east = 0;
    int south = 0;
    int west = 0;
};

// A rectangle of square elements in plan; a field on it runs column by column.
struct ElementField {
    double x = 0.0; // of the low-left corner
    double y = 0.0;
    double width = 0.0; // of an element
    int nX = 0;
    int nY = 0;
};

// Values of square blocks at a level: stresses, or depths.
struct TopographicGrid {
    ElementField blocks;
    double datum = 0.0; // Z of the level
    std::vector<double> values;

    double at(int i, int j) const {
        return values[static_cast<std::size_t>(i) * static_cast<std::size_t>(blocks.nY) +
                      static_cast<std::size_t>(j)];
    }
};

struct OffSeamGrid {
    int blocks = 0;
    double blockWidth = 0.0;
    int nX = 0;
    int nY = 0;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// A system of units by its number in the model file, as results are printed in it.
struct Units {
    const char* length;
    const char* stress;
    double lengthFactor; // from consistent units
    double stressFactor;
};
inline constexpr std::array<Units, 4> kUnits{{
    {"in", "psi", 1.0, 1.0},
    {"ft", "psi", 1.0 / 12.0, 1.0},
    {"m", "Pa", 1.0, 1.0},
    {"m", "MPa", 1.0, 1e-06},
}};

inline constexpr const char* kUnitsOutOfRange = "Unit Code Out of Range in Input File - PU1\n";

// Element codes of one seam at one step: 'A' to 'Z' a material, '1' an open entry.
// Column-major as the sweep runs: code of element (i, j) at [i * nY + j].
using ElementCodes = std::vector<char>;

struct CModelDat {
    std::string title;

    double poissonsRatio = 0.0;
    double modulus = 0.0;             // of the host rock
    double laminationThickness = 0.0; // of one layer
    int unitSystem = 0;

    std::vector<Material> materials;

    double elementWidth = 0.0;
    int nX = 0;
    int nY = 0;
    double gradient = 0.0; // vertical overburden stress per unit depth
    std::vector<Seam> seams;

    double overRelaxation = 0.0;
    double convergenceCriterion = 0.0; // largest change of convergence in an iteration
    int maxIterations = 0;
    int startingStep = 0;
    int steps = 0;
    bool surfaceEffects = false;
    bool offSeamDisplacements = false;
    bool topographicStress = false;

    Boundaries boundaries;
    OffSeamGrid offSeam;

    std::vector<std::vector<ElementCodes>> codes; // [step][seam]

    std::optional<TopographicGrid> topography; // stresses at its datum

    int seamCount() const { return static_cast<int>(seams.size()); }
    int elements() const { return nX * nY; }
    const Units& units() const { return kUnits[static_cast<std::size_t>(unitSystem)]; }
};

// The lamination constant of the host rock: sqrt(t^2 / (12 (1 - nu^2))), a length.
double laminationConstant(double poissonsRatio, double laminationThickness);
double laminationConstant(const CModelDat& model);

} // namespace tessaran::stress
