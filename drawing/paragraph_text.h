#pragma once

// Paragraph texts (MTEXT) as plain lines: format codes taken out, broken where the text breaks, and
// where a line would be wider than the paragraph.

#include <string>
#include <string_view>
#include <vector>

namespace tessaran::drawing {

// `text` in UTF-8. A line takes at most `widest` characters (0: any number) unless one word alone
// is longer. Format codes that are cut off end the text.
std::vector<std::string> linesOfParagraph(std::string_view text, std::size_t widest);

} // namespace tessaran::drawing
