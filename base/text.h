#pragma once

// Text helpers. Texts are UTF-8; capitals are compared for ASCII letters only, which is all that
// names, keywords and file endings of the system need.

#include <string>
#include <string_view>
#include <vector>

namespace tessaran::base {

std::string_view trimmed(std::string_view text);
std::string lowered(std::string_view text);
bool equalsIgnoringCase(std::string_view a, std::string_view b);
bool containsIgnoringCase(std::string_view text, std::string_view part);
bool endsWithIgnoringCase(std::string_view text, std::string_view ending);

// The pieces between separators, empty ones included; "" gives one empty piece.
std::vector<std::string> split(std::string_view text, char separator);
std::string joined(const std::vector<std::string>& parts, std::string_view separator);

// The non-empty, trimmed names of a comma-separated list ("A, B" gives A and B).
std::vector<std::string> nameList(std::string_view text);

// The text with the last occurrence of `ending` (any capitals) replaced, and `replacement` appended
// where it does not occur: "a.GRD" gives "a_index.grd", "a" gives "a_index.grd".
std::string withLastReplaced(std::string_view text, std::string_view ending,
                             std::string_view replacement);

// The text with `ending` appended unless it already ends with it, in any capitals.
std::string withEnding(std::string_view text, std::string_view ending);

bool isValidUtf8(std::string_view text);

} // namespace tessaran::base
