#include "simulator/model/Schedule.h"

#include "platform/stack/codec/Reader.h"
#include "simulator/model/DatePattern.h"

namespace sim {

namespace {

using Octets = std::span<const std::uint8_t>;

// Context tags of BACnetDailySchedule and BACnetSpecialEvent.
constexpr unsigned DAY_SCHEDULE = 0;
constexpr unsigned CALENDAR_ENTRY = 0;
constexpr int CALENDAR_REFERENCE = 1;
constexpr unsigned TIME_VALUES = 2;
constexpr int EVENT_PRIORITY = 3;

constexpr std::uint32_t LOWEST_PRIORITY = 16;

// Hundredths of a second since midnight; what is unspecified counts as 0.
std::uint32_t SinceMidnight(const BACSTAC_TIME& time) {
    const auto field = [](std::uint8_t value) { return value == BACSTAC_ANY_TIME ? 0U : std::uint32_t{value}; };
    return ((field(time.Hour) * 60 + field(time.Minute)) * 60 + field(time.Second)) * 100 + field(time.Hundredths);
}

// The value of the latest of the times up to now, which may stand in any order. Empty when there is none, or a null.
Octets CurrentValue(Octets timeValues, const BACSTAC_TIME& now) {
    bacnet::Reader in(timeValues);
    Octets current;
    std::uint32_t latest = 0;
    BACSTAC_TIME time{};
    Octets value;
    while (!in.AtEnd() && in.Time(time) && in.Skip(&value)) {
        const std::uint32_t at = SinceMidnight(time);
        if (at > SinceMidnight(now) || (!current.empty() && at < latest))
            continue;
        latest = at;
        current = value;
    }
    return PrimitiveTagOf(current) == bacnet::TAG_NULL ? Octets{} : current;
}

struct Exception {
    std::uint32_t Priority = LOWEST_PRIORITY + 1;
    Octets Value; // now; empty when it has none
};

Exception ReadException(Octets element, const BACSTAC_DATE_TIME& now, const CalendarQuestion& isCalendarDay) {
    bacnet::Reader in(element);
    bool applies = false;
    if (in.IsOpening(CALENDAR_ENTRY)) {
        Octets entry;
        in.Enclosed(CALENDAR_ENTRY, entry);
        bacnet::Reader day(entry);
        applies = IsDayOfEntry(day, now.Date);
    } else {
        BACSTAC_OBJECT_ID calendar{};
        applies = in.ObjectId(calendar, CALENDAR_REFERENCE) && isCalendarDay(calendar);
    }
    Exception exception;
    Octets timeValues;
    if (applies && in.Enclosed(TIME_VALUES, timeValues) && in.Unsigned(exception.Priority, EVENT_PRIORITY))
        exception.Value = CurrentValue(timeValues, now.Time);
    return exception;
}

// Of equal priorities the first one counts.
Octets ExceptionalValue(const Object& schedule, const BACSTAC_DATE_TIME& now, const CalendarQuestion& isCalendarDay) {
    Exception highest;
    const Value* exceptions = schedule.Find(PROP_EXCEPTION_SCHEDULE);
    for (std::uint32_t i = 0; exceptions != nullptr && i < exceptions->Count(); ++i) {
        const Exception exception = ReadException(exceptions->Element(i), now, isCalendarDay);
        if (!exception.Value.empty() && exception.Priority < highest.Priority)
            highest = exception;
    }
    return highest.Value;
}

Octets WeeklyValue(const Object& schedule, const BACSTAC_DATE_TIME& now) {
    const Value* days = schedule.Find(PROP_WEEKLY_SCHEDULE);
    if (days == nullptr || now.Date.Weekday < 1 || now.Date.Weekday > days->Count())
        return {};
    bacnet::Reader in(days->Element(now.Date.Weekday - 1));
    Octets timeValues;
    return in.Enclosed(DAY_SCHEDULE, timeValues) ? CurrentValue(timeValues, now.Time) : Octets{};
}

} // namespace

bool IsCalendarDay(const Object& calendar, const BACSTAC_DATE& day) {
    const Value* dates = calendar.Find(PROP_DATE_LIST);
    for (std::uint32_t i = 0; dates != nullptr && i < dates->Count(); ++i) {
        bacnet::Reader entry(dates->Element(i));
        if (IsDayOfEntry(entry, day))
            return true;
    }
    return false;
}

bool IsEffective(const Object& schedule, const BACSTAC_DATE& day) {
    const Value* period = schedule.Find(PROP_EFFECTIVE_PERIOD);
    if (period == nullptr)
        return true;
    bacnet::Reader in(period->Wire());
    BACSTAC_DATE_RANGE days{};
    return in.Date(days.Start) && in.Date(days.End) && IsDayOf(days, day);
}

Value ScheduledValue(const Object& schedule, const BACSTAC_DATE_TIME& now, const CalendarQuestion& isCalendarDay) {
    Octets value = ExceptionalValue(schedule, now, isCalendarDay);
    if (value.empty())
        value = WeeklyValue(schedule, now);
    if (!value.empty())
        return Value::Encoded(value);
    const Value* fallback = schedule.Find(PROP_SCHEDULE_DEFAULT);
    return fallback != nullptr ? *fallback : Value::Null();
}

} // namespace sim
