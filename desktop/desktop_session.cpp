#include "desktop/desktop_session.h"

#include "console/plain_commands.h"

namespace tessaran::desktop {
namespace {

constexpr int kAutosaveLook = 15'000; // milliseconds; whether to save is the autosave's matter

} // namespace

DesktopSession::DesktopSession(const Options& options)
    : state_(options.profile), lines_(recorder_), conversation_(lines_, transcript_),
      window_({state_, lines_, board_, busy_, recorder_}),
      frontEnd_(state_, conversation_, {window_, window_.meter(), board_, busy_, recorder_}),
      host_(state_, frontEnd_), module_(host_), interpreter_(host_, conversation_),
      autosaves_(options.configuration) {
    transcript_.addSink(
        [this](std::string_view text) { window_.commands().history().append(text); });
    console::addPlainCommands(host_, [this] {
        lines_.end();
        conversation_.end();
    });
    window_.setInDialog([this] { return frontEnd_.inDialog(); });
    window_.buildMenus();
    lines_.setWait([this](const std::string&) { window_.waitBegins(); },
                   [this] { window_.waitEnds(); });
    conversation_.setRefused([this] {
        recorder_.dropLast();
        lines_.refused();
    });
    interpreter_.setIdle([this] { autosaves_.offer(state_.workspace); });
    QObject::connect(&autosaveTimer_, &QTimer::timeout, &window_, [this] {
        if (lines_.atCommandPrompt())
            autosaves_.offer(state_.workspace);
    });
    autosaveTimer_.setInterval(kAutosaveLook);
}

void DesktopSession::run(const std::string& drawing) {
    window_.show();
    autosaveTimer_.start();
    if (!drawing.empty())
        lines_.run({"OPEN", drawing});
    interpreter_.run();
    autosaveTimer_.stop();
    window_.hide();
}

} // namespace tessaran::desktop
