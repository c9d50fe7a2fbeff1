#pragma once

// The view, and system variables that commands set and read.

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

// A closer view of a part of the plan, world coordinates, until it goes.
class ZoomedTo {
  public:
    ZoomedTo(Host& host, const Box2& world);
    ZoomedTo(const ZoomedTo&) = delete;
    ZoomedTo& operator=(const ZoomedTo&) = delete;
    ~ZoomedTo();

  private:
    Host& host_;
};

} // namespace tessaran::host
