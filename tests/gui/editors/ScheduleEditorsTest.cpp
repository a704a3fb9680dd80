// The editors of calendars and schedules, and of values of any type in them.
#include "api/bacnet/Enums.h"
#include "tests/gui/editors/Forms.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QTreeView>

#include <cstring>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr BACSTAC_OBJECT_TYPE OBJ_SCHEDULE = 17;
constexpr BACSTAC_PROPERTY_ID PROP_EXCEPTION_SCHEDULE = 38;
constexpr BACSTAC_PROPERTY_ID PROP_EVENT_PARAMETERS = 83;
constexpr BACSTAC_PROPERTY_ID PROP_WEEKLY_SCHEDULE = 123;

constexpr const char* ENTRY = "Input calendar-entry";
constexpr const char* EVENT = "Input special-event";
constexpr const char* TIME_VALUE = "Input time-value";
constexpr const char* ANY = "Input any-primitive";

std::unique_ptr<CPropertyValue> NewValue(BACSTAC_OBJECT_TYPE object, BACSTAC_PROPERTY_ID property) {
    return std::unique_ptr<CPropertyValue>(CPropertyValue::CreateValue(object, property, TYPE_NONE, -1));
}

// ---- calendar entries

class CalendarEntry : public Forms {
protected:
    bool UseEntry(const CDialogScript::Action& use) { return Use(Value(m_entry), ENTRY, use); }
    // The text after a choice, with nothing else done.
    std::string Chosen(const char* alternative) {
        std::string text;
        EXPECT_TRUE(UseEntry([&](const CControls& form) {
            form.Choose("Type", alternative);
            text = TextOf(form, "Value");
            PressOk(form);
        }));
        return text;
    }
    CPVCalendarEntry m_entry;
};

TEST_F(CalendarEntry, BeginsUnspecifiedWithEachChoice) {
    m_entry.Value.Date = {2026, 0, 11, 21, 6};
    EXPECT_EQ(Chosen("date-range"), "*/*/* - */*/*");
    EXPECT_EQ(m_entry.Value.Choice, BACSTAC_CALENDAR_RANGE);
    for (const BACSTAC_DATE* const date : {&m_entry.Value.Range.Start, &m_entry.Value.Range.End}) {
        EXPECT_EQ(date->Year, BACSTAC_ANY_YEAR);
        EXPECT_EQ(date->Month, BACSTAC_ANY_MONTH);
        EXPECT_EQ(date->Day, BACSTAC_ANY_DAY);
        EXPECT_EQ(date->Weekday, BACSTAC_ANY_WEEKDAY);
    }
    Chosen("week-and-day");
    EXPECT_EQ(m_entry.Value.Choice, BACSTAC_CALENDAR_WEEK_N_DAY);
    EXPECT_EQ(m_entry.Value.WeekNDay.Month, 0U);
    EXPECT_EQ(m_entry.Value.WeekNDay.Week, BACSTAC_ANY_WEEK);
    EXPECT_EQ(m_entry.Value.WeekNDay.Day, 0U);
    Chosen("date");
    EXPECT_EQ(m_entry.Value.Choice, BACSTAC_CALENDAR_DATE);
    EXPECT_EQ(m_entry.Value.Date.Year, BACSTAC_ANY_YEAR);
}

TEST_F(CalendarEntry, EachChoiceHasItsEditor) {
    EXPECT_TRUE(UseEntry([&](const CControls& form) {
        Edit(form, "&Value", "Input date-time", "date", [](const CControls& date) {
            EXPECT_FALSE(date.Get<QWidget>("&Hour").isEnabled());
            date.Choose("&Month", "*Even*");
            PressOk(date);
        });
        PressOk(form);
    }));
    EXPECT_EQ(m_entry.Value.Date.Month, 14U);
    EXPECT_TRUE(UseEntry([&](const CControls& form) {
        EXPECT_THAT(ItemsOf(form.Get<QComboBox>("Type")), ElementsAre("date", "date-range", "week-and-day"));
        form.Choose("Type", "week-and-day");
        Edit(form, "&Value", "Input week-n-day", "week-n-day", PressCancel);
        form.Choose("Type", "date-range");
        Edit(form, "&Value", "Input date-range", "date-range", PressOk);
        PressOk(form);
    }));
    EXPECT_EQ(m_entry.Value.Choice, BACSTAC_CALENDAR_RANGE);
}

// ---- special events

class SpecialEvent : public Forms {
protected:
    SpecialEvent() { m_event.SetPropId(OBJ_SCHEDULE, PROP_EXCEPTION_SCHEDULE); }
    bool UseEvent(const CDialogScript::Action& use) { return Use(Value(m_event), EVENT, use); }
    CPVSpecialEvent m_event;
};

TEST_F(SpecialEvent, ShowsThePriorityOneBelowItsNumber) {
    m_event.Value.Priority = 16;
    EXPECT_TRUE(UseEvent([](const CControls& form) {
        EXPECT_EQ(form.Get<QComboBox>("&Priority").currentIndex(), 15);
        EXPECT_EQ(ItemsOf(form.Get<QComboBox>("&Priority")).size(), 16U);
        form.Choose("&Priority", "1");
        PressOk(form);
    }));
    EXPECT_EQ(m_event.Value.Priority, 1U);
}

TEST_F(SpecialEvent, WantsAPriorityBeforeItCloses) {
    for (const std::uint32_t priority : {0U, 17U, 0xFFFFFFFFU}) {
        m_event.Value.Priority = priority;
        EXPECT_FALSE(UseEvent([](const CControls& form) {
            EXPECT_EQ(form.Get<QComboBox>("&Priority").currentIndex(), -1);
            PressOk(form);
            EXPECT_TRUE(form.GetRoot().isVisible());
            EXPECT_EQ(form.GetRoot().focusWidget(), &form.Get<QComboBox>("&Priority"));
            PressCancel(form);
        }));
    }
    EXPECT_TRUE(UseEvent([](const CControls& form) {
        form.Choose("&Priority", "10");
        PressOk(form);
    }));
    EXPECT_EQ(m_event.Value.Priority, 10U);
}

TEST_F(SpecialEvent, BeginsAnewWithEachKindOfPeriod) {
    m_event.Value.Priority = 5;
    m_event.Value.Entry.Date = {2026, 0, 11, 21, 6};
    EXPECT_TRUE(UseEvent([&](const CControls& form) {
        EXPECT_THAT(ItemsOf(form.Get<QComboBox>("P&eriod")), ElementsAre("calendar-entry", "calendar-reference"));
        form.Choose("P&eriod", "calendar-reference");
        EXPECT_EQ(TextOf(form, "Value"), "(calendar, 0)");
        Edit(form, "&Value", "Input device-object-property", "calendar-reference", [](const CControls& reference) {
            reference.Type("Object instance", "3");
            PressOk(reference);
        });
        EXPECT_EQ(TextOf(form, "Value"), "(calendar, 3)");
        PressOk(form);
    }));
    EXPECT_EQ(m_event.Value.Period, BACSTAC_PERIOD_REFERENCE);
    EXPECT_EQ(m_event.Value.Calendar, (BACSTAC_OBJECT_ID{OBJ_CALENDAR, 3}));
    EXPECT_TRUE(UseEvent([&](const CControls& form) {
        form.Choose("P&eriod", "calendar-entry");
        Edit(form, "&Value", ENTRY, "calendar-entry", [](const CControls& entry) {
            EXPECT_EQ(ItemOf(entry, "Type"), "date");
            PressCancel(entry);
        });
        PressOk(form);
    }));
    EXPECT_EQ(m_event.Value.Period, BACSTAC_PERIOD_ENTRY);
    EXPECT_EQ(m_event.Value.Entry.Choice, BACSTAC_CALENDAR_DATE);
    EXPECT_EQ(m_event.Value.Entry.Date.Year, BACSTAC_ANY_YEAR);
    EXPECT_EQ(m_event.Value.Entry.Date.Day, BACSTAC_ANY_DAY);
}

// Three dialogs deep: a confirmed value is lost with the cancelled one around it.
TEST_F(SpecialEvent, ACancelledListDropsWhatWasConfirmedInIt) {
    m_event.Value.Priority = 5;
    m_event.GetTimeValues().Reset(1);
    m_event.GetTimeValues().SetElement(0, m_event.GetTimeValues().CreateElement());
    const std::string before = OctetsOf(m_event);
    const auto changeTheValue = [&](const CControls& list) {
        m_script.Do(TIME_VALUE, [&](const CControls& timeValue) {
            Edit(timeValue, "&Value", ANY, "value", [](const CControls& any) {
                any.Choose("Type", "boolean");
                PressOk(any);
            });
            PressOk(timeValue);
        });
        list.Press("Edit");
    };
    EXPECT_TRUE(UseEvent([&](const CControls& form) {
        EXPECT_EQ(form.Get<QAbstractButton>("Edit time-value list...").text(),
                  QStringLiteral("Edit time-value list...")); // without a mnemonic
        EditList(form, "Edit time-value list...", "time-value", [&](const CControls& list) {
            changeTheValue(list);
            PressCancel(list);
        });
        PressOk(form);
    }));
    EXPECT_EQ(OctetsOf(m_event), before);
    EXPECT_TRUE(UseEvent([&](const CControls& form) {
        EditList(form, "Edit time-value list...", "time-value", [&](const CControls& list) {
            changeTheValue(list);
            PressOk(list);
        });
        PressOk(form);
    }));
    EXPECT_NE(OctetsOf(m_event), before);
    EXPECT_EQ(static_cast<CPVTimeValue*>(m_event.GetTimeValues().GetElement(0))->GetValue().GetValueType(),
              TYPE_BOOLEAN);
}

TEST_F(SpecialEvent, CancelKeepsListsThatWereConfirmedInItFromTheValue) {
    m_event.Value.Priority = 5;
    const std::string before = OctetsOf(m_event);
    EXPECT_FALSE(UseEvent([&](const CControls& form) {
        EditList(form, "Edit time-value list...", "time-value", [&](const CControls& list) {
            m_script.Do(TIME_VALUE, PressOk);
            list.Press("Add");
            PressOk(list);
        });
        PressCancel(form);
    }));
    EXPECT_EQ(OctetsOf(m_event), before);
    EXPECT_EQ(m_event.GetTimeValues().GetElementCnt(), 0U);
}

// ---- a week

TEST_F(SpecialEvent, AWeekIsSevenListsOfTimesAndValues) {
    const auto week = NewValue(OBJ_SCHEDULE, PROP_WEEKLY_SCHEDULE);
    EXPECT_TRUE(Use(Value(*week), "Input list of daily-schedule", [&](const CControls& days) {
        EXPECT_EQ(days.Only<QTreeView>().model()->rowCount(), 7);
        EXPECT_FALSE(IsEnabled(days, "Add"));
        m_script.Do("Input list of time-value", [&](const CControls& day) {
            m_script.Do(TIME_VALUE, [&](const CControls& timeValue) {
                Edit(timeValue, "&Time", "Input date-time", "time", [](const CControls& time) {
                    EXPECT_FALSE(time.Get<QWidget>("&Month").isEnabled());
                    time.Choose("&Hour", "06");
                    PressOk(time);
                });
                Edit(timeValue, "&Value", ANY, "value", [&](const CControls& any) {
                    any.Choose("Type", "real");
                    Edit(any, "&Value", "Input real", "weekly-schedule", [](const CControls& real) {
                        real.Type("weekly-schedule", "21.5");
                        PressOk(real);
                    });
                    PressOk(any);
                });
                PressOk(timeValue);
            });
            day.Press("Add");
            PressOk(day);
        });
        SelectRow(days, 1);
        days.Press("Edit");
        PressOk(days);
    }));
    auto& list = static_cast<CPropertyValueList&>(*week);
    ASSERT_EQ(list.GetElementCnt(), 7U);
    for (unsigned day = 0; day < 7; ++day)
        ASSERT_EQ(static_cast<CPropertyValueList*>(list.GetElement(day))->GetElementCnt(), day == 1 ? 1U : 0U);
    const auto& one = static_cast<CPVTimeValue&>(*static_cast<CPropertyValueList*>(list.GetElement(1))->GetElement(0));
    EXPECT_EQ(one.Value.Time.Hour, 6U);
    EXPECT_EQ(one.GetValue().ToText(BACSTAC_NO_INDEX), "21.5");
}

// ---- values of any type

class AnyPrimitive : public Forms {
protected:
    AnyPrimitive() {
        m_value.SetPropId(OBJ_SCHEDULE, PROP_WEEKLY_SCHEDULE);
        auto* const real = new CPVReal;
        real->Value = 21.5F;
        m_value.Assign(real);
    }
    bool UseAny(const CDialogScript::Action& use) { return Use(Value(m_value), ANY, use); }
    CPVAnyPrimitive m_value;
};

TEST_F(AnyPrimitive, OffersTheTypesByName) {
    UseAny([](const CControls& form) {
        EXPECT_THAT(ItemsOf(form.Get<QComboBox>("&Type")),
                    ElementsAre("null", "boolean", "unsigned", "signed", "real", "double", "character-string",
                                "bit-string", "enumerated", "date", "time", "object-identifier", "octet-string"));
        EXPECT_EQ(ItemOf(form, "Type"), "real");
        EXPECT_EQ(TextOf(form, "Value"), "21.5");
        PressCancel(form);
    });
}

TEST_F(AnyPrimitive, ANewTypeDiscardsTheValueAtOnceButNotTheCallersOne) {
    EXPECT_FALSE(UseAny([](const CControls& form) {
        form.Choose("Type", "unsigned");
        EXPECT_EQ(TextOf(form, "Value"), "0");
        form.Choose("Type", "real");
        EXPECT_EQ(TextOf(form, "Value"), "0");
        PressCancel(form);
    }));
    EXPECT_EQ(m_value.ToText(BACSTAC_NO_INDEX), "21.5");
}

TEST_F(AnyPrimitive, ChoosingThePresentTypeKeepsTheValue) {
    EXPECT_TRUE(UseAny([](const CControls& form) {
        form.Choose("Type", "real");
        EXPECT_EQ(TextOf(form, "Value"), "21.5");
        PressOk(form);
    }));
}

TEST_F(AnyPrimitive, NullHasNothingToEdit) {
    EXPECT_TRUE(UseAny([](const CControls& form) {
        form.Choose("Type", "null");
        form.Press("&Value");
        PressOk(form);
    }));
    EXPECT_THAT(m_events.Take(), ElementsAre("Dialog(Input any-primitive)"));
    EXPECT_EQ(m_value.GetValueType(), TYPE_NULL);
}

TEST_F(AnyPrimitive, AParameterOfAnExtendedEventMayBeAReference) {
    m_value.SetPropId(OBJ_EVENT_ENROLLMENT, PROP_EVENT_PARAMETERS);
    EXPECT_TRUE(UseAny([&](const CControls& form) {
        EXPECT_EQ(ItemsOf(form.Get<QComboBox>("Type")).size(), 9U);
        form.Choose("Type", "device-object-property-reference");
        Edit(form, "&Value", "Input device-object-property", "event-parameters", PressOk);
        PressOk(form);
    }));
    EXPECT_EQ(m_value.GetValueType(), TYPE_DEV_OBJ_PROP_REF);
}

TEST_F(AnyPrimitive, SeveralValuesAreEditedAsAList) {
    auto* const list = new CPropertyValueList(TYPE_UNSIGNED);
    list->Reset(2);
    for (unsigned index = 0; index < 2; ++index)
        list->SetElement(index, list->CreateElement());
    m_value.Assign(list);
    EXPECT_TRUE(UseAny([&](const CControls& form) {
        EXPECT_EQ(ItemOf(form, "Type"), "unsigned");
        m_script.Press("Input list of unsigned", "OK");
        form.Press("&Value");
        PressOk(form);
    }));
    ASSERT_TRUE(m_value.GetValue()->IsCollection());
    EXPECT_EQ(static_cast<CPropertyValueList*>(m_value.GetValue())->GetElementCnt(), 2U);
}

TEST_F(AnyPrimitive, WhatIsNotDecodedStaysAsItIs) {
    const std::uint8_t octets[] = {0xFF, 0x01, 0x02};
    m_value.Clear();
    BACSTAC_ANY_VALUE raw{TYPE_RAW, sizeof raw, sizeof octets, sizeof octets};
    std::vector<std::uint8_t> record(sizeof raw + sizeof octets);
    std::memcpy(record.data(), &raw, sizeof raw);
    std::memcpy(record.data() + sizeof raw, octets, sizeof octets);
    ASSERT_TRUE(m_value.ReadFrom(record.data()));
    const std::string before = OctetsOf(m_value);
    EXPECT_TRUE(UseAny([](const CControls& form) {
        EXPECT_EQ(ItemOf(form, "Type"), "");
        form.Press("&Value");
        PressOk(form);
    }));
    EXPECT_EQ(OctetsOf(m_value), before);
}

} // namespace
