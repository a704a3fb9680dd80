// The types that a value of any primitive type is chosen from, and the value that a choice begins with.
#pragma once

#include "api/bacnet/PropertyValue.h"

#include <memory>
#include <span>

// For a value that belongs to the property.
std::span<const BACSTAC_DATA_TYPE> PrimitiveTypes(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property);
// A new value of the type, with the names that the property has. Null when there is none.
std::unique_ptr<CPropertyValue> NewPrimitive(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property,
                                             BACSTAC_DATA_TYPE type);
