// Properties by number and by name (ANSI/ASHRAE 135 clause 21, BACnetPropertyIdentifier). Constant data, any thread.
#pragma once

#include "api/bacnet/Types.h"

#include <optional>
#include <string_view>

namespace bacnet {

// The standard's name, "present-value"; null for a number that has none.
const char* FindPropertyName(BACSTAC_PROPERTY_ID property);

// Number of a property by its name; none when no property is called so.
std::optional<BACSTAC_PROPERTY_ID> FindPropertyId(std::string_view name);

} // namespace bacnet
