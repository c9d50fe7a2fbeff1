#include "console/file_answers.h"

#include "base/file.h"

#include <filesystem>

namespace tessaran::console {

using host::FileRequest;
using host::Question;

std::string proposedPath(const FileRequest& request) {
    const std::filesystem::path name(request.proposed);
    if (request.proposed.empty() || request.folder.empty() || name.is_absolute())
        return request.proposed;
    std::error_code error;
    const std::filesystem::path folder(request.folder);
    if (std::filesystem::equivalent(folder, std::filesystem::current_path(error), error))
        return request.proposed;
    return (folder / name).string();
}

std::string completedPath(const FileRequest& request, const std::string& typed) {
    const std::filesystem::path path(typed);
    if (request.extension.empty() || path.has_extension() ||
        (request.mode == FileRequest::Mode::open && base::fileExists(path)))
        return typed;
    return typed + "." + request.extension;
}

Question replaceQuestion(const std::string& path) {
    return {.text = path + " already exists.\nDo you want to replace it?",
            .buttons = host::Buttons::yesNo,
            .stake = Question::Stake::guarded};
}

} // namespace tessaran::console
