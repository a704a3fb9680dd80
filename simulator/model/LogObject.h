// A trend log, trend-log-multiple or event log object (clauses 12.25, 12.30 and 12.27): properties over a log buffer.
// Not thread-safe: the device that owns the object locks.
#pragma once

#include "simulator/model/LogBuffer.h"
#include "simulator/model/Object.h"

namespace sim {

class LogObject final : public Object {
public:
    LogObject(BACSTAC_OBJECT_ID id, LogBuffer buffer, bool enabled, bool stopWhenFull);

    const LogBuffer& Buffer() const { return m_buffer; }

    bool IsEnabled() const { return m_enabled; }

    // The device's own doing: log records by hand (Append) or by its clock (Generate). False, and nothing is logged,
    // while the log is disabled, or full and told to stop then.
    bool Append(LogRecord record);
    bool Generate(std::uint64_t count);

    // Enabling and disabling leave a log-status record with the time now.
    void SetEnabled(bool enabled, LocalTime now);
    // As a client does that writes 0 to Record_Count: a log-status record "buffer purged" stays.
    void Purge(LocalTime now);

    // One record with the tags of BACnetLogRecord, BACnetLogMultipleRecord or BACnetEventLogRecord (clause 21), by the
    // type of the log. The productions are spelled out here and not taken from the stack's tables, so that the stack is
    // tested against another hand.
    static void Encode(const LogRecord& record, BACSTAC_OBJECT_TYPE log, bacnet::Writer& to);

    LogObject* AsLog() override { return this; }

protected:
    std::optional<PropertyError> Compute(BACSTAC_PROPERTY_ID property, std::uint32_t index,
                                         bacnet::Writer& to) const override;
    std::span<const BACSTAC_PROPERTY_ID> Computed() const override;
    PropertyError Accept(const WriteCommand& command, LocalTime now) override;

private:
    bool Accepts() const { return m_enabled && !(m_stopWhenFull && m_buffer.IsFull()); }
    void AppendStatus(bool purged, LocalTime now);

    LogBuffer m_buffer;
    bool m_enabled;
    bool m_stopWhenFull;
};

} // namespace sim
