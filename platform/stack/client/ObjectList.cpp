// ReadObjectList: as a whole where the device can send it, else by index.
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/client/Status.h"
#include "platform/stack/codec/Reader.h"

#include "api/bacnet/Log.h"

#include <algorithm>

namespace bacnet {

namespace {

// More objects than any device has: a greater count is a lie that would cost its caller the memory.
constexpr unsigned maxObjects = 4194304;
constexpr unsigned indexBatch = 50; // elements to ask for in one multiple read
constexpr unsigned maxPasses = 3;   // over a list that changes while it is read
constexpr std::uint32_t codeInvalidArrayIndex = 42;

std::size_t CountEncoded(std::span<const std::uint8_t> value) {
    Reader reader(value);
    std::size_t count = 0;
    for (BACSTAC_OBJECT_ID id{}; !reader.AtEnd() && reader.ObjectId(id);)
        ++count;
    return count;
}

// Whether the device has refused or answered wrongly, so that another way of asking may work. Silence is neither.
bool Refused(BACSTAC_STATUS status) {
    return status >= BACSTAC_STATUS_ERROR;
}

} // namespace

BACSTAC_STATUS BacnetClient::CountObjects(const Peer& peer, const BACSTAC_OBJECT_ID& device, unsigned& count,
                                          BACSTAC_ERROR* error) {
    AnswerBuffer answer;
    std::span<const std::uint8_t> value;
    BACSTAC_ERROR detail{};
    BACSTAC_STATUS status = ReadEncoded(peer, {device, PROP_OBJECT_LIST, 0}, answer, value, &detail);
    if (status == BACSTAC_OK) {
        Reader reader(value);
        std::uint32_t number = 0;
        if (!reader.Unsigned(number) || number > maxObjects)
            return BACSTAC_STATUS_INVALID_ANSWER;
        count = number;
        return BACSTAC_OK;
    }
    if (Refused(status)) { // a device that keeps it as a list
        status = ReadEncoded(peer, {device, PROP_OBJECT_LIST, BACSTAC_NO_INDEX}, answer, value, &detail);
        if (status == BACSTAC_OK)
            count = static_cast<unsigned>(CountEncoded(value));
    }
    if (status != BACSTAC_OK && error != nullptr)
        *error = detail;
    return status;
}

BACSTAC_STATUS BacnetClient::ListObjectsWhole(const Peer& peer, const BACSTAC_OBJECT_ID& device,
                                              BACSTAC_OBJECT_ID* objects, unsigned capacity, unsigned& count,
                                              BACSTAC_ERROR* error) {
    AnswerBuffer answer(std::size_t{8} * maxObjects);
    std::span<const std::uint8_t> value;
    const BACSTAC_STATUS status = ReadEncoded(peer, {device, PROP_OBJECT_LIST, BACSTAC_NO_INDEX}, answer, value, error);
    if (status != BACSTAC_OK)
        return status;
    Reader reader(value);
    unsigned read = 0;
    while (read < capacity && !reader.AtEnd() && reader.ObjectId(objects[read]))
        ++read;
    if (!reader.Ok())
        return BACSTAC_STATUS_INVALID_ANSWER;
    count = read;
    return BACSTAC_OK;
}

BACSTAC_STATUS BacnetClient::ListObjectsByIndex(const Peer& peer, const BACSTAC_OBJECT_ID& device,
                                                BACSTAC_OBJECT_ID* objects, unsigned capacity, unsigned& count,
                                                BACSTAC_ERROR* error) {
    const std::vector<BACSTAC_OBJECT_ID> names(indexBatch, device);
    BACSTAC_READ_RESULT_ITEM items[indexBatch];
    unsigned promised = 0;
    BACSTAC_STATUS status = CountObjects(peer, device, promised, error);
    for (unsigned pass = 0; status == BACSTAC_OK && pass < maxPasses; ++pass) {
        const unsigned wanted = std::min(promised, capacity);
        unsigned read = 0;
        bool ended = false; // the list is shorter than it said
        while (read < wanted && !ended) {
            const unsigned part = std::min(indexBatch, wanted - read);
            for (unsigned i = 0; i < part; ++i)
                items[i] = {PROP_OBJECT_LIST,
                            static_cast<std::int32_t>(read + i + 1),
                            0,
                            {-1, objects + read + i, sizeof *objects, 0},
                            {}};
            status = ReadMany(peer, names.data(), items, part, error);
            if (status != BACSTAC_OK)
                return status;
            for (unsigned i = 0; i < part && !ended; ++i) {
                if (items[i].Success != 0 && items[i].Contents.DataType == TYPE_OBJECT_ID) {
                    ++read;
                } else if (items[i].Error.Code == codeInvalidArrayIndex) {
                    ended = true;
                } else {
                    if (error != nullptr)
                        *error = items[i].Error;
                    return items[i].Error.Kind == ERROR_KIND_ERROR     ? BACSTAC_STATUS_ERROR
                           : items[i].Error.Kind == ERROR_KIND_REFUSED ? BACSTAC_STATUS_ABORT
                                                                       : BACSTAC_STATUS_INVALID_ANSWER;
                }
            }
        }
        count = read;
        const unsigned before = promised;
        status = CountObjects(peer, device, promised, error);
        if (status == BACSTAC_OK && promised == before && !ended)
            return BACSTAC_OK;
    }
    if (status == BACSTAC_OK)
        ::LogInf("The object list of device %u changed while it was read", device.Instance);
    return status;
}

BACSTAC_STATUS BacnetClient::ReadObjectList(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID* objects, unsigned* count,
                                            BACSTAC_ERROR* error) {
    if (count == nullptr)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    const unsigned capacity = *count;
    *count = 0;
    Peer peer;
    BACSTAC_STATUS status = FindPeer(address, peer);
    if (status != BACSTAC_OK)
        return status;
    const unsigned instance = m_directory.FindByAddress(address);
    // Without a known instance the wildcard asks whichever device is there (clause 12.11.1).
    const BACSTAC_OBJECT_ID device{OBJ_DEVICE, std::min(instance, BACSTAC_MAX_INSTANCE)};
    if (objects == nullptr)
        return CountObjects(peer, device, *count, error);
    if (capacity == 0)
        return BACSTAC_OK;
    BACSTAC_ERROR detail{};
    status = ListObjectsWhole(peer, device, objects, capacity, *count, &detail);
    if (Refused(status) && IsTooMuch(status, detail))
        status = ListObjectsByIndex(peer, device, objects, capacity, *count, &detail);
    if (status != BACSTAC_OK && error != nullptr)
        *error = detail;
    return status;
}

} // namespace bacnet
