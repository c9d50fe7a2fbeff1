#include "drawing/undo.h"

#include "base/check.h"
#include "drawing/database.h"
#include "drawing/spatial_index.h"

#include <utility>

namespace tessaran::drawing {

Transaction::Transaction(Database& database, std::string name) : database_(database) {
    database_.beginCommand(std::move(name));
}

Transaction::~Transaction() {
    if (open_)
        database_.rollBack();
}

bool Transaction::commit() {
    TESSARAN_CHECK(open_);
    open_ = false;
    return database_.endCommand();
}

void Database::beginCommand(std::string name) {
    if (depth_++ > 0)
        return;
    ++commandNumber_;
    open_.emplace();
    open_->name = std::move(name);
}

bool Database::endCommand() {
    TESSARAN_CHECK(depth_ > 0);
    if (--depth_ > 0)
        return !open_->empty();
    CommandRecord command = std::move(*open_);
    open_.reset();
    // What was both added and erased by the command leaves nothing to undo.
    std::erase_if(command.steps, [this](const EntityStep& step) {
        return !step.other && !slots_[step.slot].record;
    });
    if (command.empty())
        return false;
    command.otherState = std::exchange(state_, ++lastState_);
    undone_.clear();
    done_.push_back(std::move(command));
    return true;
}

void Database::rollBack() {
    TESSARAN_CHECK(depth_ > 0);
    depth_ = 0;
    CommandRecord command = std::move(*open_);
    open_.reset();
    command.otherState = state_;
    swapWith(command);
}

std::optional<std::string> Database::undo() {
    TESSARAN_CHECK(!inCommand());
    if (done_.empty())
        return std::nullopt;
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    swapWith(undone_.back());
    return undone_.back().name;
}

std::optional<std::string> Database::redo() {
    TESSARAN_CHECK(!inCommand());
    if (undone_.empty())
        return std::nullopt;
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    swapWith(done_.back());
    return done_.back().name;
}

std::vector<std::string> Database::undoNames() const {
    std::vector<std::string> names;
    for (const CommandRecord& command : done_)
        names.push_back(command.name);
    return names;
}

std::vector<std::string> Database::redoNames() const {
    std::vector<std::string> names;
    for (const CommandRecord& command : undone_)
        names.push_back(command.name);
    return names;
}

// A command journals each slot once, so the order of the swaps does not matter.
void Database::swapWith(CommandRecord& command) {
    ++revision_;
    for (EntityStep& step : command.steps)
        step.other = replace(step.slot, std::move(step.other));
    if (command.otherTables) {
        std::swap(tables_, *command.otherTables);
        rebuildLayerIndex();
    }
    std::swap(state_, command.otherState);
}

void Database::journalSlot(std::size_t slot, std::unique_ptr<EntityRecord> before) {
    TESSARAN_CHECK(open_.has_value());
    ++revision_;
    if (slots_[slot].touched == commandNumber_)
        return; // the state before the command is already kept
    slots_[slot].touched = commandNumber_;
    open_->steps.push_back({slot, std::move(before)});
}

Tables& Database::changeTables() {
    TESSARAN_CHECK(open_.has_value());
    ++revision_;
    if (!open_->otherTables)
        open_->otherTables = tables_;
    return tables_;
}

} // namespace tessaran::drawing
