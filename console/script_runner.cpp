#include "console/script_runner.h"

#include "console/autosaves.h"
#include "console/drawing_files.h"
#include "console/recovery.h"

namespace tessaran::console {

ScriptOutcome ScriptRunner::open(const std::filesystem::path& drawing) {
    auto opened = openDrawing(drawing, session_.host().meter());
    if (!opened)
        return {ScriptOutcome::kUnusable, opened.error().message()};
    const std::string told = describe(opened->report);
    if (!told.empty())
        transcript_.print("\n" + told);
    session_.workspace().add(std::move(opened->database));
    return {};
}

ScriptOutcome ScriptRunner::run(const std::string& name, const std::string& text,
                                const std::optional<std::filesystem::path>& save) {
    source_.load(name, text);
    session_.interpreter().run();
    transcript_.finish();
    if (const auto status = session_.host().endStatus()) {
        const RecoveryFolder copies(configuration_);
        return {*status, Autosaves(copies.path()).keep(session_.workspace())};
    }
    if (const auto& failure = session_.conversation().failure())
        return {ScriptOutcome::kLineError, *failure};
    if (!save)
        return {};
    const auto saved = saveDrawing(session_.workspace().database(), *save);
    if (!saved)
        return {ScriptOutcome::kLineError, saved.error().message()};
    return {};
}

} // namespace tessaran::console
