#include "stress/model_echo.h"

#include <fmt/format.h>

#include <cmath>
#include <iterator>

namespace tessaran::stress {
namespace {

// The printed lines of one material type: a label for each of its values, and which value it is.
struct ValueLabel {
    const char* label;
    std::size_t value;
};
struct TypeLabels {
    const char* name;
    std::vector<ValueLabel> values;
};

const TypeLabels& labelsOf(MaterialType type) {
    static const std::array<TypeLabels, 6> kLabels{{
        {"  Linear Elastic Coal\n",
         {{"  Elastic Modulus     - ", 0}, {"  Shear Modulus       - ", 1}}},
        {"  Strain Softening Coal\n",
         {{"  Peak Stress         - ", 0},
          {"  Peak Strain         - ", 1},
          {"  Residual Stress     - ", 2},
          {"  Residual Strain     - ", 3},
          {"  Poissons Ratio      - ", 4}}},
        {"  Elastic-Plastic Coal\n",
         {{"  Peak Stress         - ", 0},
          {"  Peak Strain         - ", 1},
          {"  Plastic Modulus     - ", 2},
          {"  Poissons Ratio      - ", 3}}},
        {"  Bi-Linear Hardening Gob\n",
         {{"  Initial Stress      - ", 0},
          {"  Initial Strain      - ", 1},
          {"  Hardening Modulus   - ", 2},
          {"  Gob Height Factor   - ", 3},
          {"  Poissons Ratio      - ", 4}}},
        {"  Strain Hardening Gob\n",
         {{"  Initial Modulus at Zero Stress - ", 0},
          {"  Final Modulus at Peak Stress   - ", 1},
          {"  Peak Stress                    - ", 2},
          {"  Gob Height Factor              - ", 3},
          {"  Poissons Ratio                 - ", 4}}},
        {"  Linear Elastic Gob\n",
         {{"  Elastic Modulus     - ", 0},
          {"  Shear Modulus       - ", 1},
          {"  Gob Height Factor   - ", 2}}},
    }};
    return kLabels[static_cast<std::size_t>(type) - 1];
}

std::string unitsText(int system) {
    struct Words {
        const char* input;
        const char* joining;
        const char* listed;
    };
    static constexpr std::array<Words, 4> kWords{{
        {"inches and psi", "and", "inches and psi"},
        {"feet and psi", "but", "inches and psi"},
        {"meters and Pascals", "and", "meters and Pascals"},
        {"meters and MegaPascals", "but", "meters and Pascals"},
    }};
    const Words& w = kWords[static_cast<std::size_t>(system)];
    return fmt::format(
        "  - {},\n  {} are listed in this output as consistent units of: \n  - {}. \n\n", w.input,
        w.joining, w.listed);
}

std::string materialsBlock(const CModelDat& model) {
    std::string out = "  IN_SEAM MATERIAL PROPERTIES\n\n";
    for (std::size_t k = 0; k < model.materials.size(); ++k) {
        const Material& material = model.materials[k];
        const TypeLabels& labels = labelsOf(material.type);
        out += fmt::format("  Material Number     - {}\n", k + 1);
        out += labels.name;
        for (const ValueLabel& value : labels.values)
            out += fmt::format("{}{:12g}\n", value.label, material.p[value.value]);
    }
    return out;
}

std::string seamsBlock(const CModelDat& model) {
    std::string out = kSeamsHeading;
    int number = 0;
    for (const Seam& seam : model.seams)
        out += fmt::format("{:8}{:12.2f}{:12.2f}{:12.2f}{:12.2f}\n", ++number, seam.x, seam.y,
                           seam.z, seam.thickness);
    return out;
}

TopographicBlocks blocksOf(const CModelDat& model) {
    const TopographicGrid& t = *model.topography;
    const double seam1 = model.seams.empty() ? 0.0 : model.seams.front().z;
    return {t.blocks.x,     t.blocks.y,  t.datum,    std::abs(seam1) - std::abs(t.datum),
            t.blocks.width, t.blocks.nX, t.blocks.nY};
}

std::string boundariesBlock(const Boundaries& b) {
    return fmt::format("  BOUNDARY CONDITION VALUES\n\n"
                       "  THE NORTH BOUNDARY CONDITION -- {}\n"
                       "  THE EAST BOUNDARY CONDITION  -- {}\n"
                       "  THE SOUTH BOUNDARY CONDITION -- {}\n"
                       "  THE WEST BOUNDARY CONDITION  -- {}\n",
                       b.north, b.east, b.south, b.west);
}

std::string offSeamBlock(const OffSeamGrid& g) {
    return fmt::format("  OFF-SEAM GRID DETAILS\n\n"
                       "  X COORDINATE OF OFF-SEAM GRID ORIGIN -- {:f}\n"
                       "  Y COORDINATE OF OFF-SEAM GRID ORIGIN -- {:f}\n"
                       "  Z COORDINATE OF OFF-SEAM GRID ORIGIN -- {:f}\n"
                       "  WIDTH OF OFF-SEAM BLOCKS             -- {:f}\n"
                       "  NO. OF OFF_SEAM BLOCKS ALONG X AXIS  -- {}\n"
                       "  NO. OF OFF_SEAM BLOCKS ALONG Y AXIS  -- {}\n"
                       "  TOTAL NO. OF OFF_SEAM BLOCKS         -- {}\n",
                       g.x, g.y, g.z, g.blockWidth, g.nX, g.nY, g.blocks);
}

void appendCodes(std::string& out, const CModelDat& model) {
    const auto nX = static_cast<std::size_t>(model.nX);
    const auto nY = static_cast<std::size_t>(model.nY);
    for (std::size_t step = 0; step < model.codes.size(); ++step) {
        for (std::size_t seam = 0; seam < model.codes[step].size(); ++seam) {
            fmt::format_to(std::back_inserter(out), "     FINE MESH, STEP = {}, SEAM = {}\n\n",
                           step + 1, seam + 1);
            const ElementCodes& codes = model.codes[step][seam];
            for (std::size_t j = nY; j-- > 0;) {
                for (std::size_t i = 0; i < nX; ++i)
                    out += codes[i * nY + j];
                out += '\n';
            }
        }
    }
}

} // namespace

std::string rockMassBlock(const CModelDat& model) {
    return fmt::format("  ROCK MASS PROPERTIES\n\n"
                       "  POISSONS RATIO        - {:f}\n"
                       "  MODULUS OF ELASTICITY - {:f}\n"
                       "  LAYER THICKNESS       - {:f}\n"
                       "  NO. OF SEAMS          - {}\n"
                       "  NO. OF MATERIALS      - {}\n"
                       "  SYSTEM OF UNITS       - {}\n"
                       "  The units system integer is: - {}\n"
                       "  This means that the parameter values were input to the "
                       "pre-processor in: \n",
                       model.poissonsRatio, model.modulus, model.laminationThickness,
                       model.seamCount(), model.materials.size(), model.unitSystem,
                       model.unitSystem) +
           unitsText(model.unitSystem);
}

std::string gridBlock(const CModelDat& model) {
    return fmt::format("  GENERAL MODEL DATA\n\n"
                       "  NO. OF PARALLEL SEAMS           -- {}\n"
                       "  WIDTH OF ELEMENTS               -- {:f}\n"
                       "  NO. OF ELEMENTS ALONG X AXIS    -- {}\n"
                       "  NO. OF ELEMENTS ALONG Y AXIS    -- {}\n"
                       "  DENSITY OF OVERBURDEN           -- {:f}\n",
                       model.seamCount(), model.elementWidth, model.nX, model.nY, model.gradient);
}

std::string controlBlock(const CModelDat& model) {
    return fmt::format("  PROGRAM FLOW CONTROL PARAMETERS\n\n"
                       "  OVER RELAXATION FACTOR          -- {:f}\n"
                       "  MAXIMUM NO. OF ITERATIONS       -- {}\n"
                       "  STRESS CONVERGENCE CRITERION    -- {:f}\n"
                       "  STARTING MINING STEP NUMBER     -- {}\n"
                       "  NUMBER OF NEW STEPS             -- {}\n"
                       "  INCLUDE SURFACE EFFECTS         -- {}\n"
                       "  NO. OF OFF SEAM PLANES SELECTED -- {}\n"
                       "  CALCULATE TOPOGRAPHIC STRESS    -- {}\n",
                       model.overRelaxation, model.maxIterations, model.convergenceCriterion,
                       model.startingStep, model.steps, model.surfaceEffects ? 1 : 0,
                       model.offSeamDisplacements ? 1 : 0, model.topographicStress ? 1 : 0);
}

std::string topographicBlock(const TopographicBlocks& b) {
    return fmt::format("  TOPOGRAPHIC GRID DETAILS\n\n"
                       "  X COORDINATE OF TOPOGRAPHIC GRID ORIGIN    -- {:f}\n"
                       "  Y COORDINATE OF TOPOGRAPHIC GRID ORIGIN    -- {:f}\n"
                       "  Z DATUM OF TOPOGRAPHIC GRID                -- {:f}\n"
                       "  DISTANCE ABOVE SEAM 1 OF TOPOGRAPHIC DATUM -- {:f}\n"
                       "  WIDTH OF TOPOGRAPHIC BLOCKS                -- {:f}\n"
                       "  NO. OF TOPOGRAPHIC BLOCKS ALONG X AXIS     -- {}\n"
                       "  NO. OF TOPOGRAPHIC BLOCKS ALONG Y AXIS     -- {}\n",
                       b.x, b.y, b.datum, b.distanceAboveSeam1, b.blockWidth, b.nX, b.nY);
}

std::string modelEcho(const CModelDat& model) {
    std::string out = model.title +
                      "\n  IN THE FOLLOWING X,Y,Z REFER TO GLOBAL AXES OR COORDINATES\n"
                      "  AND X1,X2,X3 OR 1,2,3 REFER TO LOCAL AXES OR COORDINATES\n\n";
    out += rockMassBlock(model);
    out += materialsBlock(model);
    out += gridBlock(model);
    out += seamsBlock(model);
    out += controlBlock(model);
    out += boundariesBlock(model.boundaries);
    if (model.offSeamDisplacements)
        out += offSeamBlock(model.offSeam);
    appendCodes(out, model);
    if (model.topography)
        out += topographicBlock(blocksOf(model));
    return out;
}

} // namespace tessaran::stress
