#include "support/script_run.h"

namespace tessaran::test {

ScriptRun::ScriptRun()
    : runner_(transcript_, {.profile = folder_ / "profile.ini", .configuration = folder_.path()}) {
    transcript_.addSink([this](std::string_view text) { text_ += text; });
}

void ScriptRun::open(const std::string& file) {
    outcome_ = runner_.open(file);
}

ScriptRun& ScriptRun::operator()(const std::string& script) {
    if (outcome_.status == console::ScriptOutcome::kUsed)
        outcome_ = runner_.run("script", script, save_);
    return *this;
}

std::string ScriptRun::report() const {
    return "error: " + outcome_.error + "\ntranscript:\n" + text_;
}

} // namespace tessaran::test
