#pragma once

// Influence through the laminated overburden. A source element of area A that closes by d adds, at
// the vertical distance h and the plan distance r,
//   stress        E A d / (8 pi lambda h^2) (z - 1) exp(-z),
//   displacement  A d / (8 pi lambda |h|) exp(-z),            z = r^2 / (4 lambda |h|).
// With z = zx + zy both are sums of products of factors of one direction each, so a field is
// applied by rows and columns: cost grows with the window's width, not with its area, and the sum
// over the rectangular window of 10 |h| to each side is exact.

#include "base/progress.h"
#include "stress/model.h"

#include <vector>

namespace tessaran::stress {

struct Influence {
    double modulus = 0.0; // E of the host rock
    double lambda = 0.0;  // lamination constant
    double h = 0.0;       // vertical distance, of either sign, not 0
};

// Adds the stress that `convergence` of the sources causes to `stress` of the receivers. False when
// cancelled (polled before every 128 columns of receivers).
bool addInfluenceStress(const Influence& influence, const ElementField& sources,
                        const std::vector<double>& convergence, const ElementField& receivers,
                        std::vector<double>& stress, base::Progress& progress);

// Adds `sign` times the displacement that `convergence` of the sources causes.
bool addInfluenceDisplacement(const Influence& influence, double sign, const ElementField& sources,
                              const std::vector<double>& convergence, const ElementField& receivers,
                              std::vector<double>& displacement, base::Progress& progress);

// Means over blocks of factor x factor elements, and the field that they form.
ElementField coarser(const ElementField& fine, int factor);
std::vector<double> blockMeans(const ElementField& fine, const std::vector<double>& values,
                               int factor);

} // namespace tessaran::stress
