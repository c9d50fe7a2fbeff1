#pragma once

// What the Tab key offers at a terminal.

#include <string>
#include <string_view>
#include <vector>

namespace tessaran::console {

// What could be meant where the cursor stands.
struct CompletionContext {
    std::vector<std::string> commands{}; // at the command prompt
    std::vector<std::string> keywords{}; // of the prompt that waits
    std::vector<std::string> labels{};   // of the dialog that waits
};

struct Completion {
    std::size_t from = 0;                // where the completed part begins in the line
    std::vector<std::string> candidates; // what may stand there, sorted, each once
};

// For the text in front of the cursor: command names, keywords, directives with their labels, and
// file names (of the current folder, or of the folder typed).
Completion complete(std::string_view line, const CompletionContext& context);

// The beginning that all candidates share, in the capitals of the first one.
std::string commonBeginning(const std::vector<std::string>& candidates);

// "[Close/Undo]" and "[No/<Yes>]" of a prompt's message as keywords.
std::vector<std::string> keywordsOf(std::string_view message);

} // namespace tessaran::console
