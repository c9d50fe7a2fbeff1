#pragma once

// A script on a drawing from beginning to end, as `tessaran run` does it.

#include "console/session.h"

#include <filesystem>
#include <optional>
#include <string>

namespace tessaran::console {

// How a run ended, as exit status and the lines for standard error. A command that had to end the
// program gives its own status; the lines tell of the copies that were kept.
struct ScriptOutcome {
    static constexpr int kUsed = 0;      // every line was used
    static constexpr int kLineError = 1; // a line could not be used, or --save could not be written
    static constexpr int kUnusable = 2;  // the drawing could not be read

    int status = kUsed;
    std::string error{};
};

// Keeps what the script leaves behind: the host with its open drawings.
class ScriptRunner {
  public:
    ScriptRunner(Transcript& transcript, const Session::Options& options)
        : transcript_(transcript), configuration_(options.configuration),
          session_(source_, transcript, options) {}

    Session& session() { return session_; }

    // The drawing that the script starts on; without one, an empty drawing.
    ScriptOutcome open(const std::filesystem::path& drawing);
    // Runs the lines once; `name` stands in errors. The drawing that is current at the end is
    // written to `save` when every line was used.
    ScriptOutcome run(const std::string& name, const std::string& text,
                      const std::optional<std::filesystem::path>& save);

  private:
    ScriptSource source_;
    Transcript& transcript_;
    std::filesystem::path configuration_;
    Session session_;
};

} // namespace tessaran::console
