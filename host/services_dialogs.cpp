#include "host/services_dialogs.h"

#include "host/host.h"

#include <filesystem>

namespace tessaran::host {
namespace {

std::string currentFolder() {
    std::error_code error;
    return std::filesystem::current_path(error).string();
}

std::string startFolder(Host& host) {
    if (!host.memory().fileFolder.empty())
        return host.memory().fileFolder;
    const auto prefix = host.variables().get("DWGPREFIX");
    const std::string* folder = prefix ? std::get_if<std::string>(&*prefix) : nullptr;
    return folder != nullptr && !folder->empty() ? *folder : currentFolder();
}

std::string folderOf(const std::string& file) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(file, error);
    return error ? std::string{} : path.parent_path().string();
}

std::optional<std::string> ask(Host& host, const FileRequest& request) {
    std::optional<std::string> chosen = host.dialogs().chooseFile(request);
    if (chosen)
        host.memory().fileFolder = folderOf(*chosen);
    return chosen;
}

} // namespace

YesNo askYesNo(Host& host, const std::string& text, YesNo byDefault) {
    const char* choices = byDefault == YesNo::yes ? " [No/<Yes>]:" : " [Yes/<No>]:";
    const auto answer = host.prompts().getKeyword("\n" + text + choices, "Yes No");
    switch (answer.status) {
    case PromptStatus::none:
        return byDefault;
    case PromptStatus::ok:
    case PromptStatus::keyword:
        return answer.keyword == "Yes" || answer.value == "Yes" ? YesNo::yes : YesNo::no;
    default:
        return YesNo::cancel;
    }
}

std::optional<Pick> selectObject(Host& host, const std::string& message) {
    const auto pick = host.prompts().pickEntity({message, {}});
    return pick.ok() ? std::optional(pick.value) : std::nullopt;
}

std::optional<Point3> pickPoint(Host& host, const std::string& message) {
    const auto point = host.prompts().getPoint({.message = message, .keywords = {}});
    return point.ok() ? std::optional(point.value) : std::nullopt;
}

bool waitForEnter(Host& host, const std::string& message) {
    host.graphics().redraw();
    const auto answer = host.prompts().getString(message, true);
    return answer.status != PromptStatus::cancel && answer.value.empty();
}

std::string fileFilter(const std::string& extension) {
    return "Select Files (*." + extension + ")|*." + extension + "|All files(*.*)|*.*||";
}

std::optional<std::string> chooseFile(Host& host, FileRequest::Mode mode,
                                      const std::string& extension, const std::string& proposed,
                                      const std::string& title) {
    return ask(host, {mode, title, extension, fileFilter(extension), proposed, startFolder(host)});
}

std::optional<std::string> chooseFile(Host& host, FileRequest request) {
    if (request.folder.empty())
        request.folder = startFolder(host);
    return ask(host, request);
}

std::optional<std::string> chooseFileAt(Host& host, FileRequest::Mode mode,
                                        const std::string& extension, const std::string& path,
                                        const std::string& title) {
    return ask(host, {mode, title, extension, fileFilter(extension), path, {}});
}

} // namespace tessaran::host
