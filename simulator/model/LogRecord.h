// One record of a simulated log (BACnetLogRecord and BACnetLogMultipleRecord, clause 21), as the buffer keeps it.
#pragma once

#include "api/bacnet/Types.h"
#include "simulator/model/SimTime.h"

#include <optional>
#include <string>
#include <vector>

namespace sim {

// Kind is one of BACSTAC_LOG_*. Of a BACSTAC_LOG_ANY value, Any holds the tagged wire form and Value nothing.
struct LogDatum {
    std::uint32_t Kind = BACSTAC_LOG_NULL;
    BACSTAC_LOG_VALUE Value{};
    std::string Any;

    static LogDatum Status(bool disabled, bool purged, bool interrupted);
    static LogDatum Boolean(bool value);
    static LogDatum Real(float value);
    static LogDatum Enumerated(std::uint32_t value);
    static LogDatum Unsigned(std::uint32_t value);
    static LogDatum Signed(std::int32_t value);
    static LogDatum BitString(const BACSTAC_BIT_STRING& value);
    static LogDatum Null();
    static LogDatum Failure(std::uint32_t errorClass, std::uint32_t errorCode);
    static LogDatum TimeChange(float seconds);
    static LogDatum AnyValue(std::string wire);
};

// A trend log's record has exactly one datum. A log-multiple record has one datum of kind BACSTAC_LOG_STATUS or
// BACSTAC_LOG_TIME_CHANGE, or any number of data of other kinds.
struct LogRecord {
    LocalTime Time = 0;
    std::vector<LogDatum> Data;
    std::optional<std::uint8_t> StatusFlags; // bit 0 in-alarm to bit 3 out-of-service; trend logs only

    bool IsData() const {
        return !Data.empty() && Data.front().Kind != BACSTAC_LOG_STATUS && Data.front().Kind != BACSTAC_LOG_TIME_CHANGE;
    }
};

} // namespace sim
