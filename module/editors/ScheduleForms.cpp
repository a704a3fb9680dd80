#include "module/editors/ScheduleForms.h"

#include "api/bacnet/Enums.h"
#include "module/editors/MemberEditors.h"

#include <QComboBox>

namespace {

constexpr int PRIORITIES = 16; // 1 is the first

// ---- calendar entries

using Entry = BACSTAC_CALENDAR_ENTRY;

constexpr FormAlternative ENTRIES[] = {
    Alternative<Entry, &Entry::Date, DATE_EDITOR, [](Entry& value) { CPVDate::Init(value.Date); }>(
        "date", BACSTAC_CALENDAR_DATE, "date"),
    Alternative<Entry, &Entry::Range, DATE_RANGE_EDITOR,
                [](Entry& value) {
                    CPVDate::Init(value.Range.Start);
                    CPVDate::Init(value.Range.End);
                }>("date-range", BACSTAC_CALENDAR_RANGE, "date-range"),
    Alternative<Entry, &Entry::WeekNDay, WEEK_N_DAY_EDITOR,
                [](Entry& value) {
                    value.WeekNDay = {0, BACSTAC_ANY_WEEK, 0};
                }>("week-and-day", BACSTAC_CALENDAR_WEEK_N_DAY, "week-n-day"),
};

constexpr FormRow ENTRY_ROWS[] = {
    Choice<Entry, &Entry::Choice>("&Type", "&Value", ENTRIES),
};

// ---- time values

constexpr FormRow TIME_VALUE_ROWS[] = {
    Field<CPVTimeValue, IN_VALUE<&BACSTAC_TIME_VALUE::Time>, TIME_EDITOR>("&Time", "time"),
    Field<CPVTimeValue, &CPVTimeValue::GetValue, ANY_PRIMITIVE_EDITOR>("&Value", "value"),
};

// ---- special events

using Event = CPVSpecialEvent;

constexpr FormAlternative PERIODS[] = {
    Alternative<Event, IN_VALUE<&BACSTAC_SPECIAL_EVENT::Entry>, CALENDAR_ENTRY_EDITOR,
                [](Event& event) {
                    event.Value.Entry = {};
                    CPVDate::Init(event.Value.Entry.Date);
                }>("calendar-entry", BACSTAC_PERIOD_ENTRY, "calendar-entry"),
    Alternative<Event, IN_VALUE<&BACSTAC_SPECIAL_EVENT::Calendar>, OBJECT_ID_EDITOR,
                [](Event& event) {
                    event.Value.Entry = {}; // the longer one
                    event.Value.Calendar = {OBJ_CALENDAR, 0};
                }>("calendar-reference", BACSTAC_PERIOD_REFERENCE, "calendar-reference"),
};

constexpr FormRow PERIOD_ROWS[] = {
    Choice<Event, IN_VALUE<&BACSTAC_SPECIAL_EVENT::Period>>("P&eriod", "&Value", PERIODS),
};

constexpr FormRow TIME_VALUES_ROWS[] = {
    List<Event, &Event::GetTimeValues>("Edit time-value list..."),
};

} // namespace

CEditCalendarEntryDlg::CEditCalendarEntryDlg(QWidget* parent)
    : CRecordForm(parent, {"Input calendar-entry", ENTRY_ROWS}) {}

CEditTimeValueDlg::CEditTimeValueDlg(QWidget* parent) : CRecordForm(parent, {"Input time-value", TIME_VALUE_ROWS}) {}

CEditSpecialEventDlg::CEditSpecialEventDlg(QWidget* parent)
    : CRecordForm(parent, {"Input special-event", PERIOD_ROWS}), m_priority(new QComboBox(this)) {
    for (int priority = 1; priority <= PRIORITIES; ++priority)
        m_priority->addItem(QString::number(priority));
    AddRow("&Priority", *m_priority);
    AddRows(TIME_VALUES_ROWS);
}

void CEditSpecialEventDlg::Load() {
    const std::uint32_t priority = Value.Value.Priority;
    m_priority->setCurrentIndex(priority <= PRIORITIES ? static_cast<int>(priority) - 1 : -1);
    CFormDlg::Load();
}

bool CEditSpecialEventDlg::Store() {
    const int item = m_priority->currentIndex();
    if (item < 0) {
        m_priority->setFocus();
        return false;
    }
    Value.Value.Priority = static_cast<std::uint32_t>(item) + 1;
    return true;
}
