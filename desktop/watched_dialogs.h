#pragma once

// The window's dialogs, with a count of those that are open, hidden ones included.

#include "host/dialogs.h"

namespace tessaran::desktop {

class WatchedDialogs final : public host::Dialogs {
  public:
    explicit WatchedDialogs(host::Dialogs& dialogs) : dialogs_(dialogs) {}

    bool showing() const { return depth_ > 0; }

    void message(const std::string& text) override { dialogs_.message(text); }
    host::Answer ask(const host::Question& question) override { return dialogs_.ask(question); }
    std::optional<std::string> chooseFile(const host::FileRequest& request) override {
        return dialogs_.chooseFile(request);
    }
    bool run(host::DialogSession& session) override {
        struct Depth {
            int& depth;
            explicit Depth(int& count) : depth(count) { ++depth; }
            ~Depth() { --depth; }
        } const open(depth_);
        return dialogs_.run(session);
    }

  private:
    host::Dialogs& dialogs_;
    int depth_ = 0;
};

} // namespace tessaran::desktop
