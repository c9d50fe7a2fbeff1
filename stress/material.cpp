#include "stress/material.h"

#include "stress/exponential.h"

#include <fmt/format.h>

namespace tessaran::stress {
namespace {

constexpr int kInvalidIndex = 26; // of '0' and '['

double strainSoftening(const std::array<double, 5>& p, double strain) {
    if (strain < p[1])
        return p[0] / p[1] * strain;
    if (strain < p[3])
        return p[0] + (p[2] - p[0]) / (p[3] - p[1]) * (strain - p[1]);
    return p[2];
}

double elasticPlastic(const std::array<double, 5>& p, double strain) {
    return strain < p[1] ? p[0] / p[1] * strain : p[0] + p[2] * (strain - p[1]);
}

// In terms of the gob's own strain, strain / P4.
double biLinearGob(const std::array<double, 5>& p, double strain) {
    return strain < p[1] * p[3] ? p[0] / p[1] / p[3] * strain
                                : p[0] + p[2] / p[3] * (strain - p[1] * p[3]);
}

// Tangent modulus grows from P1 at no stress to P2 at the stress P3. With P1 = P2 the exponential's
// limit, a straight line.
double strainHardeningGob(const std::array<double, 5>& p, double strain) {
    const double b = (p[1] - p[0]) / p[2];
    if (b == 0.0)
        return p[0] / p[3] * strain;
    return p[0] / b * (exponential(b / p[3] * strain) - 1.0);
}

std::string gobFactorFault(double factor) {
    if (factor == 0.0)
        return "a gob height factor of 0";
    return factor > 0.0 ? std::string{} : "a gob height factor below 0";
}

} // namespace

CodeMeaning meaningOf(char code, int materialCount) {
    const int c = static_cast<unsigned char>(code);
    const int index = c >= 'A' ? c - 'A' : c - 22;
    CodeMeaning meaning;
    meaning.integerCode = index;
    const bool letter = c >= 'A' && c <= 'Z';
    if (index == kInvalidIndex) {
        meaning.errorNumber = 1;
    } else if (code == '1') {
        meaning.kind = CodeMeaning::Kind::open;
    } else if (!letter) {
        meaning.errorNumber = 2;
    } else if (index >= materialCount) {
        meaning.errorNumber = 5;
    } else {
        meaning.kind = CodeMeaning::Kind::material;
        meaning.material = index;
    }
    return meaning;
}

std::string codeRefusal(const CodeMeaning& meaning, int i, int j) {
    return fmt::format("Material Code Out of Range in Element Stress Routine - ES{}\n"
                       "i = {}, j = {}, integer code = {}\n",
                       meaning.errorNumber, i, j, meaning.integerCode);
}

double elementStress(const Material& material, double strain) {
    const std::array<double, 5>& p = material.p;
    switch (material.type) {
    case MaterialType::linearElasticCoal:
        return p[0] * strain;
    case MaterialType::strainSofteningCoal:
        return strainSoftening(p, strain);
    case MaterialType::elasticPlasticCoal:
        return elasticPlastic(p, strain);
    case MaterialType::biLinearHardeningGob:
        return biLinearGob(p, strain);
    case MaterialType::strainHardeningGob:
        return strainHardeningGob(p, strain);
    case MaterialType::linearElasticGob:
        return p[0] / p[2] * strain;
    }
    return 0.0;
}

base::Result<double> strainSofteningStrain(const Material& material, double stress) {
    if (stress > material.p[0])
        return base::rangeError("Stress is Greater Than Peak Stress - SSS1");
    return stress * material.p[1] / material.p[0];
}

base::Result<double> elasticPlasticStrain(const Material& material, double stress) {
    if (stress > material.p[0])
        return base::rangeError("Primitive Stress is Greater Than Peak Stress - EPS1");
    return stress * material.p[1] / material.p[0];
}

std::string materialFault(const Material& material) {
    const std::array<double, 5>& p = material.p;
    switch (material.type) {
    case MaterialType::linearElasticCoal:
        return {};
    case MaterialType::strainSofteningCoal:
    case MaterialType::elasticPlasticCoal:
        return p[1] == 0.0 ? "a peak strain of 0" : std::string{};
    case MaterialType::biLinearHardeningGob:
        if (p[1] == 0.0)
            return "an initial strain of 0";
        return gobFactorFault(p[3]);
    case MaterialType::strainHardeningGob:
        if (p[2] == 0.0)
            return "a peak stress of 0";
        return gobFactorFault(p[3]);
    case MaterialType::linearElasticGob:
        return gobFactorFault(p[2]);
    }
    return {};
}

} // namespace tessaran::stress
