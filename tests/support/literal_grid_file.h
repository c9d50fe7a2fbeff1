#pragma once

// Grid files read and written the plain way, line by line with the C library's conversions: the
// second opinion for tests and the reference for benchmarks.

#include <cstdio>
#include <cstdlib>
#include <istream>
#include <string>
#include <strings.h>
#include <vector>

namespace tessaran::test {

struct LiteralGrid {
    int nX = 0;
    int nY = 0;
    double originX = 0.0;
    double originY = 0.0;
    double cellWidthX = 0.0;
    double cellWidthY = 0.0;
    std::string title;
    std::vector<double> values; // rows outer, nX + 1 a row

    double& at(int i, int j) {
        return values[static_cast<std::size_t>(j) * static_cast<std::size_t>(nX + 1) +
                      static_cast<std::size_t>(i)];
    }
};

inline bool literalLine(std::istream& in, std::string& line) {
    if (!std::getline(in, line))
        return false;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return true;
}

// "" for success, "end" where the values end too early, else the message.
inline std::string literalRead(std::istream& in, LiteralGrid& grid) {
    double head[4] = {};
    std::string line;
    const char* ordinals[] = {"first", "second", "third", "fourth", "fifth", "sixth"};
    for (int k = 0; k < 6; ++k) {
        if (!literalLine(in, line))
            return std::string("Error in reading ") + ordinals[k] + " line!";
        if (k < 4)
            head[k] = std::strtod(line.c_str(), nullptr);
        else
            (k == 4 ? grid.nX : grid.nY) = static_cast<int>(std::strtol(line.c_str(), nullptr, 10));
    }
    if (grid.nX < 1 || grid.nY < 1)
        return "Error in calculating number of cells!";
    grid.cellWidthX = (head[3] - head[1]) / grid.nX;
    grid.cellWidthY = (head[2] - head[0]) / grid.nY;
    if (grid.cellWidthY < 0.0001)
        return "Error in setting up grid!";
    grid.originX = head[1];
    grid.originY = head[0];
    // No memory for that.
    if ((grid.nX + 1.0) * (grid.nY + 1.0) > 1e8)
        return "Error in setting up grid!";
    grid.values.assign(
        static_cast<std::size_t>(grid.nX + 1) * static_cast<std::size_t>(grid.nY + 1), 0.0);
    for (int j = 0; j <= grid.nY; ++j)
        for (int i = 0; i <= grid.nX; ++i) {
            if (!literalLine(in, line))
                return "end";
            grid.at(i, j) =
                strcasecmp(line.c_str(), "N") == 0 ? -1e20 : std::strtod(line.c_str(), nullptr);
        }
    std::string last;
    if (literalLine(in, line))
        grid.title = line;
    else
        line.clear();
    literalLine(in, last);
    const char* marker = "ZELK Stability Application";
    if (strcasecmp(last.c_str(), marker) == 0 || strcasecmp(line.c_str(), marker) == 0)
        return "";
    for (int j = 0; j < grid.nY; ++j)
        for (int i = 0; i < grid.nX; ++i) {
            const double a = grid.at(i + 1, j);
            const double b = grid.at(i, j);
            const double c = grid.at(i + 1, j + 1);
            const double d = grid.at(i, j + 1);
            const bool all = a > -1e20 && b > -1e20 && c > -1e20 && d > -1e20;
            grid.at(i, j) = all ? 0.25 * (a + b + c + d) : -1e20;
        }
    return "";
}

inline void literalWrite(std::FILE* out, int nX, int nY, double originX, double originY,
                         double widthX, double widthY, const std::string& title,
                         const double* values) {
    std::fprintf(out, "%f\r\n%f\r\n%f\r\n%f\r\n%d\r\n%d\r\n", originY, originX,
                 nY * widthY + originY, nX * widthX + originX, nX, nY);
    const long count = (nX + 1L) * (nY + 1L);
    for (long k = 0; k < count; ++k)
        if (values[k] <= -1e20)
            std::fprintf(out, "N\r\n");
        else
            std::fprintf(out, "%f\r\n", values[k]);
    std::fprintf(out, "%s\r\nZELK Stability Application", title.c_str());
}

} // namespace tessaran::test
