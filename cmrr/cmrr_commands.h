#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::cmrr {

// The sequence of dialogs from the rock units of the roof to its rating.
void CMRR(host::Host& host); // NOLINT(readability-identifier-naming): as it is typed

} // namespace tessaran::cmrr
