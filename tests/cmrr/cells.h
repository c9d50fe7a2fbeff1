#pragma once

// Small grid files for the tests: 3 columns, 2 rows of cells 10 by 5 from (100, 200), with the
// title "t". Values row by row from the lowest.

#include <array>
#include <string>

namespace tessaran::cmrr {

struct Frame {
    double x = 100.0;
    double y = 200.0;
    double width = 30.0;
    double height = 10.0;
    int columns = 3;
    int rows = 2;
};

// "N": no value.
inline std::string gridText(const std::array<const char*, 6>& cells, const Frame& frame = {}) {
    const auto line = [](auto value) { return std::to_string(value) + "\n"; };
    std::string text = line(frame.y) + line(frame.x) + line(frame.y + frame.height) +
                       line(frame.x + frame.width) + line(frame.columns) + line(frame.rows);
    for (int j = 0; j <= frame.rows; ++j)
        for (int i = 0; i <= frame.columns; ++i) {
            const bool cell = i < 3 && j < 2;
            text += cell ? cells[static_cast<std::size_t>(3 * j + i)] : "0";
            text += '\n';
        }
    return text + "t\nZELK Stability Application";
}

inline std::string evenGrid(const char* value, const Frame& frame = {}) {
    return gridText({value, value, value, value, value, value}, frame);
}

} // namespace tessaran::cmrr
