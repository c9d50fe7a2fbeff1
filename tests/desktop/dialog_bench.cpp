#include "desktop/dialog_bench.h"

#include "console/plain_commands.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace tessaran::test {

QApplication& application() {
    if (QApplication::instance() == nullptr) {
        // Every window of the offscreen screen is told of as one that cannot be raised.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            if (!text.startsWith("This plugin does not support"))
                std::fprintf(stderr, "%s\n", qPrintable(text));
        });
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        static int count = 1;
        static char name[] = "test";
        static char* arguments[] = {name, nullptr};
        new QApplication(count, arguments);
    }
    return *qApp;
}

std::optional<std::string> PromptLines::read(const std::string& /*prompt*/) {
    if (asked_)
        asked_();
    if (lines_.empty())
        return ++enters_ <= kMostEnters ? std::optional<std::string>("") : std::nullopt;
    std::string line = lines_.front();
    lines_.pop_front();
    return line;
}

DialogBench::DialogBench()
    : state_(folder_ / "profile.ini"), conversation_(source_, transcript_),
      lines_(state_, conversation_, false), window_((application(), nullptr)),
      dialogs_(window_, &recorder_), screen_(lines_, dialogs_), host_(state_, screen_),
      module_(host_) {
    transcript_.addSink([this](std::string_view text) { text_ += text; });
    console::addPlainCommands(host_);
    window_.resize(1000, 700);
    window_.show();
}

void DialogBench::command(const std::string& name) {
    const console::Command* command = state_.commands.find(name);
    ASSERT_NE(command, nullptr) << name;
    recorder_.record(name);
    conversation_.beginCommand();
    command->run();
}

std::vector<std::string> commandsWithDialogs() {
    std::vector<std::string> names{"CMRR"};
    DialogBench loaded;
    for (const console::Command& command : loaded.host().state().commands.commands())
        if (command.group != "TESSARAN_HOST")
            names.push_back(command.localName);
    return names;
}

} // namespace tessaran::test
