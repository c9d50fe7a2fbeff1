#include "stress/topo_commands.h"

#include "base/file.h"
#include "base/text.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "stress/memory_end.h"
#include "stress/topo_model.h"
#include "stress/topo_pages.h"
#include "stress/topo_stress_file.h"
#include "stress/window_watch.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

namespace tessaran::stress {
namespace {

using host::Host;

constexpr const char* kUnsuccessful = "TopoModel was finished unsuccessfully!";

std::filesystem::path beside(const std::string& output, const char* extension) {
    return std::filesystem::path(output).replace_extension(extension);
}

// Writes the input file and reads it back, so that what runs is what the file says.
std::optional<CTopoModelDat> throughInputFile(Host& host, const CTopoModelDat& data,
                                              const std::string& output) {
    const std::filesystem::path file = beside(output, ".tmp");
    if (const auto written = base::writeFile(file, topoInputText(data)); !written) {
        host.print("\nFile can not open for write!\n" + written.error().message());
        host.dialogs().message("File <" + file.string() + "> could not be opened to write!");
        host.dialogs().message("Could not Write the Output File - OFO2");
        return std::nullopt;
    }
    TopoInputReading reading = readTopoInput(file);
    if (!reading.ok()) {
        host.dialogs().message(reading.message);
        host.dialogs().message("The Input File was not the Correct Format - OFO1");
        return std::nullopt;
    }
    return std::move(reading.data);
}

void warnOfDepths(Host& host, const CTopoModelDat& data) {
    const auto& depths = data.depths.values;
    const auto count =
        std::count_if(depths.begin(), depths.end(), [](double depth) { return !(depth > 0.0); });
    if (count > 0)
        host.dialogs().message(
            fmt::format("{} topographic blocks have a depth of 0 or less.", count));
}

bool saveStresses(Host& host, const TopoPlan& plan, const TopoRun& run, const std::string& output) {
    const ElementField& seam = plan.data.seam;
    const TopographicGrid stresses{
        {plan.x, plan.y, seam.width, seam.nX, seam.nY}, plan.seamZ, run.overburden.front()};
    const bool metric = plan.data.unitSystem >= 2;
    const auto written = writeTopoStress(output, stresses, metric ? "Pa" : "psi");
    if (written) {
        host.print("\nTopoStress are save to " + output);
        return true;
    }
    host.dialogs().message("File could not be written: " + written.error().message());
    return false;
}

bool runModel(Host& host, const TopoPlan& plan, const std::string& output) {
    if (const std::string fault = topoModelFault(plan.data); !fault.empty()) {
        host.dialogs().message(fault);
        return false;
    }
    warnOfDepths(host, plan.data);
    host.print("\nOverburden Stress Calculation");
    TopoRun run;
    {
        WindowWatch watch(host, "Overburden Stress in Progress ...",
                          "Successive Over Relaxation Iterating");
        run = runTopoModel(plan.data, {plan.x, plan.y, plan.seamZ, 0.0}, beside(output, ".out"),
                           watch);
    }
    if (run.ending == RunReport::Ending::cancelled)
        host.print("\nOperations are canceled by user\n\n");
    if (!run.message.empty())
        host.dialogs().message(run.message);
    if (!run.ok())
        return false;
    if (run.relaxed)
        host.print(fmt::format("\nTopographic SOR took {} iterations to converge", run.iterations));
    for (const std::string& warning : run.warnings)
        host.print("\n" + warning);
    return saveStresses(host, plan, run, output);
}

void runFields(Host& host, TopoFields& fields) {
    std::optional<TopoPlan> plan = planOf(host, fields);
    if (!plan)
        return;
    if (base::trimmed(fields.outputFile).empty()) {
        const auto chosen =
            host::chooseFile(host, host::FileRequest::Mode::save, "top", "Untitled.top");
        if (!chosen)
            return;
        fields.outputFile = base::withEnding(*chosen, ".top");
    }
    auto data = throughInputFile(host, plan->data, fields.outputFile);
    if (!data) {
        host.dialogs().message(kUnsuccessful);
        return;
    }
    plan->data = std::move(*data);
    if (!host::waitForEnter(host, "\n The Input was Successfully Read, <Enter> to continue ..."))
        return;
    if (runModel(host, *plan, fields.outputFile))
        host.print("\nTopoModel was finished successfully!");
    else
        host.dialogs().message(kUnsuccessful);
}

} // namespace

void zelk_topoStressModel(Host& host) {
    TopoFields fields;
    TopoSurfacePage surface(fields);
    TopoSeamPage seam(fields);
    TopoControlPage control(fields);
    host::Dialog dialog("Topographic Stress Model", {&surface, &seam, &control});
    if (host::runDialog(host, dialog))
        orEndProgram(host, [&] { runFields(host, fields); });
}

} // namespace tessaran::stress
