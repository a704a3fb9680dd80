#include "platform/stack/client/DeviceServer.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ErrorAnswer.h"
#include "platform/stack/services/ReadPropertyMultiple.h"
#include "platform/stack/services/WhoHas.h"

#include <algorithm>

namespace bacnet {

namespace {

// Reject reasons of clause 18.9.
constexpr std::uint8_t rejectInvalidTag = 4;
constexpr std::uint8_t rejectMissingParameter = 5;
constexpr std::uint8_t rejectTooManyArguments = 7;

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

// Why a request cannot be understood, when reader has come to its fault, or to the end of what is expected.
std::uint8_t RejectReason(const Reader& reader, std::size_t length) {
    if (reader.Ok())
        return rejectTooManyArguments;
    return reader.ErrorOffset() == length ? rejectMissingParameter : rejectInvalidTag;
}

void OnWhoIs(const RequestIndication& request, const OwnDeviceObject& object, const IAm& announcement,
             TransactionLayer& layer) {
    WhoIs question;
    if (!DecodeWhoIs(request.Header.Payload, question) || !question.AsksFor(object.Identity().Instance))
        return;
    std::uint8_t parameters[24];
    Writer writer(parameters);
    EncodeIAm(announcement, writer);
    layer.SendUnconfirmed(request.Source, static_cast<std::uint8_t>(UnconfirmedService::iAm), writer.Written());
}

void OnWhoHas(const RequestIndication& request, const OwnDeviceObject& object, TransactionLayer& layer) {
    WhoHas question;
    const OwnDevice& device = object.Identity();
    if (!DecodeWhoHas(request.Header.Payload, question) || !question.Devices.AsksFor(device.Instance))
        return;
    if (question.Object ? !object.IsMeant(*question.Object) : question.Name != device.Name)
        return;
    std::uint8_t parameters[MAX_APDU_IP];
    Writer writer(parameters);
    EncodeIHave({device.Instance, object.Id(), device.Name}, writer);
    if (!writer.Overflow())
        layer.SendUnconfirmed(request.Source, static_cast<std::uint8_t>(UnconfirmedService::iHave), writer.Written());
}

void OnReadProperty(const RequestIndication& request, const OwnDeviceObject& object, TransactionLayer& layer) {
    PropertyTarget target;
    Reader reader(request.Header.Payload);
    if (!DecodePropertyTarget(reader, target) || !reader.AtEnd()) {
        Refuse(request, PduType::reject, RejectReason(reader, request.Header.Payload.size()), layer);
        return;
    }
    std::uint8_t parameters[MAX_APDU_IP];
    Writer writer({parameters, AnswerRoom(request)});
    if (object.IsMeant(target.Object))
        target.Object = object.Id();
    BeginReadPropertyAck(target, writer);
    const OwnDeviceObject::Fault fault = object.Write(target, writer);
    EndReadPropertyAck(writer);
    if (fault.Code == 0) {
        SendAck(request, writer, layer);
        return;
    }
    writer.Rewind(0);
    EncodeErrorAnswer(ConfirmedService::readProperty, {fault.Class, fault.Code, 0}, writer);
    layer.SendPdu(request.From, AnswerTo(request, PduType::error), writer.Written());
}

void OnReadPropertyMultiple(const RequestIndication& request, const OwnDeviceObject& object, TransactionLayer& layer) {
    if (request.Header.Payload.empty()) {
        Refuse(request, PduType::reject, rejectMissingParameter, layer);
        return;
    }
    std::uint8_t parameters[MAX_APDU_IP];
    Writer writer({parameters, AnswerRoom(request)});
    RpmAckWriter ack(writer);
    RpmRequestReader reader(request.Header.Payload);
    const auto add = [&](const PropertyTarget& target) {
        ack.BeginValue(target);
        const OwnDeviceObject::Fault fault = object.Write(target, writer);
        if (fault.Code == 0)
            ack.EndValue();
        else
            ack.ErrorInstead(fault.Class, fault.Code);
    };
    PropertyTarget target;
    while (!writer.Overflow() && reader.Next(target)) {
        const bool ours = object.IsMeant(target.Object);
        if (ours)
            target.Object = object.Id();
        const bool several =
            target.Property == PROP_ALL || target.Property == PROP_REQUIRED || target.Property == PROP_OPTIONAL;
        if (ours && several)
            object.ForEach(target.Property, [&](BACSTAC_PROPERTY_ID property) {
                add({target.Object, property, BACSTAC_NO_INDEX});
            });
        else
            add(target);
    }
    ack.Finish();
    if (!writer.Overflow() && !reader.Ok())
        Refuse(request, PduType::reject, rejectInvalidTag, layer);
    else
        SendAck(request, writer, layer);
}

} // namespace

DeviceServer::DeviceServer(const OwnDevice& device, const TransactionSettings& settings)
    : m_settings(settings), m_object(std::make_shared<OwnDeviceObject>(device, settings, 1U)) {}

std::shared_ptr<const OwnDeviceObject> DeviceServer::Current() const {
    const std::lock_guard lock(m_lock);
    return m_object;
}

IAm DeviceServer::Announcement() const {
    const auto object = Current();
    // We take segmented requests and answers, and send no segmented answers.
    return {object->Identity().Instance, MAX_APDU_IP, static_cast<std::uint32_t>(Segmentation::receive),
            object->Identity().VendorId};
}

bool DeviceServer::SetIdentity(std::uint32_t instance, const std::string& name) {
    const std::lock_guard lock(m_lock);
    if (m_object->Identity().Instance == instance && m_object->Identity().Name == name)
        return false;
    OwnDevice device = m_object->Identity();
    device.Instance = instance;
    device.Name = name;
    // An object's name or identifier has changed: clause 12.11.35 counts that.
    m_object = std::make_shared<OwnDeviceObject>(std::move(device), m_settings, m_object->Revision() + 1);
    return true;
}

void DeviceServer::OnRequest(const RequestIndication& request, TransactionLayer& layer) const {
    if (request.Confirmed && request.Broadcast) // never broadcast (clause 5.4.5.1): no answer to a crowd
        return;
    const auto object = Current();
    const std::uint8_t service = request.Header.Service;
    if (!request.Confirmed) {
        if (object->IsDevice() && service == static_cast<std::uint8_t>(UnconfirmedService::whoIs))
            OnWhoIs(request, *object, Announcement(), layer);
        else if (object->IsDevice() && service == static_cast<std::uint8_t>(UnconfirmedService::whoHas))
            OnWhoHas(request, *object, layer);
        return;
    }
    if (object->IsDevice() && service == static_cast<std::uint8_t>(ConfirmedService::readProperty))
        OnReadProperty(request, *object, layer);
    else if (object->IsDevice() && service == static_cast<std::uint8_t>(ConfirmedService::readPropertyMultiple))
        OnReadPropertyMultiple(request, *object, layer);
    else
        Refuse(request, PduType::reject, REJECT_UNRECOGNIZED_SERVICE, layer);
}

} // namespace bacnet
