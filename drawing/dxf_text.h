#pragma once

// Texts of a DXF file: code pages up to release 2002 ... 2006, UTF-8 from release 2007 (AC1021) on,
// with escapes for what the encoding or the line layout cannot hold. The system sees UTF-8.

#include <memory>
#include <string>
#include <string_view>

namespace tessaran::drawing::dxf {

class TextCodec {
  public:
    // `codePage` as the header names it: "ANSI_1252", "ansi_932", "dos850", "MAC-ROMAN". Bytes of
    // an unknown one stand for the characters of the same numbers, so that they come back as they
    // were.
    TextCodec();
    TextCodec(std::string_view version, std::string_view codePage);

    // To UTF-8, with "\U+XXXX", "\M+nXXXX" and caret escapes ("^J" is a line end, "^ " a caret)
    // resolved.
    std::string decoded(std::string_view fileText) const;
    // The other way: what the encoding lacks becomes "\U+XXXX", control characters caret escapes.
    std::string encoded(std::string_view utf8) const;

    bool utf8() const { return page_ == nullptr && utf8_; }

  private:
    class Page; // converts between a code page and UTF-8

    std::string toUtf8(std::string_view bytes) const;

    bool utf8_ = true;
    std::shared_ptr<Page> page_;
};

} // namespace tessaran::drawing::dxf
