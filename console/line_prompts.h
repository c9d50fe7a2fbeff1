#pragma once

// The command line's questions, answered from lines.

#include "console/answers.h"
#include "console/conversation.h"
#include "console/workspace.h"
#include "host/prompts.h"

namespace tessaran::console {

class LinePrompts : public host::Prompts {
  public:
    LinePrompts(Workspace& workspace, Conversation& conversation)
        : workspace_(workspace), conversation_(conversation) {}

    host::PromptResult<Point3> getPoint(const host::PointPrompt& prompt) override;
    host::PromptResult<Point3> getCorner(const host::PointPrompt& prompt) override;
    host::PromptResult<double> getDistance(const host::NumberPrompt& prompt) override;
    host::PromptResult<double> getOrientation(const host::NumberPrompt& prompt) override;
    host::PromptResult<double> getReal(const host::NumberPrompt& prompt) override;
    host::PromptResult<int> getInteger(const host::NumberPrompt& prompt) override;
    host::PromptResult<std::string> getString(const std::string& message,
                                              bool allowBlanks) override;
    host::PromptResult<std::string> getKeyword(const std::string& message,
                                               const std::string& keywords) override;
    host::PromptResult<host::Pick> pickEntity(const host::PickPrompt& prompt) override;
    host::PromptResult<std::vector<EntityId>>
    getSelection(const host::SelectionPrompt& prompt) override;

  protected:
    // A selection being made holds these now.
    virtual void selecting(const std::vector<EntityId>& /*selected*/) {}

  private:
    enum class Words { one, all }; // what a prompt takes of an answer behind a command's name

    template <class T, class Parse>
    host::PromptResult<T> ask(const std::string& message, const std::string& keywords, Words words,
                              const Parse& parse);
    base::Result<Point3> point(std::string_view text, const std::optional<Point3>& base);
    // Two points, or one where the prompt has a base: `measure` makes the value of them.
    template <class Measure>
    host::PromptResult<double> measured(const host::NumberPrompt& prompt, const Point3& first,
                                        const Measure& measure);
    // A number that `parse` reads, or points that `measure` makes one of.
    template <class Parse, class Measure>
    host::PromptResult<double> typedOrMeasured(const host::NumberPrompt& prompt, const Parse& parse,
                                               const Measure& measure);
    base::Result<host::Pick> pick(std::string_view text);
    bool completePoints(SelectionStep& step);

    Workspace& workspace_;
    Conversation& conversation_;
};

} // namespace tessaran::console
