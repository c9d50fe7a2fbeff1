#include "stress/model.h"

#include <cmath>

namespace tessaran::stress {

double laminationConstant(const CModelDat& model) {
    const double t = model.laminationThickness;
    const double nu = model.poissonsRatio;
    return std::sqrt(t * t / (12.0 * (1.0 - nu * nu)));
}

} // namespace tessaran::stress
