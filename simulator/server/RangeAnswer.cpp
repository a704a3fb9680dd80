#include "platform/stack/services/ReadRange.h"
#include "simulator/model/LogRange.h"
#include "simulator/server/Handlers.h"
#include "simulator/server/Quirks.h"

#include <algorithm>

namespace sim {

namespace {

using bacnet::ReadRangeRequest;

bool IsByTime(std::uint32_t kind) {
    return kind == BACSTAC_RANGE_BY_TIME || kind == BACSTAC_RANGE_BY_TIME_2001;
}

// What a range is read from: a log or a plain list.
class Items {
public:
    virtual ~Items() = default;
    virtual LogRange All() const = 0; // indices of the first and behind the last item
    virtual void Encode(std::uint64_t index, bacnet::Writer& to) const = 0;
};

class LogItems final : public Items {
public:
    LogItems(const LogObject& log, LogRecord& record) : m_log(log), m_record(record) {}
    LogRange All() const override { return {m_log.Buffer().Begin(), m_log.Buffer().End(), false}; }
    void Encode(std::uint64_t index, bacnet::Writer& to) const override {
        LogObject::Encode(m_log.Buffer().At(index, m_record), m_log.Id().Type, to);
    }

private:
    const LogObject& m_log;
    LogRecord& m_record;
};

class ListItems final : public Items {
public:
    explicit ListItems(const Value& list) : m_list(list) {}
    LogRange All() const override { return {0, m_list.Count(), false}; }
    void Encode(std::uint64_t index, bacnet::Writer& to) const override {
        to.Octets(m_list.Element(static_cast<std::uint32_t>(index)));
    }

private:
    const Value& m_list;
};

// Octets of the answer besides its items: as many as its numbers can take.
std::size_t Overhead(const ReadRangeRequest& request, const LogRange& range, bool withSequence) {
    bacnet::Writer counter({});
    BACSTAC_BIT_STRING flags{};
    flags.BitCount = 3;
    bacnet::BeginReadRangeAck(request.Target, flags, static_cast<std::uint32_t>(range.Count()), counter);
    bacnet::EndReadRangeAck(withSequence, 0xFFFFFFFFU, counter);
    return counter.Size();
}

// Reading backwards keeps the items nearest to the reference, which are the last ones: drops from the front.
LogRange FitFromEnd(const Items& items, LogRange range, std::size_t octets) {
    std::uint64_t begin = range.End;
    std::size_t used = 0;
    while (begin != range.Begin) {
        bacnet::Writer counter({});
        items.Encode(begin - 1, counter);
        used += counter.Size();
        if (used > octets)
            break;
        --begin;
    }
    return {begin, range.End, true};
}

Outcome Answer(const Device& device, const ReadRangeRequest& request, const Items& items, LogRange range,
               bool withSequence, const AnswerRoom& room, Scratch& scratch) {
    withSequence = withSequence && !range.IsEmpty();
    const std::size_t overhead = Overhead(request, range, withSequence);
    if (overhead > room.Octets)
        return TooLong(room);
    const std::size_t octets = std::min(room.Octets - overhead, scratch.Items.size());
    LogRange sent = range.Backwards ? FitFromEnd(items, range, octets) : range;
    bacnet::Writer data(std::span(scratch.Items).first(octets));
    for (std::uint64_t index = sent.Begin; index != sent.End; ++index) {
        const std::size_t before = data.Size();
        items.Encode(index, data);
        if (data.Overflow()) {
            data.Rewind(before);
            sent.End = index;
            break;
        }
    }
    if (sent.IsEmpty() && !range.IsEmpty())
        return TooLong(room); // not even one item fits

    const LogRange all = items.All();
    BACSTAC_BIT_STRING flags{};
    flags.BitCount = 3;
    const auto set = [&flags](unsigned bit, bool on) {
        flags.Bits[0] = static_cast<std::uint8_t>(flags.Bits[0] | (on ? 1U << bit : 0U));
    };
    set(BACSTAC_RANGE_FIRST_ITEM, !sent.IsEmpty() && sent.Begin == all.Begin);
    set(BACSTAC_RANGE_LAST_ITEM, !sent.IsEmpty() && sent.End == all.End);
    set(BACSTAC_RANGE_MORE_ITEMS, sent.Count() < range.Count());

    bacnet::Writer writer = AnswerWriter(room, scratch);
    bacnet::BeginReadRangeAck(request.Target, flags, Told(device, static_cast<std::uint32_t>(sent.Count())), writer);
    writer.Octets(data.Written());
    bacnet::EndReadRangeAck(withSequence, LogBuffer::SequenceOf(sent.Begin), writer);
    return Written(writer, room);
}

Outcome FromLog(const Device& device, const LogObject& log, const ReadRangeRequest& request, const AnswerRoom& room,
                Scratch& scratch) {
    const std::uint32_t kind = request.Range.Kind;
    // Ranges by sequence number came with the present form of ranges by time. A device takes what it does not know for
    // a wrong tag.
    if ((kind == BACSTAC_RANGE_BY_TIME || kind == BACSTAC_RANGE_BY_SEQUENCE) && !device.AcceptsByTime())
        return Outcome::Reject(REJECT_INVALID_TAG);
    if (kind == BACSTAC_RANGE_BY_TIME_2001 && !device.AcceptsByTime2001())
        return Outcome::Reject(REJECT_INVALID_TAG);
    LocalTime reference = 0;
    if (IsByTime(kind)) {
        const auto time = ToLocalTime(request.Range.ByTime.Reference);
        if (!time)
            return Outcome::Reject(REJECT_PARAMETER_OUT_OF_RANGE);
        reference = *time;
    }
    const bool withSequence = kind == BACSTAC_RANGE_BY_TIME || kind == BACSTAC_RANGE_BY_SEQUENCE;
    const LogItems items(log, scratch.Record);
    return Answer(device, request, items, SelectRange(log.Buffer(), request.Range, reference), withSequence, room,
                  scratch);
}

Outcome FromList(const Device& device, const Value& list, const ReadRangeRequest& request, const AnswerRoom& room,
                 Scratch& scratch) {
    if (request.Range.Kind == BACSTAC_RANGE_BY_SEQUENCE)
        return Outcome::Error(NOT_NUMBERED);
    if (IsByTime(request.Range.Kind))
        return Outcome::Error(NOT_TIMESTAMPED);
    return Answer(device, request, ListItems(list), SelectPositions(list.Count(), request.Range), false, room, scratch);
}

} // namespace

Outcome ReadRange(const ServiceCall& call) {
    ReadRangeRequest request;
    if (!bacnet::DecodeReadRange(call.Parameters, request))
        return Malformed(call.Parameters);
    Object* object = call.Dut.Find(request.Target.Object);
    if (object == nullptr)
        return Outcome::Error(UNKNOWN_OBJECT);
    request.Target.Object = object->Id();
    if (!object->Has(request.Target.Property))
        return Outcome::Error(UNKNOWN_PROPERTY);
    const Value* value = object->Find(request.Target.Property);
    const bool isArray = value != nullptr && value->GetShape() == Shape::array;
    if (request.Target.ArrayIndex != BACSTAC_NO_INDEX && !isArray)
        return Outcome::Error(NOT_AN_ARRAY);
    if (const LogObject* log = object->AsLog(); log != nullptr && request.Target.Property == PROP_LOG_BUFFER)
        return FromLog(call.Dut, *log, request, call.Room, call.Memory);
    if (value == nullptr || value->GetShape() != Shape::list)
        return Outcome::Error(NOT_A_LIST);
    return FromList(call.Dut, *value, request, call.Room, call.Memory);
}

} // namespace sim
