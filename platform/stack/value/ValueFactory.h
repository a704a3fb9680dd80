// Makes typed values by data type. Any thread.
#pragma once

#include "api/bacnet/PropertyValue.h"

#include <memory>

namespace bacnet {

// A new value of one element; TYPE_ANY and TYPE_ANY_PRIMITIVE make a CPVAnyPrimitive. Null for types without values:
// log records, event notifications, raw strings and unknown numbers.
std::unique_ptr<CPropertyValue> NewValue(BACSTAC_DATA_TYPE type);

// Number of elements that the standard fixes for the array; 0 when it does not.
unsigned FixedArraySize(BACSTAC_PROPERTY_ID property);

} // namespace bacnet
