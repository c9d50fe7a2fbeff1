#pragma once

namespace tessaran::app {

// The host's application messages, in its numbering.
enum class Message {
    null = 0,
    initialise = 1,
    unload = 2,
    loadDrawing = 3,
    unloadDrawing = 4,
    invokeFunction = 5,
    configure = 6,
    end = 7,
    quit = 8,
    save = 9,
    dependency = 10,
    noDependency = 11,
    oleUnload = 12,
    preQuit = 13,
    initialiseDialog = 14,
    endDialog = 15,
};
inline constexpr int kLastMessage = 15;

inline constexpr int kReturnOk = 0;
inline constexpr int kReturnError = 3;

} // namespace tessaran::app
