#pragma once

// The command line's questions in the window. Answers arrive as the lines that a script would hold,
// whether typed or picked, so what each prompt makes of them is written once, in LinePrompts; here
// the board is told what is asked, for the mouse.

#include "console/line_prompts.h"
#include "desktop/prompt_board.h"

namespace tessaran::desktop {

class WindowPrompts final : public console::LinePrompts {
  public:
    WindowPrompts(console::Workspace& workspace, console::Conversation& conversation,
                  PromptBoard& board, host::TemporaryGraphics& graphics)
        : LinePrompts(workspace, conversation), board_(board), graphics_(graphics) {}

    host::PromptResult<host::Point3> getPoint(const host::PointPrompt& prompt) override;
    host::PromptResult<host::Point3> getCorner(const host::PointPrompt& prompt) override;
    host::PromptResult<double> getDistance(const host::NumberPrompt& prompt) override;
    host::PromptResult<double> getOrientation(const host::NumberPrompt& prompt) override;
    host::PromptResult<double> getReal(const host::NumberPrompt& prompt) override;
    host::PromptResult<int> getInteger(const host::NumberPrompt& prompt) override;
    host::PromptResult<std::string> getString(const std::string& message,
                                              bool allowBlanks) override;
    host::PromptResult<std::string> getKeyword(const std::string& message,
                                               const std::string& keywords) override;
    host::PromptResult<host::Pick> pickEntity(const host::PickPrompt& prompt) override;
    host::PromptResult<std::vector<host::EntityId>>
    getSelection(const host::SelectionPrompt& prompt) override;

  protected:
    void selecting(const std::vector<host::EntityId>& selected) override;

  private:
    PromptBoard& board_;
    host::TemporaryGraphics& graphics_;
    std::vector<host::EntityId> highlighted_; // of the selection being made
    bool selecting_ = false;
    std::vector<host::Point3> trail_; // of the shape that selects
};

} // namespace tessaran::desktop
