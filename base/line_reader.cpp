#include "base/line_reader.h"

#include "base/file.h"

#include <string>
#include <utility>

namespace tessaran::base {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t kChunk = std::size_t{1} << 18;

} // namespace

struct LineReader::State {
    InputFile file;
    std::string chunk;
    std::size_t at = 0; // in the chunk
    std::string line;   // pieces of a line that runs over the chunk's end
    bool cut = false;
    bool first = true;
    Result<void> failure;

    explicit State(InputFile input) : file(std::move(input)) {}

    bool fill() {
        at = 0;
        chunk.resize(kChunk);
        const Result<std::size_t> got = file.read(chunk.data(), chunk.size());
        chunk.resize(got ? *got : 0);
        if (!got)
            failure = got.error();
        return !chunk.empty();
    }

    void append(std::string_view piece) {
        const std::size_t room = kLongestLine - line.size();
        cut = cut || piece.size() > room;
        line.append(piece.substr(0, room));
    }
};

LineReader::LineReader(std::unique_ptr<State> state) : state_(std::move(state)) {}
LineReader::LineReader(LineReader&&) noexcept = default;
LineReader& LineReader::operator=(LineReader&&) noexcept = default;
LineReader::~LineReader() = default;

Result<LineReader> LineReader::open(const std::filesystem::path& path) {
    Result<InputFile> file = InputFile::open(path);
    if (!file)
        return file.error();
    return LineReader(std::make_unique<State>(std::move(file).value()));
}

bool LineReader::next(std::string_view& line) {
    State& s = *state_;
    s.line.clear();
    s.cut = false;
    bool any = false;
    for (bool ended = false; !ended;) {
        if (s.at >= s.chunk.size() && !s.fill())
            break;
        any = true;
        const std::string_view rest = std::string_view(s.chunk).substr(s.at);
        const std::size_t end = rest.find('\n');
        ended = end != std::string_view::npos;
        s.append(rest.substr(0, end));
        s.at += ended ? end + 1 : rest.size();
    }
    if (!any || !s.failure)
        return false;
    line = s.line;
    if (s.first && line.starts_with(kUtf8Mark))
        line.remove_prefix(kUtf8Mark.size());
    s.first = false;
    if (line.ends_with('\r') && !s.cut)
        line.remove_suffix(1);
    return true;
}

bool LineReader::skip(long long lines) {
    State& s = *state_;
    while (lines > 0) {
        if (s.at >= s.chunk.size() && !s.fill())
            return false;
        const std::size_t end = s.chunk.find('\n', s.at);
        if (end == std::string::npos) {
            s.at = s.chunk.size();
            continue;
        }
        s.at = end + 1;
        s.first = false;
        --lines;
    }
    return true;
}

std::size_t LineReader::fileSize() const {
    return state_->file.size();
}

bool LineReader::cutOff() const {
    return state_->cut;
}

Result<void> LineReader::status() const {
    return state_->failure;
}

std::optional<std::string_view> TextLines::next() {
    if (rest_.empty())
        return std::nullopt;
    const std::size_t end = rest_.find('\n');
    std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

} // namespace tessaran::base
