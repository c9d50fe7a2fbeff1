#pragma once

// System variables that commands set and read.

#include "host/entity.h"

#include <optional>

namespace tessaran::host {

class Host;

// Whether commands that are called echo their prompts: 0 for a value below 1, else 1.
void setCommandEcho(Host& host, int value);

// Switches the echo off until it goes.
class CommandEchoOff {
  public:
    explicit CommandEchoOff(Host& host);
    CommandEchoOff(const CommandEchoOff&) = delete;
    CommandEchoOff& operator=(const CommandEchoOff&) = delete;
    ~CommandEchoOff();

  private:
    Host& host_;
    int before_ = 1;
};

// The part of the plan that the window shows; nothing when a variable that it follows from cannot
// be read.
std::optional<Box2> viewRectangle(Host& host);

} // namespace tessaran::host
