// Names of enumerated values and of bits (ANSI/ASHRAE 135 clause 21), and which enumeration a property has. All
// enumerations are open: a value without a name is no fault. Constant data, any thread.
#pragma once

#include "api/bacnet/Enums.h"
#include "api/bacnet/Types.h"

#include <cstdint>

namespace bacnet {

// Name of a value or of a bit; null when it has none.
const char* FindEnumName(ENUM_TYPE_ID type, std::uint32_t value);

// Values 0 to EnumCount - 1 have names without a gap. 0 for ENUM_NONE, for an unknown enumeration and for property
// identifiers, which have gaps.
std::uint32_t EnumCount(ENUM_TYPE_ID type);

// Enumeration of a property's values or bits, for this object type, else for the property whatever the type, else
// ENUM_NONE.
ENUM_TYPE_ID FindEnumType(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property);

} // namespace bacnet
