#pragma once

// Variables of a drawing file's header as the host's system variables, and back.

#include "drawing/dxf_source.h"
#include "drawing/records.h"
#include "host/host.h"

#include <optional>
#include <string>
#include <string_view>

namespace tessaran::drawing::dxf {

// Without "$", in capitals.
std::string variableName(const HeaderVariable& variable);

std::optional<host::VariableValue> decodeVariable(const SourceFile& file,
                                                  const HeaderVariable& variable);

// The current coordinate system as the header gives it.
Ucs decodeUcs(const SourceFile& file);

// Whether the drawing keeps a variable under its name only. Others say what the drawing keeps in
// another form (current layer, coordinate system), or belong to the file (version, handles).
bool isFreeVariable(std::string_view name);

// The variable's tags again, with another value; the group codes stay. Nothing when the value does
// not fit them.
void writeVariable(TagWriter& writer, const SourceFile& file, const HeaderVariable& variable,
                   const host::VariableValue& value);

} // namespace tessaran::drawing::dxf
