// The commands that talk to BACnet devices, as the command line has them. They run in the instance on the data folder,
// which has the ports; where none runs they open the ports of the configuration themselves.
#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

// Adds the commands. run is called with what the command line that is being parsed asks for; it gives the exit code.
void AddBacnetCommands(CLI::App& app, const std::string& footer, std::function<int()>& run);
