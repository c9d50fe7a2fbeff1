#pragma once

// Where the lines come from: a script, a terminal, a test.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::console {

class LineSource {
  public:
    virtual ~LineSource() = default;
    // The next line without its line break; nothing at the end. `prompt` is what is being asked.
    virtual std::optional<std::string> read(const std::string& prompt) = 0;
    // Whether a person types: a line in error is told and asked for again.
    virtual bool interactive() const { return false; }
    // Named in errors: "plan.scr".
    virtual std::string name() const = 0;
};

// A script's text, LF or CR LF, with or without a UTF-8 mark.
class ScriptSource final : public LineSource {
  public:
    ScriptSource() = default;
    ScriptSource(std::string name, std::string_view text) { load(std::move(name), text); }
    void load(std::string name, std::string_view text);

    std::optional<std::string> read(const std::string& prompt) override;
    std::string name() const override { return name_; }

  private:
    std::string name_;
    std::vector<std::string> lines_;
    std::size_t next_ = 0;
};

} // namespace tessaran::console
