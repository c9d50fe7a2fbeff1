#pragma once

// The system's own dictionary of stored text records in the drawing.

#include <optional>
#include <string>
#include <vector>

namespace tessaran::host {

class Host;

inline constexpr const char* kSystemDictionary = "ZELK_STABILITY_DICTIONARY";

// Writes a record, replacing an earlier one of the key. Tells why at the command line and gives
// false when that cannot be done.
bool writeStoredRecord(Host& host, const std::string& key, const std::vector<std::string>& texts);

// Nothing, told at the command line, when there is no such record.
std::optional<std::vector<std::string>> readStoredRecord(Host& host, const std::string& key);

} // namespace tessaran::host
