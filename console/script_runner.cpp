#include "console/script_runner.h"

#include "console/drawing_files.h"

namespace tessaran::console {

ScriptOutcome ScriptRunner::open(const std::filesystem::path& drawing) {
    auto database = openDrawing(drawing);
    if (!database)
        return {ScriptOutcome::kUnusable, database.error().message()};
    session_.workspace().add(std::move(*database));
    return {};
}

ScriptOutcome ScriptRunner::run(const std::string& name, const std::string& text,
                                const std::optional<std::filesystem::path>& save) {
    source_.load(name, text);
    session_.interpreter().run();
    transcript_.finish();
    if (const auto& failure = session_.conversation().failure())
        return {ScriptOutcome::kLineError, *failure};
    if (!save)
        return {};
    const auto saved = saveDrawing(session_.workspace().database(), *save);
    return saved ? ScriptOutcome{}
                 : ScriptOutcome{ScriptOutcome::kLineError, saved.error().message()};
}

} // namespace tessaran::console
