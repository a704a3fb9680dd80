#include "simulator/model/LogRecord.h"

#include <utility>

namespace sim {

namespace {

LogDatum Of(std::uint32_t kind) {
    LogDatum datum;
    datum.Kind = kind;
    return datum;
}

} // namespace

LogDatum LogDatum::Status(bool disabled, bool purged, bool interrupted) {
    LogDatum datum = Of(BACSTAC_LOG_STATUS);
    datum.Value.LogStatus.BitCount = 3;
    datum.Value.LogStatus.Bits[0] =
        static_cast<std::uint8_t>((disabled ? 1 : 0) | (purged ? 2 : 0) | (interrupted ? 4 : 0));
    return datum;
}

LogDatum LogDatum::Boolean(bool value) {
    LogDatum datum = Of(BACSTAC_LOG_BOOLEAN);
    datum.Value.Boolean = value ? 1 : 0;
    return datum;
}

LogDatum LogDatum::Real(float value) {
    LogDatum datum = Of(BACSTAC_LOG_REAL);
    datum.Value.Real = value;
    return datum;
}

LogDatum LogDatum::Enumerated(std::uint32_t value) {
    LogDatum datum = Of(BACSTAC_LOG_ENUMERATED);
    datum.Value.Enumerated = value;
    return datum;
}

LogDatum LogDatum::Unsigned(std::uint32_t value) {
    LogDatum datum = Of(BACSTAC_LOG_UNSIGNED);
    datum.Value.Unsigned = value;
    return datum;
}

LogDatum LogDatum::Signed(std::int32_t value) {
    LogDatum datum = Of(BACSTAC_LOG_SIGNED);
    datum.Value.Signed = value;
    return datum;
}

LogDatum LogDatum::BitString(const BACSTAC_BIT_STRING& value) {
    LogDatum datum = Of(BACSTAC_LOG_BITSTRING);
    datum.Value.BitString = value;
    return datum;
}

LogDatum LogDatum::Null() {
    return Of(BACSTAC_LOG_NULL);
}

LogDatum LogDatum::Failure(std::uint32_t errorClass, std::uint32_t errorCode) {
    LogDatum datum = Of(BACSTAC_LOG_FAILURE);
    datum.Value.Failure.Class = errorClass;
    datum.Value.Failure.Code = errorCode;
    return datum;
}

LogDatum LogDatum::TimeChange(float seconds) {
    LogDatum datum = Of(BACSTAC_LOG_TIME_CHANGE);
    datum.Value.TimeChange = seconds;
    return datum;
}

LogDatum LogDatum::AnyValue(std::string wire) {
    LogDatum datum = Of(BACSTAC_LOG_ANY);
    datum.Any = std::move(wire);
    return datum;
}

} // namespace sim
