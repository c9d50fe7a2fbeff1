#include "index/project_file.h"

#include "base/file.h"
#include "base/line_reader.h"
#include "base/numbers.h"

#include <array>
#include <optional>

namespace tessaran::index {
namespace {

// The places of an entry's values in the order of the file.
constexpr std::array kFields{&ProjectEntry::name, &ProjectEntry::gridFile,
                             &ProjectEntry::description, &ProjectEntry::weighting};

std::optional<ProjectEntry> nextEntry(base::TextLines& lines) {
    ProjectEntry entry;
    for (const auto field : kFields) {
        const auto line = lines.next();
        if (!line)
            return std::nullopt;
        entry.*field = *line;
    }
    return entry;
}

} // namespace

std::vector<ProjectEntry> parseProject(std::string_view text) {
    base::TextLines lines(text);
    const int count = base::leadingInt(lines.next().value_or(""));
    std::vector<ProjectEntry> entries; // grows with what is there, whatever the count claims
    for (int k = 0; k < count; ++k) {
        std::optional<ProjectEntry> entry = nextEntry(lines);
        if (!entry)
            break;
        entries.push_back(std::move(*entry));
    }
    return entries;
}

base::Result<std::string> projectText(const std::vector<ProjectEntry>& entries) {
    std::string text = std::to_string(entries.size());
    for (const ProjectEntry& entry : entries) {
        for (const auto field : kFields) {
            const std::string& value = entry.*field;
            if (value.find_first_of("\r\n") != std::string::npos)
                return base::formatError("The entry \"" + entry.name +
                                         "\" has a line break in it, which a project cannot hold.");
            text += '\n';
            text += value;
        }
    }
    return text;
}

base::Result<std::vector<ProjectEntry>> readProject(const std::filesystem::path& file) {
    const base::Result<std::string> text = base::readFile(file);
    if (!text)
        return text.error();
    return parseProject(*text);
}

base::Result<void> writeProject(const std::filesystem::path& file,
                                const std::vector<ProjectEntry>& entries) {
    const base::Result<std::string> text = projectText(entries);
    if (!text)
        return text.error();
    return base::writeFile(file, *text);
}

std::string gridPath(const std::string& gridFile, const std::string& projectFile) {
    if (base::fileExists(gridFile))
        return gridFile;
    const std::string beside =
        (std::filesystem::path(projectFile).parent_path() / gridFile).string();
    return base::fileExists(beside) ? beside : gridFile;
}

} // namespace tessaran::index
