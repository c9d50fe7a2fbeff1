#pragma once

// Unit data files (".cmr"), lines of comma-separated values; docs/file-formats.md has the layout.
// Grid paths stand in the file relative to its folder.

#include "base/result.h"
#include "cmrr/unit.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace tessaran::cmrr {

inline constexpr int kUnitFileVersion = 1;
inline constexpr const char* kUnitFileExtension = "cmr";
inline constexpr const char* kEmptyLine = "Read an empty line in the input file - DDOFO-1";

// `folder` is the file's. Numbers may be out of the range that the dialogs accept (field_checks.h
// tells); what cannot be meant at all is refused with its line. Ratings that are computed from
// numbers are computed again, so that they fit the data.
base::Result<RoofData> parseUnitText(std::string_view text, const std::filesystem::path& folder);

// Only the units in use. Refuses a path with a line break, which the format cannot hold.
base::Result<std::string> unitText(const RoofData& data, const std::filesystem::path& folder);

base::Result<RoofData> readUnitFile(const std::filesystem::path& file);
// Written whole or not at all.
base::Result<void> writeUnitFile(const std::filesystem::path& file, const RoofData& data);

} // namespace tessaran::cmrr
