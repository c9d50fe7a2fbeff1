#pragma once

// The solver's input file (".inp"): one plain-text file of the rock mass, the materials, the grid,
// the seams, program control, boundaries, the off-seam grid and every step's element codes. The
// manual's page on file formats shows it line by line.

#include "stress/model.h"

#include <string>
#include <string_view>
#include <vector>

namespace tessaran::stress {

// Where the groups of a model stand in its file; 0 where that is not known.
struct ModelLines {
    long host = 0;
    long grid = 0;
    long control = 0;
    long offSeam = 0;
    std::vector<long> materials{};
    std::vector<long> seams{};
};

// How reading ended. The codes 1 to 10 name the group of lines; their messages end in the check.
struct ModelReading {
    int code = 0; // 0: read
    std::string message{};
    long line = 0; // of the file, where the trouble stands
    CModelDat model{};
    ModelLines lines{};

    bool ok() const { return code == 0; }
};

// Numbers are held in single precision, as the format has always been read.
ModelReading parseModel(std::string_view text);
// A file that cannot be opened gives code 1.
ModelReading readModel(const std::string& path);

// What the format accepts and no model can be solved with (no seams, no steps, widths of 0, seams
// at one depth, materials without a strain ...), and the file's line; the text is empty when the
// model can be solved.
struct ModelFault {
    std::string text{};
    long line = 0;

    explicit operator bool() const { return !text.empty(); }
};
ModelFault modelFault(const CModelDat& model, const ModelLines& lines = {});

} // namespace tessaran::stress
