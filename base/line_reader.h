#pragma once

// A text file line by line in bounded memory, whatever its size.

#include "base/result.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

namespace tessaran::base {

class LineReader {
  public:
    // Longer lines are given cut off at this length.
    static constexpr std::size_t kLongestLine = std::size_t{1} << 16;

    // Fails as readFile() does.
    static Result<LineReader> open(const std::filesystem::path& path);

    LineReader(LineReader&&) noexcept;
    LineReader& operator=(LineReader&&) noexcept;
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;
    ~LineReader();

    // The next line without its end (LF or CR LF) and, on the first line, without a UTF-8 mark;
    // valid until the next call. False at the end of the file, or where it cannot be read further.
    bool next(std::string_view& line);

    // Passes over so many lines; false where the file has fewer.
    bool skip(long long lines);

    // Whether the line given last was cut off.
    bool cutOff() const;
    // What kept the file from being read to its end.
    Result<void> status() const;
    std::size_t fileSize() const; // of a regular file when it was opened, else 0

  private:
    struct State;
    explicit LineReader(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

// The lines of a text in memory, taken off its front, without their ends (LF or CR LF).
class TextLines {
  public:
    explicit TextLines(std::string_view text) : rest_(text) {}

    // Nothing once the text has ended; a line feed at its very end begins no further line.
    std::optional<std::string_view> next();

  private:
    std::string_view rest_;
};

} // namespace tessaran::base
