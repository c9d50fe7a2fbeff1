#pragma once

// A host for tests of what lies on the port: its drawing is the own one, prompts and boxes are
// answered from queues that the test fills, and everything that was asked and printed is kept.

#include "drawing/database.h"
#include "host/dialog_model.h"
#include "host/host.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::test {

class RecordingHost final : public host::Host,
                            private host::Prompts,
                            private host::Dialogs,
                            private host::TemporaryGraphics,
                            private host::Profile,
                            private host::SystemVariables,
                            private host::Coordinates,
                            private host::ProgressView,
                            private host::CommandStack,
                            private host::MenuBar,
                            private host::DocumentSlot,
                            private base::Progress {
  public:
    // --- what the user would do; an empty queue means Escape or Cancel ------------------------
    static constexpr const char* kEnter = "<enter>";
    static constexpr const char* kMiss = "<miss>";
    std::deque<std::string> answers;       // strings, keywords
    std::deque<host::Point3> points;       // points, corners
    std::deque<std::string> pointKeywords; // at point prompts that know any, before a point
    std::deque<double> numbers;            // distances, reals
    std::deque<host::EntityId> picks;      // 0: hits nothing
    std::vector<host::EntityId> selection; // of getSelection
    std::deque<host::Answer> boxAnswers;   // question boxes; empty: Cancel or No
    std::deque<std::string> files;         // file dialogs; empty text: cancelled
    std::function<void(host::DialogSession&)> dialogScript; // what is done in a dialog
    host::ProgressView::Events events;                      // of the progress window's next pump
    int breakAt = 0; // the user breaks at that poll; 0: never

    // --- what happened --------------------------------------------------------------------------
    std::string printed;
    std::vector<std::string> messages;  // message boxes
    std::vector<std::string> questions; // question boxes
    std::vector<std::string> asked;     // messages of prompts
    std::vector<std::string> statuses;  // the status area at points given, as prompts want it
    std::vector<host::FileRequest> fileRequests;
    std::vector<std::string> captions;           // of the progress window
    std::map<std::string, std::string> settings; // "section/key"
    std::vector<host::CellPatch> patches;        // cells shown as temporary graphics
    std::size_t graphicsInView = 0;              // temporary graphics shown and not removed
    std::vector<std::string> meterTexts;
    std::map<std::string, host::VariableValue, std::less<>> values;
    std::vector<host::CommandEntry> commandEntries;
    std::map<std::string, std::vector<host::MenuItem>> menus;
    std::optional<int> endStatus; // of a program that had to end
    host::Point3 ucsOrigin;       // user coordinates are world coordinates less this
    host::Point2 windowCorner;
    drawing::Database database;

    host::Drawing& drawing() override { return database; }
    host::Prompts& prompts() override { return *this; }
    host::Dialogs& dialogs() override { return *this; }
    host::TemporaryGraphics& graphics() override { return *this; }
    base::Progress& meter() override { return *this; }
    host::ProgressView& progressView() override { return *this; }
    host::Profile& profile() override { return *this; }
    host::SystemVariables& variables() override { return *this; }
    host::Coordinates& coordinates() override { return *this; }
    host::CommandStack& commands() override { return *this; }
    host::MenuBar& menuBar() override { return *this; }
    host::DocumentSlot& documentSlot() override { return *this; }
    void print(std::string_view text) override { printed += text; }
    bool userBreak() override { return breakAt > 0 && --breakAt == 0; }
    void openLink(const std::string& /*target*/) override {}
    void endProgram(int status) override { endStatus = status; }

  private:
    template <class T>
    host::PromptResult<T> next(const std::string& message, std::deque<T>& queue) {
        asked.push_back(message);
        if (queue.empty())
            return {};
        const T value = queue.front();
        queue.pop_front();
        return {host::PromptStatus::ok, value, {}};
    }

    host::PromptResult<host::Point3> getPoint(const host::PointPrompt& prompt) override {
        if (!prompt.keywords.empty() && !pointKeywords.empty())
            return {host::PromptStatus::keyword, {}, next(prompt.message, pointKeywords).value};
        auto result = next(prompt.message, points);
        // Not-a-number stands for Enter.
        if (result.ok() && result.value.x != result.value.x)
            result.status = host::PromptStatus::none;
        if (result.ok() && prompt.statusAt)
            statuses.push_back(prompt.statusAt(result.value));
        return result;
    }
    host::PromptResult<host::Point3> getCorner(const host::PointPrompt& prompt) override {
        return getPoint(prompt);
    }
    host::PromptResult<double> getDistance(const host::NumberPrompt& prompt) override {
        auto result = next(prompt.message, numbers);
        // Not-a-number stands for Enter.
        if (result.ok() && result.value != result.value)
            result.status = host::PromptStatus::none;
        return result;
    }
    host::PromptResult<double> getOrientation(const host::NumberPrompt& prompt) override {
        return next(prompt.message, numbers);
    }
    host::PromptResult<double> getReal(const host::NumberPrompt& prompt) override {
        return getDistance(prompt);
    }
    host::PromptResult<int> getInteger(const host::NumberPrompt& prompt) override {
        const auto result = next(prompt.message, numbers);
        return {result.status, static_cast<int>(result.value), {}};
    }
    host::PromptResult<std::string> text(const std::string& message) {
        auto result = next(message, answers);
        if (result.ok() && result.value == kEnter)
            return {host::PromptStatus::none, {}, {}};
        return result;
    }
    host::PromptResult<std::string> getString(const std::string& message,
                                              bool /*allowBlanks*/) override {
        return text(message);
    }
    host::PromptResult<std::string> getKeyword(const std::string& message,
                                               const std::string& keywords) override {
        auto result = text(message);
        if (result.ok())
            if (const auto name = host::matchKeyword(host::parseKeywords(keywords), result.value))
                return {host::PromptStatus::keyword, *name, *name};
        return result;
    }
    host::PromptResult<host::Pick> pickEntity(const host::PickPrompt& prompt) override {
        const auto result = next(prompt.message, picks);
        if (result.ok() && !result.value)
            return {host::PromptStatus::missed, {}, {}};
        return {result.status, {result.value, {}}, {}};
    }
    host::PromptResult<std::vector<host::EntityId>>
    getSelection(const host::SelectionPrompt& prompt) override {
        asked.push_back(prompt.message);
        return {
            selection.empty() ? host::PromptStatus::none : host::PromptStatus::ok, selection, {}};
    }

    void message(const std::string& text) override { messages.push_back(text); }
    host::Answer ask(const host::Question& question) override {
        questions.push_back(question.text);
        if (boxAnswers.empty())
            return question.buttons == host::Buttons::yesNo ? host::Answer::no
                                                            : host::Answer::cancel;
        const host::Answer answer = boxAnswers.front();
        boxAnswers.pop_front();
        return answer;
    }
    std::optional<std::string> chooseFile(const host::FileRequest& request) override {
        fileRequests.push_back(request);
        if (files.empty() || files.front().empty())
            return std::nullopt;
        std::string file = files.front();
        files.pop_front();
        return file;
    }
    bool run(host::DialogSession& session) override {
        session.open();
        if (dialogScript)
            dialogScript(session);
        if (!session.ended())
            session.end(false);
        return session.accepted();
    }

    host::GraphicId showPolyline(const std::vector<host::Point2>&, bool, int) override {
        return shown();
    }
    host::GraphicId showCells(host::CellPatch patch) override {
        patches.push_back(std::move(patch));
        return shown();
    }
    host::GraphicId showEntity(const host::Entity&) override { return shown(); }
    host::GraphicId shown() {
        ++graphicsInView;
        return {++graphicsShown};
    }
    void remove(host::GraphicId) override { --graphicsInView; }
    void highlight(const std::vector<host::EntityId>&, bool) override {}
    void redraw() override {}

    std::optional<std::string> read(std::string_view section, std::string_view key) const override {
        const auto at = settings.find(std::string(section) + "/" + std::string(key));
        return at == settings.end() ? std::nullopt : std::optional(at->second);
    }
    void write(const std::string& section, const std::string& key,
               const std::string& text) override {
        settings[section + "/" + key] = text;
    }

    std::optional<host::VariableValue> get(std::string_view name) const override {
        const auto at = values.find(name);
        return at == values.end() ? std::nullopt : std::optional(at->second);
    }
    base::Result<void> set(std::string_view name, const host::VariableValue& value) override {
        values[std::string(name)] = value;
        return {};
    }

    host::Point3 toWorld(const host::Point3& user) const override { return user + ucsOrigin; }
    host::Point3 toUser(const host::Point3& world) const override { return world - ucsOrigin; }

    void open(int x, int y) override {
        windowCorner = {static_cast<double>(x), static_cast<double>(y)};
    }
    void setCaption(const std::string& caption) override { captions.push_back(caption); }
    void setText(const std::string& /*text*/) override {}
    void setBar(int /*lower*/, int /*upper*/, int /*position*/) override {}
    Events pump(bool /*keepFocus*/) override { return std::exchange(events, Events{}); }
    host::Point2 corner() const override { return windowCorner; }
    void close() override {}

    void add(const host::CommandEntry& entry) override { commandEntries.push_back(entry); }
    void remove(const std::string& group, const std::string& globalName) override {
        std::erase_if(commandEntries, [&](const host::CommandEntry& entry) {
            return entry.group == group && entry.globalName == globalName;
        });
    }
    bool setPullDown(const std::string& name, const std::vector<host::MenuItem>& items) override {
        menus[name] = items;
        return true;
    }
    void removePullDown(const std::string& name) override { menus.erase(name); }

    void setFactory(Factory factory) override {
        factory_ = std::move(factory);
        data_ = nullptr;
    }
    host::DocumentData* data() override {
        if (!data_ && factory_)
            data_ = factory_();
        return data_.get();
    }

    void begin(std::string_view text, long /*lower*/, long /*upper*/) override {
        meterTexts.emplace_back(text);
    }
    void setPosition(long /*position*/) override {}
    void end() override {}
    bool cancelled() override { return false; }

    std::uint64_t graphicsShown = 0;
    Factory factory_;
    std::unique_ptr<host::DocumentData> data_;
};

} // namespace tessaran::test
