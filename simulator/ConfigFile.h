// Reads the description of a simulation from TOML; docs/simulator.md tells its keys.
#pragma once

#include "simulator/Config.h"

#include <string>
#include <string_view>

namespace sim {

// On failure errors holds a line "FILE:LINE: what is wrong" for each fault, and config is left alone. Unknown keys are
// faults, too, so that a misspelt one does not go unseen.
bool LoadConfig(const std::string& path, SimulatorConfig& config, std::string& errors);

// The same for text that stands in for the file called name.
bool ParseConfig(std::string_view text, const std::string& name, SimulatorConfig& config, std::string& errors);

} // namespace sim
