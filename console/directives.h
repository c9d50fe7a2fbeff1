#pragma once

// What was done in a dialog as the line of a script that does it again: the way back of
// dialog_lines.h. Labels are such that the session finds the same control while its page is in
// front.

#include "host/dialog_model.h"
#include "host/dialogs.h"

#include <string>
#include <vector>

namespace tessaran::console {

using Place = host::DialogSession::Place;

std::string setDirective(const host::DialogSession& session, const Place& place,
                         const std::string& text);
std::string checkDirective(const host::DialogSession& session, const Place& place, bool on);
std::string chooseDirective(const host::DialogSession& session, const Place& place);
std::string selectDirective(const host::DialogSession& session, const Place& place,
                            const std::vector<int>& rows);
std::string openDirective(const host::DialogSession& session, const Place& place, int row);
std::string pressDirective(const host::DialogSession& session, const Place& place);
std::string pageDirective(const host::DialogSession& session, int page);
std::string answerDirective(host::Answer answer);
std::string fileDirective(const std::string& path); // empty: the file dialog was cancelled

} // namespace tessaran::console
