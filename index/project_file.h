#pragma once

// Project files (".prj"): the individual indexes that a composite index is made of. Text, one value
// a line: the number of entries, then four lines an entry (factor name, grid file, description,
// weighting); lines are separated by single line feeds, none follows the last value.

#include "base/result.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::index {

struct ProjectEntry {
    std::string name; // unique in a project; capitals count
    std::string gridFile;
    std::string description;
    std::string weighting; // a number as it was typed

    friend bool operator==(const ProjectEntry&, const ProjectEntry&) = default;
};

// Reads as many whole entries as the file holds, at most as many as it says. CR LF is read too.
std::vector<ProjectEntry> parseProject(std::string_view text);

// Refuses a value with a line break in it, which the format cannot hold.
base::Result<std::string> projectText(const std::vector<ProjectEntry>& entries);

base::Result<std::vector<ProjectEntry>> readProject(const std::filesystem::path& file);
// Written whole or not at all.
base::Result<void> writeProject(const std::filesystem::path& file,
                                const std::vector<ProjectEntry>& entries);

// Where an entry's grid is: the path as written when something is there, else from the project's
// folder when something is there, else as written.
std::string gridPath(const std::string& gridFile, const std::string& projectFile);

} // namespace tessaran::index
