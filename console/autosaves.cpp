#include "console/autosaves.h"

#include "console/drawing_files.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::console {

std::filesystem::path Autosaves::copyOf(const Document& document) const {
    const std::filesystem::path& path = document.database->path();
    if (!path.empty())
        return drawing::autosavePath(path);
    return folder_.empty() ? folder_ : drawing::autosavePath(folder_ / (document.name + ".dxf"));
}

void Autosaves::offer(const Workspace& workspace) {
    const auto& documents = workspace.documents();
    std::erase_if(copies_, [&](const auto& entry) {
        return std::none_of(documents.begin(), documents.end(), [&](const auto& document) {
            return document->database.get() == entry.first;
        });
    });
    for (const auto& document : documents) {
        const std::filesystem::path copy = copyOf(*document);
        if (copy.empty())
            continue;
        auto& autosave = copies_[document->database.get()];
        if (!autosave)
            autosave = std::make_unique<drawing::Autosave>(saveCopy, interval_);
        // A copy that cannot be written must not stand in the way of the work.
        static_cast<void>(autosave->offer(*document->database, copy));
    }
}

std::string Autosaves::keep(const Workspace& workspace) {
    std::string told;
    for (const auto& document : workspace.documents()) {
        if (!document->database->modified())
            continue;
        const std::filesystem::path copy = copyOf(*document);
        const auto saved = copy.empty()
                               ? base::Result<void>(base::stateError("there is no folder for it"))
                               : saveCopy(*document->database, copy);
        told += saved ? fmt::format("A copy of {} is kept: {}\n", document->name, copy.string())
                      : fmt::format("No copy of {} could be kept: {}\n", document->name,
                                    saved.error().message());
    }
    for (auto& [database, autosave] : copies_)
        if (database->modified())
            autosave->keep();
    return told;
}

} // namespace tessaran::console
