// The stack's settings as the configuration file and the station's kept identity give them.
#pragma once

#include "platform/stack/client/ClientConfig.h"

#include <string>

struct Config;
class CStationStore;

// folder: the data folder, for the recording of the traffic.
bacnet::ClientConfig StackConfigOf(const Config& config, const std::string& folder, CStationStore& station);
