// The tables of the standard as the contract offers them.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "platform/stack/schema/Enumerations.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/schema/PropertyNames.h"
#include "platform/stack/schema/TypeTable.h"
#include "platform/stack/schema/VendorNames.h"
#include "platform/stack/text/NumberText.h"
#include "platform/stack/text/Phrases.h"

#include <algorithm>
#include <string>

using namespace bacnet;

namespace {

const char* ObjectTypeName(BACSTAC_OBJECT_TYPE type) {
    const ObjectTypeInfo* const info = FindObjectType(type);
    return info != nullptr ? info->Name : nullptr;
}

// A name, or the number in decimal; whether it is a name.
bool NameInto(std::string& text, const char* name, std::uint32_t number) {
    text = name != nullptr ? std::string(name) : std::to_string(number);
    return name != nullptr;
}

Commandable CommandabilityOf(BACSTAC_OBJECT_TYPE type) {
    const ObjectTypeInfo* const info = FindObjectType(type);
    return info != nullptr ? info->IsCommandable : Commandable::never;
}

} // namespace

ENUM_TYPE_ID CBacGeneral::GetEnumTypeId(BACSTAC_PROPERTY_ID property, BACSTAC_OBJECT_TYPE objectType) {
    return FindEnumType(objectType, property);
}

unsigned CBacGeneral::GetEnumCount(ENUM_TYPE_ID type) {
    return EnumCount(type);
}

const char* CBacGeneral::GetEnumString(ENUM_TYPE_ID type, unsigned value) {
    return value < EnumCount(type) ? FindEnumName(type, value) : nullptr;
}

unsigned CBacGeneral::GetObjectPropsNumber(BACSTAC_OBJECT_TYPE objectType) {
    return static_cast<unsigned>(ObjectPropertyIds(objectType).size());
}

const BACSTAC_PROPERTY_ID* CBacGeneral::GetObjectPropList(BACSTAC_OBJECT_TYPE objectType) {
    return ObjectPropertyIds(objectType).data();
}

const char* CBACnetDir::GetStdObjTypeName(BACSTAC_OBJECT_TYPE type) {
    const char* const name = ObjectTypeName(type);
    return name != nullptr ? name : NumberText("", type, "");
}

const char* CBACnetDir::GetStdPropName(BACSTAC_PROPERTY_ID property) {
    const char* const name = FindPropertyName(property);
    return name != nullptr ? name : NumberText("", property, "");
}

bool CBACnetDir::GetObjTypeName(BACSTAC_OBJECT_TYPE type, std::string& name, unsigned vendor) {
    const auto names = CurrentVendorNames();
    const std::string* const own = names->ObjectType(vendor, type);
    return NameInto(name, own != nullptr ? own->c_str() : ObjectTypeName(type), type);
}

bool CBACnetDir::GetPropName(BACSTAC_PROPERTY_ID property, std::string& name, unsigned vendor) {
    const auto names = CurrentVendorNames();
    const std::string* const own = names->Property(vendor, property);
    return NameInto(name, own != nullptr ? own->c_str() : FindPropertyName(property), property);
}

const char* CBACnetDir::GetDataTypeString(BACSTAC_DATA_TYPE type) {
    if (type == TYPE_ANY_PRIMITIVE)
        return "any-primitive";
    if (type == TYPE_RAW)
        return "raw";
    if (type < 0)
        return "";
    const TypeInfo* const info = FindType(type);
    return info != nullptr ? info->Name : NumberText("", static_cast<std::uint32_t>(type), "");
}

BACSTAC_DATA_TYPE CBACnetDir::GetStdPropType(BACSTAC_PROPERTY_ID property, BACSTAC_OBJECT_TYPE type) {
    const PropertyInfo* const info = FindProperty(type, property);
    return info != nullptr ? info->Type : TYPE_NONE;
}

int CBACnetDir::GetStdEventType(BACSTAC_OBJECT_TYPE type) {
    const ObjectTypeInfo* const info = FindObjectType(type);
    return info != nullptr ? info->EventType : NO_EVENT_TYPE;
}

bool CBACnetDir::IsObjectTypeAlwaysCommandable(BACSTAC_OBJECT_TYPE type) {
    return CommandabilityOf(type) == Commandable::always;
}

bool CBACnetDir::IsObjectTypePossiblyCommandable(BACSTAC_OBJECT_TYPE type) {
    return CommandabilityOf(type) == Commandable::possibly;
}

void CBACnetDir::AddrToStr(BACSTAC_ADDRESS const& address, std::string& text) {
    char buffer[64];
    TextWriter out(buffer, sizeof buffer);
    PutAddress(out, address);
    text.assign(buffer, static_cast<std::size_t>(out.Length()));
}
