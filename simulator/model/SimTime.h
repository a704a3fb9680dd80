// Time as the simulated devices keep it: local civil time, without zone or daylight saving, counted in hundredths of a
// second since 1970-01-01 00:00. Log records are compared and searched in this form and sent as BACnetDateTime.
#pragma once

#include "api/bacnet/Types.h"

#include <cstdint>
#include <optional>

namespace sim {

using LocalTime = std::int64_t;

inline constexpr LocalTime HUNDREDTHS_PER_SECOND = 100;
inline constexpr LocalTime HUNDREDTHS_PER_DAY = 24 * 3600 * HUNDREDTHS_PER_SECOND;

// With the real weekday. The years 1900 to 2154, which the wire can carry, are the caller's range.
BACSTAC_DATE_TIME ToDateTime(LocalTime time);

// Nothing when a field is unspecified or out of its calendar range; the weekday is not looked at.
std::optional<LocalTime> ToLocalTime(const BACSTAC_DATE_TIME& value);

// The machine's wall clock in its own time zone.
LocalTime WallClock();

} // namespace sim
