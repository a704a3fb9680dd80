#include "module/editors/PrimitiveTypes.h"

#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"

namespace {

constexpr BACSTAC_DATA_TYPE PRIMITIVES[] = {
    TYPE_NULL,       TYPE_BOOLEAN,    TYPE_UNSIGNED, TYPE_SIGNED, TYPE_REAL,      TYPE_DOUBLE,       TYPE_STRING,
    TYPE_BIT_STRING, TYPE_ENUMERATED, TYPE_DATE,     TYPE_TIME,   TYPE_OBJECT_ID, TYPE_OCTET_STRING,
};

constexpr BACSTAC_PROPERTY_ID PROP_EVENT_PARAMETERS = 83;

// What the parameters of an extended event may be.
constexpr BACSTAC_DATA_TYPE EXTENDED_PARAMETERS[] = {
    TYPE_NULL,       TYPE_BOOLEAN,    TYPE_UNSIGNED,         TYPE_REAL,         TYPE_DOUBLE,
    TYPE_BIT_STRING, TYPE_ENUMERATED, TYPE_DEV_OBJ_PROP_REF, TYPE_OCTET_STRING,
};

} // namespace

std::span<const BACSTAC_DATA_TYPE> PrimitiveTypes(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property) {
    if (objectType == OBJ_EVENT_ENROLLMENT && property == PROP_EVENT_PARAMETERS)
        return EXTENDED_PARAMETERS;
    return PRIMITIVES;
}

// The property says whether there are several values only where its own are meant: those in a schedule's week are not
// seven each.
std::unique_ptr<CPropertyValue> NewPrimitive(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property,
                                             BACSTAC_DATA_TYPE type) {
    const bool isProperty = CBACnetDir::GetStdPropType(property, objectType) == type;
    return std::unique_ptr<CPropertyValue>(
        CPropertyValue::CreateValue(objectType, property, type, isProperty ? -1 : 1));
}
