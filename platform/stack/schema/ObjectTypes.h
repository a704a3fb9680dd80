// The standard's object types and their properties (ANSI/ASHRAE 135 clause 12) as data: what each property's value is,
// and what a device must offer. Decoding, the typed values, the directory and the simulator look here. Constant data,
// any thread.
#pragma once

#include "api/bacnet/Types.h"

#include <cstdint>
#include <span>

namespace bacnet {

enum class PropertyShape : std::uint8_t { single, list, array };

struct PropertyInfo {
    BACSTAC_PROPERTY_ID Property;
    // Of the value, or of the elements. TYPE_ANY: primitives whose type the value itself tells (priority arrays,
    // schedules, optional values).
    BACSTAC_DATA_TYPE Type;
    PropertyShape Shape;
    bool Required; // every object of the type has it (conformance codes R and W)
    bool Writable; // every device lets it be written (conformance code W); others may be writable or not
};

enum class Commandable : std::uint8_t {
    never,
    possibly, // when the object has a priority array, which is optional
    always,
};

inline constexpr int NO_EVENT_TYPE = -1;

struct ObjectTypeInfo {
    BACSTAC_OBJECT_TYPE Type;
    const char* Name; // "analog-input"
    int EventType;    // algorithm of its intrinsic reporting (BACnetEventType); NO_EVENT_TYPE: none of its own
    Commandable IsCommandable;
    std::span<const PropertyInfo> Properties; // ascending by number
};

// Null for a number that the standard gives no meaning, proprietary types among them.
const ObjectTypeInfo* FindObjectType(BACSTAC_OBJECT_TYPE type);
// All types, ascending by number.
std::span<const ObjectTypeInfo> AllObjectTypes();

// The property as this object type has it. For a type that does not have it, proprietary ones included: as all types
// that have it agree on (then neither required nor writable). Null when they do not agree and when none has it.
const PropertyInfo* FindProperty(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property);

// Empty for an unknown type.
std::span<const PropertyInfo> ObjectProperties(BACSTAC_OBJECT_TYPE objectType);
// Their numbers alone.
std::span<const BACSTAC_PROPERTY_ID> ObjectPropertyIds(BACSTAC_OBJECT_TYPE objectType);

} // namespace bacnet
