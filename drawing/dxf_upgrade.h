#pragma once

// Whole drawings out of old and poor files: release 12 and earlier, and files of later releases
// that lack what a drawing must have (handles, tables, block records, dictionaries).

#include "base/result.h"
#include "drawing/dxf_source.h"

#include <string>

namespace tessaran::drawing::dxf {

// What makes the file one that has to be completed, as one sentence; empty when it is whole.
std::string whatIsMissing(const SourceFile& file);

// The file's content as a whole drawing: release 2000 for files of release 12 and earlier, else of
// its own release. Handles stay; everything gets an owner, its class markers and, where it had
// none, a handle. Text stays in the file's code page.
base::Result<std::string> upgraded(const SourceFile& file);

} // namespace tessaran::drawing::dxf
