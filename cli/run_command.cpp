#include "base/file.h"
#include "base/text.h"
#include "cli/options.h"
#include "cli/subcommands.h"
#include "console/profile_file.h"
#include "console/script_runner.h"

#include <fmt/format.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>

namespace tessaran::cli {
namespace {

base::Result<std::string> scriptText(const std::string& script) {
    if (script != "-")
        return base::readFile(script);
    return std::string{std::istreambuf_iterator<char>(std::cin), {}};
}

void toStandardOutput(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

int fail(int status, const std::string& why) {
    std::fflush(stdout);
    fmt::print(stderr, "{}\n", base::trimmed(why));
    return status;
}

} // namespace

int runScript(const RunOptions& options) {
    const auto text = scriptText(options.script);
    if (!text)
        return fail(kWrongUsage, text.error().message());
    console::Transcript transcript;
    transcript.addSink(toStandardOutput);
    std::ofstream copy;
    if (!options.transcript.empty()) {
        copy.open(options.transcript, std::ios::binary);
        if (!copy)
            return fail(kWrongUsage, options.transcript + ": cannot be written");
        transcript.addSink([&copy](std::string_view part) { copy << part << std::flush; });
    }
    console::ScriptRunner runner(transcript, {.profile = console::profilePath(),
                                              .configuration = console::configurationFolder(),
                                              .showProgress = options.progress});
    console::ScriptOutcome outcome;
    if (!options.drawing.empty())
        outcome = runner.open(options.drawing);
    if (outcome.status == console::ScriptOutcome::kUsed)
        outcome =
            runner.run(options.script, *text,
                       options.save.empty() ? std::nullopt
                                            : std::optional<std::filesystem::path>(options.save));
    return outcome.status == console::ScriptOutcome::kUsed ? kDone
                                                           : fail(outcome.status, outcome.error);
}

} // namespace tessaran::cli
