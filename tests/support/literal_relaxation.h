#pragma once

// Successive over-relaxation as it is written down: the stresses of the whole seam, then the edges,
// then one element after the other. What the vector code must give bit for bit, and what the
// benchmarks run it beside.

#include "stress/exponential.h"
#include "stress/relaxation.h"

#include <cmath>
#include <vector>

namespace tessaran::test {

// The laws with a switch an element.
inline double literalStress(const stress::Material& material, double strain) {
    const auto& p = material.p;
    switch (material.type) {
    case stress::MaterialType::linearElasticCoal:
        return p[0] * strain;
    case stress::MaterialType::strainSofteningCoal:
        if (strain < p[1])
            return p[0] / p[1] * strain;
        if (strain < p[3])
            return p[0] + (p[2] - p[0]) / (p[3] - p[1]) * (strain - p[1]);
        return p[2];
    case stress::MaterialType::elasticPlasticCoal:
        return strain < p[1] ? p[0] / p[1] * strain : p[0] + p[2] * (strain - p[1]);
    case stress::MaterialType::biLinearHardeningGob:
        return strain < p[1] * p[3] ? p[0] / p[1] / p[3] * strain
                                    : p[0] + p[2] / p[3] * (strain - p[1] * p[3]);
    case stress::MaterialType::strainHardeningGob: {
        const double b = (p[1] - p[0]) / p[2];
        return b == 0.0 ? p[0] / p[3] * strain
                        : p[0] / b * (stress::exponential(b / p[3] * strain) - 1.0);
    }
    case stress::MaterialType::linearElasticGob:
        return p[0] / p[2] * strain;
    }
    return 0.0;
}

struct LiteralReport {
    int iteration;
    double change;
    int x;
    int y;
    friend bool operator==(const LiteralReport&, const LiteralReport&) = default;
};

struct LiteralOutcome {
    int iterations = 0; // done
    bool converged = false;
    long overClosed = 0;
    std::vector<LiteralReport> reports{};
};

class LiteralRelaxation {
  public:
    LiteralRelaxation(const stress::RelaxationProblem& problem, const stress::ElementLaws& laws,
                      stress::SeamState& state)
        : p_(problem), laws_(laws), s_(state) {}

    LiteralOutcome run() {
        LiteralOutcome out;
        double size = 0.0;
        do {
            ++out.iterations;
            stresses(out);
            edges();
            LiteralReport largest{out.iterations, 0.0, 0, 0};
            size = -1.0;
            for (int i = 0; i < s_.nX; ++i)
                for (int j = 0; j < s_.nY; ++j)
                    relaxElement(i, j, size, largest);
            if (out.iterations % 100 == 0)
                out.reports.push_back(largest);
        } while (size > p_.criterion && out.iterations < p_.maxIterations);
        out.converged = !(size > p_.criterion) && out.iterations < p_.maxIterations;
        if (out.converged)
            stresses(out);
        return out;
    }

  private:
    void stresses(LiteralOutcome& out) {
        for (int i = 0; i < s_.nX; ++i) {
            for (int j = 0; j < s_.nY; ++j) {
                const std::size_t at = s_.plain(i, j);
                const double strain = s_.convergenceAt(i, j) / p_.thickness;
                const auto law = laws_.law[at];
                if (law != stress::kOpenEntry) {
                    s_.total[at] = literalStress(p_.materials[law], strain);
                } else if (strain <= 1.0) {
                    s_.total[at] = 0.0;
                } else {
                    s_.total[at] = 0.1 * p_.modulus * (strain - 1.0) + 0.9 * s_.total[at];
                    ++out.overClosed;
                }
            }
        }
    }

    void edges() {
        std::vector<double>& u = s_.convergence;
        const auto& b = p_.boundaries;
        for (int i = -1; b.north == 1 && i <= s_.nX; ++i)
            u[s_.ghosted(i, s_.nY)] = u[s_.ghosted(i, s_.nY - 1)];
        for (int j = -1; b.east == 1 && j <= s_.nY; ++j)
            u[s_.ghosted(s_.nX, j)] = u[s_.ghosted(s_.nX - 1, j)];
        for (int i = -1; b.south == 1 && i <= s_.nX; ++i)
            u[s_.ghosted(i, -1)] = u[s_.ghosted(i, 0)];
        for (int j = -1; b.west == 1 && j <= s_.nY; ++j)
            u[s_.ghosted(-1, j)] = u[s_.ghosted(0, j)];
    }

    void relaxElement(int i, int j, double& size, LiteralReport& largest) {
        const double k = p_.omega / 4.0;
        const double c = (2.0 / (p_.lambda * p_.modulus)) * p_.width * p_.width * k;
        std::vector<double>& u = s_.convergence;
        const std::size_t at = s_.ghosted(i, j);
        const std::size_t stride = s_.stride();
        const std::size_t plain = s_.plain(i, j);
        const double old = u[at];
        u[at] =
            k * (u[at - stride] + u[at + stride] + u[at - 1] + u[at + 1]) + (1.0 - p_.omega) * old -
            c * (s_.total[plain] - s_.overburden[plain] - s_.multiple[plain] - s_.surface[plain]);
        const double change = u[at] - old;
        if (std::abs(change) > size) {
            size = std::abs(change);
            largest.change = change;
            largest.x = i + 1;
            largest.y = j + 1;
        }
    }

    const stress::RelaxationProblem& p_;
    const stress::ElementLaws& laws_;
    stress::SeamState& s_;
};

} // namespace tessaran::test
