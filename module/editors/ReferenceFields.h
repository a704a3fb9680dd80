// The fields of the editor of references to objects and properties: their texts, and what these say. Pure functions,
// any thread.
#pragma once

#include "api/bacnet/Types.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

inline constexpr BACSTAC_OBJECT_TYPE LAST_LISTED_TYPE = 37;      // offered by name
inline constexpr BACSTAC_OBJECT_TYPE LAST_OBJECT_TYPE = 1023;    // 10 bits
inline constexpr BACSTAC_PROPERTY_ID LAST_PROPERTY_ID = 4194303; // 22 bits

// Which parts the reference has; the others are neither shown nor changed.
struct ReferenceGroups {
    bool device;
    bool object;
    bool property;
};

// What the fields hold, UTF-8. Of a drop-down list: the number of its item, or what was typed there.
struct ReferenceTexts {
    std::string device; // empty: none
    std::string objectType;
    std::string instance;
    std::string property;
    std::string arrayIndex; // empty: the whole property
};

enum class ReferenceField { device, objectType, instance, property, arrayIndex };

struct ReferenceFault {
    ReferenceField field;
    const char* message;
};

ReferenceTexts ShowReference(const BACSTAC_DEV_OBJ_PROP_REF& value);

// The texts into the value, which stays as it was when there is a fault: that of the first bad field. A text that is
// what the value shows leaves its part alone, whatever stands there.
std::optional<ReferenceFault> StoreReference(const ReferenceTexts& texts, const ReferenceGroups& groups,
                                             BACSTAC_DEV_OBJ_PROP_REF& value);

// The standard properties of an object type, ascending; of a type without any, all that have a name.
std::vector<BACSTAC_PROPERTY_ID> PropertiesOf(BACSTAC_OBJECT_TYPE type);
