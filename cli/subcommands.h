#pragma once

// The program's subcommands, each a function of its options that gives the exit status.

#include <string>
#include <vector>

namespace tessaran::cli {

struct RunOptions {
    std::string script; // "-": standard input
    std::string drawing{};
    std::string save{};
    std::string transcript{};
    bool progress = false;
};
int runScript(const RunOptions& options);

struct ConsoleOptions {
    std::string drawing{};
};
int runConsole(const ConsoleOptions& options);

struct WindowOptions {
    std::string drawing{}; // empty: an empty one
};
int openWindow(const WindowOptions& options);

struct PlotOptions {
    std::string drawing{};
    std::string output{};
    int width = 1600;
    std::vector<double> extent{}; // two opposite corners
    std::string layers{};
    std::string title{};
};
int plotDrawing(const PlotOptions& options);

struct GridOptions {
    std::string grid{};
    std::string picture{};
};
int describeGrid(const GridOptions& options);

struct CmrrOptions {
    std::string file{};
    bool report = false;
    bool overwrite = false;
};
int rateRoof(const CmrrOptions& options);

struct SolveOptions {
    std::string model{};
};
int solveModel(const SolveOptions& options);

} // namespace tessaran::cli
