// WriteProperty, WritePropertyMultiple, and the services that make and remove objects.
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/client/RequestBuffer.h"
#include "platform/stack/client/Status.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/services/ErrorAnswer.h"
#include "platform/stack/services/Objects.h"
#include "platform/stack/services/WriteProperty.h"

namespace bacnet {

namespace {

constexpr int lowestPriority = 16;

bool IsPriority(int priority) {
    return priority == BACSTAC_NO_PRIORITY || (priority >= 1 && priority <= lowestPriority);
}

bool PutValues(BACSTAC_PROPERTY_VALUE const* values, unsigned count, Writer& writer) {
    for (unsigned i = 0; i < count; ++i) {
        if (!IsPriority(values[i].Priority))
            return false;
        BeginPropertyValue(values[i].Property, values[i].ArrayIndex, writer);
        if (!EncodeContents(writer, values[i].Contents))
            return false;
        EndPropertyValue(values[i].Priority, writer);
    }
    return true;
}

} // namespace

BACSTAC_STATUS BacnetClient::Write(const Peer& peer, const PropertyTarget& target, int priority,
                                   BACSTAC_PROPERTY_CONTENTS const& contents, BACSTAC_ERROR* error) {
    if (!IsPriority(priority))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    RequestBuffer request;
    BeginWriteProperty(target, request.Out);
    if (!EncodeContents(request.Out, contents))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    EndWriteProperty(priority, request.Out);
    return Command(peer, ConfirmedService::writeProperty, request, error);
}

BACSTAC_STATUS BacnetClient::WriteProperty(unsigned device, BACSTAC_OBJECT_ID const& object,
                                           BACSTAC_PROPERTY_ID property, int arrayIndex, int priority,
                                           BACSTAC_PROPERTY_CONTENTS const& contents, BACSTAC_ERROR* error) {
    Peer peer;
    const BACSTAC_STATUS status = FindPeer(device, peer);
    return status != BACSTAC_OK ? status : Write(peer, {object, property, arrayIndex}, priority, contents, error);
}

BACSTAC_STATUS BacnetClient::WritePropertyNull(unsigned device, BACSTAC_OBJECT_ID const& object,
                                               BACSTAC_PROPERTY_ID property, int arrayIndex, int priority,
                                               BACSTAC_ERROR* error) {
    const BACSTAC_PROPERTY_CONTENTS null{TYPE_NULL, nullptr, 0, 1};
    return WriteProperty(device, object, property, arrayIndex, priority, null, error);
}

// One exchange.
BACSTAC_STATUS BacnetClient::WriteTogether(const Peer& peer, BACSTAC_OBJECT_ID const& object,
                                           BACSTAC_PROPERTY_VALUE const* values, unsigned count, BACSTAC_ERROR* error) {
    RequestBuffer request;
    BeginWriteObject(object, request.Out);
    if (!PutValues(values, count, request.Out))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    EndWriteObject(request.Out);
    return Command(peer, ConfirmedService::writePropertyMultiple, request, error);
}

// A device without the service gets the writes one by one, and one for which they are too much gets them in halves: in
// the same order, up to the first that fails, as the service itself would do it (clause 15.10.2). A request that was
// too much has written nothing.
BACSTAC_STATUS BacnetClient::WriteMany(const Peer& peer, BACSTAC_OBJECT_ID const& object,
                                       BACSTAC_PROPERTY_VALUE const* values, unsigned count, BACSTAC_ERROR* error) {
    BACSTAC_ERROR detail{};
    BACSTAC_STATUS status = WriteTogether(peer, object, values, count, &detail);
    const bool missing = LacksService(status, detail);
    if (!missing && !IsTooMuch(status, detail)) {
        if (error != nullptr)
            *error = detail;
        return status;
    }
    status = BACSTAC_OK;
    if (!missing && count > 1) {
        status = WriteMany(peer, object, values, count / 2, error);
        return status != BACSTAC_OK ? status : WriteMany(peer, object, values + count / 2, count - count / 2, error);
    }
    for (unsigned i = 0; i < count && status == BACSTAC_OK; ++i)
        status = Write(peer, {object, values[i].Property, values[i].ArrayIndex}, values[i].Priority, values[i].Contents,
                       error);
    return status;
}

BACSTAC_STATUS BacnetClient::WritePropertyMultiple(unsigned device, BACSTAC_ADDRESS const& address,
                                                   BACSTAC_OBJECT_ID const& object,
                                                   BACSTAC_PROPERTY_VALUE const* values, unsigned count,
                                                   BACSTAC_ERROR* error) {
    if (count != 0 && values == nullptr)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    Peer peer;
    const BACSTAC_STATUS status = FindPeer(device, address, peer);
    if (status != BACSTAC_OK || count == 0)
        return status;
    return WriteMany(peer, object, values, count, error);
}

BACSTAC_STATUS BacnetClient::CreateObject(unsigned device, BACSTAC_OBJECT_SPECIFIER const* specifier,
                                          BACSTAC_PROPERTY_VALUE const* values, unsigned count,
                                          BACSTAC_OBJECT_ID* newObject, BACSTAC_ERROR* error, unsigned* firstFailed) {
    if (firstFailed != nullptr)
        *firstFailed = 0;
    if (specifier == nullptr || (count != 0 && values == nullptr))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    RequestBuffer request;
    BeginCreateObject(*specifier, count != 0, request.Out);
    if (!PutValues(values, count, request.Out))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    EndCreateObject(count != 0, request.Out);

    AnswerBuffer answer;
    Peer peer;
    BACSTAC_STATUS status = FindPeer(device, peer);
    if (status == BACSTAC_OK)
        status = request.Out.Overflow()
                     ? BACSTAC_STATUS_TOO_LONG
                     : Exchange(peer, ConfirmedService::createObject, request.Out.Written(), answer, error);
    if (status == BACSTAC_STATUS_ERROR && firstFailed != nullptr) {
        ErrorAnswer detail;
        if (DecodeErrorAnswer(ConfirmedService::createObject, answer.Octets(), detail))
            *firstFailed = detail.FirstFailed;
    }
    if (status != BACSTAC_OK)
        return status;
    BACSTAC_OBJECT_ID created{};
    if (!DecodeCreateObjectAck(answer.Octets(), created))
        return BACSTAC_STATUS_INVALID_ANSWER;
    if (newObject != nullptr)
        *newObject = created;
    return BACSTAC_OK;
}

BACSTAC_STATUS BacnetClient::DeleteObject(unsigned device, BACSTAC_OBJECT_ID const* object, BACSTAC_ERROR* error) {
    if (object == nullptr)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    RequestBuffer request;
    EncodeDeleteObject(*object, request.Out);
    return Command(device, ConfirmedService::deleteObject, request, error);
}

} // namespace bacnet
