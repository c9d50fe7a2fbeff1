#pragma once

// Message boxes, questions, file dialogs and dialogs, answered from lines.

#include "console/conversation.h"
#include "host/dialogs.h"

namespace tessaran::console {

class LineDialogs final : public host::Dialogs {
  public:
    explicit LineDialogs(Conversation& conversation) : conversation_(conversation) {}

    void message(const std::string& text) override;
    host::Answer ask(const host::Question& question) override;
    std::optional<std::string> chooseFile(const host::FileRequest& request) override;
    bool run(host::DialogSession& session) override;

  private:
    std::string typedPrompt(const std::string& name) const;
    std::optional<host::Answer> answered(const host::Question& question);
    std::optional<std::string> chosen(const host::FileRequest& request);
    std::optional<std::string> fromLine(const host::FileRequest& request, bool& again);
    bool mayReplace(const host::FileRequest& request, const std::string& path);
    void useLine(host::DialogSession& session, const std::string& waiting);

    Conversation& conversation_;
};

} // namespace tessaran::console
