#include "desktop/window_prompts.h"

namespace tessaran::desktop {
namespace {

using host::Point3;
using host::PromptResult;
using Kind = PromptState::Kind;

// What a selection can be told beside places.
constexpr const char* kSelectionWords =
    "All Window Crossing Fence WPolygon,WP CPolygon,CP Last Previous Remove Add";

PromptState asking(Kind kind, const std::string& message, const std::string& keywords = {}) {
    return {.kind = kind, .message = message, .keywords = host::parseKeywords(keywords)};
}

PromptState asking(Kind kind, const host::NumberPrompt& prompt) {
    PromptState state = asking(kind, prompt.message, prompt.keywords);
    state.base = prompt.base;
    if (prompt.base)
        state.rubberBand = host::RubberBand::line;
    return state;
}

} // namespace

PromptResult<Point3> WindowPrompts::getPoint(const host::PointPrompt& prompt) {
    PromptState state = asking(Kind::point, prompt.message, prompt.keywords);
    state.base = prompt.base;
    state.rubberBand = prompt.rubberBand;
    state.dragged = prompt.dragged;
    state.statusAt = prompt.statusAt;
    if (selecting_)
        state.trail = trail_;
    const OnBoard shown(board_, std::move(state));
    auto result = LinePrompts::getPoint(prompt);
    if (selecting_ && result.ok())
        trail_.push_back(result.value);
    return result;
}

PromptResult<Point3> WindowPrompts::getCorner(const host::PointPrompt& prompt) {
    host::PointPrompt corner = prompt;
    corner.rubberBand = host::RubberBand::box;
    return getPoint(corner);
}

PromptResult<double> WindowPrompts::getDistance(const host::NumberPrompt& prompt) {
    const OnBoard shown(board_, asking(Kind::distance, prompt));
    return LinePrompts::getDistance(prompt);
}

PromptResult<double> WindowPrompts::getOrientation(const host::NumberPrompt& prompt) {
    const OnBoard shown(board_, asking(Kind::angle, prompt));
    return LinePrompts::getOrientation(prompt);
}

PromptResult<double> WindowPrompts::getReal(const host::NumberPrompt& prompt) {
    const OnBoard shown(board_, asking(Kind::number, prompt.message, prompt.keywords));
    return LinePrompts::getReal(prompt);
}

PromptResult<int> WindowPrompts::getInteger(const host::NumberPrompt& prompt) {
    const OnBoard shown(board_, asking(Kind::number, prompt.message, prompt.keywords));
    return LinePrompts::getInteger(prompt);
}

PromptResult<std::string> WindowPrompts::getString(const std::string& message, bool allowBlanks) {
    const OnBoard shown(board_, asking(Kind::text, message));
    return LinePrompts::getString(message, allowBlanks);
}

PromptResult<std::string> WindowPrompts::getKeyword(const std::string& message,
                                                    const std::string& keywords) {
    const OnBoard shown(board_, asking(Kind::keyword, message, keywords));
    return LinePrompts::getKeyword(message, keywords);
}

PromptResult<host::Pick> WindowPrompts::pickEntity(const host::PickPrompt& prompt) {
    const OnBoard shown(board_, asking(Kind::pick, prompt.message, prompt.keywords));
    return LinePrompts::pickEntity(prompt);
}

PromptResult<std::vector<host::EntityId>>
WindowPrompts::getSelection(const host::SelectionPrompt& prompt) {
    PromptState state = asking(Kind::selection, prompt.message, prompt.keywords);
    for (host::Keyword& keyword : host::parseKeywords(kSelectionWords))
        state.keywords.push_back(std::move(keyword));
    const OnBoard shown(board_, std::move(state));
    selecting_ = true;
    trail_.clear();
    auto result = LinePrompts::getSelection(prompt);
    selecting_ = false;
    selecting({});
    return result;
}

void WindowPrompts::selecting(const std::vector<host::EntityId>& selected) {
    graphics_.highlight(highlighted_, false);
    highlighted_ = selected;
    graphics_.highlight(highlighted_, true);
    trail_.clear();
}

} // namespace tessaran::desktop
