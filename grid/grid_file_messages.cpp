// myGrid's file operations: the pure readers and writers with what the user sees of them.

#include "base/file.h"
#include "base/tolerance.h"
#include "grid/grid_file.h"
#include "host/host.h"

#include <algorithm>
#include <cmath>

namespace tessaran::grid {
namespace {

using base::Result;

constexpr std::string_view kCannotRead = "File could not be opened: ";
constexpr std::string_view kCannotWrite = "File could not be opened to write";

// The message without as many leading characters as the cause's number: the text is shown from an
// offset, which is how the system has always told the cause.
std::string cutByCause(std::string_view text, base::IoCause cause) {
    return std::string(text.substr(std::min(static_cast<std::size_t>(cause), text.size())));
}

// The host's meter, not asked about the cancel key: a read is over in a moment, and each question
// would count as one of the user's polls.
class MeterOnly final : public base::Progress {
  public:
    explicit MeterOnly(base::Progress& meter) : meter_(meter) {}
    void begin(std::string_view text, long lower, long upper) override {
        meter_.begin(text, lower, upper);
    }
    void setPosition(long position) override { meter_.setPosition(position); }
    void end() override { meter_.end(); }
    bool cancelled() override { return false; }

  private:
    base::Progress& meter_;
};

std::optional<std::string> readText(host::Host& host, const std::string& fileName) {
    Result<std::string> text = base::readFile(fileName);
    if (!text) {
        host.dialogs().message(cutByCause(kCannotRead, text.error().cause));
        return std::nullopt;
    }
    return std::move(text).value();
}

// Whether it went well; what did not is shown.
bool shown(host::Host& host, const Result<void>& result) {
    if (!result)
        host.dialogs().message(result.error().text);
    return result.ok();
}

template <class Write>
bool writeWhole(host::Host& host, const std::string& fileName, const Write& write) {
    Result<base::FileWriter> writer = base::FileWriter::create(fileName);
    if (!writer) {
        host.dialogs().message(cutByCause(kCannotWrite, writer.error().cause));
        return false;
    }
    if (!shown(host, write([&](std::string_view part) { writer->write(part); })))
        return false;
    const Result<void> committed = writer->commit();
    if (!committed)
        host.dialogs().message("File could not be written: " + committed.error().message());
    return committed.ok();
}

void tellLostRotation(host::Host& host, const myGrid& grid) {
    if (std::abs(grid.rotation()) > base::kTolerance)
        host.print("\nAttention: Grid files do not hold the rotation of a grid!");
}

} // namespace

bool myGrid::readGrid(host::Host& host, const std::string& fileName, bool loadValues) {
    const std::optional<std::string> text = readText(host, fileName);
    if (!text)
        return false;
    const Result<GridHeader> header = readGridHeader(*text);
    if (!header)
        return shown(host, header.error());
    if (!shown(host, setupFromHeader(*header, text->size(), *this)))
        return false;
    if (!loadValues)
        return true;
    MeterOnly meter(host.meter());
    return readGridValues(*text, *header, *this, meter).ok(); // a cut-off file has no message
}

bool myGrid::readGridDefinition(host::Host& host, const std::string& fileName, bool loadValues) {
    const std::optional<std::string> text = readText(host, fileName);
    if (!text)
        return false;
    const Result<DefinitionHeader> header = readDefinitionHeader(*text);
    if (!header)
        return shown(host, header.error());
    if (!setupFromHeader(*header, *this))
        return false;
    return !loadValues || readDefinitionValues(*text, *header, *this).ok();
}

bool myGrid::writeGrid(host::Host& host, const std::string& fileName) const {
    if (!isDefined()) {
        host.dialogs().message("Grid is not defined!");
        return false;
    }
    base::NoProgress nobody;
    const bool written = writeWhole(
        host, fileName, [&](const TextSink& sink) { return writeGridText(*this, sink, nobody); });
    if (written)
        tellLostRotation(host, *this);
    return written;
}

bool myGrid::writeGridDefinition(host::Host& host, const std::string& fileName) const {
    if (!isDefined()) {
        host.dialogs().message("Grid is not defined!");
        return false;
    }
    const bool written = writeWhole(
        host, fileName, [&](const TextSink& sink) { return writeDefinitionText(*this, sink); });
    if (written)
        tellLostRotation(host, *this);
    return written;
}

bool readAnyGridFile(host::Host& host, const std::string& fileName, bool loadValues, myGrid& grid) {
    switch (gridFileKind(fileName)) {
    case GridFileKind::grid:
        return grid.readGrid(host, fileName, loadValues);
    case GridFileKind::definition:
        return grid.readGridDefinition(host, fileName, loadValues);
    case GridFileKind::unknown:
        break;
    }
    host.dialogs().message("Unknown grid file !");
    return false;
}

} // namespace tessaran::grid
