#pragma once

// The drawing's journal: every command's changes, to be taken back and done again.
//
// A step is a swap: it holds what stood in a place before (or, once undone, after), so undo and
// redo are the same operation and cost no copy of an entity beyond the one that the change made.

#include "drawing/records.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::drawing {

class Database;

struct EntityStep {
    std::size_t slot = 0;
    std::unique_ptr<EntityRecord> other; // null: nothing stood there (not yet added, erased)
};

struct CommandRecord {
    std::string name;
    std::uint64_t otherState = 0;      // the drawing's state number on the other side
    std::optional<Tables> otherTables; // only when the command changed the tables
    std::vector<EntityStep> steps;

    bool empty() const { return steps.empty() && !otherTables; }
};

// Begins a command and rolls it back unless it was committed: leaving early changes nothing.
class Transaction {
  public:
    Transaction(Database& database, std::string name);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    bool commit(); // whether anything had changed

  private:
    Database& database_;
    bool open_ = true;
};

} // namespace tessaran::drawing
