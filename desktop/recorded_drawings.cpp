#include "desktop/recorded_drawings.h"

#include <algorithm>

namespace tessaran::desktop {

std::vector<std::filesystem::path> RecordedDrawings::note(const console::Workspace& workspace,
                                                          std::size_t lines) {
    const auto& documents = workspace.documents();
    std::erase_if(starts_, [&](const auto& entry) {
        return std::none_of(documents.begin(), documents.end(), [&](const auto& document) {
            return document->database.get() == entry.first;
        });
    });
    const drawing::Database* current = workspace.current().database.get();
    if (current_ != nullptr && current != current_ && starts_.contains(current))
        moved_ = lines;
    current_ = current;
    std::vector<std::filesystem::path> opened;
    for (const auto& document : documents) {
        const std::filesystem::path& file = document->database->path();
        if (starts_.emplace(document->database.get(), Start{lines, file}).second && !file.empty())
            opened.push_back(file);
    }
    return opened;
}

std::string RecordedDrawings::script(const SessionRecorder& recorder,
                                     const console::Workspace& workspace) const {
    const auto found = starts_.find(workspace.current().database.get());
    const Start start = found == starts_.end() ? Start{} : found->second;
    if (moved_ > start.line)
        return "; tessaran run SCRIPT (it opens its drawings itself)\n" + recorder.script();
    const std::string on =
        start.file.empty() ? std::string{} : " --drawing " + start.file.filename().string();
    return "; tessaran run SCRIPT" + on + "\n" + recorder.script(start.line);
}

} // namespace tessaran::desktop
