// Which days a calendar entry means (BACnetDate, BACnetDateRange and BACnetWeekNDay, clauses 20.2.12 and 21). A day is
// a certain date with its weekday. Any thread; no state.
#pragma once

#include "api/bacnet/Records.h"
#include "platform/stack/codec/Reader.h"

#include <cstdint>
#include <span>

namespace sim {

// Every field may be unspecified; months 13 and 14 are the odd and the even ones, day 32 is the last one of the month,
// days 33 and 34 are the odd and the even ones.
bool IsDayOf(const BACSTAC_DATE& pattern, const BACSTAC_DATE& day);

// Both ends belong to the range; an end that is unspecified is open.
bool IsDayOf(const BACSTAC_DATE_RANGE& range, const BACSTAC_DATE& day);

// Three octets: month, week of the month and day of the week. Weeks 1 to 5 count from the first day of the month, 6 to
// 9 back from its last.
bool IsDayOfWeekNDay(std::span<const std::uint8_t> octets, const BACSTAC_DATE& day);

// Reads one BACnetCalendarEntry. False also for one that is not encoded right.
bool IsDayOfEntry(bacnet::Reader& entry, const BACSTAC_DATE& day);

} // namespace sim
