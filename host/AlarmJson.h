// Alarm definitions and event filters as JSON, for the driver's own files. Include only in sources.
#pragma once

#include "api/driver/EventFilter.h"

#include <nlohmann/json_fwd.hpp>

// Members that the JSON lacks, or has with another kind, keep what the record holds.
void to_json(nlohmann::json& json, const AlarmDefinition& alarm);
void from_json(const nlohmann::json& json, AlarmDefinition& alarm);
void to_json(nlohmann::json& json, const CEventFilter& filter);
void from_json(const nlohmann::json& json, CEventFilter& filter);
