// The command that makes a user who may open the console, as it can be pasted into a terminal of this machine.
#pragma once

#include <string>

// program is a path or a name that the shell finds; folder is the data folder, empty for the one that the program takes
// by itself.
std::string FirstUserCommand(const std::string& program, const std::string& folder, const std::string& name);

// What a shell starts this very program by: its bare name where the search path leads to it, its path otherwise. There
// is an application object.
std::string NameForShell();
