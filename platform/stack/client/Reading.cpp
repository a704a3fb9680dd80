// ReadProperty in its forms, and ReadRange.
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/client/PropertyAnswer.h"
#include "platform/stack/client/Values.h"
#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ReadRange.h"
#include "platform/stack/transaction/AsyncCaller.h"

namespace bacnet {

namespace {

constexpr std::size_t targetSize = 32; // octets of an encoded PropertyTarget, generously
constexpr int pollMs = 20;             // between two calls of OnWaitPoll
constexpr unsigned maxPasses = 3;      // of a range that does not fit

void SetEmpty(BACSTAC_PROPERTY_CONTENTS& contents) {
    contents.DataType = -1;
    contents.ElementCount = 0;
}

// Negative: backwards. 0 where the whole is asked for.
std::int32_t CountIn(const BACSTAC_READ_RANGE_SPEC& spec) {
    switch (spec.Kind) {
    case BACSTAC_RANGE_BY_POSITION:
    case BACSTAC_RANGE_BY_SEQUENCE:
        return spec.ByIndex.Count;
    case BACSTAC_RANGE_BY_TIME:
    case BACSTAC_RANGE_BY_TIME_2001:
        return spec.ByTime.Count;
    default:
        return 0;
    }
}

// The same range, of fewer items.
BACSTAC_READ_RANGE_SPEC WithCount(BACSTAC_READ_RANGE_SPEC spec, std::int32_t count) {
    const bool isByTime = spec.Kind == BACSTAC_RANGE_BY_TIME || spec.Kind == BACSTAC_RANGE_BY_TIME_2001;
    (isByTime ? spec.ByTime.Count : spec.ByIndex.Count) = count;
    return spec;
}

} // namespace

BACSTAC_STATUS BacnetClient::ReadEncoded(const Peer& peer, const PropertyTarget& target, AnswerBuffer& answer,
                                         std::span<const std::uint8_t>& value, BACSTAC_ERROR* error) {
    std::uint8_t request[targetSize];
    Writer writer(request);
    EncodeReadProperty(target, writer);
    const BACSTAC_STATUS status =
        Exchange(peer, ConfirmedService::readProperty, writer.Written(), answer, error, IsOfSameProperty);
    if (status != BACSTAC_OK)
        return status;
    return ReadAnswer(answer.Octets(), target, value) ? BACSTAC_OK : BACSTAC_STATUS_INVALID_ANSWER;
}

BACSTAC_STATUS BacnetClient::ReadContents(const Peer& peer, const PropertyTarget& target,
                                          BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error) {
    AnswerBuffer answer;
    std::span<const std::uint8_t> value;
    const BACSTAC_STATUS status = ReadEncoded(peer, target, answer, value, error);
    if (status == BACSTAC_OK) {
        const TextScope text(TextEncoding(peer.Address));
        return ValueInto(value, target, contents);
    }
    SetEmpty(contents);
    return status;
}

BACSTAC_STATUS BacnetClient::ReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object,
                                          BACSTAC_PROPERTY_ID property, int arrayIndex, void* buffer, unsigned size,
                                          BACSTAC_ERROR* error) {
    if (buffer == nullptr)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    BACSTAC_PROPERTY_CONTENTS contents{-1, buffer, size, 0};
    const BACSTAC_STATUS status = ReadProperty(device, object, property, arrayIndex, contents, error);
    return status == BACSTAC_OK && contents.DataType < 0 ? BACSTAC_STATUS_INVALID_ANSWER : status;
}

BACSTAC_STATUS BacnetClient::ReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object,
                                          BACSTAC_PROPERTY_ID property, int arrayIndex,
                                          BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error) {
    Peer peer;
    const BACSTAC_STATUS status = FindPeer(device, peer);
    if (status == BACSTAC_OK)
        return ReadContents(peer, {object, property, arrayIndex}, contents, error);
    SetEmpty(contents);
    return status;
}

BACSTAC_STATUS BacnetClient::ReadProperty(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object,
                                          BACSTAC_PROPERTY_ID property, int arrayIndex,
                                          BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error) {
    Peer peer;
    const BACSTAC_STATUS status = FindPeer(address, peer);
    if (status == BACSTAC_OK)
        return ReadContents(peer, {object, property, arrayIndex}, contents, error);
    SetEmpty(contents);
    return status;
}

// OnWaitPoll may serve the caller's queue of messages, and those may call services of their own on this very thread. So
// nothing of the transaction layer may be in use while it runs: the request is outstanding by itself.
BACSTAC_STATUS BacnetClient::AsyncReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object,
                                               BACSTAC_PROPERTY_ID property, int arrayIndex,
                                               BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error,
                                               CAsyncCallBack& callback) {
    struct Request final : AsyncRequest {
        void OnDone(const CallResult& result) override {
            Result = result;
            Done = true;
        }
        CallResult Result;
        bool Done = false;
    };

    const PropertyTarget target{object, property, arrayIndex};
    SetEmpty(contents);
    Peer peer;
    BACSTAC_STATUS status = FindPeer(device, peer);
    callback.OnWaitStart();
    if (status == BACSTAC_OK) {
        std::uint8_t parameters[targetSize];
        Writer writer(parameters);
        EncodeReadProperty(target, writer);
        Request request;
        request.Destination = peer.Address;
        request.Service = static_cast<std::uint8_t>(ConfirmedService::readProperty);
        request.Parameters = writer.Written();
        request.Options.Check = IsOfSameProperty;
        AsyncCaller caller(m_transactions);
        caller.Submit(request);
        caller.Poll(0); // sends
        while (!request.Done) {
            if (callback.OnWaitPoll() == 0)
                caller.Cancel();
            else
                caller.Poll(pollMs);
        }
        status = Conclude(peer, ConfirmedService::readProperty, request.Result, request.Answer.Octets(), error);
        const TextScope text(TextEncoding(peer.Address));
        if (status == BACSTAC_OK)
            status = ReadAnswerInto(request.Answer.Octets(), target, contents);
    }
    callback.OnWaitEnd();
    return status;
}

BACSTAC_STATUS BacnetClient::ReadRange(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                       int arrayIndex, BACSTAC_READ_RANGE_SPEC const* spec,
                                       BACSTAC_BIT_STRING* resultFlags, BACSTAC_PROPERTY_CONTENTS* contents,
                                       BACSTAC_ERROR* error, unsigned* firstSequenceNumber) {
    if (firstSequenceNumber != nullptr)
        *firstSequenceNumber = 0;
    if (contents == nullptr)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    SetEmpty(*contents);

    ReadRangeRequest range;
    range.Target = {object, property, arrayIndex};
    if (spec != nullptr)
        range.Range = *spec;
    std::uint8_t request[targetSize + 32];
    if (Writer writer(request); !EncodeReadRange(range, writer))
        return BACSTAC_STATUS_INVALID_ARGUMENT;

    Peer peer;
    BACSTAC_STATUS status = FindPeer(device, peer);
    if (status != BACSTAC_OK)
        return status;
    ReadRangeAck ack;
    bool dropped = false;
    unsigned pass = 0;
    for (;; ++pass) {
        Writer writer(request);
        EncodeReadRange(range, writer);
        AnswerBuffer answer;
        SetEmpty(*contents);
        status = Exchange(peer, ConfirmedService::readRange, writer.Written(), answer, error, IsOfSameProperty);
        if (status != BACSTAC_OK)
            return status;
        if (!DecodeReadRangeAck(answer.Octets(), ack) || !Answers(range.Target, ack.Target))
            return BACSTAC_STATUS_INVALID_ANSWER;
        const TextScope text(TextEncoding(peer.Address));
        status = ItemsInto(ack.Items, range.Target, *contents, dropped);
        if (status != BACSTAC_OK)
            return status;
        // Backwards it is the items next to the reference that are missing: so many as fit are asked for alone.
        const std::int64_t kept = contents->ElementCount;
        if (!dropped || kept >= -std::int64_t{CountIn(range.Range)} || pass == maxPasses)
            break;
        range.Range = WithCount(range.Range, static_cast<std::int32_t>(-kept));
    }
    if (dropped) // to the caller it is as if the device had sent less
        SetBitStringBit(ack.Flags, BACSTAC_RANGE_LAST_ITEM, false);
    if (dropped || pass != 0)
        SetBitStringBit(ack.Flags, BACSTAC_RANGE_MORE_ITEMS, true);
    if (resultFlags != nullptr)
        *resultFlags = ack.Flags;
    if (firstSequenceNumber != nullptr && range.Range.Kind != BACSTAC_RANGE_BY_TIME_2001)
        *firstSequenceNumber = ack.FirstSequenceNumber;
    return BACSTAC_OK;
}

} // namespace bacnet
