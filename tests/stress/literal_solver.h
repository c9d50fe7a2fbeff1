#pragma once

// A second, literal solver: the formulas as they stand, arrays from 1, nothing fused.

#include "stress/model.h"
#include "tests/support/literal_influence.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace tessaran::test {

using stress::Boundaries;
using stress::CModelDat;
using stress::ElementField;
using stress::Material;
using stress::MaterialType;
using stress::OffSeamGrid;
using stress::Seam;

using Matrix = std::vector<std::vector<double>>;

inline Matrix matrix(int nX, int nY) {
    return Matrix(static_cast<std::size_t>(nX) + 2,
                  std::vector<double>(static_cast<std::size_t>(nY) + 2, 0.0));
}

inline double& cell(Matrix& m, int i, int j) {
    return m[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
}
inline double cell(const Matrix& m, int i, int j) {
    return m[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
}

// The laws as the model's description states them.
inline double literalLaw(const Material& material, double e) {
    const auto& p = material.p;
    switch (material.type) {
    case MaterialType::linearElasticCoal:
        return p[0] * e;
    case MaterialType::strainSofteningCoal:
        if (e < p[1])
            return p[0] / p[1] * e;
        return e < p[3] ? p[0] + (p[2] - p[0]) * (e - p[1]) / (p[3] - p[1]) : p[2];
    case MaterialType::elasticPlasticCoal:
        return e < p[1] ? p[0] / p[1] * e : p[0] + p[2] * (e - p[1]);
    case MaterialType::biLinearHardeningGob:
        e /= p[3];
        return e < p[1] ? p[0] / p[1] * e : p[0] + p[2] * (e - p[1]);
    case MaterialType::strainHardeningGob: {
        const double b = (p[1] - p[0]) / p[2];
        return p[0] / b * (std::exp(b * e / p[3]) - 1.0);
    }
    case MaterialType::linearElasticGob:
        return p[0] * e / p[2];
    }
    return 0.0;
}

struct LiteralSeam {
    Matrix u, stress, overburden, surface, multiple;
};

class LiteralSolver {
  public:
    explicit LiteralSolver(const CModelDat& model)
        : m_(model),
          lambda_(std::sqrt(model.laminationThickness * model.laminationThickness /
                            (12.0 * (1.0 - model.poissonsRatio * model.poissonsRatio)))) {
        for (const Seam& seam : m_.seams) {
            LiteralSeam s{matrix(m_.nX, m_.nY), matrix(m_.nX, m_.nY), matrix(m_.nX, m_.nY),
                          matrix(m_.nX, m_.nY), matrix(m_.nX, m_.nY)};
            for (auto& column : s.overburden)
                std::fill(column.begin(), column.end(), m_.gradient * std::abs(seam.z));
            seams.push_back(std::move(s));
        }
    }

    void run() {
        for (int step = 0; step < m_.steps; ++step) {
            for (LiteralSeam& s : seams)
                s.stress = matrix(m_.nX, m_.nY);
            for (int k = 0; k < m_.seamCount(); ++k)
                sor(step, k);
            const int factors[] = {1, 2, 5, 10};
            const int limits[] = {20, 100, 500, 1000};
            for (int level = 3; level >= 0; --level) {
                const std::vector<LiteralSeam> before = seams;
                int most = 0;
                int passes = 0;
                do {
                    if (m_.seamCount() > 1 || m_.surfaceEffects)
                        external(factors[level]);
                    most = 0;
                    for (int k = 0; k < m_.seamCount(); ++k)
                        most = std::max(most, sor(step, k));
                } while (most > limits[level] && ++passes < 50);
                if (most > limits[level]) {
                    seams = before;
                    unsettled.push_back(level);
                }
            }
            afterStep.push_back(seams);
            if (m_.offSeamDisplacements)
                offSeam.push_back(displacements());
        }
    }

    std::vector<LiteralSeam> seams;
    std::vector<std::vector<LiteralSeam>> afterStep;
    std::vector<std::vector<double>> offSeam; // [step][block]
    std::vector<int> iterations;
    std::vector<int> unsettled; // levels given up after 50 passes

  private:
    double elementStressAt(LiteralSeam& s, int step, int k, int i, int j) {
        const auto at = static_cast<std::size_t>((i - 1) * m_.nY + (j - 1));
        const char code = m_.codes[static_cast<std::size_t>(step)][static_cast<std::size_t>(k)][at];
        const double strain = cell(s.u, i, j) / m_.seams[static_cast<std::size_t>(k)].thickness;
        if (code == '1')
            return strain <= 1.0 ? 0.0
                                 : 0.1 * m_.modulus * (strain - 1.0) + 0.9 * cell(s.stress, i, j);
        return literalLaw(m_.materials[static_cast<std::size_t>(code - 'A')], strain);
    }

    void stresses(LiteralSeam& s, int step, int k) {
        for (int i = 1; i <= m_.nX; ++i)
            for (int j = 1; j <= m_.nY; ++j)
                cell(s.stress, i, j) = elementStressAt(s, step, k, i, j);
    }

    void boundaries(Matrix& u) {
        const Boundaries& b = m_.boundaries;
        const int nX = m_.nX;
        const int nY = m_.nY;
        for (int i = 0; b.north == 1 && i <= nX + 1; ++i)
            cell(u, i, nY + 1) = cell(u, i, nY);
        for (int j = 0; b.east == 1 && j <= nY + 1; ++j)
            cell(u, nX + 1, j) = cell(u, nX, j);
        for (int i = 0; b.south == 1 && i <= nX + 1; ++i)
            cell(u, i, 0) = cell(u, i, 1);
        for (int j = 0; b.west == 1 && j <= nY + 1; ++j)
            cell(u, 0, j) = cell(u, 1, j);
    }

    int sor(int step, int k) {
        LiteralSeam& s = seams[static_cast<std::size_t>(k)];
        const double w = m_.overRelaxation;
        const double kk = w / 4.0;
        const double c = (2.0 / (lambda_ * m_.modulus)) * m_.elementWidth * m_.elementWidth * kk;
        int n = 0;
        double largest = 0.0;
        do {
            ++n;
            stresses(s, step, k);
            boundaries(s.u);
            largest = 0.0;
            for (int i = 1; i <= m_.nX; ++i) {
                for (int j = 1; j <= m_.nY; ++j) {
                    const double old = cell(s.u, i, j);
                    const double next = kk * (cell(s.u, i - 1, j) + cell(s.u, i + 1, j) +
                                              cell(s.u, i, j - 1) + cell(s.u, i, j + 1)) +
                                        (1.0 - w) * old -
                                        c * (cell(s.stress, i, j) - cell(s.overburden, i, j) -
                                             cell(s.multiple, i, j) - cell(s.surface, i, j));
                    cell(s.u, i, j) = next;
                    largest = std::max(largest, std::abs(next - old));
                }
            }
        } while (largest > m_.convergenceCriterion);
        stresses(s, step, k);
        iterations.push_back(n - 1);
        return n - 1;
    }

    void propagate(int from, double h, int to, int factor, Matrix& out) {
        const Seam& source = m_.seams[static_cast<std::size_t>(from)];
        const Seam& receiver = m_.seams[static_cast<std::size_t>(to)];
        const double a = m_.elementWidth;
        const double as = a * factor;
        for (int si = 1; si <= m_.nX / factor; ++si) {
            for (int sj = 1; sj <= m_.nY / factor; ++sj) {
                double d = 0.0;
                for (int p = 1; p <= factor; ++p)
                    for (int q = 1; q <= factor; ++q)
                        d += cell(seams[static_cast<std::size_t>(from)].u, (si - 1) * factor + p,
                                  (sj - 1) * factor + q);
                d /= factor * factor;
                const double xs = (si - 0.5) * as + source.x;
                const double ys = (sj - 0.5) * as + source.y;
                const double px = (xs - receiver.x) / a + 0.5;
                const double py = (ys - receiver.y) / a + 0.5;
                const double reach = 10.0 * std::abs(h) / a;
                const int i0 = std::max(1, static_cast<int>(std::floor(px - reach)));
                const int i1 = std::min(m_.nX, static_cast<int>(std::ceil(px + reach)));
                const int j0 = std::max(1, static_cast<int>(std::floor(py - reach)));
                const int j1 = std::min(m_.nY, static_cast<int>(std::ceil(py + reach)));
                for (int i = i0; i <= i1; ++i) {
                    for (int j = j0; j <= j1; ++j) {
                        const double dx = (i - 0.5) * a + receiver.x - xs;
                        const double dy = (j - 0.5) * a + receiver.y - ys;
                        const double z = (dx * dx + dy * dy) / (4.0 * lambda_ * std::abs(h));
                        cell(out, i, j) += m_.modulus * as * as * d /
                                           (8.0 * std::numbers::pi * lambda_ * h * h) * (z - 1.0) *
                                           std::exp(-z);
                    }
                }
            }
        }
    }

    void external(int factor) {
        for (LiteralSeam& s : seams) {
            s.surface = matrix(m_.nX, m_.nY);
            s.multiple = matrix(m_.nX, m_.nY);
        }
        for (int from = 0; from < m_.seamCount(); ++from) {
            for (int to = 0; to < m_.seamCount(); ++to) {
                const double zFrom = m_.seams[static_cast<std::size_t>(from)].z;
                const double zTo = m_.seams[static_cast<std::size_t>(to)].z;
                LiteralSeam& receiver = seams[static_cast<std::size_t>(to)];
                if (from != to)
                    propagate(from, zFrom - zTo, to, factor, receiver.multiple);
                if (m_.surfaceEffects)
                    propagate(from, zFrom + zTo, to, factor, receiver.surface);
            }
        }
    }

    std::vector<double> displacements() {
        const OffSeamGrid& g = m_.offSeam;
        const ElementField points{g.x, g.y, g.blockWidth, g.nX, g.nY};
        std::vector<double> out(static_cast<std::size_t>(g.nX * g.nY), 0.0);
        for (std::size_t k = 0; k < seams.size(); ++k) {
            const Seam& seam = m_.seams[k];
            const ElementField field{seam.x, seam.y, m_.elementWidth, m_.nX, m_.nY};
            std::vector<double> closure;
            for (int i = 1; i <= m_.nX; ++i)
                for (int j = 1; j <= m_.nY; ++j)
                    closure.push_back(cell(seams[k].u, i, j));
            const auto add = [&](double h, double sign) {
                std::vector<double> part(out.size(), 0.0);
                test::addLiteralInfluence(test::InfluenceKind::displacement,
                                          {m_.modulus, lambda_, h}, field, 0, m_.nX, closure,
                                          points, part);
                for (std::size_t n = 0; n < out.size(); ++n)
                    out[n] += sign * part[n];
            };
            const double above = std::abs(seam.z) - std::abs(g.z);
            add(above, above > 0.0 ? 1.0 : -1.0);
            if (m_.surfaceEffects)
                add(std::abs(seam.z) + std::abs(g.z), 1.0);
        }
        return out;
    }

    const CModelDat& m_;
    double lambda_;
};

} // namespace tessaran::test
