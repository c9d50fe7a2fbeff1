#pragma once

// What the readers of the solver's text files have in common: groups of fields in order, the first
// failure kept with its code, message and line.

#include "base/file.h"
#include "stress/field_scanner.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace tessaran::stress {

// A Reading has `code` (0: read), `message` and `line` beside what is read.
template <class Reading>
class FieldReader {
  protected:
    explicit FieldReader(std::string_view text) : scan_(text) {}

    bool fail(int code, std::string message) {
        out_.code = code;
        out_.message = std::move(message);
        out_.line = scan_.lineNumber();
        return false;
    }

    FieldScanner scan_;
    Reading out_;
};

// A file that cannot be opened gives code 1 and `notOpened`.
template <class Reading>
Reading readingOf(const std::filesystem::path& path, Reading (*parse)(std::string_view text),
                  const char* notOpened) {
    const base::Result<std::string> text = base::readFile(path);
    if (text)
        return parse(*text);
    Reading out;
    out.code = 1;
    out.message = notOpened;
    return out;
}

} // namespace tessaran::stress
