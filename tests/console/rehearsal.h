#pragma once

// Commands made for testing the interpreter: every kind of prompt, question and dialog once.

#include "console/console_host.h"

namespace tessaran::test {

// ASK       one prompt of every kind, its result printed
// SELECT    selections until Enter, the handles printed
// QUESTIONS one question of every stake and set of buttons
// FILES     a file dialog to open and one to save "out.txt"; a chosen one is written
// PAGES     a dialog of two pages, of every kind of control
// STUBBORN  a prompt that takes no Enter, then one that takes it
// LOOP      asks two prompts in turns until Escape
// WORK      polls the user break ten times
// THROWS    draws a point and ends by an exception
void addRehearsalCommands(console::ConsoleHost& host);

} // namespace tessaran::test
