// Records of log buffers as JSON: {"time":..,"kind":..,"value":..,"status":..}. Any thread.
#pragma once

#include "api/bacnet/Types.h"

#include <nlohmann/json_fwd.hpp>

// One object for each record that the contents hold, in their order. Contents of another type than a log's give
// {"value":..,"text":..} for each element.
nlohmann::ordered_json LogRecords(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType,
                                  BACSTAC_PROPERTY_ID property);
