// The commands for the users of a data folder, "bdc user ...". They work on the users' file itself, whether an instance
// runs on the folder or not.
#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

// Adds the commands. run is called with what the command line that is being parsed asks for; it gives the exit code.
void AddUserCommands(CLI::App& app, const std::string& footer, std::function<int()>& run);
