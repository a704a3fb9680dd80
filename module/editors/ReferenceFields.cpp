#include "module/editors/ReferenceFields.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "module/editors/NumberChecks.h"

#include <algorithm>
#include <iterator>
#include <ranges>

namespace {

using Reference = BACSTAC_DEV_OBJ_PROP_REF;

constexpr auto WHOLE_PROPERTY = static_cast<std::uint32_t>(BACSTAC_NO_INDEX);

bool StoreNumber(const std::string& text, std::uint32_t most, std::uint32_t& number) {
    const auto checked = CheckUnsigned(text, 0, most);
    if (checked.message)
        return false;
    number = checked.value;
    return true;
}

bool StoreDevice(const std::string& text, Reference& value) {
    BACSTAC_OBJECT_ID device{OBJ_DEVICE, 0};
    if (!text.empty() && !StoreNumber(text, BACSTAC_MAX_INSTANCE, device.Instance))
        return false;
    value.DevicePresent = text.empty() ? 0 : 1;
    value.DeviceId = device;
    return true;
}

bool StoreObjectType(const std::string& text, Reference& value) {
    return StoreNumber(text, LAST_OBJECT_TYPE, value.ObjectId.Type);
}

bool StoreInstance(const std::string& text, Reference& value) {
    return StoreNumber(text, BACSTAC_MAX_INSTANCE, value.ObjectId.Instance);
}

bool StoreProperty(const std::string& text, Reference& value) {
    return StoreNumber(text, LAST_PROPERTY_ID, value.Property);
}

bool StoreArrayIndex(const std::string& text, Reference& value) {
    if (!text.empty())
        return StoreNumber(text, UINT32_MAX, value.ArrayIndex);
    value.ArrayIndex = WHOLE_PROPERTY;
    return true;
}

struct Field {
    bool ReferenceGroups::*group;
    std::string ReferenceTexts::*text;
    bool (*store)(const std::string& text, Reference& value);
    ReferenceFault fault;
};

// In the order in which they are looked at.
constexpr Field FIELDS[] = {
    {&ReferenceGroups::device,
     &ReferenceTexts::device,
     StoreDevice,
     {ReferenceField::device, "Invalid instance number"}},
    {&ReferenceGroups::object,
     &ReferenceTexts::objectType,
     StoreObjectType,
     {ReferenceField::objectType, "Invalid object type"}},
    {&ReferenceGroups::object,
     &ReferenceTexts::instance,
     StoreInstance,
     {ReferenceField::instance, "Invalid instance number"}},
    {&ReferenceGroups::property,
     &ReferenceTexts::property,
     StoreProperty,
     {ReferenceField::property, "Invalid property"}},
    {&ReferenceGroups::property,
     &ReferenceTexts::arrayIndex,
     StoreArrayIndex,
     {ReferenceField::arrayIndex, "Invalid array index"}},
};

constexpr BACSTAC_PROPERTY_ID FIRST_PROPRIETARY = 512;

// Properties without a name are called by their number.
bool HasName(BACSTAC_PROPERTY_ID property) {
    return CBACnetDir::GetStdPropName(property) != std::to_string(property);
}

} // namespace

ReferenceTexts ShowReference(const Reference& value) {
    return {value.DevicePresent != 0 ? std::to_string(value.DeviceId.Instance) : std::string(),
            std::to_string(value.ObjectId.Type), std::to_string(value.ObjectId.Instance),
            std::to_string(value.Property),
            value.ArrayIndex != WHOLE_PROPERTY ? std::to_string(value.ArrayIndex) : std::string()};
}

std::optional<ReferenceFault> StoreReference(const ReferenceTexts& texts, const ReferenceGroups& groups,
                                             Reference& value) {
    const ReferenceTexts shown = ShowReference(value);
    Reference stored = value;
    for (const Field& field : FIELDS)
        if (groups.*field.group && texts.*field.text != shown.*field.text && !field.store(texts.*field.text, stored))
            return field.fault;
    value = stored;
    return std::nullopt;
}

std::vector<BACSTAC_PROPERTY_ID> PropertiesOf(BACSTAC_OBJECT_TYPE type) {
    const BACSTAC_PROPERTY_ID* const own = CBacGeneral::GetObjectPropList(type);
    std::vector<BACSTAC_PROPERTY_ID> properties(own, own + CBacGeneral::GetObjectPropsNumber(type));
    if (properties.empty())
        std::ranges::copy_if(std::views::iota(BACSTAC_PROPERTY_ID{0}, FIRST_PROPRIETARY),
                             std::back_inserter(properties), HasName);
    std::ranges::sort(properties);
    return properties;
}
