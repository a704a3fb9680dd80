#include "simulator/model/LogObject.h"

#include "platform/stack/codec/Reader.h"

#include <algorithm>
#include <utility>

namespace sim {

namespace {

constexpr BACSTAC_PROPERTY_ID COMPUTED[] = {PROP_ENABLE,     PROP_STOP_WHEN_FULL, PROP_BUFFER_SIZE,
                                            PROP_LOG_BUFFER, PROP_RECORD_COUNT,   PROP_TOTAL_RECORD_COUNT};

// Log datum of either production: the choices of a log-multiple item are numbered one lower.
void EncodeDatum(const LogDatum& datum, int shift, bacnet::Writer& to) {
    const int tag = static_cast<int>(datum.Kind) - shift;
    switch (datum.Kind) {
    case BACSTAC_LOG_BOOLEAN:
        to.Boolean(datum.Value.Boolean != 0, tag);
        break;
    case BACSTAC_LOG_REAL:
        to.Real(datum.Value.Real, tag);
        break;
    case BACSTAC_LOG_ENUMERATED:
        to.Enumerated(datum.Value.Enumerated, tag);
        break;
    case BACSTAC_LOG_UNSIGNED:
        to.Unsigned(datum.Value.Unsigned, tag);
        break;
    case BACSTAC_LOG_SIGNED:
        to.Signed(datum.Value.Signed, tag);
        break;
    case BACSTAC_LOG_BITSTRING:
        to.BitString(datum.Value.BitString, tag);
        break;
    case BACSTAC_LOG_FAILURE:
        to.Opening(static_cast<unsigned>(tag));
        to.Enumerated(datum.Value.Failure.Class);
        to.Enumerated(datum.Value.Failure.Code);
        to.Closing(static_cast<unsigned>(tag));
        break;
    case BACSTAC_LOG_ANY: {
        // After time-change in the one production, in its place in the other.
        const auto any = static_cast<unsigned>(shift == 0 ? 10 : 8);
        to.Opening(any);
        to.Octets({reinterpret_cast<const std::uint8_t*>(datum.Any.data()), datum.Any.size()});
        to.Closing(any);
        break;
    }
    default:
        to.Null(static_cast<int>(BACSTAC_LOG_NULL) - shift);
        break;
    }
}

void EncodeTrendDatum(const LogRecord& record, bacnet::Writer& to) {
    if (record.Data.empty()) {
        to.Null(static_cast<int>(BACSTAC_LOG_NULL));
        return;
    }
    const LogDatum& datum = record.Data.front();
    if (datum.Kind == BACSTAC_LOG_STATUS)
        to.BitString(datum.Value.LogStatus, static_cast<int>(BACSTAC_LOG_STATUS));
    else if (datum.Kind == BACSTAC_LOG_TIME_CHANGE)
        to.Real(datum.Value.TimeChange, static_cast<int>(BACSTAC_LOG_TIME_CHANGE));
    else
        EncodeDatum(datum, 0, to);
}

void EncodeMultipleData(const LogRecord& record, bacnet::Writer& to) {
    if (!record.Data.empty() && record.Data.front().Kind == BACSTAC_LOG_STATUS) {
        to.BitString(record.Data.front().Value.LogStatus, static_cast<int>(BACSTAC_LOG_MULTIPLE_STATUS));
    } else if (!record.Data.empty() && record.Data.front().Kind == BACSTAC_LOG_TIME_CHANGE) {
        to.Real(record.Data.front().Value.TimeChange, static_cast<int>(BACSTAC_LOG_MULTIPLE_TIME_CHANGE));
    } else {
        to.Opening(BACSTAC_LOG_MULTIPLE_DATA);
        for (const LogDatum& datum : record.Data)
            EncodeDatum(datum, 1, to);
        to.Closing(BACSTAC_LOG_MULTIPLE_DATA);
    }
}

// log-status, notification or time-change; a notification is kept as it goes on the wire.
void EncodeEventDatum(const LogRecord& record, bacnet::Writer& to) {
    constexpr int STATUS = 0;
    constexpr unsigned NOTIFICATION = 1;
    constexpr int TIME_CHANGE = 2;
    const LogDatum datum = record.Data.empty() ? LogDatum::Status(false, false, false) : record.Data.front();
    if (datum.Kind == BACSTAC_LOG_TIME_CHANGE)
        return to.Real(datum.Value.TimeChange, TIME_CHANGE);
    if (datum.Kind != BACSTAC_LOG_ANY)
        return to.BitString(datum.Value.LogStatus, STATUS);
    to.Opening(NOTIFICATION);
    to.Octets({reinterpret_cast<const std::uint8_t*>(datum.Any.data()), datum.Any.size()});
    to.Closing(NOTIFICATION);
}

} // namespace

LogObject::LogObject(BACSTAC_OBJECT_ID id, LogBuffer buffer, bool enabled, bool stopWhenFull)
    : Object(id), m_buffer(std::move(buffer)), m_enabled(enabled), m_stopWhenFull(stopWhenFull) {}

bool LogObject::Append(LogRecord record) {
    if (!Accepts())
        return false;
    m_buffer.Append(std::move(record));
    return true;
}

bool LogObject::Generate(std::uint64_t count) {
    if (!Accepts())
        return false;
    if (m_stopWhenFull)
        count = std::min<std::uint64_t>(count, m_buffer.Capacity() - m_buffer.Count());
    m_buffer.Generate(count);
    return true;
}

void LogObject::AppendStatus(bool purged, LocalTime now) {
    LogRecord record;
    record.Time = now;
    record.Data.push_back(LogDatum::Status(!m_enabled, purged, false));
    m_buffer.Append(std::move(record));
}

void LogObject::SetEnabled(bool enabled, LocalTime now) {
    if (m_enabled == enabled)
        return;
    m_enabled = enabled;
    AppendStatus(false, now);
}

void LogObject::Purge(LocalTime now) {
    m_buffer.Clear();
    AppendStatus(true, now);
}

void LogObject::Encode(const LogRecord& record, BACSTAC_OBJECT_TYPE log, bacnet::Writer& to) {
    const BACSTAC_DATE_TIME stamp = ToDateTime(record.Time);
    to.Opening(0);
    to.Date(stamp.Date);
    to.Time(stamp.Time);
    to.Closing(0);
    to.Opening(1);
    if (log == OBJ_TREND_LOG_MULTIPLE)
        EncodeMultipleData(record, to);
    else if (log == OBJ_EVENT_LOG)
        EncodeEventDatum(record, to);
    else
        EncodeTrendDatum(record, to);
    to.Closing(1);
    if (log == OBJ_TREND_LOG && record.StatusFlags) {
        BACSTAC_BIT_STRING flags{};
        flags.BitCount = 4;
        flags.Bits[0] = *record.StatusFlags;
        to.BitString(flags, 2);
    }
}

std::optional<PropertyError> LogObject::Compute(BACSTAC_PROPERTY_ID property, std::uint32_t index,
                                                bacnet::Writer& to) const {
    const auto computed = Computed();
    if (std::find(computed.begin(), computed.end(), property) == computed.end())
        return std::nullopt;
    if (index != WHOLE)
        return NOT_AN_ARRAY;
    switch (property) {
    case PROP_ENABLE:
        to.Boolean(m_enabled);
        break;
    case PROP_STOP_WHEN_FULL:
        to.Boolean(m_stopWhenFull);
        break;
    case PROP_BUFFER_SIZE:
        to.Unsigned(m_buffer.Capacity());
        break;
    case PROP_RECORD_COUNT:
        to.Unsigned(m_buffer.Count());
        break;
    case PROP_TOTAL_RECORD_COUNT:
        to.Unsigned(m_buffer.TotalRecordCount());
        break;
    default: // the buffer itself is read with ReadRange only
        return READ_ACCESS_DENIED;
    }
    return PropertyError{};
}

// Record_Count takes 0 alone, which purges (clause 12.25.15).
PropertyError LogObject::Accept(const WriteCommand& command, LocalTime now) {
    bacnet::Reader in(command.Value);
    bool on = false;
    std::uint32_t count = 0;
    if (command.Index != WHOLE)
        return NOT_AN_ARRAY;
    const bool decoded = command.Property == PROP_RECORD_COUNT ? in.Unsigned(count) : in.Boolean(on);
    if (!decoded || !in.AtEnd())
        return INVALID_DATA_TYPE;
    switch (command.Property) {
    case PROP_ENABLE:
        SetEnabled(on, now);
        return {};
    case PROP_STOP_WHEN_FULL:
        m_stopWhenFull = on;
        return {};
    case PROP_RECORD_COUNT:
        if (count != 0)
            return VALUE_OUT_OF_RANGE;
        Purge(now);
        return {};
    default:
        return WRITE_ACCESS_DENIED;
    }
}

std::span<const BACSTAC_PROPERTY_ID> LogObject::Computed() const {
    return COMPUTED;
}

} // namespace sim
