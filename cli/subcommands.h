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

// Texts as stress/plan_text.h takes them; lengths and stresses in the units' own.
struct InpOptions {
    std::string output{};
    std::string title = "Untitled model";
    int units = 1;
    double poisson = 0.25;
    double modulus = 0.0;
    double lamination = 0.0;
    double gradient = 0.0;
    double width = 0.0;
    std::vector<std::string> materials{};
    std::vector<std::string> seams{};
    std::vector<std::string> codes{};
    std::vector<std::string> rings{};
    int steps = 0;
    double relaxation = 1.35;
    double criterion = 0.0;
    int iterations = 5000;
    bool surfaceEffects = false;
    std::string boundaries = "1,1,1,1";
    std::string offSeam{};
    std::string topography{};
    bool overwrite = false;
};
int composeInput(const InpOptions& options);

} // namespace tessaran::cli
