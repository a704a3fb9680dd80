// DeviceCommunicationControl, ReinitializeDevice, and the clocks of devices.
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/client/RequestBuffer.h"
#include "platform/stack/client/Status.h"
#include "platform/stack/services/DeviceManagement.h"

#include <cstring>

namespace bacnet {

namespace {

constexpr BACSTAC_PROPERTY_ID propDaylightSaving = 24;
constexpr BACSTAC_PROPERTY_ID propLocalDate = 56;
constexpr BACSTAC_PROPERTY_ID propLocalTime = 57;
constexpr BACSTAC_PROPERTY_ID propUtcOffset = 119;
constexpr int minutesOfDaylightSaving = 60;

std::string_view TextOf(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

} // namespace

BACSTAC_STATUS BacnetClient::DeviceCommControl(unsigned device, unsigned duration, BACSTAC_DCC_VALUE value,
                                               const char* password, BACSTAC_ERROR* error) {
    constexpr unsigned longest = 65535; // Unsigned16 (clause 16.1.1.1.1)
    if (duration > longest)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    RequestBuffer request;
    EncodeCommunicationControl(duration, value, TextOf(password), request.Out);
    return Command(device, ConfirmedService::deviceCommunicationControl, request, error);
}

BACSTAC_STATUS BacnetClient::ReinitializeDevice(unsigned device, BACSTAC_REINIT_TYPE type, const char* password,
                                                BACSTAC_ERROR* error) {
    RequestBuffer request;
    EncodeReinitialize(type, TextOf(password), request.Out);
    return Command(device, ConfirmedService::reinitializeDevice, request, error);
}

// Each device gets a message of its own; one that is unknown does not keep the others from theirs.
BACSTAC_STATUS BacnetClient::SynchronizeTime(bool utc, BACSTAC_DATE_TIME const& time, unsigned const* devices,
                                             int count) {
    if (count < 0 || (count != 0 && devices == nullptr))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    RequestBuffer request;
    EncodeTimeSynchronization(time, request.Out);
    const auto service = static_cast<std::uint8_t>(utc ? UnconfirmedService::utcTimeSynchronization
                                                       : UnconfirmedService::timeSynchronization);
    BACSTAC_STATUS first = BACSTAC_OK;
    for (int i = 0; i < count; ++i) {
        Peer peer;
        BACSTAC_STATUS status = FindPeer(devices[i], peer);
        if (status == BACSTAC_OK)
            status = ToStatus(m_transactions.SendUnconfirmed(peer.Address, service, request.Out.Written()));
        if (first == BACSTAC_OK)
            first = status;
    }
    return first;
}

// The date is read before and after the time: if it changed, midnight has passed between, and all is read once more.
bool BacnetClient::ReadDeviceTime(unsigned device, BACSTAC_DATE_TIME& time, int& offset) {
    Peer peer;
    if (FindPeer(device, peer) != BACSTAC_OK)
        return false;
    const BACSTAC_OBJECT_ID id{OBJ_DEVICE, device};
    const BACSTAC_OBJECT_ID objects[] = {id, id, id, id, id};
    for (int attempt = 0; attempt < 2; ++attempt) {
        BACSTAC_DATE before{};
        BACSTAC_DATE after{};
        BACSTAC_TIME clock{};
        std::int32_t west = 0; // UTC minus local time, in minutes
        std::uint8_t daylight = 0;
        BACSTAC_READ_RESULT_ITEM items[] = {
            {propLocalDate, BACSTAC_NO_INDEX, 0, {TYPE_NONE, &before, sizeof before, 0}, {}},
            {propLocalTime, BACSTAC_NO_INDEX, 0, {TYPE_NONE, &clock, sizeof clock, 0}, {}},
            {propUtcOffset, BACSTAC_NO_INDEX, 0, {TYPE_NONE, &west, sizeof west, 0}, {}},
            {propDaylightSaving, BACSTAC_NO_INDEX, 0, {TYPE_NONE, &daylight, sizeof daylight, 0}, {}},
            {propLocalDate, BACSTAC_NO_INDEX, 0, {TYPE_NONE, &after, sizeof after, 0}, {}},
        };
        const auto has = [&items](int item, BACSTAC_DATA_TYPE type) {
            return items[item].Success != 0 && items[item].Contents.DataType == type;
        };
        if (ReadMany(peer, objects, items, static_cast<unsigned>(std::size(items)), nullptr) != BACSTAC_OK ||
            !has(0, TYPE_DATE) || !has(1, TYPE_TIME))
            return false;
        if (has(4, TYPE_DATE) && std::memcmp(&before, &after, sizeof before) != 0)
            continue;
        time = {before, clock};
        if (has(2, TYPE_SIGNED))
            offset = -west + (has(3, TYPE_BOOLEAN) && daylight != 0 ? minutesOfDaylightSaving : 0);
        return true;
    }
    return false;
}

} // namespace bacnet
