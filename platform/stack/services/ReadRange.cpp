#include "platform/stack/services/ReadRange.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Writer.h"

#include <chrono>

namespace bacnet {

namespace {

// Context tags of the range choices.
constexpr unsigned positionTag = 3;
constexpr unsigned time2001Tag = 4;
constexpr unsigned sequenceTag = 6;
constexpr unsigned timeTag = 7;

// Context tags of the answer.
constexpr int flagsTag = 3;
constexpr int countTag = 4;
constexpr unsigned itemsTag = 5;
constexpr int firstSequenceTag = 6;

struct Kind {
    std::uint32_t Number;
    unsigned Tag;
    bool ByTime;
};

constexpr Kind kinds[] = {
    {BACSTAC_RANGE_BY_POSITION, positionTag, false},
    {BACSTAC_RANGE_BY_TIME_2001, time2001Tag, true},
    {BACSTAC_RANGE_BY_SEQUENCE, sequenceTag, false},
    {BACSTAC_RANGE_BY_TIME, timeTag, true},
};

} // namespace

std::uint32_t WeekdayOf(const BACSTAC_DATE& date) {
    using namespace std::chrono;
    const year_month_day day(year(date.Year), month(date.Month), std::chrono::day(date.Day));
    if (date.Year < 1900 || date.Year > 2154 || date.Month > 12 || date.Day > 31 || !day.ok())
        return BACSTAC_ANY_WEEKDAY;
    return weekday(sys_days(day)).iso_encoding();
}

bool EncodeReadRange(const ReadRangeRequest& request, Writer& writer) {
    const BACSTAC_READ_RANGE_SPEC& range = request.Range;
    const Kind* kind = nullptr;
    for (const Kind& known : kinds)
        if (known.Number == range.Kind)
            kind = &known;
    if (kind == nullptr && range.Kind != BACSTAC_RANGE_ALL)
        return false;
    EncodePropertyTarget(request.Target, writer);
    if (kind == nullptr)
        return true;
    writer.Opening(kind->Tag);
    if (kind->ByTime) {
        BACSTAC_DATE date = range.ByTime.Reference.Date;
        date.Weekday = WeekdayOf(date);
        writer.Date(date);
        writer.Time(range.ByTime.Reference.Time);
        writer.Signed(range.ByTime.Count);
    } else {
        writer.Unsigned(range.ByIndex.Reference);
        writer.Signed(range.ByIndex.Count);
    }
    writer.Closing(kind->Tag);
    return true;
}

bool DecodeReadRange(std::span<const std::uint8_t> parameters, ReadRangeRequest& request) {
    Reader reader(parameters);
    ReadRangeRequest decoded;
    if (!DecodePropertyTarget(reader, decoded.Target))
        return false;
    for (const Kind& kind : kinds) {
        if (!reader.IsOpening(kind.Tag))
            continue;
        decoded.Range.Kind = kind.Number;
        reader.Open(kind.Tag);
        if (kind.ByTime) {
            reader.Date(decoded.Range.ByTime.Reference.Date);
            reader.Time(decoded.Range.ByTime.Reference.Time);
            reader.Signed(decoded.Range.ByTime.Count);
        } else {
            reader.Unsigned(decoded.Range.ByIndex.Reference);
            reader.Signed(decoded.Range.ByIndex.Count);
        }
        reader.Close(kind.Tag);
        break;
    }
    if (!reader.Ok() || !reader.AtEnd())
        return false;
    request = decoded;
    return true;
}

void BeginReadRangeAck(const PropertyTarget& target, const BACSTAC_BIT_STRING& flags, std::uint32_t itemCount,
                       Writer& writer) {
    EncodePropertyTarget(target, writer);
    writer.BitString(flags, flagsTag);
    writer.Unsigned(itemCount, countTag);
    writer.Opening(itemsTag);
}

void EndReadRangeAck(bool withSequence, std::uint32_t firstSequenceNumber, Writer& writer) {
    writer.Closing(itemsTag);
    if (withSequence)
        writer.Unsigned(firstSequenceNumber, firstSequenceTag);
}

bool DecodeReadRangeAck(std::span<const std::uint8_t> parameters, ReadRangeAck& ack) {
    Reader reader(parameters);
    ack.FirstSequenceNumber = 0;
    if (!DecodePropertyTarget(reader, ack.Target))
        return false;
    reader.BitString(ack.Flags, flagsTag);
    reader.Unsigned(ack.ItemCount, countTag);
    reader.Enclosed(itemsTag, ack.Items);
    if (!reader.AtEnd())
        reader.Unsigned(ack.FirstSequenceNumber, firstSequenceTag);
    return reader.Ok();
}

} // namespace bacnet
