#pragma once

// What the drawing refuses, whoever asks: values that other programs would refuse in its file.

#include "base/result.h"
#include "drawing/records.h"

#include <string_view>
#include <vector>

namespace tessaran::drawing {

// Names of layers, groups, dictionaries, applications: 1 to 255 bytes of UTF-8 without control
// characters, blanks at the ends, and < > / \ " : ; ? * | , = `
bool isValidSymbolName(std::string_view name);

bool isFinite(const host::EntityGeometry& geometry);

// For entities made here: finite, and enough of it to be one (a vertex, a radius, a loop).
base::Result<void> checkGeometry(const host::EntityGeometry& geometry);

// For extended data made here: known group codes with fitting values, texts of at most 255 bytes,
// braces in pairs.
base::Result<void> checkXData(const std::vector<host::XDataItem>& items);

// Bytes that an entity's extended data takes in a drawing file, held against kXDataLimit.
inline constexpr std::size_t kXDataLimit = 16383;
std::size_t xdataSize(const std::vector<ApplicationData>& data);

} // namespace tessaran::drawing
