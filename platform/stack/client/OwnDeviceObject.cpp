#include "platform/stack/client/OwnDeviceObject.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/network/Apdu.h"
#include "platform/stack/services/ServiceChoice.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace bacnet {

namespace {

constexpr std::uint32_t protocolVersion = 1;
constexpr std::uint32_t protocolRevision = 14;
constexpr std::uint32_t segmentsAccepted = 65; // "more than 64"

// Property numbers of the device object that nothing else names.
constexpr BACSTAC_PROPERTY_ID propSegmentTimeout = 10;
constexpr BACSTAC_PROPERTY_ID propApduTimeout = 11;
constexpr BACSTAC_PROPERTY_ID propApplicationVersion = 12;
constexpr BACSTAC_PROPERTY_ID propAddressBinding = 30;
constexpr BACSTAC_PROPERTY_ID propFirmwareRevision = 44;
constexpr BACSTAC_PROPERTY_ID propLocation = 58;
constexpr BACSTAC_PROPERTY_ID propModelName = 70;
constexpr BACSTAC_PROPERTY_ID propRetries = 73;
constexpr BACSTAC_PROPERTY_ID propObjectTypes = 96;
constexpr BACSTAC_PROPERTY_ID propServices = 97;
constexpr BACSTAC_PROPERTY_ID propSystemStatus = 112;
constexpr BACSTAC_PROPERTY_ID propVendorName = 121;
constexpr BACSTAC_PROPERTY_ID propDatabaseRevision = 155;
constexpr BACSTAC_PROPERTY_ID propMaxSegments = 167;
constexpr BACSTAC_PROPERTY_ID propPropertyList = 371;

struct Property {
    BACSTAC_PROPERTY_ID Id;
    bool Array;
    bool Required;
};

// Ascending. The first ones of property-list are left out of it, as the standard asks (clause 12.1.1.4.1).
constexpr Property properties[] = {
    {propSegmentTimeout, false, true},     {propApduTimeout, false, true},
    {propApplicationVersion, false, true}, {PROP_DESCRIPTION, false, false},
    {propAddressBinding, false, true},     {propFirmwareRevision, false, true},
    {propLocation, false, false},          {PROP_MAX_APDU_LENGTH_ACCEPTED, false, true},
    {propModelName, false, true},          {propRetries, false, true},
    {PROP_OBJECT_IDENTIFIER, false, true}, {PROP_OBJECT_LIST, true, true},
    {PROP_OBJECT_NAME, false, true},       {PROP_OBJECT_TYPE, false, true},
    {propObjectTypes, false, true},        {propServices, false, true},
    {PROP_PROTOCOL_VERSION, false, true},  {PROP_SEGMENTATION_SUPPORTED, false, true},
    {propSystemStatus, false, true},       {PROP_VENDOR_IDENTIFIER, false, true},
    {propVendorName, false, true},         {PROP_PROTOCOL_REVISION, false, true},
    {propDatabaseRevision, false, true},   {propMaxSegments, false, true},
    {propPropertyList, true, true},
};

bool InPropertyList(BACSTAC_PROPERTY_ID property) {
    return property != PROP_OBJECT_IDENTIFIER && property != PROP_OBJECT_NAME && property != PROP_OBJECT_TYPE &&
           property != propPropertyList;
}

const Property* Find(BACSTAC_PROPERTY_ID id) {
    const auto* const found = std::find_if(std::begin(properties), std::end(properties),
                                           [id](const Property& property) { return property.Id == id; });
    return found == std::end(properties) ? nullptr : found;
}

// Errors (clause 18) that this device gives.
constexpr std::uint32_t classObject = 1;
constexpr std::uint32_t classProperty = 2;
constexpr std::uint32_t codeUnknownObject = 31;
constexpr std::uint32_t codeUnknownProperty = 32;
constexpr std::uint32_t codeInvalidArrayIndex = 42;
constexpr std::uint32_t codeNotAnArray = 50;

BACSTAC_BIT_STRING BitsOf(std::initializer_list<unsigned> set, std::uint32_t count) {
    BACSTAC_BIT_STRING bits{};
    bits.BitCount = count;
    for (const unsigned bit : set)
        bits.Bits[bit / 8] |= static_cast<std::uint8_t>(1U << bit % 8);
    return bits;
}

// BACnetServicesSupported: what DeviceServer executes. 41 bits up to revision 14 and some beyond.
BACSTAC_BIT_STRING ServicesSupported() {
    constexpr unsigned readProperty = 12;
    constexpr unsigned readPropertyMultiple = 14;
    constexpr unsigned iAm = 26;
    constexpr unsigned whoHas = 33;
    constexpr unsigned whoIs = 34;
    return BitsOf({readProperty, readPropertyMultiple, iAm, whoHas, whoIs}, 41);
}

} // namespace

OwnDeviceObject::OwnDeviceObject(OwnDevice device, const TransactionSettings& settings, std::uint32_t revision)
    : m_device(std::move(device)), m_settings(settings), m_revision(revision) {}

BACSTAC_OBJECT_ID OwnDeviceObject::Id() const {
    return {OBJ_DEVICE, m_device.Instance};
}

bool OwnDeviceObject::IsDevice() const {
    return m_device.Instance < BACSTAC_MAX_INSTANCE;
}

bool OwnDeviceObject::IsMeant(const BACSTAC_OBJECT_ID& object) const {
    return object == Id() || (object.Type == OBJ_DEVICE && object.Instance == BACSTAC_MAX_INSTANCE);
}

void OwnDeviceObject::ForEach(BACSTAC_PROPERTY_ID group, const std::function<void(BACSTAC_PROPERTY_ID)>& visit) const {
    for (const Property& property : properties) {
        const bool asked = group == PROP_ALL || property.Required == (group == PROP_REQUIRED);
        if (asked && property.Id != propPropertyList) // which is in none of the groups (clause 15.7.3.1)
            visit(property.Id);
    }
}

OwnDeviceObject::Fault OwnDeviceObject::Write(const PropertyTarget& target, Writer& writer) const {
    if (target.Object != BACSTAC_OBJECT_ID{OBJ_DEVICE, m_device.Instance})
        return {classObject, codeUnknownObject};
    const Property* const property = Find(target.Property);
    if (property == nullptr)
        return {classProperty, codeUnknownProperty};
    if (target.ArrayIndex < 0) {
        WriteElements(target.Property, writer);
        return {};
    }
    if (!property->Array)
        return {classProperty, codeNotAnArray};
    if (target.Property == PROP_OBJECT_LIST) {
        if (target.ArrayIndex > 1)
            return {classProperty, codeInvalidArrayIndex};
        if (target.ArrayIndex == 0)
            writer.Unsigned(1);
        else
            WriteElements(PROP_OBJECT_LIST, writer);
        return {};
    }
    std::int32_t index = 0; // of property-list
    for (const Property& each : properties)
        if (InPropertyList(each.Id) && ++index == target.ArrayIndex)
            writer.Enumerated(each.Id);
    if (target.ArrayIndex == 0)
        writer.Unsigned(static_cast<std::uint32_t>(index));
    return target.ArrayIndex > index ? Fault{classProperty, codeInvalidArrayIndex} : Fault{};
}

void OwnDeviceObject::WriteElements(BACSTAC_PROPERTY_ID property, Writer& writer) const {
    switch (property) {
    case propSegmentTimeout:
        return writer.Unsigned(m_settings.SegmentTimeoutMs);
    case propApduTimeout:
        return writer.Unsigned(m_settings.TimeoutMs);
    case propApplicationVersion:
        return writer.CharacterString(m_device.ApplicationVersion);
    case PROP_DESCRIPTION:
        return writer.CharacterString(m_device.Description);
    case propFirmwareRevision:
        return writer.CharacterString(m_device.FirmwareRevision);
    case propLocation:
        return writer.CharacterString(m_device.Location);
    case PROP_MAX_APDU_LENGTH_ACCEPTED:
        return writer.Unsigned(MAX_APDU_IP);
    case propModelName:
        return writer.CharacterString(m_device.ModelName);
    case propRetries:
        return writer.Unsigned(m_settings.Retries);
    case PROP_OBJECT_IDENTIFIER:
    case PROP_OBJECT_LIST: // the device object is the only one
        return writer.ObjectId({OBJ_DEVICE, m_device.Instance});
    case PROP_OBJECT_NAME:
        return writer.CharacterString(m_device.Name);
    case PROP_OBJECT_TYPE:
        return writer.Enumerated(OBJ_DEVICE);
    case propObjectTypes:
        return writer.BitString(BitsOf({OBJ_DEVICE}, 60));
    case propServices:
        return writer.BitString(ServicesSupported());
    case PROP_PROTOCOL_VERSION:
        return writer.Unsigned(protocolVersion);
    case PROP_SEGMENTATION_SUPPORTED:
        return writer.Enumerated(static_cast<std::uint32_t>(Segmentation::receive));
    case propSystemStatus:
        return writer.Enumerated(0); // operational
    case PROP_VENDOR_IDENTIFIER:
        return writer.Unsigned(m_device.VendorId);
    case propVendorName:
        return writer.CharacterString(m_device.VendorName);
    case PROP_PROTOCOL_REVISION:
        return writer.Unsigned(protocolRevision);
    case propDatabaseRevision:
        return writer.Unsigned(m_revision);
    case propMaxSegments:
        return writer.Unsigned(segmentsAccepted);
    case propPropertyList:
        for (const Property& each : properties)
            if (InPropertyList(each.Id))
                writer.Enumerated(each.Id);
        return;
    default: // device-address-binding: an empty list
        return;
    }
}

} // namespace bacnet
