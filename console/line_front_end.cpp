#include "console/line_front_end.h"

#include <fmt/format.h>

namespace tessaran::console {

LineFrontEnd::LineFrontEnd(HostState& state, Conversation& conversation, bool showProgress)
    : commands_(state.commands), conversation_(conversation),
      prompts_(state.workspace, conversation), dialogs_(conversation), bar_(showProgress),
      meter_(bar_, [this] { return conversation_.poll(); }),
      progressLine_(bar_, [this] { return conversation_.poll(); }) {}

// There is nothing here to open a link with: it is told.
void LineFrontEnd::openLink(const std::string& target) {
    conversation_.transcript().line("(link) " + target);
}

FrontEnd::Unsaved LineFrontEnd::unsavedChanges(const std::string& document) {
    const auto answer = dialogs_.ask({.text = fmt::format("Discard the changes to {}?", document),
                                      .buttons = host::Buttons::yesNo,
                                      .stake = host::Question::Stake::guarded});
    return answer == host::Answer::yes ? Unsaved::discard : Unsaved::keepOpen;
}

// A script runs the same with a copy and without one: it is only told.
bool LineFrontEnd::wantsRecovered(const std::filesystem::path& copy) {
    print(fmt::format("\nAn autosaved copy from before is there: {}", copy.string()));
    return false;
}

bool LineFrontEnd::commandFollows() {
    if (conversation_.interactive() || !conversation_.given().empty())
        return false;
    const Line* line = conversation_.next({});
    return line != nullptr && line->kind == Line::Kind::text &&
           commands_.typed(line->text).command != nullptr;
}

} // namespace tessaran::console
