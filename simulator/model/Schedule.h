// What Schedule and Calendar objects come to at a time (clauses 12.24.4 to 12.24.8 and 12.9.6), by their own properties
// alone. Any thread; no state.
#pragma once

#include "simulator/model/Object.h"

#include <functional>

namespace sim {

bool IsCalendarDay(const Object& calendar, const BACSTAC_DATE& day);

// Whether the day lies in the Effective_Period; without one every day does.
bool IsEffective(const Object& schedule, const BACSTAC_DATE& day);

// Whether the calendar object of that identifier has the day; false for one that is not there.
using CalendarQuestion = std::function<bool(BACSTAC_OBJECT_ID)>;

// The value of the exception of the highest priority that has one now; else that of the weekday; else the default. Null
// where nothing says anything.
Value ScheduledValue(const Object& schedule, const BACSTAC_DATE_TIME& now, const CalendarQuestion& isCalendarDay);

} // namespace sim
