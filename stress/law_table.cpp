#include "stress/law_table.h"

#include "base/check.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaran::stress {
namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();
constexpr double kAlways = -kNever;
constexpr double kElsewhere = std::numeric_limits<double>::quiet_NaN();

LawValues straight(double slope) {
    return {kNever, kNever, slope, 0.0, 0.0, 0.0};
}

LawValues bent(double at, double slope0, double base1, double slope1) {
    return {at, kNever, slope0, slope1, base1, 0.0};
}

} // namespace

void LawTable::add(const LawValues& values) {
    const auto law = static_cast<std::size_t>(count);
    TESSARAN_CHECK(law < kMost);
    for (std::size_t value = 0; value < kLawValues; ++value) {
        byValue[value][law] = values[value];
        byLaw[law][value] = values[value];
    }
    ++count;
}

// The expressions are those of elementStress(), so that both round alike.
LawValues lawValues(const Material& material) {
    const std::array<double, 5>& p = material.p;
    switch (material.type) {
    case MaterialType::linearElasticCoal:
        return straight(p[0]);
    case MaterialType::strainSofteningCoal:
        return {p[1], std::max(p[1], p[3]), p[0] / p[1], (p[2] - p[0]) / (p[3] - p[1]), p[0], p[2]};
    case MaterialType::elasticPlasticCoal:
        return bent(p[1], p[0] / p[1], p[0], p[2]);
    case MaterialType::biLinearHardeningGob:
        return bent(p[1] * p[3], p[0] / p[1] / p[3], p[0], p[2] / p[3]);
    case MaterialType::strainHardeningGob: {
        const double b = (p[1] - p[0]) / p[2];
        if (b == 0.0)
            return straight(p[0] / p[3]);
        return {kAlways, kNever, b / p[3], 1.0, kElsewhere, p[0] / b};
    }
    case MaterialType::linearElasticGob:
        return straight(p[0] / p[2]);
    }
    return straight(0.0);
}

LawTable basicLaws() {
    LawTable laws;
    laws.add(straight(0.0));
    laws.add({std::nextafter(1.0, 2.0), kNever, 0.0, 0.0, kElsewhere, 0.0});
    laws.add({kAlways, kNever, 0.0, 0.0, kElsewhere, 0.0});
    return laws;
}

} // namespace tessaran::stress
