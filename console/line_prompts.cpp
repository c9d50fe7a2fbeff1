#include "console/line_prompts.h"

#include "console/picking.h"
#include "console/selection_run.h"
#include "drawing/coordinates.h"

#include <fmt/format.h>

#include <cctype>
#include <cmath>

namespace tessaran::console {
namespace {

using host::PromptResult;
using host::PromptStatus;
using AnswerKind = Conversation::Answer::Kind;

template <class T>
PromptResult<T> ended(PromptStatus status) {
    PromptResult<T> result;
    result.status = status;
    return result;
}

template <class T>
PromptResult<T> answered(T value) {
    PromptResult<T> result;
    result.status = PromptStatus::ok;
    result.value = std::move(value);
    return result;
}

// As no pick does.
bool beginsWithLetter(const std::string& text) {
    return !text.empty() && std::isalpha(static_cast<unsigned char>(text.front())) != 0;
}

} // namespace

// Asks until an answer fits, as a person types; a script's answer that does not ends the talk.
template <class T, class Parse>
PromptResult<T> LinePrompts::ask(const std::string& message, const std::string& keywords,
                                 Words wanted, const Parse& parse) {
    const auto known = host::parseKeywords(keywords);
    for (;;) {
        const auto answer = conversation_.ask(message, wanted == Words::one);
        if (answer.kind == AnswerKind::escape)
            return ended<T>(PromptStatus::cancel);
        if (answer.kind == AnswerKind::enter)
            return ended<T>(PromptStatus::none);
        if (const auto keyword = host::matchKeyword(known, answer.text)) {
            PromptResult<T> result = ended<T>(PromptStatus::keyword);
            result.keyword = *keyword;
            return result;
        }
        auto value = parse(answer.text);
        if (value)
            return answered<T>(std::move(*value));
        if (!conversation_.refuse(value.error().text))
            return ended<T>(PromptStatus::cancel);
    }
}

// Relative to the prompt's base where it has one, else to the last point given.
base::Result<Point3> LinePrompts::point(std::string_view text, const std::optional<Point3>& base) {
    auto parsed = parsePoint(text, base.value_or(workspace_.current().lastPoint));
    if (parsed)
        workspace_.current().lastPoint = *parsed;
    return parsed;
}

PromptResult<Point3> LinePrompts::getPoint(const host::PointPrompt& prompt) {
    return ask<Point3>(prompt.message, prompt.keywords, Words::one,
                       [&](const std::string& text) { return point(text, prompt.base); });
}

PromptResult<Point3> LinePrompts::getCorner(const host::PointPrompt& prompt) {
    return getPoint(prompt);
}

template <class Measure>
PromptResult<double> LinePrompts::measured(const host::NumberPrompt& prompt, const Point3& first,
                                           const Measure& measure) {
    if (prompt.base)
        return answered(measure(*prompt.base, first));
    host::PointPrompt second{.message = "\nSecond point:", .keywords = {}, .base = first};
    second.rubberBand = host::RubberBand::line;
    const auto other = getPoint(second);
    if (!other.ok())
        return ended<double>(other.status);
    return answered(measure(first, other.value));
}

template <class Parse, class Measure>
PromptResult<double> LinePrompts::typedOrMeasured(const host::NumberPrompt& prompt,
                                                  const Parse& parse, const Measure& measure) {
    std::optional<Point3> first;
    auto result = ask<double>(prompt.message, prompt.keywords, Words::one,
                              [&](const std::string& text) -> base::Result<double> {
                                  first.reset();
                                  if (!isWrittenAsPoint(text))
                                      return parse(text);
                                  const auto parsed = point(text, prompt.base);
                                  if (!parsed)
                                      return parsed.error();
                                  first = *parsed;
                                  return 0.0;
                              });
    if (!result.ok() || !first)
        return result;
    return measured(prompt, *first, measure);
}

PromptResult<double> LinePrompts::getDistance(const host::NumberPrompt& prompt) {
    return typedOrMeasured(
        prompt, [&](const std::string& text) { return parseReal(text, prompt); },
        [](const Point3& a, const Point3& b) {
            const Point3 d = b - a;
            return std::hypot(d.x, d.y, d.z);
        });
}

PromptResult<double> LinePrompts::getOrientation(const host::NumberPrompt& prompt) {
    return typedOrMeasured(
        prompt, [](const std::string& text) { return parseAngle(text); },
        [](const Point3& a, const Point3& b) { return std::atan2(b.y - a.y, b.x - a.x); });
}

PromptResult<double> LinePrompts::getReal(const host::NumberPrompt& prompt) {
    return ask<double>(prompt.message, prompt.keywords, Words::one,
                       [&](const std::string& text) { return parseReal(text, prompt); });
}

PromptResult<int> LinePrompts::getInteger(const host::NumberPrompt& prompt) {
    return ask<int>(prompt.message, prompt.keywords, Words::one,
                    [&](const std::string& text) { return parseInteger(text, prompt); });
}

PromptResult<std::string> LinePrompts::getString(const std::string& message, bool allowBlanks) {
    return ask<std::string>(message, {}, allowBlanks ? Words::all : Words::one,
                            [&](const std::string& text) -> base::Result<std::string> {
                                if (!allowBlanks && text.find(' ') != std::string::npos)
                                    return base::formatError("the answer may hold no blanks");
                                return text;
                            });
}

PromptResult<std::string> LinePrompts::getKeyword(const std::string& message,
                                                  const std::string& keywords) {
    const auto known = host::parseKeywords(keywords);
    return ask<std::string>(message, {}, Words::one,
                            [&](const std::string& text) -> base::Result<std::string> {
                                if (const auto keyword = host::matchKeyword(known, text))
                                    return *keyword;
                                return base::formatError("Invalid option keyword.");
                            });
}

base::Result<host::Pick> LinePrompts::pick(std::string_view text) {
    Document& document = workspace_.current();
    const drawing::Database& database = *document.database;
    const auto parsed = parsePick(text, document.lastPoint);
    if (!parsed)
        return parsed.error();
    host::Pick pick{parsed->entity, parsed->at.value_or(Point3{})};
    if (parsed->at)
        document.lastPoint = *parsed->at;
    if (!pick.entity && parsed->onNothing)
        return pick;
    if (!pick.entity) {
        pick.entity = pickAt(database, drawing::toWorld(database.ucs(), pick.at).plan());
        return pick;
    }
    const host::Entity* entity = database.find(pick.entity);
    if (entity == nullptr)
        return base::stateError(fmt::format("no object {}", handleText(pick.entity)));
    if (!parsed->at)
        pick.at = drawing::toUser(database.ucs(), placeOn(database, *entity));
    return pick;
}

PromptResult<host::Pick> LinePrompts::pickEntity(const host::PickPrompt& prompt) {
    std::string word;
    auto result = ask<host::Pick>(prompt.message, prompt.keywords, Words::all,
                                  [&](const std::string& text) -> base::Result<host::Pick> {
                                      if (!prompt.otherWords || !beginsWithLetter(text))
                                          return pick(text);
                                      word = text;
                                      return host::Pick{};
                                  });
    if (!word.empty()) {
        result.status = PromptStatus::keyword;
        result.keyword = word;
    } else if (result.ok() && !result.value.entity)
        result.status = PromptStatus::missed;
    return result;
}

// "window" without its corners: they are asked for.
bool LinePrompts::completePoints(SelectionStep& step) {
    while (static_cast<int>(step.points.size()) < step.mostPoints()) {
        const bool first = step.points.empty();
        host::PointPrompt next{.message = first ? "\nFirst point:" : "\nNext point:",
                               .keywords = {}};
        if (!first)
            next.base = step.points.back();
        next.rubberBand = first                    ? host::RubberBand::none
                          : step.mostPoints() == 2 ? host::RubberBand::box
                                                   : host::RubberBand::line;
        const auto given = getPoint(next);
        if (!given.ok())
            return given.status == PromptStatus::none &&
                   static_cast<int>(step.points.size()) >= step.fewestPoints();
        step.points.push_back(given.value);
    }
    return true;
}

PromptResult<std::vector<EntityId>> LinePrompts::getSelection(const host::SelectionPrompt& prompt) {
    Document& document = workspace_.current();
    SelectionRun run(document, prompt.filter, prompt.selected);
    for (;;) {
        auto step = ask<SelectionStep>(
            run.removing() ? prompt.removeMessage : prompt.message, prompt.keywords, Words::all,
            [&](const std::string& text) { return parseSelection(text, document.lastPoint); });
        if (step.status == PromptStatus::none)
            break;
        if (!step.ok()) {
            PromptResult<std::vector<EntityId>> result;
            result.status = step.status;
            result.keyword = step.keyword;
            result.value = run.selected();
            return result;
        }
        const bool needsPoints = step.value.points.empty() && step.value.mostPoints() > 0;
        if (needsPoints && !completePoints(step.value))
            continue;
        const auto found = run.take(step.value);
        if (found) {
            conversation_.transcript().print(*found);
            selecting(run.selected());
        } else if (!conversation_.refuse(found.error().text))
            return ended<std::vector<EntityId>>(PromptStatus::cancel);
    }
    if (run.selected().empty())
        return ended<std::vector<EntityId>>(PromptStatus::none);
    document.previousSelection = run.selected();
    return answered(run.selected());
}

} // namespace tessaran::console
