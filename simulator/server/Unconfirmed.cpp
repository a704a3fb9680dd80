#include "simulator/server/Unconfirmed.h"

#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/network/Apdu.h"
#include "platform/stack/services/DeviceManagement.h"

namespace sim {

namespace {

using bacnet::UnconfirmedService;

// Context tags of Who-Has.
constexpr int LOW_TAG = 0;
constexpr int HIGH_TAG = 1;
constexpr int OBJECT_TAG = 2;
constexpr int NAME_TAG = 3;

const Object* FindByName(const Device& device, const std::string& name) {
    for (const BACSTAC_OBJECT_ID& id : device.Objects()) {
        const Object* object = device.Find(id);
        const Value* known = object->Find(PROP_OBJECT_NAME);
        if (known != nullptr && TextIn(known->Wire()) == name)
            return object;
    }
    return nullptr;
}

} // namespace

bool ReadUnconfirmed(std::span<const std::uint8_t> octets, UnconfirmedRequest& request) {
    bacnet::Apdu apdu;
    if (bacnet::DecodeApdu(octets, apdu) != bacnet::ApduError::none ||
        apdu.Type != bacnet::PduType::unconfirmed_request)
        return false;
    request.Service = static_cast<UnconfirmedService>(apdu.Service);
    request.Parameters = apdu.Payload;
    switch (request.Service) {
    case UnconfirmedService::whoIs:
        return bacnet::DecodeWhoIs(apdu.Payload, request.Who);
    case UnconfirmedService::iAm: {
        bacnet::IAm announcement;
        const bool read = bacnet::DecodeIAm(apdu.Payload, announcement);
        request.Announced = announcement.Device;
        return read;
    }
    case UnconfirmedService::whoHas:
    case UnconfirmedService::timeSynchronization:
    case UnconfirmedService::utcTimeSynchronization:
        return true;
    default:
        return false;
    }
}

std::vector<std::uint8_t> AnswerWhoHas(const Device& device, std::span<const std::uint8_t> parameters) {
    bacnet::Reader in(parameters);
    std::uint32_t low = 0;
    std::uint32_t high = BACSTAC_MAX_INSTANCE;
    if (in.IsContext(LOW_TAG) && (!in.Unsigned(low, LOW_TAG) || !in.Unsigned(high, HIGH_TAG)))
        return {};
    const Object* object = nullptr;
    BACSTAC_OBJECT_ID id{};
    std::span<const std::uint8_t> name;
    if (in.IsContext(OBJECT_TAG) && in.ObjectId(id, OBJECT_TAG))
        object = device.Find(id);
    else if (in.CharacterString(name, NAME_TAG))
        object = FindByName(device, bacnet::DecodeText(name));
    const Value* known = object == nullptr ? nullptr : object->Find(PROP_OBJECT_NAME);
    if (!in.Ok() || !in.AtEnd() || known == nullptr || device.Instance() < low || device.Instance() > high)
        return {};
    std::vector<std::uint8_t> answer(32 + known->Wire().size());
    bacnet::Writer writer(answer);
    writer.ObjectId(device.Id());
    writer.ObjectId(object->Id());
    writer.Octets(known->Wire());
    answer.resize(writer.Size());
    return answer;
}

void SynchronizeTime(Device& device, const UnconfirmedRequest& request) {
    BACSTAC_DATE_TIME given{};
    if (!bacnet::DecodeTimeSynchronization(request.Parameters, given))
        return;
    const auto time = ToLocalTime(given);
    if (!time)
        return;
    const auto lock = device.Lock();
    if (device.GetCommunication() == Communication::disabled)
        return;
    const bool utc = request.Service == UnconfirmedService::utcTimeSynchronization;
    device.AdjustClock(utc ? device.FromUtc(*time) : *time);
}

} // namespace sim
