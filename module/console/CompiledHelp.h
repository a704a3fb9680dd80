// The viewers of compiled help files that take a context.
#pragma once

#include <string>

// Starts one and does not wait. False: this machine has none. On the console thread.
bool OpenCompiledHelp(const std::string& path, int context);
