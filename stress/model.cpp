#include "stress/model.h"

#include <cmath>

namespace tessaran::stress {

double laminationConstant(double poissonsRatio, double laminationThickness) {
    return std::sqrt(laminationThickness * laminationThickness /
                     (12.0 * (1.0 - poissonsRatio * poissonsRatio)));
}

double laminationConstant(const CModelDat& model) {
    return laminationConstant(model.poissonsRatio, model.laminationThickness);
}

} // namespace tessaran::stress
