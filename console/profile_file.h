#pragma once

// The application profile as a text file of sections, "[Settings]" over "X=10" lines. Read once,
// written whole or not at all after each change. A file that cannot be written costs only the
// memory of the settings, never a command.

#include "base/result.h"
#include "host/host.h"

#include <filesystem>
#include <map>
#include <string>
#include <utility>

namespace tessaran::console {

// Where the user's configuration lives: $XDG_CONFIG_HOME/tessaran, else ~/.config/tessaran; empty
// when there is neither.
std::filesystem::path configurationFolder();
// $TESSARAN_PROFILE, else profile.ini in the configuration folder.
std::filesystem::path profilePath();

class ProfileFile final : public host::Profile {
  public:
    // An empty path keeps the settings in memory.
    explicit ProfileFile(std::filesystem::path path);

    std::optional<std::string> read(std::string_view section, std::string_view key) const override;
    void write(const std::string& section, const std::string& key,
               const std::string& text) override;

    // Why the last write failed, if it did.
    const std::optional<base::Error>& trouble() const { return trouble_; }

  private:
    void parse(std::string_view text);
    std::string content() const;

    std::filesystem::path path_;
    std::map<std::pair<std::string, std::string>, std::string> entries_;
    std::optional<base::Error> trouble_;
};

} // namespace tessaran::console
