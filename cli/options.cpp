#include "cli/options.h"

#include "cli/subcommands.h"
#include "tessaran_version.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <memory>

namespace tessaran::cli {
namespace {

// What a parsed command line does.
using Action = std::function<int()>;

template <class Options>
CLI::App* subcommand(CLI::App& app, Action& action, const std::string& name,
                     const std::string& text, const std::shared_ptr<Options>& options,
                     int (*run)(const Options&)) {
    CLI::App* added = app.add_subcommand(name, text);
    added->callback([&action, options, run] { action = [options, run] { return run(*options); }; });
    return added;
}

void addRun(CLI::App& app, Action& action) {
    const auto options = std::make_shared<RunOptions>();
    CLI::App* sub = subcommand(app, action, "run", "Run a script of commands without a screen",
                               options, runScript);
    sub->add_option("SCRIPT", options->script, "The script; - for standard input")->required();
    sub->add_option("--drawing", options->drawing, "The drawing to start on");
    sub->add_option("--save", options->save, "Write the drawing there when every line was used");
    sub->add_option("--transcript", options->transcript, "Write the transcript there, too");
    sub->add_flag("--progress", options->progress, "Show progress on standard error");
}

void addConsole(CLI::App& app, Action& action) {
    const auto options = std::make_shared<ConsoleOptions>();
    CLI::App* sub =
        subcommand(app, action, "console", "The commands at a terminal", options, runConsole);
    sub->add_option("PLAN", options->drawing, "The drawing to start on (DXF)");
}

void addPlot(CLI::App& app, Action& action) {
    const auto options = std::make_shared<PlotOptions>();
    CLI::App* sub = subcommand(app, action, "plot", "A picture of a drawing (PNG, SVG, PDF)",
                               options, plotDrawing);
    sub->add_option("PLAN", options->drawing, "The drawing (DXF)")->required();
    sub->add_option("OUT", options->output, "The picture: .png, .svg or .pdf")->required();
    sub->add_option("--width", options->width, "Width in pixels")->check(CLI::Range(16, 20000));
    sub->add_option("--extent", options->extent, "What to show: x,y,x,y")
        ->delimiter(',')
        ->expected(4);
    sub->add_option("--layers", options->layers, "Only these layers: A,B");
    sub->add_option("--title", options->title, "A title over the picture");
}

void addGrid(CLI::App& app, Action& action) {
    const auto options = std::make_shared<GridOptions>();
    CLI::App* sub = subcommand(app, action, "grid", "A grid file's geometry and statistics",
                               options, describeGrid);
    sub->add_option("FILE", options->grid, "The grid file (.grd)")->required();
    sub->add_option("--png", options->picture, "Draw its cells there");
}

void addSolve(CLI::App& app, Action& action) {
    const auto options = std::make_shared<SolveOptions>();
    CLI::App* sub =
        subcommand(app, action, "solve", "Run the laminated stress solver on an input file",
                   options, solveModel);
    sub->add_option("MODEL", options->model, "The input file (.inp)")->required();
}

void addCmrr(CLI::App& app, Action& action) {
    const auto options = std::make_shared<CmrrOptions>();
    CLI::App* sub =
        subcommand(app, action, "cmrr", "The roof rating of a unit file", options, rateRoof);
    sub->add_option("FILE", options->file, "The unit data (.cmr)")->required();
    sub->add_flag("--report", options->report, "Show how the rating came about");
    sub->add_flag("--overwrite", options->overwrite, "Replace grids written earlier");
}

const std::map<std::string, int>& unitSystems() {
    static const std::map<std::string, int> kSystems{
        {"in-psi", 0}, {"ft-psi", 1}, {"m-Pa", 2}, {"m-MPa", 3}};
    return kSystems;
}

void addInp(CLI::App& app, Action& action) {
    const auto o = std::make_shared<InpOptions>();
    CLI::App* sub = subcommand(app, action, "inp", "Compose a solver input file from code maps", o,
                               composeInput);
    sub->footer("Lengths and stresses stand in the units chosen. Material types: 1 linear elastic "
                "coal,\n2 strain softening coal, 3 elastic-plastic coal, 4 bi-linear hardening "
                "gob, 5 strain\nhardening gob, 6 linear elastic gob; the manual lists their "
                "values.");
    sub->add_option("OUT", o->output, "The input file (.inp)")->required();
    sub->add_option("--title", o->title, "First line of the file");
    sub->add_option("--units", o->units, "in-psi, ft-psi (as it stands), m-Pa or m-MPa")
        ->transform(CLI::CheckedTransformer(unitSystems(), CLI::ignore_case));
    sub->add_option("--poisson", o->poisson, "Poisson's ratio of the host rock (0.25)");
    sub->add_option("--modulus", o->modulus, "Elastic modulus of the host rock")->required();
    sub->add_option("--lamination", o->lamination, "Thickness of its layers")->required();
    sub->add_option("--gradient", o->gradient, "Vertical stress per depth")->required();
    sub->add_option("--width", o->width, "Width of an element")->required();
    sub->add_option("--material", o->materials, "type,P1,...: a material; the first is number 1")
        ->required()
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    sub->add_option("--seam", o->seams, "Z,thickness,map[,map...]: a seam, one code map a step")
        ->required()
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    sub->add_option("--code", o->codes, "S=2 or 0=open: what a code of the maps stands for")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    sub->add_option("--rings", o->rings,
                    "A=3,4,5: materials of the coal A by its distance from the openings")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    sub->add_option("--steps", o->steps, "Mining steps (as many as a seam has maps)");
    sub->add_option("--relaxation", o->relaxation, "Over-relaxation factor (1.35)");
    sub->add_option("--criterion", o->criterion, "Change of convergence at which it ends")
        ->required();
    sub->add_option("--iterations", o->iterations, "Maximum number of iterations (5000)");
    sub->add_flag("--surface-effects", o->surfaceEffects, "Include surface effects");
    sub->add_option("--boundaries", o->boundaries,
                    "north,east,south,west: 1 goes on mirrored, "
                    "0 is rigid (1,1,1,1)");
    sub->add_option("--off-seam", o->offSeam,
                    "width,blocks X,blocks Y,x,y,z: displacements of that level");
    sub->add_option("--topography", o->topography, "Overburden stresses (.top)");
    sub->add_flag("--overwrite", o->overwrite, "Replace the file if there is one");
}

#ifdef TESSARAN_DESKTOP
int window(const CLI::App& /*app*/, const std::string& drawing) {
    return openWindow({drawing});
}
#else
int window(const CLI::App& app, const std::string& /*drawing*/) {
    fmt::print(stderr, "This build has no desktop window.\n\n{}", app.help());
    return kWrongUsage;
}
#endif

int parseAndRun(int argc, char** argv) {
    CLI::App app{"Tessaran: a ground-stability workbench for underground coal mines", "tessaran"};
    app.set_version_flag("--version", "tessaran " TESSARAN_VERSION);
    std::string drawing;
    app.add_option("PLAN", drawing, "The drawing to open in the desktop window (DXF)");
    Action action;
    addRun(app, action);
    addConsole(app, action);
    addPlot(app, action);
    addGrid(app, action);
    addSolve(app, action);
    addCmrr(app, action);
    addInp(app, action);
    app.require_subcommand(0, 1);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kWrongUsage;
    }
    return action ? action() : window(app, drawing);
}

} // namespace

int main(int argc, char** argv) {
    try {
        return parseAndRun(argc, argv);
    } catch (const std::exception& error) {
        fmt::print(stderr, "tessaran: {}\n", error.what());
        return kFailed;
    }
}

} // namespace tessaran::cli
