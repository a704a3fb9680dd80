#include "simulator/model/Schedules.h"

#include "platform/stack/codec/Reader.h"
#include "simulator/model/Device.h"
#include "simulator/model/Reference.h"
#include "simulator/model/Schedule.h"

#include <algorithm>

namespace sim {

namespace {

// What has the present value computed anew when it is written.
constexpr BACSTAC_PROPERTY_ID TERMS[] = {PROP_EFFECTIVE_PERIOD, PROP_WEEKLY_SCHEDULE, PROP_EXCEPTION_SCHEDULE,
                                         PROP_SCHEDULE_DEFAULT, PROP_OUT_OF_SERVICE,  PROP_DATE_LIST};

// What has the present value written again.
constexpr BACSTAC_PROPERTY_ID TARGETS[] = {PROP_PRESENT_VALUE, PROP_LIST_OF_OBJECT_PROPERTY_REFERENCES,
                                           PROP_PRIORITY_FOR_WRITING};

template <std::size_t N>
bool Contains(const BACSTAC_PROPERTY_ID (&properties)[N], BACSTAC_PROPERTY_ID property) {
    return std::find(std::begin(properties), std::end(properties), property) != std::end(properties);
}

} // namespace

void Schedules::FindObjects() {
    std::vector<Entry> schedules;
    m_calendars.clear();
    for (const BACSTAC_OBJECT_ID& id : m_device.Objects()) {
        if (id.Type == OBJ_CALENDAR)
            m_calendars.push_back(id);
        const Entry* known = FindSchedule(id);
        if (id.Type == OBJ_SCHEDULE)
            schedules.push_back(known != nullptr ? *known : Entry{id, false});
    }
    m_schedules = std::move(schedules);
    m_evaluatedAt = 0;
}

Schedules::Entry* Schedules::FindSchedule(BACSTAC_OBJECT_ID id) {
    const auto at = std::find_if(m_schedules.begin(), m_schedules.end(), [=](const Entry& e) { return e.Id == id; });
    return at == m_schedules.end() ? nullptr : &*at;
}

void Schedules::OnChange(const Object& object, BACSTAC_PROPERTY_ID property) {
    const bool isSchedule = FindSchedule(object.Id()) != nullptr;
    if (!isSchedule && object.Id().Type != OBJ_CALENDAR)
        return;
    if (Contains(TERMS, property))
        Evaluate();
    if (isSchedule && Contains(TARGETS, property))
        WriteReferences(object);
}

void Schedules::OnTime() {
    if (m_device.Now() / HUNDREDTHS_PER_SECOND != m_evaluatedAt)
        Evaluate();
}

// Calendars go first: clients read them beside the schedules that refer to them.
void Schedules::Evaluate() {
    const LocalTime now = m_device.Now();
    m_evaluatedAt = now / HUNDREDTHS_PER_SECOND;
    const BACSTAC_DATE_TIME time = ToDateTime(now);
    for (const BACSTAC_OBJECT_ID& id : m_calendars) {
        Object& calendar = *m_device.Find(id);
        m_device.Update(calendar, PROP_PRESENT_VALUE, Value::Boolean(IsCalendarDay(calendar, time.Date)));
    }
    for (Entry& entry : m_schedules)
        EvaluateSchedule(entry, time);
}

// Outside its effective period, and while it is out of service, a schedule leaves its value as it is. When the period
// begins it writes its value, a new one or not, and so it does when the device starts.
void Schedules::EvaluateSchedule(Entry& entry, const BACSTAC_DATE_TIME& now) {
    Object& schedule = *m_device.Find(entry.Id);
    const bool begins = !entry.Effective;
    entry.Effective = IsEffective(schedule, now.Date);
    if (!entry.Effective || schedule.IsOutOfService())
        return;
    const auto isCalendarDay = [&](BACSTAC_OBJECT_ID id) {
        const Object* calendar = m_device.Find(id);
        return calendar != nullptr && IsCalendarDay(*calendar, now.Date);
    };
    const bool changed = m_device.Update(schedule, PROP_PRESENT_VALUE, ScheduledValue(schedule, now, isCalendarDay));
    if (begins && !changed)
        WriteReferences(schedule);
}

// A property that does not take the value keeps its own.
void Schedules::WriteReferences(const Object& schedule) {
    const Value* references = schedule.Find(PROP_LIST_OF_OBJECT_PROPERTY_REFERENCES);
    const Value* present = schedule.Find(PROP_PRESENT_VALUE);
    if (references == nullptr || present == nullptr || !IsEffective(schedule, ToDateTime(m_device.Now()).Date))
        return;
    std::uint32_t priority = PRIORITIES;
    if (const Value* given = schedule.Find(PROP_PRIORITY_FOR_WRITING))
        bacnet::Reader(given->Wire()).Unsigned(priority);
    const Value list = *references;
    const Value value = *present;
    for (std::uint32_t i = 0; i < list.Count(); ++i)
        if (const auto target = ReadReference(list.Element(i)); target && m_device.IsOwn(*target))
            m_device.Write(target->ObjectId, {target->Property, target->ArrayIndex, value.Wire(),
                                              static_cast<int>(std::clamp(priority, 1U, std::uint32_t{PRIORITIES}))});
}

} // namespace sim
