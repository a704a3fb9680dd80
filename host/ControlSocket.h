// What both ends of the control socket share: its address and reading or writing with a deadline. Any thread.
#pragma once

#include "base/FileDescriptor.h"

#include <chrono>
#include <string>
#include <string_view>

using ControlClock = std::chrono::steady_clock;

// Calls connect or bind (function) on FOLDER/control.sock, however long the folder's path is: a socket's address has
// room for 107 bytes only, so the folder is named by a descriptor of this process. 0, or -1 with errno.
int WithControlAddress(const std::string& folder, int socket, int (*function)(int, const struct sockaddr*, unsigned));

// Waits until events (POLLIN, POLLOUT) can happen; false when the deadline passes first.
bool WaitFor(int descriptor, short events, ControlClock::time_point deadline);

// False when the peer has gone or the deadline passes.
bool SendAll(int socket, std::string_view bytes, ControlClock::time_point deadline);
