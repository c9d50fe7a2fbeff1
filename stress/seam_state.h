#pragma once

// What the solver knows of one seam: its convergence with a ghost border around it, and the
// stresses of its elements. All arrays run column by column (X outer, Y inner), as the sweep does.

#include "stress/arrays.h"
#include "stress/model.h"

#include <cstddef>
#include <vector>

namespace tessaran::stress {

struct SeamState {
    SeamState(int columns, int rows)
        : nX(columns), nY(rows), convergence(dmatrix(static_cast<std::size_t>(columns) + 2,
                                                     static_cast<std::size_t>(rows) + 2)),
          total(field()), overburden(field()), surface(field()), multiple(field()) {}

    int nX;
    int nY;
    std::vector<double> convergence; // (nX + 2) x (nY + 2), ghosts at 0 and nX + 1, nY + 1
    std::vector<double> total;       // "Total Vertical Stress": what the element carries
    std::vector<double> overburden;
    std::vector<double> surface;  // "Surface Effect Stress"
    std::vector<double> multiple; // "Multiple Seam Stress"

    std::size_t elements() const {
        return static_cast<std::size_t>(nX) * static_cast<std::size_t>(nY);
    }
    // Doubles from one column's start to the next one's in `convergence`.
    std::size_t stride() const { return static_cast<std::size_t>(nY) + 2; }
    // Element (i, j) counted from 0.
    std::size_t ghosted(int i, int j) const {
        return static_cast<std::size_t>(i + 1) * stride() + static_cast<std::size_t>(j + 1);
    }
    std::size_t plain(int i, int j) const {
        return static_cast<std::size_t>(i) * static_cast<std::size_t>(nY) +
               static_cast<std::size_t>(j);
    }
    double convergenceAt(int i, int j) const { return convergence[ghosted(i, j)]; }
    // The convergence without its ghosts.
    std::vector<double> plainConvergence() const;

  private:
    std::vector<double> field() const {
        return dmatrix(static_cast<std::size_t>(nX), static_cast<std::size_t>(nY));
    }
};

} // namespace tessaran::stress
