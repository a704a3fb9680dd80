// A password that does not stand on the command line, where everybody on the machine can read it. Main thread.
#pragma once

#include <string>

inline constexpr std::size_t MAX_PASSWORD = 255; // bytes

// Asks on the terminal, without showing what is typed. False without a terminal.
bool AskPassword(const std::string& prompt, std::string& password, std::string& error);

// The first line that the open file descriptor gives.
bool ReadPassword(int descriptor, std::string& password, std::string& error);
