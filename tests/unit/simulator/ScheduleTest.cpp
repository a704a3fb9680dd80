// Schedules and calendars follow the clock of their device and command what they refer to.
#include "simulator/model/Device.h"
#include "tests/unit/simulator/Station.h"

namespace sim::testing {
namespace {

constexpr BACSTAC_OBJECT_ID SCHEDULE{OBJ_SCHEDULE, 1};
constexpr BACSTAC_OBJECT_ID CALENDAR{OBJ_CALENDAR, 2};
constexpr BACSTAC_OBJECT_ID TARGET{OBJ_ANALOG_VALUE, 3};

// Monday, 16 November 2026.
LocalTime At(unsigned day, std::uint8_t hour, std::uint8_t minute = 0, std::uint8_t second = 0) {
    return *ToLocalTime({{2026, 0, 11, day, 0}, {hour, minute, second, 0}});
}

Value Encoded(const std::string& hex) {
    return Value::Encoded(Hex(hex));
}

// At 8:00 a real 21, at 18:00 null.
const char WORKING_DAY[] = "0E B4 08 00 00 00 44 41 A8 00 00 B4 12 00 00 00 00 0F";
const char FREE_DAY[] = "0E 0F";

class ScheduleOfADevice : public ::testing::Test {
protected:
    void SetUp() override {
        m_config.Instance = 7;
        ObjectConfig target;
        target.Id = TARGET;
        target.Commandable = true;
        target.Properties.emplace_back(PROP_PRESENT_VALUE, Value::Real(10));
        ObjectConfig calendar;
        calendar.Id = CALENDAR;
        const Value dates[] = {Encoded("0C 7E 0B 11 FF")}; // Tuesday, 17 November
        calendar.Properties.emplace_back(PROP_DATE_LIST, Value::List(dates));
        ObjectConfig schedule;
        schedule.Id = SCHEDULE;
        std::vector<Value> week(5, Encoded(WORKING_DAY));
        week.resize(7, Encoded(FREE_DAY));
        schedule.Properties.emplace_back(PROP_WEEKLY_SCHEDULE, Value::Array(week));
        schedule.Properties.emplace_back(PROP_EXCEPTION_SCHEDULE, Value::Array({}));
        schedule.Properties.emplace_back(PROP_SCHEDULE_DEFAULT, Value::Real(16));
        schedule.Properties.emplace_back(PROP_EFFECTIVE_PERIOD, Encoded("A4 FF FF FF FF A4 FF FF FF FF"));
        const Value references[] = {Encoded("0C 00 80 00 03 19 55")};
        schedule.Properties.emplace_back(PROP_LIST_OF_OBJECT_PROPERTY_REFERENCES, Value::List(references));
        schedule.Properties.emplace_back(PROP_PRIORITY_FOR_WRITING, Value::Unsigned(9));
        m_config.Objects = {target, calendar, schedule};
    }
    Device& Dut() {
        if (m_device == nullptr)
            m_device = std::make_unique<Device>(m_config, [this] { return m_now; });
        return *m_device;
    }
    Value& Configured(BACSTAC_PROPERTY_ID property) {
        for (auto& [known, value] : m_config.Objects[2].Properties)
            if (known == property)
                return value;
        return m_config.Objects[2].Properties.emplace_back(property, Value()).second;
    }
    void SetExceptions(const std::vector<std::string>& exceptions) {
        std::vector<Value> values;
        for (const std::string& exception : exceptions)
            values.push_back(Encoded(exception));
        Configured(PROP_EXCEPTION_SCHEDULE) = Value::Array(values);
    }
    Value Present(LocalTime now, BACSTAC_OBJECT_ID id = SCHEDULE) {
        m_now = now;
        Dut().Run();
        return Dut().GetProperty(id, PROP_PRESENT_VALUE).value();
    }
    PropertyError Write(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property, const Value& value) {
        const auto lock = Dut().Lock();
        return Dut().Write(id, {property, WHOLE, value.Wire(), PRIORITIES});
    }

    LocalTime m_now = At(16, 6);
    DeviceConfig m_config;
    std::unique_ptr<Device> m_device;
};

TEST_F(ScheduleOfADevice, FollowsTheDayOfTheWeek) {
    EXPECT_EQ(Present(At(16, 7, 59, 59)), Value::Real(16)); // the default
    EXPECT_EQ(Present(At(16, 8)), Value::Real(21));
    EXPECT_EQ(Present(At(16, 17, 59, 59)), Value::Real(21));
    EXPECT_EQ(Present(At(16, 18)), Value::Real(16)); // null: the default
    EXPECT_EQ(Present(At(17, 0)), Value::Real(16));  // nothing lasts beyond midnight
    EXPECT_EQ(Present(At(20, 12)), Value::Real(21));
    EXPECT_EQ(Present(At(21, 12)), Value::Real(16)); // Saturday
}

TEST_F(ScheduleOfADevice, CommandsItsReferencesAtItsPriority) {
    EXPECT_EQ(Present(At(16, 8), TARGET), Value::Real(21));
    const Value priorities = Dut().GetProperty(TARGET, PROP_PRIORITY_ARRAY).value();
    EXPECT_EQ(ToHex(priorities.Element(8)), "44 41 A8 00 00");
    EXPECT_EQ(ToHex(priorities.Element(15)), "00");
    EXPECT_EQ(Present(At(16, 18), TARGET), Value::Real(16));
}

TEST_F(ScheduleOfADevice, RelinquishesByADefaultOfNull) {
    Configured(PROP_SCHEDULE_DEFAULT) = Value::Null();
    EXPECT_EQ(Present(At(16, 8), TARGET), Value::Real(21));
    EXPECT_EQ(Present(At(16, 18), TARGET), Value::Real(10)); // the target's own default
    EXPECT_EQ(Present(At(16, 18)), Value::Null());
}

TEST_F(ScheduleOfADevice, HasItsValueWhenTheDeviceStarts) {
    m_now = At(16, 12);
    EXPECT_EQ(Dut().GetProperty(SCHEDULE, PROP_PRESENT_VALUE), Value::Real(21));
    EXPECT_EQ(Dut().GetProperty(TARGET, PROP_PRESENT_VALUE), Value::Real(21));
}

TEST_F(ScheduleOfADevice, ExceptionsGoBeforeTheWeekday) {
    // 17 November by the calendar: 30 all day. Each Monday from 10:00 to 11:00: 40.
    SetExceptions({"1C 01 80 00 02 2E B4 00 00 00 00 44 41 F0 00 00 2F 39 05",
                   "0E 2B FF FF 01 0F 2E B4 0A 00 00 00 44 42 20 00 00 B4 0B 00 00 00 00 2F 39 07"});
    EXPECT_EQ(Present(At(16, 9)), Value::Real(21));
    EXPECT_EQ(Present(At(16, 10, 30)), Value::Real(40));
    EXPECT_EQ(Present(At(16, 11)), Value::Real(21)); // null: the weekday again
    EXPECT_EQ(Present(At(17, 0)), Value::Real(30));
    EXPECT_EQ(Present(At(17, 23, 59)), Value::Real(30));
    EXPECT_EQ(Present(At(18, 9)), Value::Real(21));
}

TEST_F(ScheduleOfADevice, TheHighestPriorityOfExceptionsCountsAndThenTheFirst) {
    // The same date range; 30 at priority 9, 40 at priority 3 from 12:00 on, 50 at priority 3 from 10:00 on.
    const std::string days = "0E 1E A4 7E 0B 10 FF A4 7E 0B 11 FF 1F 0F ";
    SetExceptions({days + "2E B4 00 00 00 00 44 41 F0 00 00 2F 39 09",
                   days + "2E B4 0C 00 00 00 44 42 20 00 00 2F 39 03",
                   days + "2E B4 0A 00 00 00 44 42 48 00 00 2F 39 03"});
    EXPECT_EQ(Present(At(16, 9)), Value::Real(30));
    EXPECT_EQ(Present(At(16, 11)), Value::Real(50));
    EXPECT_EQ(Present(At(16, 13)), Value::Real(40));
    EXPECT_EQ(Present(At(18, 13)), Value::Real(21));
}

TEST_F(ScheduleOfADevice, TimesMayStandInAnyOrder) {
    // 18:00 null, 6:00 real 17, 12:00 real 18.
    const std::string day = "0E B4 12 00 00 00 00 B4 06 00 00 00 44 41 88 00 00 B4 0C 00 00 00 44 41 90 00 00 0F";
    Configured(PROP_WEEKLY_SCHEDULE) = Value::Array(std::vector<Value>(7, Encoded(day)));
    EXPECT_EQ(Present(At(16, 5)), Value::Real(16));
    EXPECT_EQ(Present(At(16, 11)), Value::Real(17));
    EXPECT_EQ(Present(At(16, 12)), Value::Real(18));
    EXPECT_EQ(Present(At(16, 20)), Value::Real(16));
}

TEST_F(ScheduleOfADevice, RestsOutsideItsEffectivePeriod) {
    Configured(PROP_EFFECTIVE_PERIOD) = Encoded("A4 7E 0B 11 FF A4 7E 0B 12 FF"); // 17 and 18 November
    EXPECT_EQ(Present(At(16, 12), TARGET), Value::Real(10));
    EXPECT_EQ(Present(At(17, 0), TARGET), Value::Real(16)); // written at its begin
    EXPECT_EQ(Present(At(18, 12), TARGET), Value::Real(21));
    EXPECT_EQ(Present(At(19, 0), TARGET), Value::Real(21)); // stays as it was
    EXPECT_EQ(Present(At(19, 0)), Value::Real(21));
}

TEST_F(ScheduleOfADevice, StandsStillOutOfServiceAndPassesOnWhatIsWritten) {
    EXPECT_EQ(Present(At(16, 8)), Value::Real(21));
    EXPECT_EQ(Write(SCHEDULE, PROP_PRESENT_VALUE, Value::Real(25)), WRITE_ACCESS_DENIED);
    EXPECT_TRUE(Write(SCHEDULE, PROP_OUT_OF_SERVICE, Value::Boolean(true)).Ok());
    EXPECT_EQ(Present(At(16, 18)), Value::Real(21));
    EXPECT_TRUE(Write(SCHEDULE, PROP_PRESENT_VALUE, Value::Real(25)).Ok());
    EXPECT_EQ(Present(At(16, 19), TARGET), Value::Real(25));
    EXPECT_TRUE(Write(SCHEDULE, PROP_OUT_OF_SERVICE, Value::Boolean(false)).Ok());
    EXPECT_EQ(Dut().GetProperty(TARGET, PROP_PRESENT_VALUE), Value::Real(16));
}

TEST_F(ScheduleOfADevice, TakesAChangeAtOnce) {
    EXPECT_EQ(Present(At(16, 6)), Value::Real(16));
    EXPECT_TRUE(Write(SCHEDULE, PROP_SCHEDULE_DEFAULT, Value::Real(12)).Ok());
    EXPECT_EQ(Dut().GetProperty(TARGET, PROP_PRESENT_VALUE), Value::Real(12));
    EXPECT_TRUE(Write(SCHEDULE, PROP_PRIORITY_FOR_WRITING, Value::Unsigned(3)).Ok());
    EXPECT_EQ(ToHex(Dut().GetProperty(TARGET, PROP_PRIORITY_ARRAY)->Element(2)), "44 41 40 00 00");
}

TEST_F(ScheduleOfADevice, FollowsAClockThatIsSet) {
    EXPECT_EQ(Present(At(16, 6)), Value::Real(16));
    Dut().SetClock(At(16, 12));
    EXPECT_EQ(Dut().GetProperty(SCHEDULE, PROP_PRESENT_VALUE), Value::Real(21));
}

TEST_F(ScheduleOfADevice, WritesOnlyToItsOwnDevice) {
    const Value references[] = {Encoded("0C 00 80 00 03 19 55 3C 02 00 00 08"), // device 8
                                Encoded("0C 00 80 00 63 19 55")};               // not there
    Configured(PROP_LIST_OF_OBJECT_PROPERTY_REFERENCES) = Value::List(references);
    EXPECT_EQ(Present(At(16, 12), TARGET), Value::Real(10));
    EXPECT_EQ(Present(At(16, 12)), Value::Real(21));
}

TEST_F(ScheduleOfADevice, ACalendarTellsWhetherItIsItsDay) {
    EXPECT_EQ(Present(At(16, 23, 59, 59), CALENDAR), Value::Boolean(false));
    EXPECT_EQ(Present(At(17, 0), CALENDAR), Value::Boolean(true));
    EXPECT_EQ(Present(At(18, 0), CALENDAR), Value::Boolean(false));
    EXPECT_EQ(Write(CALENDAR, PROP_PRESENT_VALUE, Value::Boolean(true)), WRITE_ACCESS_DENIED);
}

TEST_F(ScheduleOfADevice, ACalendarThatGetsAnotherDayIsFollowedAtOnce) {
    SetExceptions({"1C 01 80 00 02 2E B4 00 00 00 00 44 41 F0 00 00 2F 39 05"});
    EXPECT_EQ(Present(At(16, 9)), Value::Real(21));
    const Octets today = Hex("0C 7E 0B 10 FF");
    std::uint32_t failed = 0;
    {
        const auto lock = Dut().Lock();
        const WriteCommand added{PROP_DATE_LIST, WHOLE, today, PRIORITIES};
        EXPECT_TRUE(Dut().ChangeList(CALENDAR, &Object::AddElements, added, failed).Ok());
    }
    EXPECT_EQ(Dut().GetProperty(CALENDAR, PROP_PRESENT_VALUE), Value::Boolean(true));
    EXPECT_EQ(Dut().GetProperty(SCHEDULE, PROP_PRESENT_VALUE), Value::Real(30));
}

TEST_F(ScheduleOfADevice, SchedulesThatCommandEachOtherComeToRest) {
    ObjectConfig second = m_config.Objects[2];
    second.Id.Instance = 2;
    const Value toFirst[] = {Encoded("0C 04 40 00 01 19 AE")}; // schedule 1, schedule-default
    const Value toSecond[] = {Encoded("0C 04 40 00 02 19 AE")};
    Configured(PROP_LIST_OF_OBJECT_PROPERTY_REFERENCES) = Value::List(toSecond);
    for (auto& [property, value] : second.Properties)
        if (property == PROP_LIST_OF_OBJECT_PROPERTY_REFERENCES)
            value = Value::List(toFirst);
    m_config.Objects.push_back(second);
    EXPECT_EQ(Present(At(16, 6)), Value::Real(16));
    EXPECT_TRUE(Write(SCHEDULE, PROP_SCHEDULE_DEFAULT, Value::Real(12)).Ok());
    EXPECT_EQ(Dut().GetProperty(second.Id, PROP_PRESENT_VALUE), Value::Real(12));
}

TEST_F(ScheduleOfADevice, WithoutPropertiesOfItsOwnIsAlwaysInEffectAndHasAnEmptyWeek) {
    m_config.Objects[2].Properties.clear();
    EXPECT_EQ(Dut().GetProperty(SCHEDULE, PROP_WEEKLY_SCHEDULE)->Count(), 7U);
    EXPECT_EQ(Dut().GetProperty(SCHEDULE, PROP_PRIORITY_FOR_WRITING), Value::Unsigned(16));
    EXPECT_TRUE(Write(SCHEDULE, PROP_SCHEDULE_DEFAULT, Value::Real(12)).Ok());
    EXPECT_EQ(Present(At(16, 12)), Value::Real(12));
}

TEST_F(ScheduleOfADevice, ADeviceWithoutSchedulesHasNothingToDo) {
    EXPECT_TRUE(Dut().IsAtWork());
    EXPECT_TRUE(Dut().RemoveObject(SCHEDULE));
    EXPECT_TRUE(Dut().RemoveObject(CALENDAR));
    EXPECT_FALSE(Dut().IsAtWork());
}

} // namespace
} // namespace sim::testing
