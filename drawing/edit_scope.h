#pragma once

// A change made outside a command becomes a command of its own.

#include "drawing/database.h"

namespace tessaran::drawing {

class EditScope {
  public:
    EditScope(Database& database, const char* name)
        : database_(database), own_(!database.inCommand()) {
        if (own_)
            database_.beginCommand(name);
    }
    EditScope(const EditScope&) = delete;
    EditScope& operator=(const EditScope&) = delete;
    ~EditScope() {
        if (own_)
            database_.endCommand();
    }

  private:
    Database& database_;
    bool own_;
};

} // namespace tessaran::drawing
