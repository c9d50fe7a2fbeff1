#include "console/transcript.h"

namespace tessaran::console {

void Transcript::put(std::string_view text, bool counted, bool isEcho) {
    if (text.empty())
        return;
    for (const Listener& listener : sinks_)
        if (!isEcho || listener.echo == Echo::shown)
            listener.sink(text);
    if (counted)
        sinceCommand_ += text;
    last_ = text.back();
    inLine_ = last_ != '\n';
}

void Transcript::print(std::string_view text) {
    if (text.empty())
        return;
    // The first line break of an output that finds the cursor at a line's beginning is not an
    // empty line: it only asks for a line of its own.
    if (!inLine_ && text.front() == '\n')
        text.remove_prefix(1);
    else if (inLine_ && lineEnded_ && text.front() != '\n')
        put("\n");
    lineEnded_ = false;
    put(text);
}

void Transcript::line(std::string_view text) {
    if (inLine_)
        put("\n");
    put(text);
    lineEnded_ = true;
}

void Transcript::echo(std::string_view text, Place place, bool counted) {
    if (inLine_ && (lineEnded_ || place == Place::ownLine))
        put("\n");
    else if (inLine_ && last_ != ' ' && !text.empty())
        put(" ", counted, true);
    put(text, counted, true);
    lineEnded_ = true;
}

void Transcript::finish() {
    if (inLine_)
        put("\n");
}

} // namespace tessaran::console
