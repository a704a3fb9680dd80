#include "platform/stack/client/DeviceServer.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ErrorAnswer.h"
#include "platform/stack/services/ReadPropertyMultiple.h"

#include <algorithm>
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

constexpr std::uint8_t rejectInvalidTag = 4;

BACSTAC_BIT_STRING BitsOf(std::initializer_list<unsigned> set, std::uint32_t count) {
    BACSTAC_BIT_STRING bits{};
    bits.BitCount = count;
    for (const unsigned bit : set)
        bits.Bits[bit / 8] |= static_cast<std::uint8_t>(1U << bit % 8);
    return bits;
}

// BACnetServicesSupported: what we execute. 41 bits up to revision 14 and some beyond.
BACSTAC_BIT_STRING ServicesSupported() {
    constexpr unsigned readProperty = 12;
    constexpr unsigned readPropertyMultiple = 14;
    constexpr unsigned iAm = 26;
    constexpr unsigned whoIs = 34;
    return BitsOf({readProperty, readPropertyMultiple, iAm, whoIs}, 41);
}

// The room for an answer's parameters: what the client accepts, less the header of an unsegmented ComplexACK.
std::size_t AnswerRoom(const RequestIndication& request) {
    constexpr std::size_t header = 3;
    const std::size_t accepted = std::max<std::size_t>(MaxApduFromCode(request.Header.MaxApduCode), 50);
    return std::min<std::size_t>(accepted, MAX_APDU_IP) - header;
}

Apdu AnswerTo(const RequestIndication& request, PduType type) {
    Apdu header;
    header.Type = type;
    header.InvokeId = request.Header.InvokeId;
    header.Service = request.Header.Service;
    header.FromServer = true;
    return header;
}

void Refuse(const RequestIndication& request, PduType type, std::uint8_t reason, TransactionLayer& layer) {
    Apdu header = AnswerTo(request, type);
    header.Reason = reason;
    layer.SendPdu(request.From, header, {});
}

void SendAck(const RequestIndication& request, const Writer& writer, TransactionLayer& layer) {
    if (writer.Overflow())
        Refuse(request, PduType::abort, ABORT_SEGMENTATION_NOT_SUPPORTED, layer);
    else
        layer.SendPdu(request.From, AnswerTo(request, PduType::complex_ack), writer.Written());
}

} // namespace

DeviceServer::DeviceServer(const OwnDevice& device, const TransactionSettings& settings)
    : m_device(device), m_settings(settings) {}

IAm DeviceServer::Announcement() const {
    // We take segmented answers and send none.
    return {m_device.Instance, MAX_APDU_IP, static_cast<std::uint32_t>(Segmentation::receive), m_device.VendorId};
}

void DeviceServer::OnRequest(const RequestIndication& request, TransactionLayer& layer) const {
    const std::uint8_t service = request.Header.Service;
    if (!request.Confirmed) {
        if (service == static_cast<std::uint8_t>(UnconfirmedService::whoIs))
            OnWhoIs(request, layer);
        return;
    }
    if (request.Broadcast) // confirmed requests are never broadcast (clause 5.4.5.1): no answer to a crowd
        return;
    if (IsDevice() && service == static_cast<std::uint8_t>(ConfirmedService::readProperty))
        OnReadProperty(request, layer);
    else if (IsDevice() && service == static_cast<std::uint8_t>(ConfirmedService::readPropertyMultiple))
        OnReadPropertyMultiple(request, layer);
    else
        Refuse(request, PduType::reject, REJECT_UNRECOGNIZED_SERVICE, layer);
}

void DeviceServer::OnWhoIs(const RequestIndication& request, TransactionLayer& layer) const {
    WhoIs question;
    if (!IsDevice() || !DecodeWhoIs(request.Header.Payload, question) || !question.AsksFor(m_device.Instance))
        return;
    std::uint8_t parameters[24];
    Writer writer(parameters);
    EncodeIAm(Announcement(), writer);
    layer.SendUnconfirmed(request.Source, static_cast<std::uint8_t>(UnconfirmedService::iAm), writer.Written());
}

void DeviceServer::OnReadProperty(const RequestIndication& request, TransactionLayer& layer) const {
    PropertyTarget target;
    if (!DecodeReadProperty(request.Header.Payload, target)) {
        Refuse(request, PduType::reject, rejectInvalidTag, layer);
        return;
    }
    std::uint8_t parameters[MAX_APDU_IP];
    Writer writer({parameters, AnswerRoom(request)});
    if (target.Object.Type == OBJ_DEVICE && target.Object.Instance == BACSTAC_MAX_INSTANCE)
        target.Object.Instance = m_device.Instance;
    BeginReadPropertyAck(target, writer);
    const Fault fault = WriteValue(target, writer);
    EndReadPropertyAck(writer);
    if (fault.Code == 0) {
        SendAck(request, writer, layer);
        return;
    }
    writer.Rewind(0);
    EncodeErrorAnswer(ConfirmedService::readProperty, {fault.Class, fault.Code, 0}, writer);
    layer.SendPdu(request.From, AnswerTo(request, PduType::error), writer.Written());
}

void DeviceServer::OnReadPropertyMultiple(const RequestIndication& request, TransactionLayer& layer) const {
    std::uint8_t parameters[MAX_APDU_IP];
    Writer writer({parameters, AnswerRoom(request)});
    RpmAckWriter ack(writer);
    RpmRequestReader reader(request.Header.Payload);
    const auto add = [&](const PropertyTarget& target) {
        ack.BeginValue(target);
        const Fault fault = WriteValue(target, writer);
        if (fault.Code == 0)
            ack.EndValue();
        else
            ack.ErrorInstead(fault.Class, fault.Code);
    };
    PropertyTarget target;
    while (!writer.Overflow() && reader.Next(target)) {
        if (target.Object.Type == OBJ_DEVICE && target.Object.Instance == BACSTAC_MAX_INSTANCE)
            target.Object.Instance = m_device.Instance;
        const bool ours = target.Object == BACSTAC_OBJECT_ID{OBJ_DEVICE, m_device.Instance};
        const bool several =
            target.Property == PROP_ALL || target.Property == PROP_REQUIRED || target.Property == PROP_OPTIONAL;
        if (!several || !ours) {
            add(target);
            continue;
        }
        for (const Property& property : properties) {
            const bool asked = target.Property == PROP_ALL || property.Required == (target.Property == PROP_REQUIRED);
            if (asked && property.Id != propPropertyList) // which is in none of the groups (clause 15.7.3.1)
                add({target.Object, property.Id, BACSTAC_NO_INDEX});
        }
    }
    ack.Finish();
    if (!writer.Overflow() && !reader.Ok())
        Refuse(request, PduType::reject, rejectInvalidTag, layer);
    else
        SendAck(request, writer, layer);
}

DeviceServer::Fault DeviceServer::WriteValue(const PropertyTarget& target, Writer& writer) const {
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

void DeviceServer::WriteElements(BACSTAC_PROPERTY_ID property, Writer& writer) const {
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
        return writer.Unsigned(1); // the object list never changes
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
