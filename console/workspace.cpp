#include "console/workspace.h"

#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::console {
namespace {

bool isUntouched(const Document& document) {
    return document.database->path().empty() && document.database->entityCount() == 0 &&
           !document.database->modified() && document.database->undoNames().empty();
}

} // namespace

Workspace::Workspace() {
    addEmpty();
}

// Two drawings of one file name in different folders are told apart by a number.
std::string Workspace::freeName(const std::string& wanted) const {
    const auto taken = [&](const std::string& name) {
        return std::any_of(documents_.begin(), documents_.end(), [&](const auto& document) {
            return base::equalsIgnoringCase(document->name, name);
        });
    };
    std::string name = wanted;
    for (int k = 2; taken(name); ++k)
        name = fmt::format("{} ({})", wanted, k);
    return name;
}

Document& Workspace::append(std::unique_ptr<Document> document) {
    documents_.push_back(std::move(document));
    current_ = documents_.size() - 1;
    return current();
}

Document& Workspace::addEmpty() {
    auto document = std::make_unique<Document>();
    document->name = fmt::format("Drawing{}", ++unnamed_);
    document->database = std::make_unique<drawing::Database>();
    return append(std::move(document));
}

Document& Workspace::add(std::unique_ptr<drawing::Database> database) {
    const bool replacesFirst = documents_.size() == 1 && isUntouched(current());
    auto document = std::make_unique<Document>();
    document->name = database->path().empty() ? fmt::format("Drawing{}", ++unnamed_)
                                              : freeName(database->path().filename().string());
    document->database = std::move(database);
    if (!replacesFirst)
        return append(std::move(document));
    documents_.front() = std::move(document);
    return current();
}

bool Workspace::switchTo(std::string_view name) {
    for (std::size_t i = 0; i < documents_.size(); ++i) {
        if (base::equalsIgnoringCase(documents_[i]->name, name)) {
            current_ = i;
            return true;
        }
    }
    return false;
}

void Workspace::closeCurrent() {
    documents_.erase(documents_.begin() + static_cast<std::ptrdiff_t>(current_));
    if (documents_.empty())
        addEmpty();
    current_ = std::min(current_, documents_.size() - 1);
}

void Workspace::rename() {
    Document& document = current();
    document.name.clear();
    document.name = freeName(document.database->path().filename().string());
}

void Workspace::setFactory(Factory factory) {
    factory_ = std::move(factory);
    if (!factory_)
        for (const auto& document : documents_)
            document->data.reset();
}

host::DocumentData* Workspace::data() {
    if (!current().data && factory_)
        current().data = factory_();
    return current().data.get();
}

} // namespace tessaran::console
