#pragma once

// The open drawings, one of them current, and what belongs to each beside its database.

#include "base/result.h"
#include "drawing/database.h"
#include "host/document_data.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessaran::console {

struct Document {
    std::string name; // of its file, or "Drawing1" until it has one; told apart by it
    std::unique_ptr<drawing::Database> database;
    std::unique_ptr<host::DocumentData> data{}; // the module's, made on first use
    host::Point3 lastPoint{};                   // of the answers, user coordinates
    std::vector<host::EntityId> previousSelection{};
};

class Workspace final : public host::DocumentSlot {
  public:
    Workspace(); // with one empty drawing

    Document& current() { return *documents_[current_]; }
    const Document& current() const { return *documents_[current_]; }
    drawing::Database& database() { return *current().database; }
    const std::vector<std::unique_ptr<Document>>& documents() const { return documents_; }

    // The new document becomes the current one. A first drawing that is empty, unsaved and
    // untouched gives way to the first one opened.
    Document& addEmpty();
    Document& add(std::unique_ptr<drawing::Database> database);
    bool switchTo(std::string_view name); // any capitals; false: no such drawing
    // Closes the current one; the last to close leaves an empty drawing behind.
    void closeCurrent();
    // After the current drawing's path changed.
    void rename();

    // --- the module's data of each drawing
    void setFactory(Factory factory) override;
    host::DocumentData* data() override;

  private:
    std::string freeName(const std::string& wanted) const;
    Document& append(std::unique_ptr<Document> document);

    std::vector<std::unique_ptr<Document>> documents_;
    std::size_t current_ = 0;
    int unnamed_ = 0;
    Factory factory_;
};

} // namespace tessaran::console
