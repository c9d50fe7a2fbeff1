#pragma once

// The lowest layer of a DXF file: a sequence of tags, each a group code and a value, in text lines
// or in binary. A tag is a view into the file's bytes, so what was not changed can be written back
// byte for byte.

#include "base/result.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::drawing::dxf {

// How tags are laid out in a file.
struct Format {
    enum class Layout {
        text,
        binary8,  // group codes of one byte (releases up to 12), 255 escapes to two bytes
        binary16, // group codes of two bytes
    };
    Layout layout = Layout::text;
    std::string newline = "\n"; // text: how a line ends

    bool text() const { return layout == Layout::text; }
};

// Bytes in front of the first tag of a binary file.
inline constexpr std::string_view kBinarySignature{"AutoCAD Binary DXF\r\n\x1a\0", 22};

// The layout that a file's first bytes show.
Format detectFormat(std::string_view bytes);

// What kind of value a group code has.
enum class ValueKind { text, real, int16, int32, int64, boolean, chunk };
ValueKind valueKind(int code);

struct Tag {
    int code = 0;
    std::string_view value; // text layout: the line as it stands; binary: the value's bytes
    std::size_t begin = 0;  // the tag's bytes in the file, line ends included
    std::size_t end = 0;
};

// Reads tags one after the other from an offset on.
class TagReader {
  public:
    TagReader(std::string_view bytes, const Format& format, std::size_t offset = 0, long line = 1);

    // False at the end of the bytes and at a malformed tag; error() tells which.
    bool next(Tag& tag);
    const std::optional<base::Error>& error() const { return error_; }
    std::size_t offset() const { return offset_; }
    // 1-based line of the last tag's group code; in binary files the number of the tag.
    long line() const { return line_; }

  private:
    bool nextText(Tag& tag);
    bool nextBinary(Tag& tag);
    bool takeLine(std::string_view& line);
    bool fail(std::string reason);

    std::string_view bytes_;
    Format::Layout layout_;
    char lineEnd_;
    std::size_t offset_;
    long line_;
    long nextLine_;
    std::optional<base::Error> error_;
};

// Values of tags. Nothing when the value is not one of that kind.
class TagValues {
  public:
    explicit TagValues(const Format& format) : text_(format.text()) {}

    std::optional<double> real(const Tag& tag) const;
    std::optional<std::int64_t> integer(const Tag& tag) const;
    std::optional<std::uint64_t> handle(const Tag& tag) const;
    // Without the blanks around it: names of types, markers, variables.
    std::string_view name(const Tag& tag) const;
    // Bytes of a binary chunk (written in hexadecimal in text files).
    std::string chunk(const Tag& tag) const;
    bool text() const { return text_; }

  private:
    bool text_;
};

// A hexadecimal number; nothing when it is none or longer than 64 bits.
std::optional<std::uint64_t> parseHandle(std::string_view text);
std::string handleText(std::uint64_t handle);

// The tags of a span of the file. The span must have been read without an error before.
void readTags(std::string_view bytes, const Format& format, std::size_t begin, std::size_t end,
              std::vector<Tag>& tags);

// Appends tags to a string in a file's layout.
class TagWriter {
  public:
    explicit TagWriter(const Format& format) : format_(format) {}

    // The text must be in the file's encoding already and hold no line end.
    void text(int code, std::string_view value);
    void real(int code, double value);
    void integer(int code, std::int64_t value);
    void handle(int code, std::uint64_t value);
    void chunk(int code, std::string_view bytes);
    void point(int code, double x, double y); // code and code + 10
    void point(int code, double x, double y, double z);
    // Bytes of the same layout, as they stand.
    void raw(std::string_view bytes) { out_ += bytes; }

    const std::string& bytes() const { return out_; }
    std::string take() { return std::move(out_); }
    void clear() { out_.clear(); }

  private:
    void code(int code);
    char* putCode(char* to, int code) const;
    char* putNewline(char* to) const;
    template <class Number>
    void binary(Number value);

    Format format_;
    std::string out_;
};

} // namespace tessaran::drawing::dxf
