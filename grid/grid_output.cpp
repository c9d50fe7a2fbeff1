#include "grid/grid_output.h"

#include "base/file.h"
#include "base/text.h"
#include "host/host.h"
#include "host/services_dialogs.h"

#include <fmt/format.h>

namespace tessaran::grid {

using host::Answer;
using host::Buttons;
using host::Question;

void completeOutputName(host::DialogSession& session, std::string& name, const std::string& before,
                        const std::string& extension) {
    if (base::trimmed(name).empty() || name == before)
        return;
    name = base::withEnding(base::trimmed(name), "." + extension);
    if (!base::fileExists(name))
        return;
    const Question question{"File Exists, Do you want to Overwrite it?", Buttons::yesNo,
                            Question::Stake::guarded};
    if (session.host().dialogs().ask(question) != Answer::yes)
        name = before;
}

void GridOutput::describeFile(host::PageBuilder& page, const std::string& label) {
    page.text(label, fileName_)
        .onChange([this](host::DialogSession& session, const std::string& before) {
            completeOutputName(session, fileName_, before);
        });
    page.button("Browse...", [this](host::DialogSession& session) { chooseFile(session.host()); });
}

void GridOutput::describeDescription(host::PageBuilder& page, const std::string& label) {
    page.text(label, description_);
}

bool GridOutput::chooseFile(host::Host& host) {
    const auto mode = host::FileRequest::Mode::save;
    const auto chosen = fileName_.empty()
                            ? host::chooseFile(host, mode, kGridExtension, kUntitledGrid)
                            : host::chooseFileAt(host, mode, kGridExtension, fileName_);
    if (chosen)
        fileName_ = base::withEnding(*chosen, std::string(".") + kGridExtension);
    return chosen.has_value();
}

bool GridOutput::mayRebuild(host::Host& host, bool madeByHand, const std::string& question) const {
    if ((!built_ && !madeByHand) || saved_)
        return true;
    return host.dialogs().ask({question, Buttons::okCancel, Question::Stake::guarded}) ==
           Answer::ok;
}

bool GridOutput::save(host::Host& host, const std::string& what) {
    if (!built_) {
        host.dialogs().message("Grid is not defined or built!");
        return false;
    }
    if (fileName_.empty() && !chooseFile(host))
        return false;
    const Question question{fmt::format("{} will be saved to < {} >", what, fileName_),
                            Buttons::okCancel, Question::Stake::confirmsSave};
    if (host.dialogs().ask(question) != Answer::ok)
        return false;
    grid_.setTitle(description_);
    saved_ = grid_.writeGrid(host, fileName_);
    return saved_;
}

bool GridOutput::mayClose(host::Host& host) {
    return mayClose(host, [&] { return save(host); });
}

bool GridOutput::mayClose(host::Host& host, const std::function<bool()>& save) const {
    if (!built_ || saved_)
        return true;
    const Answer answer = host.dialogs().ask(
        {"The Grid is not saved! Save it?", Buttons::yesNo, Question::Stake::guarded});
    return answer == Answer::yes ? save() : answer == Answer::no;
}

} // namespace tessaran::grid
