#include "stress/plekton_pages.h"

#include "host/host.h"
#include "host/services_dialogs.h"
#include "stress/compose_pages.h"
#include "stress/memory_end.h"
#include "stress/model_run.h"
#include "stress/window_watch.h"

#include <fmt/format.h>

namespace tessaran::stress {
namespace {

using host::DialogSession;
using host::Host;

constexpr const char* kInputExtension = "inp";

std::string savedFiles(const PreparedRun& run) {
    std::string out = "\nResults were saved to File(s):";
    for (int seam = 1; seam <= run.model.seamCount(); ++seam)
        out += fmt::format("\n\t<{}.f{}> for Seam {}", run.base.string(), seam, seam);
    return out + "\nTo transfer results to stability grid files:\n\t Stability Model -> Transfer "
                 "Plekton/Mulsim Results";
}

} // namespace

void PlektonPage::describe(host::PageBuilder& page) {
    page.text("Input File Name: (.inp)", inputFile_);
    page.button("&Select File", [this](DialogSession& s) { selectFile(s.host()); }).beside();
    page.button("Plekton &Input...", [this](DialogSession& s) {
        if (const auto written = composeInput(s.host()))
            inputFile_ = *written;
    });
    page.button("&Run", [this](DialogSession& s) {
        if (!orEndProgram(s.host(), [&] { run(s); }))
            s.end(false);
    });
}

void PlektonPage::selectFile(Host& host) {
    const auto chosen =
        host::chooseFile(host, host::FileRequest::Mode::open, kInputExtension, inputFile_);
    if (chosen)
        inputFile_ = *chosen;
}

void PlektonPage::run(DialogSession& session) {
    Host& host = session.host();
    const base::Result<PreparedRun> prepared = prepareRun(inputFile_);
    if (!prepared) {
        // What the reader says is complete; of a value that is refused the line is worth knowing.
        const base::Error& error = prepared.error();
        host.dialogs().message(error.kind == base::ErrorKind::range ? error.message() : error.text);
        host.dialogs().message("Plekton was finished unsuccessfully!");
        return;
    }
    for (const std::string& warning : prepared->warnings)
        host.dialogs().message(warning);
    const DialogSession::Hidden hidden(session);
    host.print("\n" + prepared->outlook);
    if (!host::waitForEnter(
            host, "\n Plekton Stress Calculation is ready to run, <Enter> to continue ..."))
        return;
    RunReport report;
    {
        WindowWatch watch(host, "Plekton in Progress ...");
        report = solve(prepared->model, prepared->base, watch);
    }
    if (report.stepsDone > 0)
        if (const auto pillars = writePillars(*prepared, report); !pillars)
            host.dialogs().message(pillars.error().message());
    if (report.code() != 0) {
        host.dialogs().message("Plekton was finished unsuccessfully!");
        return;
    }
    host.print("\n" + runSummary(prepared->model, report));
    host.dialogs().message("Plekton was finished successfully!" + savedFiles(*prepared));
}

} // namespace tessaran::stress
