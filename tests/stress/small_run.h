#pragma once

// A small model as a file, for tests of what a run writes and how it ends.

#include "stress/solver.h"

#include <string>

namespace tessaran::test {

class Nobody final : public stress::RunWatch {};

// What of the model is not as it stands.
struct SmallModel {
    int steps = 1;
    int seams = 1; // 100 ft apart, of the same plan
    bool surfaceEffects = false;
    std::string offSeam{}; // the line of the off-seam grid
};

// 20 x 10 elements; the middle of the seam is mined, from the second step on with a gob in it.
inline std::string modelText(const SmallModel& model) {
    std::string text = "A run\n0.25, 3000000, 600, " + std::to_string(model.seams) +
                       ", 1\n2\n1, 300000, 0, 0, 0, 0\n"
                       "6, 5000, 0, 1, 0, 0\n120, 20, 10, 0.09\n";
    for (int seam = 0; seam < model.seams; ++seam)
        text += "24000, 0, " + std::to_string(-12000 - 1200 * seam) + ", 72\n";
    text += "1.5, 0.00001, 5000, 1, " + std::to_string(model.steps) +
            (model.surfaceEffects ? ", 1" : ", 0") + (model.offSeam.empty() ? ", 0" : ", 1") +
            ", 0\n1, 1, 1, 1\n" + model.offSeam;
    for (int step = 1; step <= model.steps; ++step)
        for (int row = 0; row < 10 * model.seams; ++row)
            text += row % 10 == 2 ? "AAAAAAAAAA11111AAAAA\n"
                    : row % 10 == 3
                        ? (step == 1 ? "AAAAAAAAAA1AAA1AAAAA\n" : "AAAAAAAAAA1BBB1AAAAA\n")
                    : row % 10 == 4 ? "AAAAAAAAAA11111AAAAA\n"
                                    : "AAAAAAAAAAAAAAAAAAAA\n";
    return text;
}
inline std::string modelText(int steps) {
    return modelText(SmallModel{.steps = steps});
}

} // namespace tessaran::test
