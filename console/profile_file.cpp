#include "console/profile_file.h"

#include "base/file.h"
#include "base/text.h"

#include <cstdlib>

namespace tessaran::console {
namespace {

std::filesystem::path fromEnvironment(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): one thread
    return value != nullptr ? std::filesystem::path(value) : std::filesystem::path();
}

// Line breaks and backslashes of a value, so that a line is a line.
std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        if (c == '\n')
            out += "\\n";
        else if (c == '\r')
            out += "\\r";
        else if (c == '\\')
            out += "\\\\";
        else
            out += c;
    }
    return out;
}

std::string unescaped(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char c = text[++i];
        out += c == 'n' ? '\n' : c == 'r' ? '\r' : c;
    }
    return out;
}

} // namespace

std::filesystem::path configurationFolder() {
    if (const auto xdg = fromEnvironment("XDG_CONFIG_HOME"); !xdg.empty())
        return xdg / "tessaran";
    if (const auto home = fromEnvironment("HOME"); !home.empty())
        return home / ".config" / "tessaran";
    return {};
}

std::filesystem::path profilePath() {
    if (const auto path = fromEnvironment("TESSARAN_PROFILE"); !path.empty())
        return path;
    const std::filesystem::path folder = configurationFolder();
    return folder.empty() ? folder : folder / "profile.ini";
}

ProfileFile::ProfileFile(std::filesystem::path path) : path_(std::move(path)) {
    if (path_.empty())
        return;
    if (const auto text = base::readFile(path_))
        parse(*text);
}

void ProfileFile::parse(std::string_view text) {
    std::string section;
    for (const std::string& line : base::split(text, '\n')) {
        // Blanks at a value's end belong to it; a line break of two characters ends as one.
        const std::string_view entry =
            std::string_view(line).substr(0, line.size() - (line.ends_with('\r') ? 1 : 0));
        const std::string_view head = base::trimmed(entry);
        const std::size_t equals = entry.find('=');
        if (head.starts_with('[') && head.ends_with(']'))
            section = head.substr(1, head.size() - 2);
        else if (equals != std::string_view::npos)
            entries_[{section, std::string(base::trimmed(entry.substr(0, equals)))}] =
                unescaped(entry.substr(equals + 1));
    }
}

std::string ProfileFile::content() const {
    std::string out;
    const std::string* section = nullptr;
    for (const auto& [place, text] : entries_) {
        if (section == nullptr || *section != place.first)
            out += "[" + place.first + "]\n";
        section = &place.first;
        out += place.second + "=" + escaped(text) + "\n";
    }
    return out;
}

std::optional<std::string> ProfileFile::read(std::string_view section, std::string_view key) const {
    const auto found = entries_.find({std::string(section), std::string(key)});
    return found == entries_.end() ? std::nullopt : std::optional(found->second);
}

void ProfileFile::write(const std::string& section, const std::string& key,
                        const std::string& text) {
    std::string& entry = entries_[{section, key}];
    entry = text;
    if (path_.empty())
        return;
    std::error_code ignored;
    std::filesystem::create_directories(path_.parent_path(), ignored);
    const auto written = base::writeFile(path_, content());
    trouble_ = written ? std::nullopt : std::optional(written.error());
}

} // namespace tessaran::console
