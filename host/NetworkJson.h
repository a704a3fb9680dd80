// How the stack's networks stand, as JSON for commands. Include only in sources.
#pragma once

#include "platform/stack/client/NetworkAdmin.h"

#include <nlohmann/json_fwd.hpp>

#include <vector>

// A list with one object a port: "number" and "address", what the network's number is by others as "toldNumber" when
// somebody has told it, "enabled" as the console has switched it, and where they apply "foreign" (bbmd, ttl,
// registration) and "bbmd" (table, foreignDevices: lists).
nlohmann::ordered_json PortsJson(const std::vector<bacnet::PortStatus>& ports);

nlohmann::ordered_json TableJson(const std::vector<bacnet::BdtEntry>& entries);
nlohmann::ordered_json TableJson(const std::vector<bacnet::FdtEntry>& entries);
