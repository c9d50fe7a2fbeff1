#include "host/services_records.h"

#include "host/host.h"

namespace tessaran::host {
namespace {

using State = Drawing::RecordState;

// Why a write failed, told by what stood in the drawing before it.
const char* writeFailure(State before) {
    switch (before) {
    case State::noDictionary:
        return "\nCannot add our dictionary in the AutoCAD NOD!";
    case State::notADictionary:
        return "\nEntry found in the NOD, but it is not a dictionary.";
    case State::noEntry:
        return "\nCannot open the object for write.";
    case State::read:
    case State::notARecord:
        return "\nEntry cannot be opened for write.";
    }
    return "";
}

const char* readFailure(State state) {
    switch (state) {
    case State::noDictionary:
        return "\nCannot open the object for read.";
    case State::notADictionary:
        return "\nEntry found in the NOD, but it is not a dictionary.";
    case State::noEntry:
        return "\nEntry cannot be opened for read.";
    case State::notARecord:
        return "\nEntry found in the NOD, but it is not a xRecord.";
    case State::read:
        break;
    }
    return "";
}

} // namespace

bool writeStoredRecord(Host& host, const std::string& key, const std::vector<std::string>& texts) {
    const State before = host.drawing().readRecord(kSystemDictionary, key).state;
    if (before != State::notADictionary &&
        host.drawing().writeRecord(kSystemDictionary, key, texts))
        return true;
    host.print(writeFailure(before));
    return false;
}

std::optional<std::vector<std::string>> readStoredRecord(Host& host, const std::string& key) {
    Drawing::Record record = host.drawing().readRecord(kSystemDictionary, key);
    if (record.state == State::read)
        return std::move(record.texts);
    host.print(readFailure(record.state));
    return std::nullopt;
}

} // namespace tessaran::host
