// ReadPropertyMultiple, with what devices need that cannot do it, or not so much of it; and ReadPropertyList.
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/client/Status.h"
#include "platform/stack/client/Values.h"
#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/services/ReadPropertyMultiple.h"

#include <algorithm>

namespace bacnet {

namespace {

constexpr std::size_t requestSize = 1476; // what any link carries; longer ones are split
constexpr std::uint32_t classProperty = 2;
constexpr std::uint32_t codeUnknownProperty = 32;

PropertyTarget TargetOf(const BACSTAC_OBJECT_ID& object, const BACSTAC_READ_RESULT_ITEM& item) {
    return {object, item.Property, item.ArrayIndex};
}

void SetFailed(BACSTAC_READ_RESULT_ITEM& item, const BACSTAC_ERROR& error) {
    item.Success = 0;
    item.Error = error;
    item.Contents.DataType = -1;
    item.Contents.ElementCount = 0;
}

// A value that its type does not allow, or that does not fit, is a failed item; its neighbours stay.
void SetResult(BACSTAC_READ_RESULT_ITEM& item, const RpmResult& result) {
    if (!result.Success) {
        SetFailed(item, {ERROR_KIND_ERROR, result.ErrorClass, result.ErrorCode});
        return;
    }
    const BACSTAC_STATUS status = ValueInto(result.Value, result.Target, item.Contents);
    if (status != BACSTAC_OK || item.Contents.DataType < 0) {
        SetFailed(item, {});
        return;
    }
    item.Success = 1;
    item.Error = {};
}

// Hands the results of an answer to the items they are of. Devices keep the order of the request, so that the next item
// is nearly always the right one.
bool TakeResults(std::span<const std::uint8_t> answer, BACSTAC_OBJECT_ID const* objects,
                 BACSTAC_READ_RESULT_ITEM* items, unsigned count) {
    for (unsigned i = 0; i < count; ++i)
        SetFailed(items[i], {});
    RpmAckReader reader(answer);
    RpmResult result;
    unsigned next = 0;
    unsigned taken = 0;
    while (reader.Next(result)) {
        for (unsigned tried = 0; tried < count; ++tried) {
            const unsigned at = next + tried < count ? next + tried : next + tried - count;
            if (!Answers(TargetOf(objects[at], items[at]), result.Target))
                continue;
            SetResult(items[at], result);
            next = at + 1 < count ? at + 1 : 0;
            ++taken;
            break;
        }
    }
    return reader.Ok() && taken != 0;
}

} // namespace

BACSTAC_STATUS BacnetClient::ReadSingly(const Peer& peer, BACSTAC_OBJECT_ID const* objects,
                                        BACSTAC_READ_RESULT_ITEM* items, unsigned count, BACSTAC_ERROR* error) {
    for (unsigned i = 0; i < count; ++i) {
        BACSTAC_ERROR detail{};
        const BACSTAC_STATUS status = ReadContents(peer, TargetOf(objects[i], items[i]), items[i].Contents, &detail);
        const bool read = status == BACSTAC_OK && items[i].Contents.DataType >= 0;
        if (read) {
            items[i].Success = 1;
            items[i].Error = {};
            continue;
        }
        SetFailed(items[i], detail);
        // The item failed where the device answered; otherwise the request has.
        const bool ofTheItem = status == BACSTAC_OK || status >= BACSTAC_STATUS_ERROR ||
                               status == BACSTAC_STATUS_BUFFER_TOO_SMALL || status == BACSTAC_STATUS_INVALID_ANSWER;
        if (!ofTheItem) {
            if (error != nullptr)
                *error = detail;
            return status;
        }
    }
    return BACSTAC_OK;
}

// One exchange.
BACSTAC_STATUS BacnetClient::ReadTogether(const Peer& peer, BACSTAC_OBJECT_ID const* objects,
                                          BACSTAC_READ_RESULT_ITEM* items, unsigned count, BACSTAC_ERROR* error) {
    std::uint8_t request[requestSize];
    Writer writer(request);
    RpmRequestWriter list(writer);
    for (unsigned i = 0; i < count; ++i)
        list.Add(TargetOf(objects[i], items[i]));
    list.Finish();
    if (writer.Overflow())
        return BACSTAC_STATUS_TOO_LONG;
    AnswerBuffer answer;
    const BACSTAC_STATUS status =
        Exchange(peer, ConfirmedService::readPropertyMultiple, writer.Written(), answer, error);
    if (status != BACSTAC_OK)
        return status;
    const TextScope text(TextEncoding(peer.Address));
    return TakeResults(answer.Octets(), objects, items, count) ? BACSTAC_OK : BACSTAC_STATUS_INVALID_ANSWER;
}

// As few exchanges as the device manages; what it manages is remembered.
BACSTAC_STATUS BacnetClient::ReadMany(const Peer& peer, BACSTAC_OBJECT_ID const* objects,
                                      BACSTAC_READ_RESULT_ITEM* items, unsigned count, BACSTAC_ERROR* error) {
    for (unsigned done = 0; done < count;) {
        const unsigned limit = m_traits.MultipleReadLimit(peer.Address);
        if (limit == 0)
            return ReadSingly(peer, objects + done, items + done, count - done, error);
        const unsigned part = std::min(limit, count - done);
        BACSTAC_ERROR detail{};
        const BACSTAC_STATUS status = ReadTogether(peer, objects + done, items + done, part, &detail);
        if (status == BACSTAC_OK) {
            m_traits.MultipleReadWorked(peer.Address, part);
            done += part;
            continue;
        }
        if (LacksService(status, detail)) {
            m_traits.SetNoMultipleRead(peer.Address);
            continue;
        }
        if (IsTooMuch(status, detail) && part > 1) {
            m_traits.MultipleReadFailed(peer.Address, part);
            continue;
        }
        if (IsTooMuch(status, detail)) { // one value that fits no answer is no failure of the others
            const BACSTAC_STATUS single = ReadSingly(peer, objects + done, items + done, 1, error);
            if (single != BACSTAC_OK)
                return single;
            ++done;
            continue;
        }
        if (error != nullptr)
            *error = detail;
        return status;
    }
    return BACSTAC_OK;
}

BACSTAC_STATUS BacnetClient::ReadPropertyMultiple(unsigned device, BACSTAC_ADDRESS const& address,
                                                  BACSTAC_OBJECT_ID const* objects, BACSTAC_READ_RESULT_ITEM* items,
                                                  unsigned count, BACSTAC_ERROR* error) {
    if (count != 0 && (objects == nullptr || items == nullptr))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    Peer peer;
    const BACSTAC_STATUS status = FindPeer(device, address, peer);
    if (status != BACSTAC_OK)
        return status;
    return ReadMany(peer, objects, items, count, error);
}

BACSTAC_STATUS BacnetClient::ReadPropertyList(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object,
                                              BACSTAC_READ_RESULT_ITEM* items, unsigned* count, BACSTAC_ERROR* error) {
    if (items == nullptr || count == nullptr)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    const unsigned capacity = *count;
    *count = 0;
    Peer peer;
    BACSTAC_STATUS status = FindPeer(address, peer);
    if (status != BACSTAC_OK)
        return status;

    std::uint8_t request[64];
    Writer writer(request);
    RpmRequestWriter list(writer);
    list.Add({object, PROP_ALL, BACSTAC_NO_INDEX});
    list.Finish();
    AnswerBuffer answer;
    BACSTAC_ERROR detail{};
    status = Exchange(peer, ConfirmedService::readPropertyMultiple, writer.Written(), answer, &detail);
    if (IsTooMuch(status, detail)) {
        *count = capacity;
        const BACSTAC_STATUS inParts = ReadListInParts(peer, object, items, count, error);
        if (inParts != BACSTAC_OK ||
            std::any_of(items, items + *count, [](const auto& item) { return item.Success != 0; }))
            return inParts;
        *count = 0; // it was not the size: the device refuses whatever it is asked
    }
    if (status != BACSTAC_OK) {
        if (error != nullptr)
            *error = detail;
        return status;
    }

    const TextScope text(TextEncoding(peer.Address));
    RpmAckReader reader(answer.Octets());
    RpmResult result;
    unsigned read = 0;
    while (read < capacity && reader.Next(result)) {
        if (!Answers({object, result.Target.Property, result.Target.ArrayIndex}, result.Target))
            continue; // of an object that was not asked for
        items[read].Property = result.Target.Property;
        items[read].ArrayIndex = result.Target.ArrayIndex;
        SetResult(items[read], result);
        ++read;
    }
    if (!reader.Ok())
        return BACSTAC_STATUS_INVALID_ANSWER;
    *count = read;
    return BACSTAC_OK;
}

BACSTAC_STATUS BacnetClient::ListedProperties(const Peer& peer, BACSTAC_OBJECT_ID const& object,
                                              std::vector<BACSTAC_PROPERTY_ID>& properties, BACSTAC_ERROR* error) {
    properties.clear();
    AnswerBuffer answer;
    std::span<const std::uint8_t> value;
    BACSTAC_ERROR detail{};
    const BACSTAC_STATUS status =
        ReadEncoded(peer, {object, PROP_PROPERTY_LIST, BACSTAC_NO_INDEX}, answer, value, &detail);
    if (status < BACSTAC_STATUS_ERROR && status != BACSTAC_OK && status != BACSTAC_STATUS_INVALID_ANSWER) {
        if (error != nullptr)
            *error = detail;
        return status;
    }
    if (status != BACSTAC_OK)
        return BACSTAC_OK; // an older device, or too long a list
    // The list leaves these out (clause 12.1.1.4.1).
    properties = {PROP_OBJECT_IDENTIFIER, PROP_OBJECT_NAME, PROP_OBJECT_TYPE};
    Reader reader(value);
    for (std::uint32_t property = 0; !reader.AtEnd() && reader.Enumerated(property);)
        properties.push_back(property);
    if (!reader.Ok())
        properties.clear();
    return BACSTAC_OK;
}

// All properties in as many reads as it takes, for a device that cannot send them at once: those that the object lists,
// or those of the standard where it has no list.
BACSTAC_STATUS BacnetClient::ReadListInParts(const Peer& peer, BACSTAC_OBJECT_ID const& object,
                                             BACSTAC_READ_RESULT_ITEM* items, unsigned* count, BACSTAC_ERROR* error) {
    std::vector<BACSTAC_PROPERTY_ID> properties;
    BACSTAC_STATUS status = ListedProperties(peer, object, properties, error);
    if (properties.empty())
        for (const PropertyInfo& info : ObjectProperties(object.Type))
            properties.push_back(info.Property);
    unsigned wanted = 0;
    for (const BACSTAC_PROPERTY_ID property : properties) {
        if (wanted == *count)
            break;
        if (property == PROP_LOG_BUFFER) // no device reads that as a property
            continue;
        items[wanted].Property = property;
        items[wanted].ArrayIndex = BACSTAC_NO_INDEX;
        ++wanted;
    }
    *count = 0;
    if (status != BACSTAC_OK)
        return status;
    const std::vector<BACSTAC_OBJECT_ID> objects(wanted, object);
    status = ReadMany(peer, objects.data(), items, wanted, error);
    if (status != BACSTAC_OK)
        return status;
    // Properties that the device does not have are not part of its list.
    BACSTAC_READ_RESULT_ITEM* const end = std::stable_partition(items, items + wanted, [](const auto& item) {
        return item.Success != 0 || item.Error.Class != classProperty || item.Error.Code != codeUnknownProperty;
    });
    *count = static_cast<unsigned>(end - items);
    return BACSTAC_OK;
}

} // namespace bacnet
